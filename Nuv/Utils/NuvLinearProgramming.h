/// @file
/// The library's one header for users: describe a linear program, solve it, read the answer.
///
///     maximise cᵀx   subject to   A x ≤ b,   x ≥ 0
///
/// in single precision, by the dense revised simplex method (Chvátal, Linear Programming, chapters
/// 7 and 8). Variables are numbered from 1 and named "X1", "X2", ... until they are given names;
/// constraints are kept under numbers of the caller's choice. An object is used by one thread at a
/// time; distinct objects are independent.
#ifndef NUV_UTILS_NUVLINEARPROGRAMMING_H
#define NUV_UTILS_NUVLINEARPROGRAMMING_H

#include "Nuv/Utils/NuvAllocator.h"
#include "Nuv/Utils/NuvAllocatorInline.h"
#include "Nuv/Utils/NuvBaseTypes.h"
#include "Nuv/Utils/NuvLinearProgrammingContainers.h"
#include "Nuv/Utils/NuvLinearProgrammingInline.h"
#include "Nuv/Utils/NuvLinearProgrammingRecords.h"
#include "Nuv/Utils/NuvStdCLibInline.h"
#include "Nuv/Utils/NuvString.h"
#include "Nuv/Utils/NuvTypes.h"
#include "Nuv/Utils/NuvVersion.h"

/// What a solve answers.
typedef enum NuvLinearProgrammingResultType
{
    /// An optimum was reached.
    NUV_LINEARPROGRAMMINGRESULTTYPE_Ok = 0,
    /// The model has no row or no variable, uses an unknown name or index, is too large, or found
    /// no memory.
    NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput = 1,
    /// The objective grows without end.
    NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded = 2,
    /// No point satisfies all rows.
    NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible = 3,
    /// The monitor ended the solve; answered by NuvLinearProgrammingSolveMonitored alone.
    NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped = 4
} NuvLinearProgrammingResultType;

typedef struct NuvLinearProgramming NuvLinearProgramming;

/// A model, its standard form and its results. With n variables and m constraints:
struct NuvLinearProgramming
{
    /// Borrowed; every block of the object comes from it.
    NuvAllocator* alloc;
    /// n.
    NuvUint numVars;
    /// m at the last solve.
    NuvUint numConstraints;
    /// m × (n + m): the coefficients, then the identity of the slack columns. Built by each solve,
    /// as are the next four.
    NuvMatrix_NuvFloat32 A;
    /// m × 1.
    NuvMatrix_NuvFloat32 b;
    /// (n + m) × 1.
    NuvMatrix_NuvFloat32 c;
    /// 1 × m: the columns of the basis, counted from 1.
    NuvMatrix_NuvUint basic;
    /// 1 × n: the other columns, counted from 1.
    NuvMatrix_NuvUint independent;
    /// n of them, by name.
    NuvUnordered_NuvString__NuvLinearProgrammingVariable variables;
    /// By the number that the caller gave.
    NuvUnordered_NuvUint__NuvLinearProgrammingConstraint constraints;
    /// (1-based variable index, coefficient), in the order given.
    NuvVector_NuvPair_NuvUint__NuvFloat32 objective;
    /// (name, value), by variable index.
    NuvVector_NuvPair_NuvString__NuvFloat32 variableValues;
    /// At the optimum of the last solve that had one.
    NuvFloat32 objectiveValue;
};

/// Makes a model without variables.
/// @return `lp`, or null when the allocator refuses; nothing is held then.
NUV_API NuvLinearProgramming* NuvLinearProgrammingConstructDefault(NuvLinearProgramming* lp,
                                                                   NuvAllocator* alloc);

/// Makes a model of `numVars` continuous variables "X1", "X2", ...
/// @return `lp`, or null when the allocator refuses; nothing is held then.
NUV_API NuvLinearProgramming* NuvLinearProgrammingConstruct(NuvLinearProgramming* lp,
                                                            NuvUint numVars, NuvAllocator* alloc);

/// Gives back what the model holds, but not the blocks that its solves have left; `lp` may be
/// constructed again.
NUV_API void NuvLinearProgrammingDestruct(NuvLinearProgramming* lp);

/// Replaces all variables by `numVars` new ones, "X1", "X2", ...; constraints and objective stay.
/// @return false when the allocator refuses; the variables made so far are then there.
NUV_API NuvBool NuvLinearProgrammingSetNumVars(NuvLinearProgramming* lp, NuvUint numVars);
/// @return n.
NUV_API NuvUint NuvLinearProgrammingGetNumVars(const NuvLinearProgramming* lp);
/// @return the number of constraints in the model.
NUV_API NuvUint NuvLinearProgrammingGetNumConstraints(const NuvLinearProgramming* lp);

/// Copies a standard form into the object. The next NuvLinearProgrammingSolve builds its own from
/// the model.
/// @return true, also when storage is refused; the matrix is then without storage.
NUV_API NuvBool NuvLinearProgrammingSetInput(NuvLinearProgramming* lp,
                                             const NuvMatrix_NuvFloat32* A,
                                             const NuvMatrix_NuvFloat32* b,
                                             const NuvMatrix_NuvFloat32* c);

