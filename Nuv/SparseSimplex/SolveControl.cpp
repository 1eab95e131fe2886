/// The clock, apart from what includes the rest.
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <chrono>

namespace nuv
{

double SolveControl::ClockSeconds() noexcept
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

}  // namespace nuv
