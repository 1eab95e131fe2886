#include "Nuv/Certificate/Dense/IntegerForm.hpp"

#include <array>
#include <cmath>
#include <span>

namespace nuv
{
namespace
{

constexpr unsigned kMostFives = 27;

consteval std::array<Word, kMostFives + 1> PowersOfFive()
{
    std::array<Word, kMostFives + 1> powers{1};
    for (std::size_t k = 1; k != powers.size(); ++k)
        powers[k] = 5 * powers[k - 1];
    return powers;
}

constexpr std::array<Word, kMostFives + 1> kPowersOfFive = PowersOfFive();

void RaiseTo(Scale& scale, Scale other) noexcept
{
    scale = {std::max(scale.two, -other.two), std::max(scale.five, -other.five)};
}

}  // namespace

void AddProduct(Word* sum, const Word* x, const WideInteger& y, unsigned width) noexcept
{
    if (y.isNegative)
    {
        SubtractProduct(sum, x, y.low, width);
        // same bits (always, never): what is 0 adds nothing
        if (y.high != 0)
            SubtractProduct(sum + 1, x, y.high, width - 1);
        return;
    }
    AddProduct(sum, x, y.low, width);
    // same bits (always, never): what is 0 adds nothing
    if (y.high != 0)
        AddProduct(sum + 1, x, y.high, width - 1);
}

void CopyWords(const WideInteger& x, Word* to, unsigned width) noexcept
{
    to[0] = x.low;
    to[1] = x.high;
    std::fill(to + 2, to + width, 0);
    if (x.isNegative)
        NegateWords(to, width);
}

bool ToWideInteger(const ExactNumber& number, Scale scale, WideInteger& result)
{
    result = {};
    if (number.mantissa == 0)
        return true;
    const auto two = static_cast<unsigned>(number.scale.two + scale.two);
    const auto five = static_cast<unsigned>(number.scale.five + scale.five);
    if (five > kMostFives || two >= 126)
        return false;
    result.isNegative = number.mantissa < 0;  // same bits (-> <=): it is not zero
    const auto magnitude =
        static_cast<Word>(result.isNegative ? -number.mantissa : number.mantissa);
    const WideProduct product = MultiplyWide(magnitude, kPowersOfFive[five]);
    result.low = product.low;
    result.high = product.high;
    if (result.BitLength() + two >= 127)
        return false;
    if (two >= 64)
    {
        result.high = result.low << (two - 64);
        result.low = 0;
    }
    else if (two > 0)
    {
        result.high = (result.high << two) | (result.low >> (64 - two));
        result.low <<= two;
    }
    return true;
}

bool IntegerForm::Take(const DenseForm& form)
{
    m_form = &form;
    m_bits = 0;  // same bits: the factor of the bounds has one
    TakeApartAll();
    const std::size_t n = form.columns;
    const std::size_t variables = form.Variables();
    auto part = [at = m_parts.begin()](std::size_t count) mutable
    {
        const std::span<const ExactNumber> parts(at, count);
        at += static_cast<std::ptrdiff_t>(count);
        return parts;
    };
    const auto entries = part(form.matrix.size());
    const auto cost = part(n);
    const auto lower = part(variables);
    const auto upper = part(variables);
    m_rowScale.assign(form.rows, {});
    m_costScale = {};
    m_boundScale = {};
    for (std::size_t i = 0; i < form.rows; ++i)
    {
        for (const ExactNumber& entry : entries.subspan(i * n, n))
            RaiseTo(m_rowScale[i], entry.scale);
        RaiseTo(m_rowScale[i], lower[n + i].scale);
        RaiseTo(m_rowScale[i], upper[n + i].scale);
    }
    for (std::size_t j = 0; j < n; ++j)
    {
        RaiseTo(m_costScale, cost[j].scale);
        RaiseTo(m_boundScale, lower[j].scale);
        RaiseTo(m_boundScale, upper[j].scale);
    }
    m_entries.resize(entries.size());
    m_cost.resize(n);
    m_lower.resize(variables);
    m_upper.resize(variables);
    bool isShort = Scaled({1, {}}, m_boundScale, m_boundFactor);
    for (std::size_t k = 0; k < entries.size(); ++k)
        isShort = isShort && Scaled(entries[k], m_rowScale[k / n], m_entries[k]);
    for (std::size_t j = 0; j < n; ++j)
        isShort = isShort && Scaled(cost[j], m_costScale, m_cost[j]);
    for (std::size_t v = 0; v < variables; ++v)
    {
        const Scale scale = v < n ? m_boundScale : m_rowScale[v - n];
        isShort =
            isShort && Scaled(lower[v], scale, m_lower[v]) && Scaled(upper[v], scale, m_upper[v]);
    }
    return isShort;
}

void IntegerForm::TakeApartAll()
{
    m_parts.clear();
    const auto take = [this](const std::vector<double>& numbers)
    {
        for (const double number : numbers)
            m_parts.push_back(std::isfinite(number) ? TakeApart(number, m_form->numbers)
                                                    : ExactNumber{});
    };
    take(m_form->matrix);
    take(m_form->cost);
    take(m_form->lower);
    take(m_form->upper);
}

bool IntegerForm::Scaled(const ExactNumber& number, Scale scale, WideInteger& result)
{
    const bool isShort = ToWideInteger(number, scale, result);
    m_bits = std::max(m_bits, result.BitLength());
    return isShort;
}

}  // namespace nuv
