// One model of the corpus, solved by the core, and hashes of what the solve tells.
#pragma once

#include "Nuv/Corpus/Problem.hpp"
#include "Nuv/SelfTest/SelfTest.hpp"

namespace nuv::selftest
{
/// One pivot more than any model of the self-test needs that does not cycle.
inline constexpr uint32_t kPivotLimit = 300;
/// The same of the named models.
inline constexpr uint32_t kPivotLimitOfNamed = 120;

struct Outcome
{
    /// The result's number in the core's interface; 1, invalid input, also for refused memory.
    uint32_t status;
    uint32_t pivots;
    /// Over each pivot's phase, labels and values of the basis, then the status, and after an
    /// optimum the objective and the values.
    uint64_t hash;
    /// Over the status, the number of pivots, each one's phase and labels, the values and the
    /// objective as the solve leaves them.
    uint64_t hashOfAnswer;
};

/// Solves, and stops before one pivot more than `maxPivots`, which is at most `pivotLimit`. Where
/// the same problem in a batch gives other bits, the hashes are 0.
Outcome Solve(const corpus::Problem& problem, Loops loops, uint32_t maxPivots = kPivotLimit);
}  // namespace nuv::selftest
