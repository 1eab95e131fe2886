/// @file
/// Whether what somebody says of a model is so, through the C interface: the verdict and the
/// numbers of a solution file, or the values of an array. The truth about the model is proved in
/// exact arithmetic and compared with what is said. Programs include NuvModel.h, which says whose
/// memory is whose, and what threads may do.
#ifndef NUV_MODEL_NUVCLAIM_H
#define NUV_MODEL_NUVCLAIM_H

#include "Nuv/Model/NuvModelTypes.h"
#include "Nuv/Model/NuvSolution.h"

/// What is claimed.
enum
{
    /// What the file says; a file that says nothing, and an array, claim an optimum.
    NUV_CLAIM_AsStated = 0,
    /// The values keep to all rows and bounds.
    NUV_CLAIM_Feasible = 1,
    /// And no others are better.
    NUV_CLAIM_Optimal = 2,
    NUV_CLAIM_Infeasible = 3,
    NUV_CLAIM_Unbounded = 4
};

/// Of which numbers the claim is, beside NUV_NUMBERS_...: those that the file names, or the written
/// ones if it names none.
enum
{
    NUV_NUMBERS_AsStated = 2
};

/// What became of a claim.
enum
{
    NUV_JUDGEMENT_Confirmed = 0,
    NUV_JUDGEMENT_Refuted = 1,
    /// A limit was met before the truth was proved.
    NUV_JUDGEMENT_Undecided = 2
};

/// What proved the truth about the model.
enum
{
    NUV_EVIDENCE_None = 0,
    /// Nothing but feasibility was claimed, which the values show themselves.
    NUV_EVIDENCE_Values = 1,
    /// The duals, multipliers or ray of the file, exact as they stand.
    NUV_EVIDENCE_Certificate = 2,
    /// A solve from the basis in the file.
    NUV_EVIDENCE_Basis = 3,
    /// A solve of the infeasible subsystem in the file.
    NUV_EVIDENCE_Iis = 4,
    NUV_EVIDENCE_Solve = 5
};

/// How a claim is checked.
typedef struct NuvClaimOptions
{
    /// sizeof(NuvClaimOptions), set by NuvClaimOptionsInit.
    uint32_t size;
    /// NUV_CLAIM_...: instead of what the file says.
    uint32_t claim;
    /// NUV_NUMBERS_..., AsStated among them: instead of what the file says.
    uint32_t numbers;
    /// Zero.
    uint32_t reserved;
    /// How far off a number may be, as a fraction of the largest number that it is made of, which
    /// counts as 1 at least; 0 asks for exactness.
    double tolerance;
    /// Of looking for a proof; infinity is no limit.
    double seconds;
    /// Null for none.
    NuvProgressCallback progress;
    /// Passed to it.
    void* userData;
} NuvClaimOptions;

/// What became of a claim.
typedef struct NuvClaimInfo
{
    /// sizeof(NuvClaimInfo), set by the caller.
    uint32_t size;
    /// NUV_JUDGEMENT_...
    uint32_t judgement;
    /// NUV_CLAIM_..., not AsStated: what was claimed.
    uint32_t claim;
    /// NUV_STATUS_...: what is so; Stopped where that is not known.
    uint32_t truth;
    /// NUV_EVIDENCE_...
    uint32_t evidence;
    /// NUV_NUMBERS_..., not AsStated.
    uint32_t numbers;
    /// NUV_STOPREASON_...
    uint32_t stopReason;
    /// Columns without a value, which count as 0.
    uint32_t numUnnamed;
    /// How many disagreements NuvClaimGetDisagreement knows: the first 20 at most.
    uint32_t numDisagreements;
    /// Zero.
    uint32_t reserved;
    /// How many there were.
    uint64_t disagreementCount;
    /// Pivots that the proof took.
    uint64_t pivots;
    /// How far the claimed values leave a row or bound at most; 0 only if they leave none, NaN
    /// without values.
    double violation;
    /// Of the claimed values; NaN without any.
    double objective;
    /// The true one; NaN where there is none.
    double optimum;
    /// Of wall time, for the whole check.
    double seconds;
} NuvClaimInfo;

/// Fills in the defaults: what the file says, a tolerance of 1e-9, no limit.
NUV_MODEL_API NuvModelResult NuvClaimOptionsInit(NuvClaimOptions* options, uint32_t size);

/// Checks what a solution file says: JSON as `nuvlp solve --json` writes it, or a name and a value
/// in each line; plain or gzipped, "-" is standard input. Null `options` are the defaults.
/// @return Ok for a claim that is refuted too; BadText if the file is none, or names what the model
/// has not.
NUV_MODEL_API NuvModelResult NuvModelCheckClaim(const NuvModel* model, const char* path,
                                                const NuvClaimOptions* options, NuvClaim** claim,
                                                NuvDiagnostics* diagnostics);

/// The same for the `size` bytes of a file in memory; `name` is what diagnostics call it.
NUV_MODEL_API NuvModelResult NuvModelCheckClaimText(const NuvModel* model, const char* text,
                                                    uint64_t size, const char* name,
                                                    const NuvClaimOptions* options,
                                                    NuvClaim** claim, NuvDiagnostics* diagnostics);

/// The same for values, one for each column, which `count` repeats. They claim an optimum, or that
/// they are feasible; `options->numbers` says whether 0.1 is a tenth.
/// @return InvalidArgument for another claim, InvalidModel for a value that is not finite.
NUV_MODEL_API NuvModelResult NuvModelCheckValues(const NuvModel* model, const double* values,
                                                 uint32_t count, const NuvClaimOptions* options,
                                                 NuvClaim** claim, NuvDiagnostics* diagnostics);

/// Gives it back; a null is nothing.
NUV_MODEL_API void NuvClaimDestruct(NuvClaim* claim);

/// Fills in `info`, whose size the caller has set.
NUV_MODEL_API NuvModelResult NuvClaimGetInfo(const NuvClaim* claim, NuvClaimInfo* info);

/// What is not as claimed, for people; `code`, which may be null, is set to the word for programs,
/// "claim.status". Both stay until the claim is given back.
/// @return null if there is no disagreement of this index.
NUV_MODEL_API const char* NuvClaimGetDisagreement(const NuvClaim* claim, uint32_t index,
                                                  const char** code);

/// Writes the true optimum as "p" or "p/q" into `buffer`, cut to `size` bytes with its NUL; a null
/// buffer of size 0 only asks.
/// @return the bytes that the whole number takes with its NUL; 0 if there is none.
NUV_MODEL_API uint64_t NuvClaimGetExactOptimum(const NuvClaim* claim, char* buffer, uint64_t size);

/// The judgement as JSON, as `nuvlp prove --json` writes it.
NUV_MODEL_API NuvModelResult NuvClaimMakeJson(const NuvClaim* claim, NuvText** json);

/// The judgement as lines for people.
NUV_MODEL_API NuvModelResult NuvClaimMakeReport(const NuvClaim* claim, NuvText** report);

#endif
