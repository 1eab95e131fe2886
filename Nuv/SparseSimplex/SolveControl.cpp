/// The beginning, the clock and the log, apart from what includes the rest.
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <chrono>
#include <cmath>
#include <utility>

namespace nuv
{

SolveControl::SolveControl(SolveLimits limits)
    : m_limits(std::move(limits)), m_start(ClockSeconds()), m_mostSeconds(m_limits.seconds)
{
}

double SolveControl::ClockSeconds() noexcept
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

void SolveControl::Tell(std::string_view stage, std::string_view came) const
{
    const long long milliseconds = std::llround(1000.0 * Seconds());
    const std::string fraction = std::to_string(milliseconds % 1000 + 1000);
    m_limits.log(std::string(stage) + ": " + std::string(came) + ", " +
                 std::to_string(milliseconds / 1000) + "." + fraction.substr(1) + " s");
}

}  // namespace nuv
