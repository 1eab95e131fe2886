#include "Nuv/Model/ExactSimplex.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

ExactSimplex::ExactSimplex(const LinearForm& form, const Basis& start, bool expectInfeasible,
                           Watch& watch)
    : m_form(form),
      m_watch(watch),
      m_columns(form),
      m_factors(form),
      m_expectInfeasible(expectInfeasible)
{
    Basis basis = start;
    FitBasis(form, basis);
    m_status.resize(form.Variables());
    for (Index v = 0; v < form.Variables(); ++v)
    {
        m_status[v] = basis[v];
        if (m_status[v] == BasisStatus::Basic)
            m_head.push_back(v);
    }
}

void ExactSimplex::Run(Proof& proof)
{
    Outcome outcome = Outcome::GoOn;
    while (outcome == Outcome::GoOn)
        outcome = Factorise() ? Step() : Outcome::Stopped;
    proof.exactPivots += m_pivots;
    proof.basis.columns.assign(m_status.begin(), m_status.begin() + m_form.columns);
    proof.basis.rows.assign(m_status.begin() + m_form.columns, m_status.end());
    switch (outcome)
    {
    case Outcome::Optimal:
        proof.status = ProofStatus::Optimal;
        WritePoint(proof.primal);
        proof.dual = m_duals;
        proof.objective = Objective(proof.primal);
        WriteDoubles(proof);
        break;
    case Outcome::Infeasible:
        proof.status = ProofStatus::Infeasible;
        WriteFarkas(proof.dual);
        WriteDoubles(proof);
        break;
    case Outcome::Unbounded:
        proof.status = ProofStatus::Unbounded;
        WritePoint(proof.primal);
        WriteRay(proof.ray);
        WriteDoubles(proof);
        break;
    case Outcome::GoOn:
    case Outcome::Stopped:
        proof.status = ProofStatus::Stopped;
        break;
    }
}

/// One look at the basis: a verdict, or the pivot that its feasibility calls for.
ExactSimplex::Outcome ExactSimplex::Step()
{
    if (!ComputeValues())
        return Outcome::Stopped;
    const bool feasible = !FindViolations();
    if (feasible || !m_expectInfeasible)
    {
        if (!ComputeDuals(false))
            return Outcome::Stopped;
        int direction = 0;
        const bool dualFeasible = ChooseEntering(false, direction) == kNoIndex;
        if (feasible && dualFeasible)
            return Outcome::Optimal;
        if (feasible)
            return PrimalStep(false);
        if (dualFeasible)
            return DualStep();
    }
    if (!ComputeDuals(true))
        return Outcome::Stopped;
    return PrimalStep(true);
}

/// Factorises; a singular basis is repaired, what was dropped from it rests at a bound.
bool ExactSimplex::Factorise()
{
    const std::vector<Index> dropped = m_factors.Factorise(m_head);
    for (const Index variable : dropped)
        m_status[variable] = RestingStatus(m_form.Lower(variable), m_form.Upper(variable));
    for (const Index variable : m_head)
        m_status[variable] = BasisStatus::Basic;
    return !m_watch.TimeIsUp();
}

double ExactSimplex::RestingValue(Index variable) const noexcept
{
    switch (m_status[variable])
    {
    case BasisStatus::AtLower:
        return m_form.Lower(variable);
    case BasisStatus::AtUpper:
        return m_form.Upper(variable);
    default:
        return 0.0;
    }
}

bool ExactSimplex::IsFixed(Index variable) const noexcept
{
    return m_form.Lower(variable) == m_form.Upper(variable);
}

/// B x_B = -N x_N, where the products of two doubles are summed as integers with one exponent.
bool ExactSimplex::ComputeValues()
{
    int lowest = 0;
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        const double value = RestingValue(v);
        if (m_status[v] != BasisStatus::Basic && value != 0.0)
            lowest = std::min(lowest, m_columns.Exponent(v));
    }
    const int shift = m_columns.BoundShift();
    DyadicVector right{std::vector<Integer>(m_form.rows), lowest - shift};
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        const double value = RestingValue(v);
        if (m_status[v] == BasisStatus::Basic || value == 0.0)
            continue;
        const Integer scaled = ScaledInteger(value, shift);
        if (m_form.IsLogical(v))
        {
            right.value[v - m_form.columns] += scaled << static_cast<unsigned>(-lowest);
            continue;
        }
        for (std::size_t at = m_form.byColumn.start[v]; at < m_form.byColumn.start[v + 1]; ++at)
            right.value[m_form.byColumn.index[at]] -=
                ScaledInteger(m_form.byColumn.value[at], -lowest) * scaled;
    }
    return m_factors.SolveForward(right, m_values, m_watch);
}

/// B' y = c_B; in phase one c_B is -1 for a violated lower bound and +1 for a violated upper one.
bool ExactSimplex::ComputeDuals(bool phaseOne)
{
    DyadicVector right{std::vector<Integer>(m_form.rows), 0};
    if (phaseOne)
    {
        for (Index k = 0; k < m_form.rows; ++k)
            right.value[k] = static_cast<int>(m_violation[k]);
        return m_factors.SolveBackward(right, m_duals, m_watch);
    }
    for (const Index v : m_head)
    {
        if (m_form.Cost(v) != 0.0)
            right.exponent = std::min(right.exponent, TakeApart(m_form.Cost(v)).exponent);
    }
    for (Index k = 0; k < m_form.rows; ++k)
        right.value[k] = ScaledInteger(m_form.Cost(m_head[k]), -right.exponent);
    return m_factors.SolveBackward(right, m_duals, m_watch);
}

bool ExactSimplex::FindViolations()
{
    m_violation.assign(m_form.rows, 0);
    bool any = false;
    for (Index k = 0; k < m_form.rows; ++k)
    {
        const double lower = m_form.Lower(m_head[k]);
        const double upper = m_form.Upper(m_head[k]);
        const Integer& numerator = m_values.numerator[k];
        if (std::isfinite(lower) && CompareToBound(numerator, m_values.denominator, lower) < 0)
            m_violation[k] = -1;
        else if (std::isfinite(upper) && CompareToBound(numerator, m_values.denominator, upper) > 0)
            m_violation[k] = 1;
        any = any || m_violation[k] != 0;
    }
    return any;
}

/// +1 or -1 if moving a nonbasic variable up or down improves, 0 if it must not or cannot move.
int ExactSimplex::ImprovingDirection(Index variable, const Integer& reduced) const
{
    const int sign = reduced.sign();
    if (sign == 0 || IsFixed(variable))
        return 0;
    switch (m_status[variable])
    {
    case BasisStatus::AtLower:
        return sign < 0 ? 1 : 0;
    case BasisStatus::AtUpper:
        return sign > 0 ? -1 : 0;
    case BasisStatus::Free:
        return -sign;
    case BasisStatus::Basic:
        break;
    }
    return 0;
}

void ExactSimplex::Exchange(Index position, Index entering, bool atUpper)
{
    m_status[m_head[position]] = atUpper ? BasisStatus::AtUpper : BasisStatus::AtLower;
    m_status[entering] = BasisStatus::Basic;
    m_head[position] = entering;
}

void ExactSimplex::NoteStep(bool degenerate)
{
    m_degenerate = degenerate ? m_degenerate + 1 : 0;
    ++m_pivots;
}

}  // namespace nuv
