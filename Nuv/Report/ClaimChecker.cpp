#include "Nuv/Report/ClaimChecker.hpp"

#include "Nuv/Io/NumberText.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuv::claim
{
namespace
{

std::string Text(const Rational& value)
{
    return NumberText(ToDouble(value) + 0.0);
}

double SignOf(const Model& model)
{
    return model.ObjectiveSense() == Sense::Maximize ? -1.0 : 1.0;
}

Rational SizeOf(const Rational& value)
{
    return value < 0 ? -value : value;
}

const Rational& NumberAt(const Claim::Numbers& numbers, Index k)
{
    static const Rational kZero = 0;
    return k < numbers.size() && numbers[k] ? *numbers[k] : kZero;
}

}  // namespace

void ScaledSum::Add(const Rational& term)
{
    sum += term;
    scale = std::max(scale, SizeOf(term));
}

double ScaledSum::Above(const Rational& other) const
{
    if (sum <= other)
        return 0.0;
    // In doubles, two numbers beyond them would have no quotient. What is too small for a double is
    // still not nothing.
    return std::max(ToDouble((sum - other) / std::max(scale, SizeOf(other))),
                    std::numeric_limits<double>::denorm_min());
}

std::string ClaimChecker::NameOf(Index variable) const
{
    return m_form.IsLogical(variable)
               ? fmt::format("row '{}'", m_model.RowName(variable - m_form.columns))
               : fmt::format("variable '{}'", m_model.VariableName(variable));
}

void ClaimChecker::Disagree(std::string code, std::string text)
{
    if (++m_report.disagreementCount <= ClaimReport::kMostKept)
        m_report.disagreements.push_back({std::move(code), std::move(text)});
}

std::vector<ScaledSum> ClaimChecker::Extended(const Claim::Numbers& numbers) const
{
    std::vector<ScaledSum> result(m_form.Variables());
    for (Index j = 0; j < m_form.columns; ++j)
    {
        const Rational& number = NumberAt(numbers, j);
        if (number == 0)
            continue;
        result[j].Add(number);
        for (const auto [row, entry] : m_form.matrix.Column(j))
            result[m_form.Logical(row)].Add(number * m_form.ExactEntry(row, j, entry));
    }
    return result;
}

std::vector<ScaledSum> ClaimChecker::Priced(const Claim::Numbers& multipliers, double sign,
                                            bool withCost) const
{
    std::vector<ScaledSum> result(m_form.Variables());
    for (Index j = 0; withCost && j < m_form.columns; ++j)
        result[j].Add(m_form.ExactCost(j));
    for (Index i = 0; i < m_form.rows; ++i)
    {
        const Rational& given = NumberAt(multipliers, i);
        if (given == 0)
            continue;
        const Rational multiplier = sign < 0.0 ? Rational(-given) : given;
        result[m_form.Logical(i)].Add(multiplier);
        for (const auto [column, entry] : m_form.matrix.Row(i))
            result[column].Add(-multiplier * m_form.ExactEntry(i, column, entry));
    }
    return result;
}

void ClaimChecker::CheckBounds(Index variable)
{
    const ScaledSum& value = m_point[variable];
    for (const bool isUpper : {false, true})
    {
        const double bound = isUpper ? m_form.Upper(variable) : m_form.Lower(variable);
        if (!std::isfinite(bound))
            continue;
        const Rational side = isUpper ? m_form.ExactUpper(variable) : m_form.ExactLower(variable);
        const double fraction =
            isUpper ? value.Above(side) : ScaledSum{side, value.scale}.Above(value.sum);
        if (fraction == 0.0)
            continue;
        const double amount = ToDouble(isUpper ? value.sum - side : side - value.sum);
        if (amount >= m_report.violation || m_report.violated.empty())
        {
            m_report.violation = amount;
            m_report.violated = NameOf(variable);
        }
        if (IsOff(fraction))
            Disagree(m_form.IsLogical(variable) ? "claim.row" : "claim.bound",
                     fmt::format("{} is {} {} by {}", NameOf(variable), isUpper ? "above" : "below",
                                 NumberText(bound + 0.0), NumberText(amount)));
    }
}

void ClaimChecker::CheckStated(const std::optional<Rational>& stated, const ScaledSum& found,
                               const char* code, std::string_view what)
{
    if (!stated)
        return;
    const double over = found.Above(*stated);
    const double under = ScaledSum{*stated, found.scale}.Above(found.sum);
    if (IsOff(std::max(over, under)))
        Disagree(code,
                 fmt::format("{} is {}, not {} as stated", what, Text(found.sum), Text(*stated)));
}

void ClaimChecker::CheckPoint(const Claim& claim)
{
    m_report.hasPoint = true;
    for (Index j = 0; j < m_form.columns; ++j)
        m_report.unnamed += j >= claim.values.size() || !claim.values[j] ? 1U : 0U;
    m_point = Extended(claim.values);
    for (Index v = 0; v < m_form.Variables(); ++v)
        CheckBounds(v);
    for (Index i = 0; i < m_form.rows && !claim.activities.empty(); ++i)
        CheckStated(claim.activities[i], m_point[m_form.columns + i], "claim.activity",
                    "the activity of " + NameOf(m_form.columns + i));
    // The form minimises; in the model's sense both turn their signs.
    const Rational sign = SignOf(m_model) < 0.0 ? -1 : 1;
    m_objective.Add(sign * m_form.ExactConstant());
    for (Index j = 0; j < m_form.columns; ++j)
        if (m_point[j].sum != 0)
            m_objective.Add(sign * m_form.ExactCost(j) * m_point[j].sum);
    m_report.objective = m_objective.sum;
    CheckStated(claim.objective, m_objective, "claim.objective", "the objective of these values");
}

void ClaimChecker::CheckDuals(const Claim& claim)
{
    const double sign = SignOf(m_model);
    std::vector<ScaledSum> reduced = Priced(claim.duals, sign, true);
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        const ScaledSum& value = m_point[v];
        const bool mayFall =
            std::isinf(m_form.Lower(v)) || IsOff(value.Above(m_form.ExactLower(v)));
        const bool mayRise = std::isinf(m_form.Upper(v)) ||
                             IsOff(ScaledSum{m_form.ExactUpper(v), value.scale}.Above(value.sum));
        const bool wantsToFall = IsOff(reduced[v].Above(0));
        const bool wantsToRise = IsOff(ScaledSum{0, reduced[v].scale}.Above(reduced[v].sum));
        if ((wantsToFall && mayFall) || (wantsToRise && mayRise))
            Disagree("claim.dual", fmt::format("by the dual values, the objective would improve if "
                                               "{} were {}",
                                               NameOf(v), wantsToFall ? "lowered" : "raised"));
        if (!m_form.IsLogical(v) && !claim.reducedCosts.empty())
        {
            if (sign < 0.0)
                reduced[v].sum = -reduced[v].sum;
            CheckStated(claim.reducedCosts[v], reduced[v], "claim.reduced-cost",
                        "by the dual values, the reduced cost of " + NameOf(v));
        }
    }
}

