// The standard form of a model, max cᵀx with A x = b and x ≥ 0, as the phases read it from the
// model's matrices. Not installed.
#ifndef NUV_UTILS_SIMPLEX_STANDARDFORM_H
#define NUV_UTILS_SIMPLEX_STANDARDFORM_H

#include "Nuv/Utils/NuvLinearProgramming.h"

namespace nuv
{
/// The label of the artificial variable of Phase I, whose column is −1 in every row. Those of the
/// columns of A begin with 1.
inline constexpr NuvUint kArtificialLabel = 0;

/// The matrices are the model's. In an ordinary solve the last m columns of A are the identity, the
/// slacks', and the last m costs are 0; in a phase that is called by itself they may be anything.
struct StandardForm
{
    NuvUint m;
    /// The columns that are not slacks.
    NuvUint n;
    const NuvFloat32* A;  /// [m × (n + m)], row after row, or without the slacks: see rowLength
    const NuvFloat32* b;  /// [m]
    const NuvFloat32* c;  /// [n + m]

    /// All of A, b and c is finite, the last m columns of A are the identity and cost nothing, each
    /// label stands once, and Phase I has the first ones: without this, nothing but the definition
    /// itself gives the defined results.
    bool isOrdinary;
    /// At least the number of non-zeros in A's first n columns. Lists of them are made for so many:
    /// too small a number here would have them written past their ends.
    NuvSizeT maxNonzeros;
    /// From a row of A to the next: n + m, or n of a form without its slacks, which has few rows.
    NuvSizeT rowLength;
    /// The labels are as a solve begins: the slacks basic, row by row, the others not, in their
    /// order.
    bool hasFirstLabels;
};

inline const NuvFloat32* RowOf(const StandardForm* form, NuvSizeT row)
{
    return form->A + row * form->rowLength;
}

/// The element of the column of a label.
inline NuvFloat32 ElementOf(const StandardForm* form, NuvSizeT row, NuvUint label)
{
    if (label == kArtificialLabel)
        return -1.0F;
    if (label > form->n && form->rowLength == form->n)
        return label - form->n - 1 == row ? 1.0F : 0.0F;
    return RowOf(form, row)[label - 1];
}

/// The label of a row's slack variable.
inline NuvUint SlackOf(const StandardForm* form, NuvUint row)
{
    return form->n + 1 + row;
}

/// Whether the labels are as a solve begins.
bool HasFirstLabels(const NuvLinearProgramming* lp);
/// NuvLinearProgrammingPrepareInputs_, which also tells what it knows about the result.
bool PrepareInputs(NuvLinearProgramming* lp, StandardForm* form);
/// Whether 32 bits can count the elements of A with so many artificial columns.
bool CanCountElements(const NuvLinearProgramming* lp, NuvSizeT numArtificial);
/// Reads a standard form that may be anyone's, for a phase with so many artificial columns.
/// @return false when lp's matrices are not of one, or their elements cannot be counted.
bool ReadStandardForm(const NuvLinearProgramming* lp, NuvSizeT numArtificial, StandardForm* form);
}  // namespace nuv

#endif
