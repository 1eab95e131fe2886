/// @file
/// The least change that makes an infeasible model feasible, through the C interface. Programs
/// include NuvModel.h, which says whose memory is whose, and what threads may do.
#ifndef NUV_MODEL_NUVREPAIR_H
#define NUV_MODEL_NUVREPAIR_H

#include "Nuv/Model/NuvModelTypes.h"
#include "Nuv/Model/NuvSolution.h"

/// What a repair came to.
typedef struct NuvRepairInfo
{
    /// sizeof(NuvRepairInfo), set by the caller.
    uint32_t size;
    /// NUV_STATUS_...: Optimal where the changes are known, none for a model that is feasible as it
    /// stands; Infeasible where what has to stay excludes itself; Stopped by a limit.
    uint32_t status;
    /// Not 0: it was checked in exact arithmetic that no smaller change does, or none at all.
    uint32_t proved;
    /// NUV_STOPREASON_...
    uint32_t stopReason;
    /// NUV_NUMBERS_...
    uint32_t numbers;
    /// How many NuvRepairGetChanges gives.
    uint32_t numChanges;
    /// Optimal: the sum of weights times amounts, else NaN.
    double total;
} NuvRepairInfo;

/// One side of a row or one bound of a column, and where it has to go.
typedef struct NuvRepairChange
{
    /// Of the column, or of the row.
    uint32_t index;
    /// Not 0: a row.
    uint32_t isRow;
    /// Not 0: its upper side or bound.
    uint32_t isUpper;
    /// Zero.
    uint32_t reserved;
    /// The double that it is.
    double from;
    /// The double nearest to where it has to go, which NuvRepairGetExact says exactly; of stored
    /// numbers the next double that is wide enough.
    double to;
    /// How far that is, positive.
    double amount;
} NuvRepairChange;

/// Finds how far sides of rows and bounds of columns have to move, in all the least. A lower bound
/// of zero stays. The weights, one for each column and one for each row, say what a unit of change
/// counts for, infinity that it stays; null is 1 for all. Of the options it obeys the limits, the
/// callbacks, the meaning of numbers and `keepProof`, which here is about the elastic program; null
/// are the defaults.
NUV_MODEL_API NuvModelResult NuvModelRepair(const NuvModel* model, const double* columnWeights,
                                            const double* rowWeights,
                                            const NuvSolveOptions* options, NuvRepair** repair,
                                            NuvDiagnostics* diagnostics);

/// Gives it back; a null is nothing.
NUV_MODEL_API void NuvRepairDestruct(NuvRepair* repair);

/// Fills in `info`, whose size the caller has set.
NUV_MODEL_API NuvModelResult NuvRepairGetInfo(const NuvRepair* repair, NuvRepairInfo* info);

/// The changes, columns first; null and 0 where there are none. A null `count` is not told.
NUV_MODEL_API const NuvRepairChange* NuvRepairGetChanges(const NuvRepair* repair, uint32_t* count);

/// Writes the exact new side of a change, or for NUV_MODEL_NO_INDEX the exact total, as "p" or
/// "p/q" into `buffer`, cut to `size` bytes with its NUL; a null buffer of size 0 only asks.
/// @return the bytes that the whole number takes with its NUL; 0 if there is none.
NUV_MODEL_API uint64_t NuvRepairGetExact(const NuvRepair* repair, uint32_t change, char* buffer,
                                         uint64_t size);

/// The model with the changes, for the caller to give back, each side at the number itself; of
/// stored numbers, where no double says it, at the next one that is wide enough.
/// @return NotKnown if the changes are not known.
NUV_MODEL_API NuvModelResult NuvRepairMakeModel(const NuvRepair* repair, NuvModel** model);

/// The elastic program, for the caller to give back: the model with a row and a variable for each
/// side and bound that may move, whose optimum is the total.
/// @return NotKnown if nothing is proved or the proof was not kept.
NUV_MODEL_API NuvModelResult NuvRepairMakeElasticModel(const NuvRepair* repair, NuvModel** model);

/// The proof that no smaller change is enough, or that no change is: a certificate of the elastic
/// program in VIPR format, which NuvModelVerify checks.
/// @return NotKnown if nothing is proved or the proof was not kept.
NUV_MODEL_API NuvModelResult NuvRepairMakeCertificate(const NuvRepair* repair,
                                                      NuvText** certificate);

#endif
