/// The first stage of a solve: the core itself, in single precision, on the lowered form. It may be
/// wrong about a verdict, may cycle and may run out of its budget; what counts is the basis that it
/// ends with, which the next stages start from.
#pragma once

#include "Nuv/Solve/CanonicalForm.hpp"
#include "Nuv/Solve/SinglePrecisionResult.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <cstdint>
#include <functional>

namespace nuv
{

enum class Verdict;

/// What a verdict of the core, or of one of its batches, says of a program; Stopped, if nothing.
[[nodiscard]] Status StatusOf(Verdict verdict);

/// A pivot that is about to be made, in terms of the canonical form.
struct SinglePrecisionPivot
{
    std::uint32_t phase = 0;
    std::uint64_t number = 0;
    Index entering = 0;
    Index leaving = 0;
    std::span<const Index> basic;
    std::span<const float> values;
};

/// What the stage may take of its own accord, whatever the limits of the solve.
struct SinglePrecisionBudget
{
    std::uint64_t pivots = 0;
    std::size_t bytes = 0;  ///< for the dense matrices and what the solve leaves behind
};

/// Runs until a verdict, the budget or the control ends it. `observe`, if set, sees each pivot that
/// is about to be made, and the one before which the control ends the stage.
[[nodiscard]] SinglePrecisionResult
RunSinglePrecisionStage(const CanonicalForm& form, const SinglePrecisionBudget& budget,
                        SolveControl& control,
                        const std::function<void(const SinglePrecisionPivot&)>& observe = {});

}  // namespace nuv
