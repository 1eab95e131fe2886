#include "Nuv/Io/DecimalSum.hpp"

#include "Nuv/Algebra/Rational.hpp"

#include <cmath>

namespace nuv
{
namespace
{

bool IsSmallInteger(double value) noexcept
{
    constexpr double most = 1LL << 52;
    return std::fabs(value) <= most && std::trunc(value) == value;
}

}  // namespace

double SumOfDecimals(double x, double y)
{
    // Integers of up to 52 bits add up without rounding, and each is its own decimal.
    if (x == 0.0 || y == 0.0 || !std::isfinite(x) || !std::isfinite(y) ||
        (IsSmallInteger(x) && IsSmallInteger(y)))
        return x + y;
    return ToDouble(ToRational(x, CoefficientMeaning::ShortestDecimal) +
                    ToRational(y, CoefficientMeaning::ShortestDecimal));
}

}  // namespace nuv
