/// @file
/// Solving a model through the C interface, and what comes of it. Programs include NuvModel.h,
/// which says whose memory is whose, and what threads may do.
#ifndef NUV_MODEL_NUVSOLUTION_H
#define NUV_MODEL_NUVSOLUTION_H

#include "Nuv/Model/NuvModelTypes.h"

/// What a number stands for: 0.1 is one tenth, or the double next to it.
enum
{
    NUV_NUMBERS_Written = 0,
    NUV_NUMBERS_Stored = 1
};

/// Which stages a solve has. In single precision only there are neither duals nor reduced costs; in
/// double precision at most there are, and how far they are off. Nothing is proved in either.
enum
{
    NUV_STAGES_All = 0,
    NUV_STAGES_WithoutSinglePrecision = 1,
    NUV_STAGES_SinglePrecisionOnly = 2,
    NUV_STAGES_WithoutProof = 3
};

/// Where a solve stands.
enum
{
    NUV_STAGE_SinglePrecision = 0,
    NUV_STAGE_Double = 1,
    NUV_STAGE_Exact = 2
};

/// The verdict.
enum
{
    NUV_STATUS_Optimal = 0,
    NUV_STATUS_Infeasible = 1,
    NUV_STATUS_Unbounded = 2,
    /// By a limit or by the caller: nothing is claimed.
    NUV_STATUS_Stopped = 3
};

/// Why a solve ended without a verdict, or what came after the verdict without a result.
enum
{
    NUV_STOPREASON_None = 0,
    NUV_STOPREASON_TimeLimit = 1,
    NUV_STOPREASON_PivotLimit = 2,
    NUV_STOPREASON_Cancelled = 3
};

/// Whether an optimum has a point, or duals, of its own.
enum
{
    /// Not asked for, no proved optimum, or stopped before it was decided.
    NUV_UNIQUENESS_Unknown = 0,
    /// There is no other.
    NUV_UNIQUENESS_Unique = 1,
    /// There is another.
    NUV_UNIQUENESS_NotUnique = 2
};

/// Where a column or row is in a basis.
enum
{
    NUV_BASISSTATUS_Basic = 0,
    NUV_BASISSTATUS_AtLower = 1,
    NUV_BASISSTATUS_AtUpper = 2,
    /// Not basic and without a bound to rest at: at zero.
    NUV_BASISSTATUS_Free = 3
};

/// Where a solve stands, before a pivot.
typedef struct NuvProgress
{
    /// sizeof(NuvProgress), set by the library.
    uint32_t size;
    /// NUV_STAGE_...
    uint32_t stage;
    /// Of this stage, since the solve began.
    uint64_t pivots;
    /// Since the solve began.
    double seconds;
    /// Of the current basis; the sum of violations while that is not feasible, NaN where it is not
    /// known.
    double objective;
    /// Not 0 if the current basis is.
    uint32_t feasible;
    /// Zero.
    uint32_t reserved;
} NuvProgress;

/// Called before each pivot, and now and then in what takes long, on the thread that solves.
/// @return not 0 to go on, 0 to end the solve.
typedef int32_t (*NuvProgressCallback)(void* userData, const NuvProgress* progress);

/// Told in a line for people, without its line feed, what each stage came to.
typedef void (*NuvLogCallback)(void* userData, const char* line);

/// What a solve is asked for. NuvSolveOptionsInit fills in the defaults: a proved verdict about the
/// written numbers, without limits.
typedef struct NuvSolveOptions
{
    /// sizeof(NuvSolveOptions), set by NuvSolveOptionsInit.
    uint32_t size;
    /// NUV_NUMBERS_...: which numbers the answer is about.
    uint32_t numbers;
    /// NUV_STAGES_...
    uint32_t stages;
    /// Not 0: the first stage gets rows and columns scaled by powers of two.
    uint32_t scale;
    /// Not 0: how far each cost and each side of a row may move at an optimum is found.
    uint32_t sensitivity;
    /// Not 0, the default: the solution keeps its proof, out of which exact numbers and the
    /// certificate are made.
    uint32_t keepProof;
    /// Not 0: all exact numbers of a proved verdict are written down, also those that follow from
    /// the proof; JSON and the report show them.
    uint32_t exact;
    /// Of `startColumnBasis`.
    uint32_t numStartColumns;
    /// Of `startRowBasis`.
    uint32_t numStartRows;
    /// Of `startValues`.
    uint32_t numStartValues;
    /// Not 0: whether there is another optimal point, or other optimal duals, is decided.
    uint32_t uniqueness;
    /// Zero.
    uint32_t reserved;
    /// Of all stages together; infinity is no limit.
    double seconds;
    /// How much to do to make an infeasible subsystem irreducible, at most: entries, rows and
    /// columns times pivots, the same on every machine.
    uint64_t iisWork;
    /// Of the core in single precision; UINT64_MAX is no limit, as of the next two.
    uint64_t singlePrecisionPivots;
    /// Of the simplex in doubles.
    uint64_t doublePivots;
    /// Of the simplex in exact numbers.
    uint64_t exactPivots;
    /// Where the simplex starts, or null: NUV_BASISSTATUS_... of each column, as an earlier
    /// solution has them. What does not fit the model is made to.
    const uint8_t* startColumnBasis;
    /// The same of each row.
    const uint8_t* startRowBasis;
    /// The same by values of the columns, NaN where none is known; a basis comes first.
    const double* startValues;
    /// Null for none.
    NuvProgressCallback progress;
    /// Null for none.
    NuvLogCallback log;
    /// Passed to both.
    void* userData;
} NuvSolveOptions;

