/// One pivot of the dual simplex: the leaving variable by its violation, its row of the tableau,
/// the ratio test over that row, the entering column, and the updates of values, reduced costs and
/// weights.
#include "Nuv/SparseSimplex/DualSimplex.hpp"

#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

using namespace tolerance;

DualSimplex::DualSimplex(SimplexState& state, SolveControl& control)
    : m_state(state), m_control(control)
{
}

SimplexVerdict DualSimplex::Run()
{
    // A start that needs more is not nearly optimal, and nothing here breaks a tie for good.
    m_pivotsLeft = 1000 + 2 * std::uint64_t{m_state.form.rows};
    m_weight.assign(m_state.form.rows, 1.0);
    StartAfresh();
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    while (Iterate(verdict))
    {
    }
    return verdict;
}

void DualSimplex::StartAfresh()
{
    m_state.Refactorise();
    std::vector<double> basicCost(m_state.form.rows);
    for (Index k = 0; k < m_state.form.rows; ++k)
        basicCost[k] = m_state.cost[m_state.head[k]];
    m_state.ComputeReducedCosts(m_state.cost, basicCost);
    MakeDualFeasible();
    m_fresh = true;
    m_inaccurate = false;
}

void DualSimplex::MakeDualFeasible()
{
    bool flipped = false;
    for (Index v = 0; v < m_state.form.Variables(); ++v)
    {
        if (m_state.IsFixed(v) || DualInfeasibility(m_state.status[v], m_state.reduced[v]) <= 0.0)
            continue;
        const bool boxed = m_state.lower[v] > -kInfinity && m_state.upper[v] < kInfinity;
        if (boxed && std::fabs(m_state.reduced[v]) > kOptimality)
        {
            m_state.status[v] = m_state.status[v] == BasisStatus::AtLower ? BasisStatus::AtUpper
                                                                          : BasisStatus::AtLower;
            m_state.SetToBound(v);
            flipped = true;
        }
        else
        {
            Shift(v);
        }
    }
    if (flipped)
        m_state.ComputeValues();
}

/// Makes the reduced cost of a nonbasic variable zero, which concerns no other.
void DualSimplex::Shift(Index variable)
{
    m_state.cost[variable] -= m_state.reduced[variable];
    m_state.reduced[variable] = 0.0;
    m_shifted = true;
}

bool DualSimplex::Iterate(SimplexVerdict& verdict)
{
    if (m_inaccurate || m_state.WantsRefactorisation())
        StartAfresh();
    const Index position = ChooseLeaving();
    if (position == kNoIndex)
    {
        if (m_fresh)
        {
            verdict = SimplexVerdict::Optimal;
            return false;
        }
        StartAfresh();
        return true;
    }
    if (m_pivotsLeft == 0)
        return false;
    if (!m_control.MayPivot(Stage::Double, false, std::nan("")))
    {
        verdict = SimplexVerdict::Stopped;
        return false;
    }
    m_state.SolveUnitRow(position, m_row);
    m_state.PriceRow(m_row, m_pivotRow);
    const Index leaving = m_state.head[position];
    const bool below = m_state.value[leaving] < m_state.lower[leaving];
    const Index entering = ChooseEntering(below ? -1.0 : 1.0);
    if (entering == kNoIndex)
    {
        if (m_fresh)
        {
            verdict = SimplexVerdict::Infeasible;
            return false;
        }
        StartAfresh();
        return true;
    }
    m_state.SolveColumn(entering, m_column);
    const double accuracy = std::fabs(m_pivotRow.value[entering] - m_column[position]);
    m_inaccurate = accuracy > kAgreement * (1.0 + std::fabs(m_column[position]));
    if ((m_inaccurate || std::fabs(m_column[position]) < kTrustedPivot) && !m_fresh)
    {
        m_inaccurate = true;
        return true;
    }
    // With fresh factors, a pivot about which row and column do not agree is none.
    if (m_inaccurate && accuracy > kFreshAgreement * std::fabs(m_column[position]))
        return false;
    Pivot(position, entering);
    return true;
}

double DualSimplex::Violation(Index position) const
{
    const Index v = m_state.head[position];
    return std::max(m_state.lower[v] - m_state.value[v], m_state.value[v] - m_state.upper[v]);
}

