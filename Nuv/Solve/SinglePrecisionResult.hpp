/// How the first stage of a solve, the core in single precision, ended.
#pragma once

#include "Nuv/Algebra/Index.hpp"
#include "Nuv/Certificate/Status.hpp"

#include <cstdint>
#include <vector>

namespace nuv
{

/// Why single precision came to no verdict.
enum class SinglePrecisionStop : std::uint8_t
{
    None,         ///< it came to one
    PivotLimit,   ///< of the solve
    PivotBudget,  ///< the stage's own
    Memory,       ///< the matrices are dense, and each pivot leaves one behind
    Cycling,      ///< a basis came back: without a tolerance and a rule against it, for ever
    Control,      ///< time is up, or the caller said so
    Empty,        ///< not tried: there is no row or no column
    OutOfRange,   ///< not tried: a number is beyond binary32
    Skipped,      ///< not asked for
};

/// What the core found, in the numbers of the canonical form that it was given.
struct SinglePrecisionResult
{
    Status status = Status::Stopped;  ///< what the stage found, which nothing proves
    SinglePrecisionStop stop = SinglePrecisionStop::Skipped;  ///< why it found none
    std::uint64_t pivots = 0;                                 ///< that it made
    /// The labels of the last basis, by row; from 1: columns, then slacks; 0 is the artificial one.
    std::vector<Index> basicLabels;
    float objective = 0.0F;     ///< Optimal: of the canonical form
    std::vector<float> values;  ///< Optimal: by canonical column
    std::uint64_t period = 0;   ///< Cycling: the pivots from a basis back to itself
};

}  // namespace nuv