/// What is known of a solution in one number each.
typedef struct NuvSolutionInfo
{
    /// sizeof(NuvSolutionInfo), set by the caller.
    uint32_t size;
    /// NUV_STATUS_...
    uint32_t status;
    /// Not 0: the certificate was checked in exact arithmetic.
    uint32_t proved;
    /// NUV_STOPREASON_...
    uint32_t stopReason;
    /// NUV_NUMBERS_...
    uint32_t numbers;
    /// Of the model as it was solved.
    uint32_t numColumns;
    /// Of the model as it was solved.
    uint32_t numRows;
    /// How many NuvSolutionGetIis gives.
    uint32_t numIisMembers;
    /// Not 0: the members of the infeasible subsystem agree without any one of them.
    uint32_t iisMinimal;
    /// Zero.
    uint32_t reserved;
    /// NaN where there is none.
    double objective;
    /// Stopped: by how much the values leave a bound, at most.
    double primalViolation;
    /// Stopped: how far a reduced cost is on the wrong side of 0, at most.
    double dualViolation;
    /// Of wall time, for all.
    double seconds;
    /// Of these, what the check of the proof took.
    double checkSeconds;
    /// That the core made.
    uint64_t singlePrecisionPivots;
    /// That the simplex in doubles made.
    uint64_t doublePivots;
    /// That the simplex in exact numbers made.
    uint64_t exactPivots;
} NuvSolutionInfo;

/// One side of a row or one bound of a column.
typedef struct NuvIisMember
{
    /// Of the column, or of the row.
    uint32_t index;
    /// Not 0: a row.
    uint32_t isRow;
    /// Not 0: its upper side or bound.
    uint32_t isUpper;
} NuvIisMember;

/// Of which kind of numbers exact ones are asked for.
enum
{
    NUV_EXACT_Objective = 0,
    NUV_EXACT_Values = 1,
    NUV_EXACT_Duals = 2,
    NUV_EXACT_Ray = 3,
    NUV_EXACT_Farkas = 4,
    /// These three only where the options asked for exact numbers. A row without sides has no
    /// slack.
    NUV_EXACT_ReducedCosts = 5,
    NUV_EXACT_Activities = 6,
    NUV_EXACT_Slacks = 7
};

/// What NuvModelVerify found out.
typedef struct NuvVerification
{
    /// sizeof(NuvVerification), set by the caller.
    uint32_t size;
    /// NUV_STATUS_...: what is proved.
    uint32_t status;
    /// Optimal: the optimum, else NaN.
    double objective;
} NuvVerification;

/// Fills in the defaults. `size` is sizeof(NuvSolveOptions).
NUV_MODEL_API NuvModelResult NuvSolveOptionsInit(NuvSolveOptions* options, uint32_t size);

/// Solves and proves; null `options` are the defaults. Infeasible and unbounded are answers like an
/// optimum, and so is a solve that a limit has stopped.
NUV_MODEL_API NuvModelResult NuvModelSolve(const NuvModel* model, const NuvSolveOptions* options,
                                           NuvSolution** solution, NuvDiagnostics* diagnostics);

/// Makes a session without a model.
/// @return null if there is no memory.
NUV_MODEL_API NuvSolver* NuvSolverConstruct(void);

/// Gives it back; a null is nothing. Its solutions stay.
NUV_MODEL_API void NuvSolverDestruct(NuvSolver* solver);

/// Solves and proves as NuvModelSolve does, with the same verdict and the same optimum, from what
/// the last solve of this session left. Where the model is that of the last solve but for costs
/// and bounds, the basis, its factors and its exact numbers serve again; where columns or rows of
/// it have come, gone or changed, the basis does. Any other model starts afresh.
NUV_MODEL_API NuvModelResult NuvSolverSolve(NuvSolver* solver, const NuvModel* model,
                                            const NuvSolveOptions* options, NuvSolution** solution,
                                            NuvDiagnostics* diagnostics);

/// Gives it back; a null is nothing.
NUV_MODEL_API void NuvSolutionDestruct(NuvSolution* solution);

/// Fills in `info`, whose size the caller has set.
NUV_MODEL_API NuvModelResult NuvSolutionGetInfo(const NuvSolution* solution, NuvSolutionInfo* info);

/// NUV_STATUS_..., or -1 for what is no solution.
NUV_MODEL_API int32_t NuvSolutionGetStatus(const NuvSolution* solution);

