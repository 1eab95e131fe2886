/// How a linear program stands.
#pragma once

#include <cstdint>

namespace nuv
{

enum class Status : std::uint8_t
{
    Optimal,
    Infeasible,
    Unbounded,
    Stopped,  ///< by a limit or by the caller: nothing is claimed
    Invalid,  ///< the data are none of a linear program: nothing was tried
};

}  // namespace nuv