void ClaimChecker::CheckRay(const Claim& claim)
{
    const std::vector<ScaledSum> rates = Extended(claim.ray);
    ScaledSum gain;
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        const bool falls = IsOff(ScaledSum{0, rates[v].scale}.Above(rates[v].sum));
        const bool rises = IsOff(rates[v].Above(0));
        if ((falls && std::isfinite(m_form.Lower(v))) || (rises && std::isfinite(m_form.Upper(v))))
            Disagree("claim.ray", fmt::format("along the ray, {} {} past its bound", NameOf(v),
                                              falls ? "falls" : "rises"));
        if (!m_form.IsLogical(v) && rates[v].sum != 0)
            gain.Add(-m_form.ExactCost(v) * rates[v].sum);
    }
    if (gain.sum <= 0)
        Disagree("claim.ray", "along the ray, the objective does not improve");
}

void ClaimChecker::CheckFarkas(const Claim& claim)
{
    const std::vector<ScaledSum> factors = Priced(claim.farkas, 1.0, false);
    Rational sum = 0;
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        const ScaledSum& factor = factors[v];
        if (factor.sum == 0)
            continue;
        const double bound = factor.sum > 0 ? m_form.Lower(v) : m_form.Upper(v);
        const bool matters =
            IsOff(std::max(factor.Above(0), ScaledSum{0, factor.scale}.Above(factor.sum)));
        if (std::isfinite(bound))
            sum += factor.sum * (factor.sum > 0 ? m_form.ExactLower(v) : m_form.ExactUpper(v));
        else if (matters)
            return Disagree("claim.farkas",
                            fmt::format("the multipliers need {} bound of {}, which has none",
                                        factor.sum > 0 ? "a lower" : "an upper", NameOf(v)));
    }
    if (sum <= 0)
        Disagree("claim.farkas", "the multipliers contradict nothing");
}

void ClaimChecker::CheckOptimum(const Claim& claim)
{
    const Rational& optimum = m_report.optimum;
    const bool isMaximum = m_model.ObjectiveSense() == Sense::Maximize;
    const ScaledSum best{optimum, m_objective.scale};
    const double worse = isMaximum ? best.Above(m_objective.sum) : m_objective.Above(optimum);
    const double better = isMaximum ? m_objective.Above(optimum) : best.Above(m_objective.sum);
    // Values that break a bound can be better than any that do not; that was said already.
    if (IsOff(worse) || (IsOff(better) && m_report.disagreements.empty()))
        Disagree("claim.not-optimal",
                 fmt::format("the objective of these values is {}, the {} is {}",
                             Text(m_objective.sum), isMaximum ? "maximum" : "minimum",
                             Text(optimum)));
    if (claim.exactObjective && *claim.exactObjective != optimum)
        Disagree("claim.exact-objective",
                 fmt::format("the optimum is exactly {}, not {}", ToString(optimum),
                             ToString(*claim.exactObjective)));
}

}  // namespace nuv::claim
