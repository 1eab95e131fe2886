#include "Nuv/Io/Mps/MpsRowForm.hpp"

#include "Nuv/Io/Infinity.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <cmath>
#include <limits>

namespace nuv::mps
{
namespace
{

constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool SameNumber(const WrittenNumber& left, const WrittenNumber& right)
{
    return left == right && std::signbit(left.value) == std::signbit(right.value);
}

/// From the lower end, unless the upper one is a negative zero, which no sum is.
RowForm RangeForm(const WrittenNumber& lower, const WrittenNumber& upper)
{
    const WrittenNumber width = upper + -lower;
    if (SameNumber(lower + width, upper))
        return {'G', lower, NumberText(width)};
    return {'L', upper, NumberText(width)};
}

}  // namespace

RowForm FormOf(const WrittenNumber& lower, const WrittenNumber& upper)
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
