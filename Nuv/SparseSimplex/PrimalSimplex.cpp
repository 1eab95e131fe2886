/// One step of the primal simplex: the entering variable by its reduced cost, its column, the ratio
/// test over that column (PrimalRatios.cpp), and the updates; and what happens where it stalls.
#include "Nuv/SparseSimplex/PrimalSimplex.hpp"

#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

using namespace tolerance;

PrimalSimplex::PrimalSimplex(SimplexState& state, SolveControl& control)
    : m_state(state),
      m_control(control),
      m_violation(state.form.rows),
      m_banned(state.form.Variables())
{
}

SimplexVerdict PrimalSimplex::Run(bool perturb)
{
    m_perturb = perturb;
    m_stalled = 0;
    m_relapses = 0;
    m_starts = 0;
    m_firstPivot = m_control.Pivots(Stage::Double);
    m_phaseOne = true;
    FixEmptyColumns();
    ResetWeights();
    StartAfresh();
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    while (GetsAnywhere() && Iterate(verdict))
    {
    }
    return verdict;
}

/// Values that are not known to the tolerance may go in and out of their bounds for ever, and of a
/// basis that is nearly singular fresh factors may drop what the last pivot brought in, again and
/// again.
bool PrimalSimplex::GetsAnywhere() const noexcept
{
    constexpr int kMostRelapses = 20;           // same bits: one of many right choices
    constexpr std::uint64_t kMostStarts = 100;  // same bits: one of many right choices
    const std::uint64_t pivots = m_control.Pivots(Stage::Double) - m_firstPivot;
    return m_relapses <= kMostRelapses && m_starts <= kMostStarts + pivots / 4;
}

void PrimalSimplex::FixEmptyColumns()
{
    for (Index v = 0; v < m_state.form.columns; ++v)
    {
        const double cost = m_state.cost[v];
        const bool grows = cost < 0.0;  // same bits (-> <=): without a cost it stays
        const double better = grows ? m_state.upper[v] : m_state.lower[v];
        if (cost == 0.0 || std::fabs(better) == kInfinity ||
            m_state.status[v] == BasisStatus::Basic || !m_state.form.Column(v).empty())
            continue;
        m_state.status[v] = grows ? BasisStatus::AtUpper : BasisStatus::AtLower;
        m_state.SetToBound(v);
    }
}

void PrimalSimplex::StartAfresh()
{
    ++m_starts;
    m_state.Refactorise();
    std::fill(m_banned.begin(), m_banned.end(), static_cast<signed char>(0));
    const bool wasFeasible = !m_phaseOne;
    m_phaseOne = FindViolations();
    m_relapses += wasFeasible && m_phaseOne ? 1 : 0;
    std::vector<double> basicCost(m_state.form.rows);
    if (m_phaseOne)
    {
        std::copy(m_violation.begin(), m_violation.end(), basicCost.begin());
        const std::vector<double> none(m_state.form.Variables(), 0.0);
        m_state.ComputeReducedCosts(none, basicCost);
    }
    else
    {
        for (Index k = 0; k < m_state.form.rows; ++k)
            basicCost[k] = m_state.cost[m_state.head[k]];
        m_state.ComputeReducedCosts(m_state.cost, basicCost);
    }
    m_fresh = true;
    m_inaccurate = false;
}

bool PrimalSimplex::FindViolations()
{
    m_violated = 0;
    for (Index k = 0; k < m_state.form.rows; ++k)
    {
        m_violation[k] = static_cast<signed char>(ViolationOf(k));
        m_violated += m_violation[k] != 0 ? 1 : 0;
    }
    return m_violated > 0;
}

int PrimalSimplex::ViolationOf(Index position) const
{
    const Index v = m_state.head[position];
    const double value = m_state.value[v];
    return value < m_state.lower[v] - kFeasibility   ? -1
           : value > m_state.upper[v] + kFeasibility ? 1
                                                     : 0;
}

double PrimalSimplex::ProgressValue() const
{
    const SimplexState& state = m_state;
    if (m_phaseOne)
        return state.SumOfViolations();
    double sum = 0.0;
    for (Index v = 0; v < state.form.Variables(); ++v)
        sum += state.cost[v] * state.value[v];
    return sum / state.form.costScale + state.form.offset;
}

void PrimalSimplex::ResetWeights()
{
    m_weight.assign(m_state.form.Variables(), 1.0);
}

