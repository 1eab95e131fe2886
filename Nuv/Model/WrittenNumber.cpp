#include "Nuv/Model/WrittenNumber.hpp"

#include "Nuv/Algebra/RationalText.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace nuv
{
namespace
{

/// Any decimal of so many digits comes back from the double that it is read as, unless that is
/// subnormal.
constexpr std::size_t kSafeDigits = std::numeric_limits<double>::digits10;

bool IsSmallInteger(double value) noexcept
{
    constexpr double kMost = 1LL << 52;
    return std::fabs(value) <= kMost && std::trunc(value) == value;
}

/// The digits of a decimal from the first to the last that is not zero, and the power of ten of the
/// first. Of more than fit a few are left out.
struct Digits
{
    std::array<char, 24> figures{};
    std::size_t count = 0;
    long power = 0;

    explicit Digits(std::string_view text)
    {
        const std::size_t mark = std::min(text.find_first_of("eE"), text.size());
        bool fraction = false;
        std::size_t zeros = 0;
        for (const char c : text.substr(0, mark))
        {
            fraction = fraction || c == '.';
            if (c < '0' || c > '9')
                continue;
            power += count != 0 && !fraction ? 1 : count == 0 && fraction ? -1 : 0;
            zeros = c == '0' ? zeros + 1 : 0;
            if (count == 0 && c == '0')
                continue;
            figures[std::min(count++, figures.size() - 1)] = c;
        }
        count -= std::min(zeros, count);
        std::string_view exponent = text.substr(std::min(mark + 1, text.size()));
        exponent.remove_prefix(exponent.starts_with('+') ? 1 : 0);
        long shift = 0;
        (void)std::from_chars(exponent.data(), exponent.data() + exponent.size(), shift);
        power += shift;
    }
    /// False where one of them may have more digits than fit.
    friend bool operator==(const Digits& x, const Digits& y)
    {
        return x.power == y.power && x.count == y.count && x.count < x.figures.size() &&
               std::equal(x.figures.begin(), x.figures.begin() + x.count, y.figures.begin());
    }
};

/// Whether a decimal, its sign apart, is the shortest that reads back to a double; false for
/// quotients.
bool IsShortest(std::string_view text, double value)
{
    char shortest[32];
    const std::to_chars_result end = std::to_chars(shortest, shortest + sizeof shortest,
                                                   std::fabs(value), std::chars_format::scientific);
    return text.find('/') == std::string_view::npos &&
           Digits(text) == Digits({shortest, static_cast<std::size_t>(end.ptr - shortest)});
}

Rational ShortestDecimal(double value)
{
    return ToRational(value, CoefficientMeaning::ShortestDecimal);
}

}  // namespace

WrittenNumber::WrittenNumber(const Rational& number) : value(ToDouble(number))
{
    if (std::isfinite(value) && number != ShortestDecimal(value))
        exact = std::make_shared<const Rational>(number);
}

WrittenNumber::WrittenNumber(std::string_view text, double nearest) : value(nearest)
{
    const bool isShort = text.size() <= kSafeDigits && text.find('/') == std::string_view::npos &&
                         std::fabs(value) >= std::numeric_limits<double>::min();
    if (value == 0.0 || !std::isfinite(value) || isShort || IsShortest(text, value))
        return;
    // What has more digits than anyone writes is the double next to it.
    if (const std::optional<Rational> number = ReadRational(text))
        *this = WrittenNumber(*number);
}

Rational WrittenNumber::Exactly() const
{
    return exact ? *exact : ShortestDecimal(value);
}

bool operator==(const WrittenNumber& x, const WrittenNumber& y)
{
    return x.value == y.value &&
           (x.exact == y.exact || (x.exact && y.exact && *x.exact == *y.exact));
}

WrittenNumber operator-(const WrittenNumber& number)
{
    WrittenNumber negative = -number.value;
    if (number.exact)
        negative.exact = std::make_shared<const Rational>(-*number.exact);
    return negative;
}

WrittenNumber operator+(const WrittenNumber& x, const WrittenNumber& y)
{
    // Integers of up to 52 bits add up without rounding, and each is its own decimal.
    const bool isPlain = !x.exact && !y.exact && IsSmallInteger(x.value) && IsSmallInteger(y.value);
    if (x.value == 0.0 || y.value == 0.0)
        return x.value == 0.0 && y.value != 0.0 ? y : x.value == 0.0 ? x.value + y.value : x;
    if (isPlain || !std::isfinite(x.value) || !std::isfinite(y.value))
        return x.value + y.value;
    return WrittenNumber(x.Exactly() + y.Exactly());
}

WrittenNumber NumberAt(const Model& model, const NumberPlace& place, double value)
{
    const std::string* const text = model.Exact().Find(place);
    return text != nullptr && std::isfinite(value) ? WrittenNumber(ToRational(value, text)) : value;
}

WrittenNumber ConstantOf(const Model& model)
{
    return NumberAt(model, {NumberPlace::Of::ObjectiveConstant}, model.ObjectiveConstant());
}

WrittenNumber CostOf(const Model& model, std::uint32_t column)
{
    return NumberAt(model, {NumberPlace::Of::Objective, column}, model.Objective()[column]);
}

WrittenNumber LowerOf(const Model& model, Variable variable)
{
    const std::uint32_t at = variable.Index();
    return NumberAt(model, {NumberPlace::Of::VariableLower, at}, model.VariableLower()[at]);
}

WrittenNumber UpperOf(const Model& model, Variable variable)
{
    const std::uint32_t at = variable.Index();
    return NumberAt(model, {NumberPlace::Of::VariableUpper, at}, model.VariableUpper()[at]);
}

WrittenNumber LowerOf(const Model& model, Row row)
{
    const std::uint32_t at = row.Index();
    return NumberAt(model, {NumberPlace::Of::RowLower, at}, model.RowLower()[at]);
}

WrittenNumber UpperOf(const Model& model, Row row)
{
    const std::uint32_t at = row.Index();
    return NumberAt(model, {NumberPlace::Of::RowUpper, at}, model.RowUpper()[at]);
}

void Keep(ModelBuilder& builder, const NumberPlace& place, const WrittenNumber& number)
{
    if (number.exact)
        builder.SetExact(place, ToString(*number.exact));
    else if (!builder.Made().Exact().Empty())
        builder.EraseExact(place);
}

}  // namespace nuv
