/// The shifted and scaled program: bounds 2^s (l - x), 2^s (u - x) and costs 2^t d at the exact
/// basic solution x and its reduced costs d, rounded once to doubles.
#include "Nuv/Exact/Refinement.hpp"

#include "Nuv/Exact/ExactFactors.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/DualSimplex.hpp"
#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>
#include <cmath>
#include <memory>

namespace nuv
{
namespace
{

/// The exponent that brings a positive number to about one.
int ZoomFor(double size)
{
    return -std::ilogb(size);
}

void Enlarge(std::vector<double>& numbers, int zoom)
{
    for (double& number : numbers)
        number = std::ldexp(number, zoom);
}

/// The matrix with other entries in a row, whose logical has another scale.
std::shared_ptr<const ScaledMatrix> WithRow(const ScaledMatrix& matrix, Index row,
                                            const std::vector<double>& entries, double scale)
{
    auto changed = std::make_shared<ScaledMatrix>(matrix);
    const auto columns = static_cast<Index>(entries.size());
    changed->scale[columns + row] = scale;
    changed->byRow.Clear();
    for (Index i = 0; i < matrix.byRow.Count(); ++i)
    {
        for (const auto [j, entry] : matrix.byRow[i])
        {
            if (i != row)
                changed->byRow.Append(j, entry);
        }
        for (Index j = 0; i == row && j < columns; ++j)
        {
            if (entries[j] != 0.0)
                changed->byRow.Append(j, entries[j]);
        }
        changed->byRow.Close();
    }
    changed->byVariable = Transposed(changed->byRow, columns);
    for (Index i = 0; i < matrix.byRow.Count(); ++i)
    {
        changed->byVariable.Append(i, -1.0);
        changed->byVariable.Close();
    }
    return changed;
}

}  // namespace

Refinement::Refinement(const ExactForm& exact, const ScaledForm& scaled)
    : m_exact(exact), m_scaled(scaled)
{
}

SimplexVerdict Refinement::Run(const ExactBasis& basis, SolveControl& control,
                               std::vector<BasisStatus>& status, BlockedRow& blocked)
{
    const SolveControl::Aside aside(control);
    const bool violated = MoveBounds(basis);
    MoveCosts(basis);
    Basis start;
    start.columns.assign(basis.status.begin(), basis.status.begin() + m_scaled.columns);
    start.rows.assign(basis.status.begin() + m_scaled.columns, basis.status.end());
    SimplexState state(m_scaled, start);
    if (violated)
    {
        // Reduced costs are right or nearly so, and must not be lost to a first phase that does not
        // look at them.
        DualSimplex dual(state, control);
        (void)dual.Run();  // the primal simplex has the last word
        if (dual.Blocked() != kNoIndex)
            blocked = {state.ExportBasis(), dual.Blocked()};
        state.cost = m_scaled.cost;
    }
    const SimplexVerdict verdict = SolveInDoubles(state, control, &blocked);
    status = state.status;
    return verdict;
}

/// With the row p of the inverse that belongs to the basic logical r_i, p_i is -1. So -p (A x - r)
/// = 0 says as much as equation i, given the other equations, and where p is 0 but for equations it
/// is one of x and r_i alone in a program whose bounds are moved to a solution. No basis changes
/// its meaning with a row operation.
bool Refinement::EnlargeEquation(const BlockedRow& blocked, SolveControl& control)
{
    const BoundedForm& form = m_exact.form;
    if (blocked.variable == kNoIndex || !form.IsLogical(blocked.variable) ||
        !form.IsFixed(blocked.variable))
        return false;
    ExactVector combination;
    if (!RowOfInverse(m_exact, blocked, control, combination))
        return false;
    for (Index i = 0; i < form.rows; ++i)
    {
        if (!form.IsFixed(form.Logical(i)))
            combination.numerator[i] = 0;
    }
    std::vector<double> entries(form.columns);
    double largest = 0.0;
    for (Index j = 0; j < form.columns; ++j)
    {
        entries[j] = m_exact.ReducedCostInDouble(j, combination, false) * m_scaled.Scale(j);
        if (!form.IsFixed(j))
            largest = std::max(largest, std::fabs(entries[j]));
    }
    if (largest == 0.0 || largest / m_scaled.Scale(blocked.variable) > tolerance::kSmallestPivot)
        return false;
    const int zoom = ZoomFor(largest);
    Enlarge(entries, zoom);
    m_scaled.matrix =
        WithRow(*m_scaled.matrix, blocked.variable - form.columns, entries, std::ldexp(1.0, -zoom));
    return true;
}

/// bound - value for a basic variable, from integers: what is left of a cancellation is exact.
double Refinement::Distance(const Rational& bound, const Integer& numerator,
                            const Integer& denominator)
{
    Integer difference = bound.Numerator() * denominator;
    difference.SubtractProduct(numerator, bound.Denominator());
    return QuotientToDouble(difference, Integer(denominator * bound.Denominator()));
}

/// @return whether a bound is violated.
bool Refinement::MoveBounds(const ExactBasis& basis)
{
    const BoundedForm& form = m_exact.form;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const double value = basis.status[v] == BasisStatus::AtLower   ? form.Lower(v)
                             : basis.status[v] == BasisStatus::AtUpper ? form.Upper(v)
                                                                       : 0.0;
        m_scaled.lower[v] = (form.Lower(v) - value) / m_scaled.Scale(v);
        m_scaled.upper[v] = (form.Upper(v) - value) / m_scaled.Scale(v);
    }
    double worst = 0.0;
    for (Index k = 0; k < form.rows; ++k)
    {
        const Index v = basis.head[k];
        const Integer& numerator = basis.values.numerator[k];
        if (std::isfinite(form.Lower(v)))
            m_scaled.lower[v] =
                Distance(m_exact.lower[v], numerator, basis.values.denominator) / m_scaled.Scale(v);
        if (std::isfinite(form.Upper(v)))
            m_scaled.upper[v] =
                Distance(m_exact.upper[v], numerator, basis.values.denominator) / m_scaled.Scale(v);
        worst = std::max({worst, m_scaled.lower[v], -m_scaled.upper[v]});
    }
    if (worst > 0.0)
        m_primalZoom = ZoomFor(worst);
    Enlarge(m_scaled.lower, m_primalZoom);
    Enlarge(m_scaled.upper, m_primalZoom);
    return worst > 0.0;
}

/// Basic variables have no cost in the moved program, the others have their reduced costs.
void Refinement::MoveCosts(const ExactBasis& basis)
{
    const BoundedForm& form = m_exact.form;
    double worst = 0.0;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        m_scaled.cost[v] = 0.0;
        if (basis.status[v] == BasisStatus::Basic)
            continue;
        m_scaled.cost[v] = m_exact.ReducedCostInDouble(v, basis.duals, true) * m_scaled.Scale(v);
        if (!form.IsFixed(v))
            worst = std::max(worst, DualInfeasibility(basis.status[v], m_scaled.cost[v]));
    }
    if (worst > 0.0)
        m_dualZoom = ZoomFor(worst);
    Enlarge(m_scaled.cost, m_dualZoom);
}

}  // namespace nuv
