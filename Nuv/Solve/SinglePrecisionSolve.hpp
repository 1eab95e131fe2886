/// The core's part of a solve: it finds a basis to start from, or has the only word.
#pragma once

#include "Nuv/Solve/Solution.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <optional>

namespace nuv
{

/// `sign` turns the objective of the form into that of the model.
/// @return the basis to go on from, if the core found one.
[[nodiscard]] std::optional<Basis> FindStart(const BoundedForm& form, double sign,
                                             const SolveOptions& options, SolveControl& control,
                                             Solution& solution);

/// What the core says of the model, believed as it stands.
void BelieveSinglePrecision(const BoundedForm& form, double sign, const SolveOptions& options,
                            SolveControl& control, Solution& solution);

}  // namespace nuv
