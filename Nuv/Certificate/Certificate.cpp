/// The check of certificates. It is short on purpose and uses nothing of the solvers: every number
/// of the form becomes an integer by one common factor, and each condition of the verdict is
/// evaluated as the mathematics states it.
#include "Nuv/Certificate/Certificate.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

/// A form in integers: every finite number of it times one common factor.
class Checker
{
public:
    explicit Checker(const BoundedForm& form) : m_form(form)
    {
        IncludeDenominatorsOf(form.matrix.Columns().value);
        IncludeDenominatorsOf(form.cost);
        for (const auto* bounds :
             {&form.columnLower, &form.columnUpper, &form.rowLower, &form.rowUpper})
            IncludeDenominatorsOf(*bounds);
        m_factor = PowerOf(m_scale);
        for (const auto& [place, number] : form.exact)
            m_factor = LeastCommonMultiple(m_factor, number.Denominator());
        m_rest = m_factor / PowerOf(m_scale);
    }

    // Numbers of the form times Factor(); bounds are finite.
    [[nodiscard]] Integer Entry(Index row, Index column, double entry) const
    {
        return Scaled({FormPlace::Of::Entry, row, column}, entry);
    }
    [[nodiscard]] Integer Cost(Index column) const
    {
        return Scaled({FormPlace::Of::Cost, column}, m_form.cost[column]);
    }
    [[nodiscard]] Integer Lower(Index variable) const
    {
        return m_form.IsLogical(variable)
                   ? Scaled({FormPlace::Of::RowLower, m_form.RowOf(variable)},
                            m_form.Lower(variable))
                   : Scaled({FormPlace::Of::ColumnLower, variable}, m_form.Lower(variable));
    }
    [[nodiscard]] Integer Upper(Index variable) const
    {
        return m_form.IsLogical(variable)
                   ? Scaled({FormPlace::Of::RowUpper, m_form.RowOf(variable)},
                            m_form.Upper(variable))
                   : Scaled({FormPlace::Of::ColumnUpper, variable}, m_form.Upper(variable));
    }
    [[nodiscard]] Rational Constant() const
    {
        const Rational* const exact = m_form.exact.Find({FormPlace::Of::Constant});
        return exact != nullptr ? *exact : ToRational(m_form.constant, m_form.numbers);
    }
    [[nodiscard]] const Integer& Factor() const noexcept
    {
        return m_factor;
    }

    /// Activities of all rows at x = point / denominator, times Factor() * denominator.
    [[nodiscard]] std::vector<Integer> Activities(const std::vector<Integer>& point) const
    {
        std::vector<Integer> sums(m_form.rows, Integer(0));
        for (Index j = 0; j < m_form.columns; ++j)
        {
            // same bits: a coordinate of 0 adds nothing
            if (point[j] == 0)
                continue;
            for (const auto [row, entry] : m_form.matrix.Column(j))
                sums[row].AddProduct(Entry(row, j, entry), point[j]);
        }
        return sums;
    }

    /// A' y for column j, times Factor() * the denominator of y.
    [[nodiscard]] Integer Priced(Index j, const std::vector<Integer>& multipliers) const
    {
        Integer sum(0);
        for (const auto [row, entry] : m_form.matrix.Column(j))
        {
            // same bits: a multiplier of 0 adds nothing
            if (multipliers[row] != 0)
                sum.AddProduct(Entry(row, j, entry), multipliers[row]);
        }
        return sum;
    }

    /// The reduced cost of a column, times Factor() * the denominator of the duals.
    [[nodiscard]] Integer ReducedCost(Index j, const ExactVector& duals) const
    {
        Integer reduced = -Priced(j, duals.numerator);
        reduced.AddProduct(Cost(j), duals.denominator);
        return reduced;
    }

    [[nodiscard]] Integer CostOf(const std::vector<Integer>& point) const
    {
        Integer sum(0);
        for (Index j = 0; j < m_form.columns; ++j)
            sum.AddProduct(Cost(j), point[j]);
        return sum;
    }

    /// Where value / (Factor() * scale) lies: -1 below the lower bound, +1 above the upper one,
    /// 0 within; `onLower` and `onUpper` tell whether it is a bound exactly.
    [[nodiscard]] int Locate(Index variable, const Integer& value, const Integer& scale,
                             bool& onLower, bool& onUpper) const
    {
        int place = 0;
        onLower = false;
        onUpper = false;
        if (std::isfinite(m_form.Lower(variable)))
        {
            const int order = Order(value, Lower(variable), scale);
            onLower = order == 0;
            // same bits: only whether the place is 0 is asked
            place = order < 0 ? -1 : place;
        }
        if (std::isfinite(m_form.Upper(variable)))
        {
            const int order = Order(value, Upper(variable), scale);
            onUpper = order == 0;
            // same bits: only whether the place is 0 is asked
            place = order > 0 ? 1 : place;
        }
        return place;
    }

private:
    void IncludeDenominatorsOf(const std::vector<double>& numbers)
    {
        for (const double number : numbers)
        {
            // same bits: a factor that is larger than need be is right too
            if (!std::isfinite(number))
                continue;
            const Scale scale = TakeApart(number, m_form.numbers).scale;
            m_scale = {std::max(m_scale.two, -scale.two), std::max(m_scale.five, -scale.five)};
        }
    }
    /// The sign of value - bound * scale, the scale positive.
    [[nodiscard]] static int Order(const Integer& value, const Integer& bound, const Integer& scale)
    {
        // same bits (!=): a bound of 0 is 0 in every scale
        return bound == 0 ? value.Sign() : value.Compare(bound * scale);
    }
    /// The number at a place, where the double says `number`, times Factor().
    [[nodiscard]] Integer Scaled(const FormPlace& place, double number) const
    {
        // same bits: in a table without entries none is found
        if (m_form.exact.Empty())
            return nuv::Scaled(TakeApart(number, m_form.numbers), m_scale);
        if (const Rational* const exact = m_form.exact.Find(place))
            return exact->Numerator() * (m_factor / exact->Denominator());
        return nuv::Scaled(TakeApart(number, m_form.numbers), m_scale) * m_rest;
    }

