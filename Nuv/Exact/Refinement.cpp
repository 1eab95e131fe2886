/// The shifted and scaled program: bounds 2^s (l - x), 2^s (u - x) and costs 2^t d at the exact
/// basic solution x and its reduced costs d, rounded once to doubles.
#include "Nuv/Exact/Refinement.hpp"

#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/DualSimplex.hpp"

#include <algorithm>
#include <cmath>

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

}  // namespace

Refinement::Refinement(const ExactForm& exact, const ScaledForm& scaled)
    : m_exact(exact), m_scaled(scaled)
{
}

SimplexVerdict Refinement::Run(const ExactBasis& basis, SolveControl& control,
                               std::vector<BasisStatus>& status)
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
        state.cost = m_scaled.cost;
    }
    const SimplexVerdict verdict = SolveInDoubles(state, control);
    status = state.status;
    return verdict;
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
