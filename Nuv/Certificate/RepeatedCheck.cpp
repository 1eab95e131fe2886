/// What is kept depends on what: the values on the matrix and the point, the place of a value on
/// these and on the two bounds of its variable, the signs of reduced costs on the matrix, the costs
/// and the duals. Each is dropped when one of these changes, and made again when it is asked for.
#include "Nuv/Certificate/RepeatedCheck.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

bool IsSame(const ExactVector& left, const ExactVector& right)
{
    return left.denominator == right.denominator && left.numerator == right.numerator;
}

}  // namespace

RepeatedCheck::RepeatedCheck(const BoundedForm& form) : m_form(form) {}

void RepeatedCheck::TakeBounds(Index variable)
{
    if (!m_hasNumbers)
        return;
    m_lower[variable] = Taken(m_form.Lower(variable));
    m_upper[variable] = Taken(m_form.Upper(variable));
    if (m_hasPoint)
        m_place[variable].isKnown = false;
}

void RepeatedCheck::TakeCosts()
{
    m_hasObjective = false;
    m_hasDuals = false;
    m_hasNumbers = m_hasNumbers &&
                   std::ranges::all_of(m_form.cost, [this](double cost) { return Fits(cost); });
    for (Index j = 0; m_hasNumbers && j < m_form.columns; ++j)
        m_cost[j] = Scaled(m_form.cost[j]);
}

std::string RepeatedCheck::Check(const Certificate& certificate)
{
    // same bits (jne #2 always): the other check says the same
    if (certificate.status != Status::Optimal || !m_form.exact.Empty())
        return CheckCertificate(m_form, certificate);
    if (!m_hasNumbers)
        TakeNumbers();
    return CheckOptimal(certificate);
}

void RepeatedCheck::IncludeDenominatorOf(double number)
{
    const Scale scale = TakeApart(number, m_form.numbers).scale;
    m_scale = {std::max(m_scale.two, -scale.two), std::max(m_scale.five, -scale.five)};
}

/// Whether the number times the factor is an integer.
bool RepeatedCheck::Fits(double number) const
{
    const Scale scale = TakeApart(number, m_form.numbers).scale;
    // same bits: numbers that do not fit are taken anew
    return scale.two + m_scale.two >= 0 && scale.five + m_scale.five >= 0;
}

Integer RepeatedCheck::Scaled(double number) const
{
    return nuv::Scaled(TakeApart(number, m_form.numbers), m_scale);
}

RepeatedCheck::Bound RepeatedCheck::Taken(double bound) const
{
    if (!std::isfinite(bound))
        return {false, 0, 1};
    const ExactNumber number = TakeApart(bound, m_form.numbers);
    // What the factor lacks of the bound's denominator is a denominator of its own.
    const Scale left = number.scale + m_scale;
    const Scale lacking{std::max(-left.two, 0), std::max(-left.five, 0)};
    return {true, nuv::Scaled(number, m_scale + lacking), PowerOf(lacking)};
}

void RepeatedCheck::TakeNumbers()
{
    for (const double entry : m_form.matrix.Columns().value)
        IncludeDenominatorOf(entry);
    for (const double cost : m_form.cost)
        IncludeDenominatorOf(cost);
    m_factor = PowerOf(m_scale);
    m_columns = Mapped<Integer>(m_form.matrix.Columns(),
                                [this](Index, Index, double entry) { return Scaled(entry); });
    m_cost.clear();
    for (const double cost : m_form.cost)
        m_cost.push_back(Scaled(cost));
    m_lower.clear();
    m_upper.clear();
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        m_lower.push_back(Taken(m_form.Lower(v)));
        m_upper.push_back(Taken(m_form.Upper(v)));
    }
    m_hasNumbers = true;
    m_hasPoint = false;
    m_hasObjective = false;
    m_hasDuals = false;
}