/// 1 if the verdict is proved, else 0.
NUV_MODEL_API int32_t NuvSolutionIsProved(const NuvSolution* solution);

/// The objective; NaN where there is none.
NUV_MODEL_API double NuvSolutionGetObjective(const NuvSolution* solution);

/// NUV_UNIQUENESS_... of the optimal point, decided exactly where the options asked for it;
/// NUV_UNIQUENESS_Unknown also for what is no solution.
NUV_MODEL_API uint32_t NuvSolutionGetPointUniqueness(const NuvSolution* solution);

/// The same of the optimal duals.
NUV_MODEL_API uint32_t NuvSolutionGetDualUniqueness(const NuvSolution* solution);

/// The value of each column. This and the next seven give an array and its length, or null and 0
/// where the status has nothing of the kind. A null `count` is not told.
NUV_MODEL_API const double* NuvSolutionGetValues(const NuvSolution* solution, uint32_t* count);

/// What the objective gains per unit by which a column is moved up.
NUV_MODEL_API const double* NuvSolutionGetReducedCosts(const NuvSolution* solution,
                                                       uint32_t* count);

/// The value of each row.
NUV_MODEL_API const double* NuvSolutionGetActivities(const NuvSolution* solution, uint32_t* count);

/// How far each row is from its nearer side; negative outside, infinite without sides.
NUV_MODEL_API const double* NuvSolutionGetSlacks(const NuvSolution* solution, uint32_t* count);

/// What the objective gains per unit by which the active side of a row moves up.
NUV_MODEL_API const double* NuvSolutionGetDuals(const NuvSolution* solution, uint32_t* count);

/// Unbounded: a direction by column that improves for ever.
NUV_MODEL_API const double* NuvSolutionGetRay(const NuvSolution* solution, uint32_t* count);

/// Infeasible: a multiplier by row; their combination contradicts the bounds.
NUV_MODEL_API const double* NuvSolutionGetFarkas(const NuvSolution* solution, uint32_t* count);

/// Optimal with `sensitivity`: between which numbers each cost may move, two by two: lower, upper.
/// The length is that of the array, twice the number of columns.
NUV_MODEL_API const double* NuvSolutionGetCostRanges(const NuvSolution* solution, uint32_t* count);

/// The same for the lower side of each row; the sides of an equation move together.
NUV_MODEL_API const double* NuvSolutionGetRowLowerRanges(const NuvSolution* solution,
                                                         uint32_t* count);

/// The same for the upper side.
NUV_MODEL_API const double* NuvSolutionGetRowUpperRanges(const NuvSolution* solution,
                                                         uint32_t* count);

/// NUV_BASISSTATUS_... of each column in the last basis.
NUV_MODEL_API const uint8_t* NuvSolutionGetColumnBasis(const NuvSolution* solution,
                                                       uint32_t* count);

/// The same of each row.
NUV_MODEL_API const uint8_t* NuvSolutionGetRowBasis(const NuvSolution* solution, uint32_t* count);

/// Infeasible: rows and bounds that exclude each other, columns first.
NUV_MODEL_API const NuvIisMember* NuvSolutionGetIis(const NuvSolution* solution, uint32_t* count);

/// Writes the exact number of NUV_EXACT_... and an index (0 for the objective) as "p" or "p/q" into
/// `buffer`, cut to `size` bytes with its NUL; a null buffer of size 0 only asks.
/// @return the bytes that the whole number takes with its NUL; 0 if there is none.
NUV_MODEL_API uint64_t NuvSolutionGetExact(const NuvSolution* solution, uint32_t kind,
                                           uint32_t index, char* buffer, uint64_t size);

/// All exact numbers of a kind, each ended by a NUL, one behind the other.
/// @return NotKnown if there are none.
NUV_MODEL_API NuvModelResult NuvSolutionMakeExact(const NuvSolution* solution, uint32_t kind,
                                                  NuvText** numbers);

/// The whole solution as JSON, as `nuvlp solve --json` writes it.
NUV_MODEL_API NuvModelResult NuvSolutionMakeJson(const NuvSolution* solution, NuvText** json);

/// The solution as a table for people.
NUV_MODEL_API NuvModelResult NuvSolutionMakeReport(const NuvSolution* solution, NuvText** report);

/// The proof in VIPR format, for other programs to check.
/// @return NotKnown if nothing is proved or the proof was not kept.
NUV_MODEL_API NuvModelResult NuvSolutionMakeCertificate(const NuvSolution* solution,
                                                        NuvText** certificate);

/// Checks, without solving, that the `size` bytes of a certificate in VIPR format prove what they
/// claim of this model, in NUV_NUMBERS_...; `verification` may be null.
/// @return Refused, with the defect among the diagnostics, if they do not.
NUV_MODEL_API NuvModelResult NuvModelVerify(const NuvModel* model, const char* certificate,
                                            uint64_t size, uint32_t numbers,
                                            NuvVerification* verification,
                                            NuvDiagnostics* diagnostics);

#endif
