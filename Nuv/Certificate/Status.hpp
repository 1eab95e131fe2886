/// How a linear program stands.
#pragma once

#include <cstdint>
#include <string_view>

namespace nuv
{

/// The verdict of a solve.
enum class Status : std::uint8_t
{
    Optimal,
    Infeasible,
    Unbounded,
    Stopped,  ///< by a limit or by the caller: nothing is claimed
    Invalid,  ///< the data are none of a linear program: nothing was tried
};

/// @return the word for it in texts and results; empty for what is no status.
[[nodiscard]] constexpr std::string_view WordOf(Status status) noexcept
{
    switch (status)
    {
    case Status::Optimal:
        return "optimal";
    case Status::Infeasible:
        return "infeasible";
    case Status::Unbounded:
        return "unbounded";
    case Status::Stopped:
        return "stopped";
    case Status::Invalid:
        return "invalid";
    }
    return {};
}

}  // namespace nuv
