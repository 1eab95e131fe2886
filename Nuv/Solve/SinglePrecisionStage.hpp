/// The first stage of a solve: the core itself, in single precision, on the lowered form. It may be
/// wrong about a verdict, may cycle and may run out of its budget; what counts is the basis that it
/// ends with, which the next stages start from.
#pragma once

#include "Nuv/Solve/CanonicalForm.hpp"

#include <cstdint>
#include <functional>

namespace nuv
{

enum class FloatOutcome : std::uint8_t
{
    Optimal,
    Infeasible,
    Unbounded,
    PivotLimit,
    Cycling,    ///< a basis came back: without a tolerance and a rule against it, for ever
    Cancelled,  ///< the caller said so
    Skipped,    ///< not tried: nothing to do, too large, or numbers beyond binary32
};

/// A pivot that is about to be made, in terms of the canonical form.
struct FloatPivot
{
    std::uint32_t phase = 0;
    std::uint64_t number = 0;
    Index entering = 0;
    Index leaving = 0;
    std::span<const Index> basic;
    std::span<const float> values;
};

struct FloatLimits
{
    std::uint64_t pivots = 0;
    std::size_t bytes = 0;  ///< for the dense matrices and what the solve leaves behind
    std::function<bool(const FloatPivot&)> keepGoing;
};

struct FloatResult
{
    FloatOutcome outcome = FloatOutcome::Skipped;
    std::uint64_t pivots = 0;
    /// The labels of the last basis, by row; from 1: columns, then slacks; 0 is the artificial one.
    std::vector<Index> basicLabels;
    float objective = 0.0F;     ///< Optimal: of the canonical form
    std::vector<float> values;  ///< Optimal: by canonical column
    std::uint64_t period = 0;   ///< Cycling: the pivots from a basis back to itself
};

[[nodiscard]] FloatResult RunFloatStage(const CanonicalForm& form, const FloatLimits& limits);

}  // namespace nuv
