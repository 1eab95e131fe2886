/// The two ratio tests of the primal simplex: how far the entering variable can go, and which basic
/// variable it meets there.
#include "Nuv/SparseSimplex/PrimalSimplex.hpp"
#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

using namespace tolerance;

/// Harris's two passes (Harris 1973): the first finds how far a step may go if every bound gives
/// way by the tolerance, the second takes the largest pivot within that step.
PrimalSimplex::Step PrimalSimplex::TestRatiosFeasible(Index entering, double direction) const
{
    double longest = kInfinity;
    for (const Index k : m_column.touched)
    {
        const double rate = -direction * m_column.value[k];
        if (std::fabs(rate) <= kSmallestPivot)
            continue;
        const Index v = m_state.head[k];
        const bool falls = rate < 0.0;  // same bits (-> <=): what moves has a rate
        const double bound = falls ? m_state.lower[v] : m_state.upper[v];
        if (std::fabs(bound) == kInfinity)
            continue;
        const double room =
            std::max(0.0, falls ? m_state.value[v] - bound : bound - m_state.value[v]);
        longest = std::min(longest, (room + kFeasibility) / std::fabs(rate));
    }
    const double flip = m_state.upper[entering] - m_state.lower[entering];
    if (flip <= longest && flip < kInfinity)
        return {Step::Kind::Flip, kNoIndex, flip, BasisStatus::AtLower};
    if (longest == kInfinity)
        return {Step::Kind::Unbounded, kNoIndex, 0.0, BasisStatus::AtLower};

    Step best;
    double largest = 0.0;
    for (const Index k : m_column.touched)
    {
        const double rate = -direction * m_column.value[k];
        if (std::fabs(rate) <= std::max(kSmallestPivot, largest))
            continue;
        const Index v = m_state.head[k];
        const bool falls = rate < 0.0;  // same bits (-> <=): what moves has a rate
        const double bound = falls ? m_state.lower[v] : m_state.upper[v];
        const double room = falls ? m_state.value[v] - bound : bound - m_state.value[v];
        if (!(room <= longest * std::fabs(rate)))
            continue;
        largest = std::fabs(rate);
        best = {Step::Kind::Pivot, k, std::max(0.0, room / largest),
                falls ? BasisStatus::AtLower : BasisStatus::AtUpper};
    }
    if (largest < kTrustedPivot && !m_fresh)
        best.kind = Step::Kind::Reject;
    return best;
}

PrimalSimplex::Step PrimalSimplex::TestRatiosInfeasible(Index entering, double direction)
{
    CollectBreakpoints(direction);
    return WalkBreakpoints(-std::fabs(m_state.reduced[entering]),
                           m_state.upper[entering] - m_state.lower[entering]);
}

/// The sum of violations along the step is convex and piecewise linear; its slope grows by the rate
/// of a variable wherever that variable comes within its bounds or leaves them.
void PrimalSimplex::CollectBreakpoints(double direction)
{
    m_breakpoints.clear();
    for (const Index k : m_column.touched)
    {
        const double rate = -direction * m_column.value[k];
        const double speed = std::fabs(rate);
        if (speed <= kSmallestPivot)
            continue;
        const Index v = m_state.head[k];
        const bool falls = rate < 0.0;  // same bits (-> <=): what moves has a rate
        const int away = falls ? -1 : 1;
        // Moving away from the violated bound meets nothing more.
        if (m_violation[k] == away)
            continue;
        const double near = falls ? m_state.upper[v] : m_state.lower[v];
        const double far = falls ? m_state.lower[v] : m_state.upper[v];
        if (m_violation[k] == -away)
            m_breakpoints.push_back({std::fabs(m_state.value[v] - near) / speed, speed, k, falls});
        if (std::fabs(far) < kInfinity)
        {
            const double room = falls ? m_state.value[v] - far : far - m_state.value[v];
            m_breakpoints.push_back({std::max(0.0, room / speed), speed, k, !falls});
        }
    }
}

PrimalSimplex::Step PrimalSimplex::WalkBreakpoints(double slope, double flip)
{
    const auto later = [](const Breakpoint& a, const Breakpoint& b) { return a.at > b.at; };
    std::make_heap(m_breakpoints.begin(), m_breakpoints.end(), later);
    std::size_t left = m_breakpoints.size();
    double end = kInfinity;
    while (left > 0 && slope < 0.0)
    {
        std::pop_heap(m_breakpoints.begin(), m_breakpoints.begin() + static_cast<long>(left),
                      later);
        --left;
        slope += m_breakpoints[left].slope;
        end = m_breakpoints[left].at;
    }
    if (flip < kInfinity && flip <= end)
        return {Step::Kind::Flip, kNoIndex, flip, BasisStatus::AtLower};
    if (slope < 0.0)
        return {};
    // What was passed lies in [left, size), the last one first. Ties at the end, and slightly
    // beyond it within the tolerance, are broken by the size of the pivot; a tiny pivot is avoided
    // by stopping short.
    double largest = 0.0;
    for (std::size_t at = left; at < m_breakpoints.size(); ++at)
        largest = std::max(largest, m_breakpoints[at].slope);
    const double wanted = std::min(kPivotShare * largest, kEnoughPivot);
    Step best;
    double bestSlope = 0.0;
    for (std::size_t at = left; at < m_breakpoints.size(); ++at)
    {
        const Breakpoint& point = m_breakpoints[at];
        if (best.position != kNoIndex && point.at < best.length - kFeasibility / point.slope)
            break;
        if (point.slope < std::max(wanted, bestSlope))
            continue;
        bestSlope = point.slope;
        best = {Step::Kind::Pivot, point.position, point.at,
                point.atUpper ? BasisStatus::AtUpper : BasisStatus::AtLower};
    }
    if (bestSlope < kTrustedPivot && !m_fresh)
        best.kind = Step::Kind::Reject;
    return best;
}

}  // namespace nuv