/// Feasible, and every reduced cost that is not zero belongs to a variable at the bound that its
/// sign names: then no feasible point is better.
std::string RepeatedCheck::CheckOptimal(const Certificate& certificate)
{
    if (!HasShape(certificate.primal, m_form.columns))
        return "the point has the wrong length";
    if (!HasShape(certificate.dual, m_form.rows))
        return "the duals have the wrong length";
    // same bits: what is the same is the same once it is taken again
    if (!m_hasPoint || !IsSame(certificate.primal, m_point))
        TakePoint(certificate.primal);
    // same bits: as above
    if (!m_hasDuals || !IsSame(certificate.dual, m_duals))
        TakeDuals(certificate.dual);
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        if (!m_place[v].isKnown)  // same bits (always, never, !): as above
            Locate(v);
        if (!m_place[v].isWithin)
            return "the point violates a bound of variable " + std::to_string(v);
    }
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        if ((m_reducedSign[v] > 0 && !m_place[v].onLower) ||
            (m_reducedSign[v] < 0 && !m_place[v].onUpper))
            return "the reduced cost of variable " + std::to_string(v) + " has the wrong sign";
    }
    if (!m_hasObjective)  // same bits: as above
    {
        Integer sum(0);
        for (Index j = 0; j < m_form.columns; ++j)
            sum.AddProduct(m_cost[j], m_point.numerator[j]);
        m_objective = Rational(std::move(sum), Integer(m_point.denominator * m_factor)) +
                      ToRational(m_form.constant, m_form.numbers);
        m_hasObjective = true;
    }
    return certificate.objective == m_objective ? "" : "the objective is not that of the point";
}

void RepeatedCheck::TakePoint(const ExactVector& point)
{
    m_point = point;
    m_values.assign(m_form.Variables(), Integer(0));
    for (Index j = 0; j < m_form.columns; ++j)
    {
        // same bits (always, never): what is 0 adds nothing
        if (point.numerator[j] == 0)
            continue;
        m_values[j] = point.numerator[j] * m_factor;
        for (const auto [row, entry] : m_columns[j])
            m_values[m_form.Logical(row)].AddProduct(entry, point.numerator[j]);
    }
    m_place.assign(m_form.Variables(), {});
    m_hasPoint = true;
    m_hasObjective = false;
}

void RepeatedCheck::TakeDuals(const ExactVector& duals)
{
    m_duals = duals;
    m_reducedSign.resize(m_form.Variables());
    for (Index j = 0; j < m_form.columns; ++j)
    {
        Integer reduced = m_cost[j] * duals.denominator;
        for (const auto [row, entry] : m_columns[j])
        {
            // same bits (always, never): what is 0 adds nothing
            if (duals.numerator[row] != 0)
                reduced.SubtractProduct(entry, duals.numerator[row]);
        }
        m_reducedSign[j] = static_cast<signed char>(reduced.Sign());
    }
    for (Index i = 0; i < m_form.rows; ++i)
        m_reducedSign[m_form.Logical(i)] = static_cast<signed char>(duals.numerator[i].Sign());
    m_hasDuals = true;
}

void RepeatedCheck::Locate(Index variable)
{
    const auto order = [&](const Bound& bound)
    {
        // Against zero the sign says all.
        // same bits: as the comparison below has it
        if (bound.numerator == 0)
            return m_values[variable].Sign();
        const Integer scaled = bound.numerator * m_point.denominator;
        // same bits (always, never, -> 0): a factor of 1
        return bound.denominator == 1 ? m_values[variable].Compare(scaled)
                                      : (m_values[variable] * bound.denominator).Compare(scaled);
    };
    Place place{true, true, false, false};  // same bits: what is not known is looked for again
    if (m_lower[variable].isFinite)
    {
        const int toLower = order(m_lower[variable]);
        place.isWithin = toLower >= 0;
        place.onLower = toLower == 0;
    }
    if (m_upper[variable].isFinite)
    {
        const int toUpper = order(m_upper[variable]);
        place.isWithin = place.isWithin && toUpper <= 0;
        place.onUpper = toUpper == 0;
    }
    m_place[variable] = place;
}

}  // namespace nuv