Index DualSimplex::ChooseLeaving() const
{
    Index best = kNoIndex;
    double bestScore = 0.0;
    for (Index k = 0; k < m_state.form.rows; ++k)
    {
        const double violation = Violation(k);
        if (violation <= kFeasibility)
            continue;
        const double score = violation * violation / m_weight[k];
        if (score > bestScore)
        {
            bestScore = score;
            best = k;
        }
    }
    return best;
}

/// The size of the pivot if moving the variable off its bound moves the leaving one towards its
/// own, otherwise zero. The leaving variable must grow if the sign is negative.
double DualSimplex::AdmissiblePivot(Index variable, double sign) const
{
    const double entry = sign * m_pivotRow.value[variable];
    switch (m_state.status[variable])
    {
    case BasisStatus::AtLower:
        return std::max(entry, 0.0);
    case BasisStatus::AtUpper:
        return std::max(-entry, 0.0);
    case BasisStatus::Free:
        return std::fabs(entry);
    case BasisStatus::Basic:
        break;
    }
    return 0.0;
}

/// The first pass finds how far the duals may go if every reduced cost may pass zero by the
/// tolerance, the second takes the largest pivot that is met by then.
Index DualSimplex::ChooseEntering(double sign) const
{
    double longest = kInfinity;
    for (const Index v : m_pivotRow.touched)
    {
        const double pivot = AdmissiblePivot(v, sign);
        if (pivot > kSmallestPivot && !m_state.IsFixed(v))
            longest = std::min(longest, (std::fabs(m_state.reduced[v]) + kOptimality) / pivot);
    }
    Index best = kNoIndex;
    double largest = kSmallestPivot;
    for (const Index v : m_pivotRow.touched)
    {
        const double pivot = AdmissiblePivot(v, sign);
        if (pivot <= largest || m_state.IsFixed(v) ||
            std::fabs(m_state.reduced[v]) > longest * pivot)
            continue;
        largest = pivot;
        best = v;
    }
    return best;
}

void DualSimplex::Pivot(Index position, Index entering)
{
    const Index leaving = m_state.head[position];
    const bool below = m_state.value[leaving] < m_state.lower[leaving];
    const double bound = below ? m_state.lower[leaving] : m_state.upper[leaving];
    const double step = (m_state.value[leaving] - bound) / m_column[position];
    for (Index k = 0; k < m_state.form.rows; ++k)
    {
        if (m_column[k] != 0.0)
            m_state.value[m_state.head[k]] -= step * m_column[k];
    }
    m_state.value[entering] += step;
    m_state.value[leaving] = bound;
    UpdateReducedCosts(entering, leaving);
    UpdateWeights(position);
    m_state.Exchange(position, entering, below ? BasisStatus::AtLower : BasisStatus::AtUpper,
                     m_column);
    m_control.CountPivot(Stage::Double);
    --m_pivotsLeft;
    m_fresh = false;
}

/// What the second pass let past zero is shifted back to it.
void DualSimplex::UpdateReducedCosts(Index entering, Index leaving)
{
    const double ratio = m_state.reduced[entering] / m_pivotRow.value[entering];
    for (const Index v : m_pivotRow.touched)
    {
        if (m_state.status[v] == BasisStatus::Basic)
            continue;
        m_state.reduced[v] -= ratio * m_pivotRow.value[v];
        if (v != entering && !m_state.IsFixed(v) &&
            DualInfeasibility(m_state.status[v], m_state.reduced[v]) > 0.0)
            Shift(v);
    }
    m_state.reduced[entering] = 0.0;
    m_state.reduced[leaving] = -ratio;
}

void DualSimplex::UpdateWeights(Index position)
{
    const double pivot = m_column[position];
    const double weight = m_weight[position];
    for (Index k = 0; k < m_state.form.rows; ++k)
    {
        if (m_column[k] == 0.0 || k == position)
            continue;
        const double share = m_column[k] / pivot;
        m_weight[k] = std::max(m_weight[k], share * share * weight);
    }
    m_weight[position] = std::max(weight / (pivot * pivot), 1.0);
    if (m_weight[position] > kLargestWeight)
        std::fill(m_weight.begin(), m_weight.end(), 1.0);
}

}  // namespace nuv
