/// The clock and the log, apart from what includes the rest.
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <chrono>
#include <cmath>

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
    const long long milliseconds = std::llround(1000.0 * Seconds());
    const std::string fraction = std::to_string(milliseconds % 1000 + 1000);
    m_limits.log(std::string(stage) + ": " + came + ", " + std::to_string(milliseconds / 1000) +
                 "." + fraction.substr(1) + " s");
}

}  // namespace nuv
