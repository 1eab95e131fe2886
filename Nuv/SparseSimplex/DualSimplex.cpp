/// One pivot of the dual simplex: the leaving variable by its violation, its row of the tableau,
/// the ratio test over that row, the entering column, and the updates of values, reduced costs and
/// weights. What precedes the pivots is in DualStart.cpp.
#include "Nuv/SparseSimplex/DualSimplex.hpp"

#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

using namespace tolerance;

SimplexVerdict DualSimplex::RunPhase(bool isFactorised)
{
    m_blocked = kNoIndex;
    if (isFactorised)
        Prepare();
    else
        StartAfresh();
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    while (Iterate(verdict))
    {
    }
    return verdict;
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
    if (!m_control.MayPivot(Stage::Double, false,
                            m_control.AsksForObjective() && !m_boxed ? m_state.SumOfViolations()
                                                                     : std::nan("")))
    {
        verdict = SimplexVerdict::Stopped;
        return false;
    }
    m_state.SolveUnitRow(position, m_row);
    if (!WeightIsRight(position))
        return true;
    m_state.PriceRow(m_row, m_pivotRow);
    const Index leaving = m_state.head[position];
    const double below = m_state.lower[leaving] - m_state.value[leaving];
    const double above = m_state.value[leaving] - m_state.upper[leaving];
    const Index entering =
        m_ratioTest.Choose(m_pivotRow, below > above ? -1.0 : 1.0, std::max(below, above));
    if (entering == kNoIndex)
    {
        if (m_fresh)
        {
            m_blocked = leaving;
            verdict = SimplexVerdict::Infeasible;
            return false;
        }
        StartAfresh();
        return true;
    }
    m_state.SolveColumn(entering, m_column);
    const double pivot = m_column.value[position];
    const double accuracy = std::fabs(m_pivotRow.value[entering] - pivot);
    m_inaccurate = accuracy > kAgreement * (1.0 + std::fabs(pivot));
    if ((m_inaccurate || std::fabs(pivot) < kTrustedPivot) && !m_fresh)
    {
        m_inaccurate = true;
        return true;
    }
    // With fresh factors, a pivot about which row and column do not agree is none.
    if (m_inaccurate && accuracy > kFreshAgreement * std::fabs(pivot))
        return false;
    Pivot(position, entering);
    return true;
}

/// The violation per unit of the dual step's length in the space of all variables.
Index DualSimplex::ChooseLeaving() const
{
    Index best = kNoIndex;
    double bestScore = 0.0;
    for (std::size_t k = 0; k < m_squaredViolation.size(); ++k)
    {
        if (m_squaredViolation[k] > bestScore * m_weight[k])
        {
            bestScore = m_squaredViolation[k] / m_weight[k];
            best = static_cast<Index>(k);
        }
    }
    return best;
}

/// The row of the inverse is at hand now, and with it the weight that updates only follow.
/// @return whether that was near enough for the choice to stand.
bool DualSimplex::WeightIsRight(Index position)
{
    double weight = 0.0;
    for (const Index i : m_row.touched)
        weight += m_row.value[i] * m_row.value[i];
    const bool right = m_weight[position] >= kWeightShare * weight;
    m_weight[position] = weight;
    return right;
}

void DualSimplex::NoteViolation(Index position)
{
    const Index v = m_state.head[position];
    const double violation =
        std::max(m_state.lower[v] - m_state.value[v], m_state.value[v] - m_state.upper[v]);
    m_squaredViolation[position] = violation > kFeasibility ? violation * violation : 0.0;
}

void DualSimplex::NoteViolations()
{
    m_squaredViolation.resize(m_state.form.rows);
    for (Index k = 0; k < m_state.form.rows; ++k)
        NoteViolation(k);
}

/// Takes boxed variables to their other bounds, and the basic ones where these take them.
void DualSimplex::Flip(const std::vector<Index>& flips)
{
    if (flips.empty())
        return;
    m_flipped.Reset(m_state.form.rows);
    for (const Index v : flips)
    {
        const double before = m_state.value[v];
        m_state.status[v] =
            m_state.status[v] == BasisStatus::AtLower ? BasisStatus::AtUpper : BasisStatus::AtLower;
        m_state.SetToBound(v);
        m_state.AddColumn(v, before - m_state.value[v], m_flipped);
    }
    m_state.lu.SolveForward(m_flipped);
    for (const Index k : m_flipped.touched)
    {
        m_state.value[m_state.head[k]] += m_flipped.value[k];
        NoteViolation(k);
    }
}

void DualSimplex::Pivot(Index position, Index entering)
{
    const Index leaving = m_state.head[position];
    const bool below = m_state.value[leaving] < m_state.lower[leaving];
    Flip(m_ratioTest.Flips());
    const double bound = below ? m_state.lower[leaving] : m_state.upper[leaving];
    const double pivot = m_column.value[position];
    const double step = (m_state.value[leaving] - bound) / pivot;
    for (const Index k : m_column.touched)
        m_state.value[m_state.head[k]] -= step * m_column.value[k];
    m_state.value[entering] += step;
    m_state.value[leaving] = bound;
    UpdateReducedCosts(entering, leaving);
    UpdateWeights(position);
    m_state.Exchange(position, entering, below ? BasisStatus::AtLower : BasisStatus::AtUpper,
                     pivot);
    for (const Index k : m_column.touched)
        NoteViolation(k);
    m_control.CountPivot(Stage::Double);
    --m_pivotsLeft;
    m_fresh = false;
}

/// What passed zero without a bound to go to is shifted back to it.
void DualSimplex::UpdateReducedCosts(Index entering, Index leaving)
{
    const double ratio = m_state.reduced[entering] / m_pivotRow.value[entering];
    for (const Index v : m_pivotRow.touched)
    {
        const int side = m_state.side[v];
        if (side == 0)
            continue;
        double& reduced = m_state.reduced[v];
        reduced -= ratio * m_pivotRow.value[v];
        const bool wrong = side == 2 ? reduced != 0.0 : side * reduced < 0.0;
        if (wrong && v != entering)
            Shift(v);
    }
    m_state.reduced[entering] = 0.0;
    m_state.reduced[leaving] = -ratio;
}

/// With rows r of the inverse and the entering column a, row k becomes r_k - (a_k / a_p) r_p, whose
/// square needs the products r_k . r_p: one more solve gives them all.
void DualSimplex::UpdateWeights(Index position)
{
    const double pivot = m_column.value[position];
    const double weight = m_weight[position];
    m_state.lu.SolveForward(m_row);
    for (const Index k : m_column.touched)
    {
        if (k == position)
            continue;
        const double share = m_column.value[k] / pivot;
        const double updated = m_weight[k] + share * (share * weight - 2.0 * m_row.value[k]);
        m_weight[k] = std::max(updated, kSmallestWeight + share * share * weight * kSmallestWeight);
    }
    m_weight[position] = std::max(weight / (pivot * pivot), kSmallestWeight);
}

}  // namespace nuv
