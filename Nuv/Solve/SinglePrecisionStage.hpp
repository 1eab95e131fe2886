/// The first stage of a solve: the core itself, in single precision, on the lowered form. It may be
/// wrong about a verdict, may cycle and may run out of its budget; what counts is the basis that it
/// ends with, which the next stages start from.
#pragma once

#include "Nuv/Solve/CanonicalForm.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <cstdint>
#include <functional>

namespace nuv
{

enum class SinglePrecisionOutcome : std::uint8_t
{
    Optimal,
    Infeasible,
    Unbounded,
    PivotLimit,   ///< of the solve
    PivotBudget,  ///< the stage's own
    Memory,       ///< the matrices are dense, and each pivot leaves one behind
    Cycling,      ///< a basis came back: without a tolerance and a rule against it, for ever
    Stopped,      ///< by time or by the caller
    Empty,        ///< not tried: there is no row or no column
    OutOfRange,   ///< not tried: a number is beyond binary32
    Skipped,      ///< not asked for
};

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

struct SinglePrecisionResult
{
    SinglePrecisionOutcome outcome = SinglePrecisionOutcome::Skipped;
    std::uint64_t pivots = 0;
    /// The labels of the last basis, by row; from 1: columns, then slacks; 0 is the artificial one.
    std::vector<Index> basicLabels;
    float objective = 0.0F;     ///< Optimal: of the canonical form
    std::vector<float> values;  ///< Optimal: by canonical column
    std::uint64_t period = 0;   ///< Cycling: the pivots from a basis back to itself
};

/// Runs until a verdict, the budget or the control ends it. `observe`, if set, sees each pivot that
/// is about to be made, and the one before which the control ends the stage.
[[nodiscard]] SinglePrecisionResult
RunSinglePrecisionStage(const CanonicalForm& form, const SinglePrecisionBudget& budget,
                        SolveControl& control,
                        const std::function<void(const SinglePrecisionPivot&)>& observe = {});

}  // namespace nuv
