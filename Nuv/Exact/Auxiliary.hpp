/// Programs with an optimum, whose optimal solutions prove that another program has none. Both hold
/// the columns and rows of the original, so that a basis of it is a start.
#pragma once

#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"
#include "Nuv/SparseSimplex/ScaledForm.hpp"

namespace nuv
{

struct AuxiliaryForm
{
    BoundedForm form;
    Basis start;
};

/// The original without its cost, and with a column for each bound that the basis violates, by
/// which the variable may violate it at a cost of one. The basis is made feasible by these columns.
/// If the optimum is positive its duals are Farkas multipliers of the original, otherwise its
/// columns hold a feasible point.
[[nodiscard]] AuxiliaryForm ElasticForm(ScalableForm& original, const Basis& basis);

/// The same with a column for each side of each row, from the slack basis: a larger program, but
/// one that has nothing of a basis that doubles could make little of.
[[nodiscard]] AuxiliaryForm ElasticRowsForm(const BoundedForm& form);

/// The directions that never leave the bounds of the original, columns within [-1, 1]. If the
/// optimum is negative its columns are a direction that improves for ever, otherwise there is none.
[[nodiscard]] AuxiliaryForm RayForm(const BoundedForm& form, const Basis& basis);

}  // namespace nuv