bool PrimalSimplex::Iterate(SimplexVerdict& verdict)
{
    if (m_inaccurate || m_state.WantsRefactorisation())
        StartAfresh();
    const Index entering = ChooseEntering();
    if (entering == kNoIndex)
        return Conclude(verdict);
    if (!m_control.MayPivot(Stage::Double, !m_phaseOne,
                            m_control.AsksForObjective() ? ProgressValue() : std::nan("")))
    {
        verdict = SimplexVerdict::Stopped;
        return false;
    }
    m_state.SolveColumn(entering, m_column);
    const double cost = EnteringCost(entering);
    const double error = std::fabs(cost - m_state.reduced[entering]);
    m_state.reduced[entering] = cost;
    if (error > kAgreement * (1.0 + std::fabs(cost)) && !m_fresh)
    {
        StartAfresh();
        return true;
    }
    if (std::fabs(cost) <= kOptimality)
        return true;
    const bool grows = cost < 0.0;  // same bits (-> <=): it is beyond the tolerance
    const double direction = grows ? 1.0 : -1.0;
    const Step step = m_phaseOne ? TestRatiosInfeasible(entering, direction)
                                 : TestRatiosFeasible(entering, direction);
    if (step.kind == Step::Kind::Unbounded || step.kind == Step::Kind::Reject)
    {
        if (!m_fresh)
        {
            StartAfresh();
            return true;
        }
        // In phase one nothing is, since the sum of violations is not.
        if (step.kind == Step::Kind::Unbounded)
        {
            verdict = SimplexVerdict::Unbounded;
            return false;
        }
        m_banned[entering] = 1;  // same bits (-> 2): what is not 0 is a mark
        return true;
    }
    m_control.CountPivot(Stage::Double);
    Move(entering, direction, step.length);
    NoteProgress(step.length * std::fabs(cost));
    if (step.kind == Step::Kind::Flip)
    {
        m_state.status[entering] = grows ? BasisStatus::AtUpper : BasisStatus::AtLower;
        m_state.SetToBound(entering);
    }
    else
    {
        Pivot(entering, step);
    }
    m_fresh = false;
    if (m_phaseOne)
        UpdateViolations();
    return true;
}

/// No candidate is left: a verdict if the numbers are fresh, otherwise a second look.
bool PrimalSimplex::Conclude(SimplexVerdict& verdict)
{
    if (!m_fresh)
    {
        StartAfresh();
        return true;
    }
    const bool banned =
        std::any_of(m_banned.begin(), m_banned.end(), [](signed char mark) { return mark != 0; });
    if (banned)
        verdict = SimplexVerdict::Numerical;
    else
        verdict = m_phaseOne ? SimplexVerdict::Infeasible : SimplexVerdict::Optimal;
    return false;
}

Index PrimalSimplex::ChooseEntering() const
{
    Index best = kNoIndex;
    double bestScore = 0.0;
    const std::size_t count = m_state.form.Variables();
    for (std::size_t v = 0; v < count; ++v)
    {
        const double cost = m_state.reduced[v];
        if (std::fabs(cost) <= kOptimality)
            continue;
        const int side = m_state.side[v];
        // same bits (-> >=): a cost beyond the tolerance is not 0
        if (side == 0 || (side != 2 && side * cost > 0.0))
            continue;
        const double score = cost * cost / m_weight[v];
        if (score > bestScore && m_banned[v] == 0)
        {
            bestScore = score;
            best = static_cast<Index>(v);
        }
    }
    return best;
}

/// The reduced cost of the entering variable from its column, more accurate than the updated one.
double PrimalSimplex::EnteringCost(Index entering) const
{
    double cost = m_phaseOne ? 0.0 : m_state.cost[entering];
    for (const Index k : m_column.touched)
        cost -= m_column.value[k] *
                (m_phaseOne ? static_cast<double>(m_violation[k]) : m_state.cost[m_state.head[k]]);
    return cost;
}

void PrimalSimplex::Move(Index entering, double direction, double length)
{
    if (length == 0.0)
        return;
    const double step = direction * length;
    for (const Index k : m_column.touched)
        m_state.value[m_state.head[k]] -= step * m_column.value[k];
    m_state.value[entering] += step;
}

