#include "Nuv/Model/MpsRowForm.hpp"

#include "Nuv/Model/MpsNumber.hpp"
#include "Nuv/Model/NumberText.hpp"
#include "Nuv/Model/Rational.hpp"

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

/// The range R with lower + R == upper; with more digits than a double has where no double does it.
/// Empty if the two are too far apart.
std::string RangeUpwards(double lower, double upper)
{
    const double width = upper - lower;
    if (!std::isfinite(width))
        return {};
    for (const double range : {width, std::nextafter(width, 0.0), std::nextafter(width, kInfinity)})
    {
        if (SameBits(lower + range, upper))
            return NumberText(range);
    }
    const Rational exact = ToRational(upper) - ToRational(lower);
    for (int digits = 18; digits <= 40; ++digits)
    {
        std::string text = ToDecimal(exact, digits);
        const double range = ReadNumber(text).value;
        if (SameBits(EndOfRange(lower, range, text, true), upper))
            return text;
    }
    return {};
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
    return {'G', lower, RangeUpwards(lower, upper)};
}

}  // namespace nuv::mps
