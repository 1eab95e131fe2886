/// What a model says of names and numbers that it refuses.
#pragma once

#include "Nuv/Model/Error.hpp"
#include "Nuv/Model/Model.hpp"

#include <cmath>
#include <string>
#include <string_view>
#include <utility>

namespace nuv
{

inline std::string Quoted(std::string_view name)
{
    std::string quoted = "'";
    quoted.append(name).append("'");
    return quoted;
}

inline Error MakeError(std::string code, std::string text, std::string hint)
{
    return {std::move(code), std::move(text), std::move(hint), {}, 0, 0};
}

/// Whether bounds are numbers and there is one on the right side of each; false for NaN too.
inline bool ArePossible(Bounds bounds) noexcept
{
    return bounds.lower < Infinity && bounds.upper > -Infinity;
}

/// What is wrong with bounds of `subject` that are not possible.
inline Error FaultOf(Bounds bounds, const std::string& subject)
{
    if (std::isnan(bounds.lower) || std::isnan(bounds.upper))
    {
        return MakeError("model.not-a-number", "a bound of " + subject + " is not a number",
                         "check the arithmetic that made it");
    }
    return MakeError("model.impossible-bound", "no number can keep the bounds of " + subject,
                     "a lower bound is finite or -Infinity, an upper bound finite or Infinity");
}

inline Error NotFinite(const std::string& subject)
{
    return MakeError("model.not-finite",
                     subject + " has a coefficient or constant that is not finite",
                     "only bounds may be infinite");
}

}  // namespace nuv
