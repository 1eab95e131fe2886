/// Bounds of columns that follow from the rows: a column that the form lets grow without end is
/// mostly held by some row whose other columns have bounds.
#pragma once

#include "Nuv/SparseSimplex/ScaledForm.hpp"

#include <vector>

namespace nuv
{

/// Gives columns without a lower or an upper bound both, where rows imply them. What is added lies
/// beyond what rows imply: no point that satisfies rows and bounds rests on it, and a basis that is
/// optimal with it is so without it.
/// `lower` and `upper` are by variable, those of logicals the sides of rows.
void BoxImplied(const ScaledForm& form, std::vector<double>& lower, std::vector<double>& upper);

}  // namespace nuv
