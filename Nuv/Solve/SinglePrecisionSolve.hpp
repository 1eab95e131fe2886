/// The core's part of a solve: it finds a basis to start from, or has the only word.
#pragma once

#include "Nuv/Solve/CanonicalForm.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <cstdint>
#include <optional>
#include <span>

namespace nuv
{

/// `sign` turns the objective of the form into that of the model.
/// @return the basis to go on from, if the core found one.
[[nodiscard]] std::optional<Basis> FindStart(const BoundedForm& form, double sign,
                                             const SolveOptions& options, SolveControl& control,
                                             Solution& solution);

/// How many pivots the core has at most for a canonical form, whatever the limits of the solve.
[[nodiscard]] constexpr std::uint64_t SinglePrecisionPivots(Index rows, Index columns)
{
    return 50 * (std::uint64_t{rows} + columns);
}

/// Fills in what is known where the core's optimum `y` of the canonical form is believed.
void TakeCanonicalPoint(const BoundedForm& form, double sign, const Canonicalisation& canonicalised,
                        std::span<const float> y, Solution& solution);

/// What the core says of the model, believed as it stands.
void BelieveSinglePrecision(const BoundedForm& form, double sign, const SolveOptions& options,
                            SolveControl& control, Solution& solution);

}  // namespace nuv
