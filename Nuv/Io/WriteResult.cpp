#include "Nuv/Io/WriteResult.hpp"

#include "Nuv/Io/Infinity.hpp"

#include <fmt/core.h>

#include <cmath>
#include <limits>

namespace nuv
{

double WrittenLimit(WriteResult& result, std::string code, double value, bool isLower,
                    std::string_view what, std::string_view name)
{
    if (!std::isfinite(value) || std::fabs(value) < kInfiniteFrom)
        return value;
    const bool loosens = isLower == (value < 0.0);
    result.Report(
        loosens ? Severity::Warning : Severity::Error, std::move(code),
        fmt::format("the limit {} of {} '{}' is infinite in this format", value, what, name),
        "limits are below 1e30, or infinite");
    return std::copysign(std::numeric_limits<double>::infinity(), value);
}

}  // namespace nuv
