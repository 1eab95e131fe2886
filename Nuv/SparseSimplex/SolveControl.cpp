/// The clock and the log, apart from what includes the rest.
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <chrono>
#include <cstdio>

namespace nuv
{

double SolveControl::ClockSeconds() noexcept
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

void SolveControl::Log(std::string_view stage, const std::string& came) const
{
    if (!m_limits.log || m_asides != 0)
        return;
    char seconds[32];
    (void)std::snprintf(seconds, sizeof seconds, ", %.3f s", Seconds());
    m_limits.log(std::string(stage) + ": " + came + seconds);
}

}  // namespace nuv
