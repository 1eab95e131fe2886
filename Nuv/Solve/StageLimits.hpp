/// What the solves with and without proof share: the clock of a solve, and what its options allow
/// the float stage.
#pragma once

#include "Nuv/Solve/SinglePrecisionStage.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <chrono>

namespace nuv
{

/// Runs from its construction on.
class SolveClock
{
public:
    [[nodiscard]] double Seconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// The float stage's limits by pivots, time and keepGoing; `bytes` as given. They refer to
/// `options` and `clock`, which must outlive them.
[[nodiscard]] FloatLimits FloatLimitsOf(const SolveOptions& options, const CanonicalForm& form,
                                        const SolveClock& clock, std::size_t bytes);

}  // namespace nuv
