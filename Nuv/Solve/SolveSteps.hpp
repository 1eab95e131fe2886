/// The steps of a solve of a model around its certified solve, for what solves once and for what
/// solves again.
#pragma once

#include "Nuv/Exact/CertifiedResult.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <memory>
#include <optional>

namespace nuv
{

/// What turns the objective of the model into that of its minimisation form.
[[nodiscard]] inline double SignOf(const Model& model) noexcept
{
    return model.ObjectiveSense() == Sense::Maximize ? -1.0 : 1.0;
}

/// A solution that knows the model's handles and which numbers it will be about, and no more; with
/// the failure of a model that no solver accepts.
[[nodiscard]] Solution BlankSolution(const Model& model, const SolveOptions& options);

/// The basis that the sparse simplex starts from, if there is a better one than that of the slacks.
[[nodiscard]] std::optional<Basis> StartOf(const BoundedForm& form, double sign,
                                           const SolveOptions& options, SolveControl& control,
                                           Solution& solution);

/// Says of the model what was found of its form, and looks for what is worth knowing beyond.
void Conclude(const Model& model, const BoundedForm& form, const SolveOptions& options,
              const std::shared_ptr<const CertifiedResult>& result, SolveControl& control,
              Solution& solution);

}  // namespace nuv
