#include "Nuv/Io/Mps/MpsRowForm.hpp"

#include "Nuv/Io/Infinity.hpp"

#include <cmath>
#include <limits>

namespace nuv::mps
{
namespace
{

constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool SameNumber(const FileNumber& left, const FileNumber& right)
{
    return left == right && std::signbit(left.value) == std::signbit(right.value);
}

/// From the lower end, unless the upper one is a negative zero, which no sum is.
RowForm RangeForm(const FileNumber& lower, const FileNumber& upper)
{
    const FileNumber width = upper + -lower;
    if (SameNumber(lower + width, upper))
        return {'G', lower, NumberText(width)};
    return {'L', upper, NumberText(width)};
}

}  // namespace

RowForm FormOf(const FileNumber& lower, const FileNumber& upper)
{
    if (SameNumber(lower, upper))
        return {'E', lower, {}};
    if (lower.value == -kInfinity)
        return upper.value == kInfinity ? RowForm{'G', -kInfiniteFrom, {}}
                                        : RowForm{'L', upper, {}};
    if (upper.value == kInfinity)
        return {'G', lower, {}};
    return RangeForm(lower, upper);
}

}  // namespace nuv::mps