    const BoundedForm& m_form;
    Scale m_scale;
    Integer m_factor;
    Integer m_rest;  ///< of the factor: what only the exact numbers beside the doubles need
};

/// The value of every variable at the point, times Factor() * denominator.
std::vector<Integer> AllValues(const BoundedForm& form, const Checker& checker,
                               const std::vector<Integer>& point)
{
    std::vector<Integer> values;
    values.reserve(form.Variables());
    for (const Integer& entry : point)
        values.push_back(entry * checker.Factor());
    for (Integer& activity : checker.Activities(point))
        values.push_back(std::move(activity));
    return values;
}

/// `values` become those of AllValues.
std::string CheckFeasible(const BoundedForm& form, const Checker& checker, const ExactVector& point,
                          std::vector<Integer>& values)
{
    if (!HasShape(point, form.columns))
        return "the point has the wrong length";
    values = AllValues(form, checker, point.numerator);
    bool onLower = false;
    bool onUpper = false;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        if (checker.Locate(v, values[v], point.denominator, onLower, onUpper) != 0)
            return "the point violates a bound of variable " + std::to_string(v);
    }
    return {};
}

/// Feasible, and every reduced cost that is not zero belongs to a variable at the bound that its
/// sign names: then no feasible point is better.
std::string CheckOptimal(const BoundedForm& form, const Checker& checker,
                         const Certificate& certificate)
{
    std::vector<Integer> values;
    std::string defect = CheckFeasible(form, checker, certificate.primal, values);
    if (!defect.empty())
        return defect;
    if (!HasShape(certificate.dual, form.rows))
        return "the duals have the wrong length";
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const int sign = form.IsLogical(v) ? certificate.dual.numerator[form.RowOf(v)].Sign()
                                           : checker.ReducedCost(v, certificate.dual).Sign();
        // same bits (never): what has no sign needs no bound
        if (sign == 0)
            continue;
        bool onLower = false;
        bool onUpper = false;
        (void)checker.Locate(v, values[v], certificate.primal.denominator, onLower, onUpper);
        if (!(sign > 0 ? onLower : onUpper))
            return "the reduced cost of variable " + std::to_string(v) + " has the wrong sign";
    }
    const Rational cost(checker.CostOf(certificate.primal.numerator),
                        Integer(certificate.primal.denominator * checker.Factor()));
    if (certificate.objective != cost + checker.Constant())
        return "the objective is not that of the point";
    return {};
}

/// Whether both bounds are there and the lower one is above the upper.
bool Cross(const BoundedForm& form, const Checker& checker, Index variable)
{
    return std::isfinite(form.Lower(variable)) && std::isfinite(form.Upper(variable)) &&
           checker.Lower(variable) > checker.Upper(variable);
}

/// The sum that no feasible point could let be positive, see the convention in the header.
std::string CheckInfeasible(const BoundedForm& form, const Checker& checker,
                            const Certificate& certificate)
{
    if (certificate.contradiction != kNoIndex)
    {
        return certificate.contradiction < form.Variables() &&
                       Cross(form, checker, certificate.contradiction)
                   ? ""
                   : "the bounds said to contradict each other do not";
    }
    if (!HasShape(certificate.dual, form.rows))
        return "the multipliers have the wrong length";
    Integer sum(0);
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const Integer factor =
            form.IsLogical(v)
                ? Integer(certificate.dual.numerator[form.RowOf(v)] * checker.Factor())
                : Integer(-checker.Priced(v, certificate.dual.numerator));
        if (factor == 0)
            continue;
        if (!std::isfinite(factor > 0 ? form.Lower(v) : form.Upper(v)))
            return "the multipliers need a bound that variable " + std::to_string(v) + " lacks";
        sum += factor * (factor > 0 ? checker.Lower(v) : checker.Upper(v));
    }
    return sum > 0 ? "" : "the multipliers contradict nothing";
}

/// A feasible point and a direction that keeps to all bounds for ever and improves.
std::string CheckUnbounded(const BoundedForm& form, const Checker& checker,
                           const Certificate& certificate)
{
    std::vector<Integer> values;
    std::string defect = CheckFeasible(form, checker, certificate.primal, values);
    if (!defect.empty())
        return defect;
    if (!HasShape(certificate.ray, form.columns))
        return "the ray has the wrong length";
    const std::vector<Integer> rates = AllValues(form, checker, certificate.ray.numerator);
    for (Index v = 0; v < form.Variables(); ++v)
    {
        if ((rates[v] < 0 && std::isfinite(form.Lower(v))) ||
            (rates[v] > 0 && std::isfinite(form.Upper(v))))
            return "the ray runs into a bound of variable " + std::to_string(v);
    }
    return checker.CostOf(certificate.ray.numerator) < 0 ? "" : "the ray does not improve";
}

}  // namespace

std::string CheckCertificate(const BoundedForm& form, const Certificate& certificate)
{
    const Checker checker(form);
    switch (certificate.status)
    {
    case Status::Optimal:
        return CheckOptimal(form, checker, certificate);
    case Status::Infeasible:
        return CheckInfeasible(form, checker, certificate);
    case Status::Unbounded:
        return CheckUnbounded(form, checker, certificate);
    case Status::Stopped:
    case Status::Invalid:
        break;
    }
    return "nothing is claimed";
}

}  // namespace nuv
