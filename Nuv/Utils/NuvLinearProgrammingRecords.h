/// @file
/// The two records of a model, a variable and a constraint, and the arrays of coefficients that
/// they are given in.
#ifndef NUV_UTILS_NUVLINEARPROGRAMMINGRECORDS_H
#define NUV_UTILS_NUVLINEARPROGRAMMINGRECORDS_H

#include "Nuv/Utils/NuvString.h"

/// @cond
// NOLINTNEXTLINE(bugprone-macro-parentheses): the name of a file
#define NUV_TEMPLATE(name) <Nuv/Templates/name.decl.h>
#include "Nuv/Utils/NuvLinearProgrammingTerms.decl.h"
#undef NUV_TEMPLATE
/// @endcond

/// Recorded only: every variable is solved as continuous and non-negative.
typedef enum NuvLinearProgrammingVariableType
{
    NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32 = 0,
    NUV_LINEARPROGRAMMINGVARIABLETYPE_INTEGER = 1,
    NUV_LINEARPROGRAMMINGVARIABLETYPE_BOOLEAN = 2
} NuvLinearProgrammingVariableType;

/// How a constraint names its variables.
typedef enum NuvLinearProgrammingVariableAccessType
{
    NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX = 0,
    NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME = 1
} NuvLinearProgrammingVariableAccessType;

typedef struct NuvLinearProgrammingVariable NuvLinearProgrammingVariable;

/// A variable of a model.
struct NuvLinearProgrammingVariable
{
    /// Recorded only.
    NuvLinearProgrammingVariableType type;
    /// From 1.
    NuvUint index;
    /// Its key in the model too.
    NuvString name;
};

typedef struct NuvLinearProgrammingConstraint NuvLinearProgrammingConstraint;

/// The row Σ coefficient × variable ≤ rhs.
struct NuvLinearProgrammingConstraint
{
    /// Which array of `u` is live.
    NuvLinearProgrammingVariableAccessType type;
    /// The coefficients.
    union
    {
        /// By variable index, from 1.
        NuvVector_NuvPair_NuvUint__NuvFloat32 variableCoefficientsByIndex;
        /// By variable name.
        NuvVector_NuvPair_NuvString__NuvFloat32 variableCoefficientsByName;
    } u;
    /// The right-hand side.
    NuvFloat32 rhs;
};

/// Makes a continuous variable with index 0 and an empty name.
/// @return `variable`.
NUV_API NuvLinearProgrammingVariable*
NuvLinearProgrammingVariableConstructDefault(NuvLinearProgrammingVariable* variable,
                                             NuvAllocator* alloc);
/// Makes a variable whose name is a copy on `alloc`.
/// @return `variable`, or null when the copy is refused; the name is then empty.
NUV_API NuvLinearProgrammingVariable*
NuvLinearProgrammingVariableConstruct(NuvLinearProgrammingVariable* variable,
                                      NuvLinearProgrammingVariableType type, NuvUint index,
                                      const NuvString* name, NuvAllocator* alloc);
/// Copies `y`, the name on its allocator.
/// @return `x`, or null when the copy is refused; the name is then empty.
NUV_API NuvLinearProgrammingVariable*
NuvLinearProgrammingVariableConstructCopy(NuvLinearProgrammingVariable* x,
                                          const NuvLinearProgrammingVariable* y);
/// @return `x`, or null when the name is refused; `x` then keeps its name.
NUV_API NuvLinearProgrammingVariable*
NuvLinearProgrammingVariableAssign(NuvLinearProgrammingVariable* x,
                                   const NuvLinearProgrammingVariable* y);
/// Gives the name back.
NUV_API void NuvLinearProgrammingVariableDestruct(NuvLinearProgrammingVariable* variable);
/// @return whether types, indices and names agree.
NUV_API NuvBool NuvLinearProgrammingVariableEqual(const NuvLinearProgrammingVariable* x,
                                                  const NuvLinearProgrammingVariable* y);
/// @return false: variables have no order.
NUV_API NuvBool NuvLinearProgrammingVariableLess(const NuvLinearProgrammingVariable* x,
                                                 const NuvLinearProgrammingVariable* y);

/// Makes a constraint that names its variables; the coefficients and their names become copies on
/// `alloc`.
/// @return `constraint`, or null when a copy is refused; it is then an empty row with `rhs` 0.
NUV_API NuvLinearProgrammingConstraint* NuvLinearProgrammingConstraintConstruct(
    NuvLinearProgrammingConstraint* constraint,
    const NuvVector_NuvPair_NuvString__NuvFloat32* variableCoefficients, NuvFloat32 rhs,
    NuvAllocator* alloc);
/// Makes a constraint by variable index, from 1; the coefficients become a copy on `alloc`.
/// @return `constraint`, or null when the copy is refused; it is then an empty row with `rhs` 0.
NUV_API NuvLinearProgrammingConstraint* NuvLinearProgrammingConstraintConstructIndex(
    NuvLinearProgrammingConstraint* constraint,
    const NuvVector_NuvPair_NuvUint__NuvFloat32* variableCoefficients, NuvFloat32 rhs,
    NuvAllocator* alloc);
/// Copies `y`, on its allocator.
/// @return `x`, or null when the copy is refused; it is then an empty row with `rhs` 0.
NUV_API NuvLinearProgrammingConstraint*
NuvLinearProgrammingConstraintConstructCopy(NuvLinearProgrammingConstraint* x,
                                            const NuvLinearProgrammingConstraint* y);
/// Releases the old coefficients and takes those of `y`: by name as a fresh copy on the allocator
/// of `y`, by index on the allocator that `x` has.
/// @return `x`, or null when the copy is refused; `x` is then an empty row with its old `rhs`.
NUV_API NuvLinearProgrammingConstraint*
NuvLinearProgrammingConstraintAssign(NuvLinearProgrammingConstraint* x,
                                     const NuvLinearProgrammingConstraint* y);
/// Gives the coefficients back.
NUV_API void NuvLinearProgrammingConstraintDestruct(NuvLinearProgrammingConstraint* constraint);
/// @return false: constraints are not compared.
NUV_API NuvBool NuvLinearProgrammingConstraintEqual(const NuvLinearProgrammingConstraint* x,
                                                    const NuvLinearProgrammingConstraint* y);
/// @return false: constraints have no order.
NUV_API NuvBool NuvLinearProgrammingConstraintLess(const NuvLinearProgrammingConstraint* x,
                                                   const NuvLinearProgrammingConstraint* y);

#endif