/// Names the variable at `variableIndex`, from 1. `type` is accepted and not stored.
/// @return false for an index that does not exist, a name that another variable has (the variable
/// can then be reached by index only), or refused memory.
NUV_API NuvBool NuvLinearProgrammingSetVariableInfo(NuvLinearProgramming* lp, NuvUint variableIndex,
                                                    const NuvString* name,
                                                    NuvLinearProgrammingVariableType type);

/// Enters a copy of `constraint` under a number other than 0, or replaces the one that is there,
/// which keeps its row.
/// @return false for number 0, or when a new entry is refused.
NUV_API NuvBool NuvLinearProgrammingSetConstraint(NuvLinearProgramming* lp, NuvUint constraintId,
                                                  const NuvLinearProgrammingConstraint* constraint);
/// Enters the row Σ coefficient × variable ≤ rhs with variables by name. Names are looked up at the
/// solve.
/// @return as NuvLinearProgrammingSetConstraint.
NUV_API NuvBool NuvLinearProgrammingSetConstraintByName(
    NuvLinearProgramming* lp, NuvUint constraintId,
    const NuvVector_NuvPair_NuvString__NuvFloat32* constraintValues, NuvFloat32 rhs);
/// Enters the row Σ coefficient × variable ≤ rhs with variables by index, from 1. Indices are
/// tested at the solve.
/// @return as NuvLinearProgrammingSetConstraint.
NUV_API NuvBool NuvLinearProgrammingSetConstraintByIndex(
    NuvLinearProgramming* lp, NuvUint constraintId,
    const NuvVector_NuvPair_NuvUint__NuvFloat32* constraintValues, NuvFloat32 rhs);
/// @return false when there is no constraint of that number.
NUV_API NuvBool NuvLinearProgrammingRemoveConstraint(NuvLinearProgramming* lp,
                                                     NuvUint constraintId);

/// Sets the objective by names, which are looked up now.
/// @return false when a name is unknown; the objective then stays.
NUV_API NuvBool NuvLinearProgrammingSetObjective(
    NuvLinearProgramming* lp, const NuvVector_NuvPair_NuvString__NuvFloat32* objectiveValues);
/// Sets the objective by indices, from 1, which are tested at the solve.
NUV_API void NuvLinearProgrammingSetObjectiveByIndex(
    NuvLinearProgramming* lp, const NuvVector_NuvPair_NuvUint__NuvFloat32* objectiveValues);

/// Solves the model. Every call starts from the slack basis; results of an earlier call stay until
/// they are overwritten. Nothing limits the number of pivots: a degenerate model may cycle for
/// ever, and each pivot leaves m × (m + 4) floats with the allocator, which Destruct does not give
/// back. A NuvPivotLimit ends such a solve, and a NuvScratchAllocator takes the blocks back.
/// @return Ok, Unbounded or Infeasible; InvalidInput when the model has no row or no variable, a
/// name or index is unknown, or storage for m × (n + m) floats is refused.
NUV_API NuvLinearProgrammingResultType NuvLinearProgrammingSolve(NuvLinearProgramming* lp);

/// @return the optimum after a solve that answered Ok, or FLT_MAX after one that was unbounded in
/// Phase II.
NUV_API NuvFloat32 NuvLinearProgrammingGetObjectiveValue(const NuvLinearProgramming* lp);
/// @return the (name, value) pairs by variable index; they belong to `lp` and stay until the next
/// edit, solve or destruct.
NUV_API const NuvVector_NuvPair_NuvString__NuvFloat32*
NuvLinearProgrammingGetVariableValues(const NuvLinearProgramming* lp);

/// @return the constraint number, the hash by which the model keeps its constraints.
NUV_API NuvSizeT NuvConstraintIdHash(const NuvUint* constraintId);

/// Builds the standard form A, b, c and the slack basis from the model; internal, the first step of
/// a solve.
/// @return false when the model is not valid or storage is refused.
NUV_API NuvBool NuvLinearProgrammingPrepareInputs_(NuvLinearProgramming* lp);

/// @return whether a row of the standard form has a right-hand side below 0.
NUV_API NuvBool NuvRevisedSimplexIsPhaseIRequired(NuvLinearProgramming* lp);
/// Looks for a feasible basis of the standard form that `lp` holds, and leaves it in `basic` and
/// `independent`.
/// @return Ok, Infeasible or Unbounded; InvalidInput when the standard form is incomplete or
/// storage is refused.
NUV_API NuvLinearProgrammingResultType NuvRevisedSimplexSolvePhaseI(NuvLinearProgramming* lp);
/// Optimises the standard form that `lp` holds from its basis, and writes the results.
/// @return Ok or Unbounded; InvalidInput when the standard form is incomplete or storage is
/// refused.
NUV_API NuvLinearProgrammingResultType NuvRevisedSimplexSolvePhaseII(NuvLinearProgramming* lp);

#endif