void PrimalSimplex::Pivot(Index entering, const Step& step)
{
    const Index leaving = m_state.head[step.position];
    m_state.SolveUnitRow(step.position, m_row);
    m_state.PriceRow(m_row, m_pivotRow);
    // A bound is moved to where the variable is rather than the variable to its bound: the basic
    // values stay consistent, and the difference is within the tolerance.
    double& bound = step.leavingStatus == BasisStatus::AtLower ? m_state.lower[leaving]
                                                               : m_state.upper[leaving];
    if (bound != m_state.value[leaving])
    {
        // same bits (-> >=, jne never): bounds that have moved are taken back in the end
        if (std::fabs(bound - m_state.value[leaving]) > kSnap && !m_phaseOne)
        {
            bound = m_state.value[leaving];
            m_boundsMoved = true;
        }
        else
            m_state.value[leaving] = bound;
    }
    UpdateReducedCosts(entering, leaving, m_column.value[step.position]);
    if (m_phaseOne)
    {
        // At rest it is within its bounds, so it no longer has a phase-one cost.
        m_state.reduced[leaving] -= static_cast<double>(m_violation[step.position]);
        // same bits: a count that does not come to zero is made anew when nothing enters
        m_violated -= m_violation[step.position] != 0 ? 1 : 0;
        m_violation[step.position] = 0;
    }
    const double pivot = m_column.value[step.position];
    m_state.Exchange(step.position, entering, step.leavingStatus, pivot);
    const double accuracy = std::fabs(m_pivotRow.value[entering] - pivot);
    m_inaccurate = accuracy > kAgreement * (1.0 + std::fabs(pivot));
}

void PrimalSimplex::UpdateReducedCosts(Index entering, Index leaving, double pivot)
{
    const double ratio = m_state.reduced[entering] / pivot;
    const double enteringWeight = m_weight[entering];
    for (const Index v : m_pivotRow.touched)
    {
        if (m_state.side[v] == 0)
            continue;
        const double entry = m_pivotRow.value[v];
        m_state.reduced[v] -= ratio * entry;
        const double share = entry / pivot;
        m_weight[v] = std::max(m_weight[v], share * share * enteringWeight);
    }
    m_state.reduced[entering] = 0.0;
    m_state.reduced[leaving] = -ratio;
    m_weight[leaving] = std::max(enteringWeight / (pivot * pivot), 1.0);
    if (m_weight[leaving] > kLargestWeight)
        ResetWeights();
}

/// Basic variables that came within their bounds, or passed them, change the phase-one costs, and
/// with them the reduced costs. Only those of the last column have moved.
void PrimalSimplex::UpdateViolations()
{
    m_change.Reset(m_state.form.rows);
    for (const Index k : m_column.touched)
    {
        const int now = ViolationOf(k);
        if (now == m_violation[k])  // same bits (never): nothing changes by zero
            continue;
        // same bits: a count that does not come to zero is made anew when nothing enters
        m_violated += (now != 0 ? 1 : 0) - (m_violation[k] != 0 ? 1 : 0);
        m_change.Set(k, static_cast<double>(now - m_violation[k]));
        m_violation[k] = static_cast<signed char>(now);
    }
    if (m_violated == 0)
    {
        m_phaseOne = false;
        StartAfresh();
        ResetWeights();
        return;
    }
    if (m_change.touched.empty())
        return;
    m_state.lu.SolveBackward(m_change);
    m_state.PriceRow(m_change, m_pivotRow);
    for (const Index v : m_pivotRow.touched)
    {
        if (m_state.side[v] != 0)
            m_state.reduced[v] -= m_pivotRow.value[v];
    }
}

void PrimalSimplex::NoteProgress(double gain)
{
    m_stalled = gain > kProgress ? 0 : m_stalled + 1;
    const int patience = 20;
    if (m_stalled > patience && m_perturb)
    {
        PushBoundsApart();
        m_stalled = 0;
    }
}

/// Widens the bounds of basic variables, so that ties in the ratio test break and every step has a
/// length. Nonbasic variables stay where they are, which keeps a feasible basis feasible.
void PrimalSimplex::PushBoundsApart()
{
    for (const Index v : m_state.head)
    {
        for (double* bound : {&m_state.lower[v], &m_state.upper[v]})
        {
            m_random ^= m_random << 13;
            m_random ^= m_random >> 7;
            m_random ^= m_random << 17;
            const double fraction = static_cast<double>(m_random >> 11) * 0x1p-53;
            const double push = (1.0 + fraction) * kPush * (1.0 + std::fabs(*bound));
            *bound += bound == &m_state.lower[v] ? -push : push;  // infinity stays
        }
    }
    m_boundsMoved = true;
}

}  // namespace nuv
