#include "Nuv/Io/Mps/MpsRowForm.hpp"

#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Io/DecimalSum.hpp"
#include "Nuv/Io/Infinity.hpp"
#include "Nuv/Io/Mps/MpsNumber.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <bit>
#include <cmath>
#include <cstdint>

namespace nuv::mps
{
namespace
{

constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool SameBits(double left, double right) noexcept
{
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

/// The range that leads from one end to the other, as text; empty if no double does.
std::string ShortRange(double from, double to, bool up)
{
    const double width = up ? SumOfDecimals(to, -from) : SumOfDecimals(from, -to);
    for (const double range : {width, std::nextafter(width, 0.0), std::nextafter(width, kInfinity)})
    {
        std::string text = NumberText(range);
        if (SameBits(EndOfRange(from, range, text, up), to))
            return text;
    }
    return {};
}

/// The same with more digits than a double has. From the end that is nearer to zero, 19 of them
/// name each double at the other end, since its last bit is a 2^-54th of the range at least.
std::string LongRange(double from, double to, bool up)
{
    const Rational exact =
        up ? ToRational(to) - ToRational(from) : ToRational(from) - ToRational(to);
    for (int digits = 18; digits <= 20; ++digits)
    {
        std::string text = ToDecimal(exact, digits);
        if (SameBits(EndOfRange(from, ReadNumber(text).value, text, up), to))
            return text;
    }
    return {};
}

RowForm RangeForm(double lower, double upper)
{
    std::string range = ShortRange(lower, upper, true);
    if (!range.empty())
        return {'G', lower, std::move(range)};
    range = ShortRange(upper, lower, false);
    if (!range.empty())
        return {'L', upper, std::move(range)};
    if (std::fabs(lower) <= std::fabs(upper))
        return {'G', lower, LongRange(lower, upper, true)};
    return {'L', upper, LongRange(upper, lower, false)};
}

}  // namespace

RowForm FormOf(double lower, double upper)
{
    if (SameBits(lower, upper))
        return {'E', lower, {}};
    if (lower == -kInfinity)
        return upper == kInfinity ? RowForm{'G', -kInfiniteFrom, {}} : RowForm{'L', upper, {}};
    if (upper == kInfinity)
        return {'G', lower, {}};
    return RangeForm(lower, upper);
}

}  // namespace nuv::mps
