/// What the dual simplex does before its pivots and whenever factors are made anew: perturbed
/// costs, the first phase, and reduced costs of the wrong sign.
#include "Nuv/SparseSimplex/DualSimplex.hpp"

#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

using namespace tolerance;

namespace
{

/// Bounds of the first phase: a box where a wrong sign has a price, nothing where it has none.
void BoxForPhaseOne(double& lower, double& upper)
{
    const bool hasLower = lower > -kInfinity;
    const bool hasUpper = upper < kInfinity;
    lower = hasLower ? 0.0 : hasUpper ? -1.0 : -kFreeBox;
    upper = hasUpper ? 0.0 : hasLower ? 1.0 : kFreeBox;
}

/// A start that needs more is not nearly optimal, and nothing here breaks a tie for good. Where
/// columns are many a pivot of the dual simplex costs more than one of the primal, and a run that
/// is not over by then is left to that one.
std::uint64_t MostPivots(const ScaledForm& form, bool isFromAnyBasis)
{
    constexpr std::uint64_t kWide = 5;
    const std::uint64_t rows = form.rows;
    const std::uint64_t perRow = isFromAnyBasis && form.columns <= kWide * rows ? 50 : 2;
    return 1000 + perRow * rows;
}

}  // namespace

DualSimplex::DualSimplex(SimplexState& state, SolveControl& control)
    : m_state(state), m_control(control), m_ratioTest(state)
{
}

SimplexVerdict DualSimplex::Run(Start start)
{
    m_pivotsLeft = MostPivots(m_state.form, start == Start::Perturbed);
    m_weight.assign(m_state.form.rows, 1.0);
    if (start == Start::Perturbed)
    {
        m_state.Refactorise();
        ComputeReducedCosts();
        PerturbCosts(kCostPush);
        if (WantsPhaseOne())
            RunPhaseOne();
        return RunPerturbed();
    }
    return RunPhase(start == Start::Factorised);
}

/// Most runs are over after two pivots a row, some after four. One that is not after five perturbs
/// costs once more, by much more, and goes on.
SimplexVerdict DualSimplex::RunPerturbed()
{
    const std::uint64_t few = 1000 + 5 * std::uint64_t{m_state.form.rows};
    const std::uint64_t rest = m_pivotsLeft > few ? m_pivotsLeft - few : 0;
    m_pivotsLeft -= rest;
    const SimplexVerdict verdict = RunPhase();
    if (verdict != SimplexVerdict::Numerical || m_pivotsLeft > 0 || rest == 0)
        return verdict;
    m_pivotsLeft = rest;
    PerturbCosts(kLargeCostPush);
    return RunPhase();
}

void DualSimplex::StartAfresh()
{
    // Factorising changes the order of positions.
    std::vector<double> weight(m_state.form.Variables(), 1.0);
    for (Index k = 0; k < m_state.form.rows; ++k)
        weight[m_state.head[k]] = m_weight[k];
    m_state.Refactorise();
    for (Index k = 0; k < m_state.form.rows; ++k)
        m_weight[k] = weight[m_state.head[k]];
    Prepare();
}

/// All but the factors.
void DualSimplex::Prepare()
{
    ComputeReducedCosts();
    MakeDualFeasible();
    NoteViolations();
    m_fresh = m_state.lu.Updates() == 0;
    m_inaccurate = false;
}

void DualSimplex::ComputeReducedCosts()
{
    std::vector<double> basicCost(m_state.form.rows);
    for (Index k = 0; k < m_state.form.rows; ++k)
        basicCost[k] = m_state.cost[m_state.head[k]];
    m_state.ComputeReducedCosts(m_state.cost, basicCost);
}

/// Moves reduced costs away from zero by small pseudo-random amounts, so that few of them reach it
/// at the same time. Costs of basic variables stay, so a basis that is dual feasible remains it.
void DualSimplex::PerturbCosts(double share)
{
    double largest = 0.0;
    for (const double cost : m_state.cost)
        largest = std::max(largest, std::fabs(cost));
    // Far larger costs than others should not drown those.
    const double size = share * (largest > 100.0 ? std::sqrt(std::sqrt(largest)) : largest);
    std::uint64_t random = 0x9E3779B97F4A7C15u;
    for (Index v = 0; v < m_state.form.columns; ++v)
    {
        random ^= random << 13;
        random ^= random >> 7;
        random ^= random << 17;
        const bool hasLower = m_state.lower[v] > -kInfinity;
        const bool hasUpper = m_state.upper[v] < kInfinity;
        if (m_state.IsFixed(v) || m_state.status[v] == BasisStatus::Basic ||
            (!hasLower && !hasUpper))
            continue;
        const double fraction = static_cast<double>(random >> 11) * 0x1p-53;
        const double push = (1.0 + fraction) * size * (1.0 + std::fabs(m_state.cost[v]));
        const bool up = hasLower && (!hasUpper || m_state.reduced[v] >= 0.0);
        m_state.cost[v] += up ? push : -push;
        m_state.reduced[v] += up ? push : -push;
    }
    m_shifted = true;
}

/// Whether there is a reduced cost of the wrong sign that no flip makes right.
bool DualSimplex::WantsPhaseOne() const
{
    for (Index v = 0; v < m_state.form.Variables(); ++v)
    {
        const bool boxed = m_state.lower[v] > -kInfinity && m_state.upper[v] < kInfinity;
        if (!boxed && DualInfeasibility(m_state.status[v], m_state.reduced[v]) > kOptimality)
            return true;
    }
    return false;
}

/// Solves the same program with boxes in the place of bounds: a wrong sign of a reduced cost then
/// costs something, and where the optimum is zero none is wrong (Koberstein 2005, section 4.4).
void DualSimplex::RunPhaseOne()
{
    std::vector<double> lower = m_state.lower;
    std::vector<double> upper = m_state.upper;
    for (Index v = 0; v < m_state.form.Variables(); ++v)
        BoxForPhaseOne(m_state.lower[v], m_state.upper[v]);
    m_boxed = true;
    for (Index v = 0; v < m_state.form.Variables(); ++v)
    {
        if (m_state.status[v] == BasisStatus::Free)
            m_state.status[v] = BasisStatus::AtLower;
        m_state.SetToBound(v);
    }
    (void)RunPhase();  // what it leaves wrong is shifted
    m_boxed = false;
    m_state.lower = std::move(lower);
    m_state.upper = std::move(upper);
    for (Index v = 0; v < m_state.form.Variables(); ++v)
    {
        const bool hasLower = m_state.lower[v] > -kInfinity;
        const bool hasUpper = m_state.upper[v] < kInfinity;
        if (m_state.status[v] == BasisStatus::Basic)
            continue;
        if (!hasLower && !hasUpper)
            m_state.status[v] = BasisStatus::Free;
        else if (!hasUpper || (hasLower && m_state.reduced[v] >= 0.0))
            m_state.status[v] = BasisStatus::AtLower;
        else
            m_state.status[v] = BasisStatus::AtUpper;
        m_state.SetToBound(v);
    }
}

void DualSimplex::MakeDualFeasible()
{
    bool flipped = false;
    for (Index v = 0; v < m_state.form.Variables(); ++v)
    {
        if (m_state.IsFixed(v) || DualInfeasibility(m_state.status[v], m_state.reduced[v]) <= 0.0)
            continue;
        const bool boxed = m_state.lower[v] > -kInfinity && m_state.upper[v] < kInfinity;
        // same bits (-> >=): nothing is as large as that limit
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

}  // namespace nuv
