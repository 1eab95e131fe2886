/// Candidates are put into groups that one step meets if each reduced cost may pass zero by a
/// tolerance, as in Harris's test; the groups are passed while violation is left.
#include "Nuv/SparseSimplex/DualRatioTest.hpp"

#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuv
{

using namespace tolerance;

Index DualRatioTest::Choose(const WorkVector& pivotRow, double sign, double violation)
{
    m_flips.clear();
    Collect(pivotRow, sign);
    if (m_candidates.empty())
        return kNoIndex;
    Group(Reachable(violation), violation);
    return ChooseByPivot();
}

/// Those whose reduced cost the step brings towards zero: that move the leaving variable towards
/// its bound when they move off their own.
void DualRatioTest::Collect(const WorkVector& pivotRow, double sign)
{
    m_candidates.clear();
    for (const Index v : pivotRow.touched)
    {
        const int side = m_state.side[v];
        const double entry = sign * pivotRow.value[v];
        const double pivot = side == 2 ? std::fabs(entry) : side * entry;
        if (pivot > kSmallestPivot && std::isfinite(pivot) && std::isfinite(m_state.reduced[v]))
            m_candidates.push_back({v, pivot, std::fabs(m_state.reduced[v])});
    }
}

/// Infinite for a variable with one bound or none.
double DualRatioTest::ViolationTaken(const Candidate& candidate) const
{
    return candidate.pivot *
           (m_state.upper[candidate.variable] - m_state.lower[candidate.variable]);
}

/// How far the duals may go before the first of these has passed zero by the tolerance.
double DualRatioTest::ShortestStep(std::size_t begin, std::size_t end) const
{
    double step = kInfinity;
    for (std::size_t k = begin; k < end; ++k)
        step = std::min(step, (m_candidates[k].distance + kDualSlack) / m_candidates[k].pivot);
    return step;
}

/// Brings those that reach zero within the step to the front. Divided as the step is: what made the
/// shortest step is then always among them, however its quotient was rounded. @return their end.
std::size_t DualRatioTest::MoveToFront(std::size_t begin, std::size_t end, double step)
{
    for (std::size_t k = begin; k < end; ++k)
    {
        if (m_candidates[k].distance / m_candidates[k].pivot <= step)
            std::swap(m_candidates[begin++], m_candidates[k]);
    }
    return begin;
}

/// Brings to the front what the step can reach at all, by steps that grow tenfold, so that the
/// grouping looks at few candidates. @return their end.
std::size_t DualRatioTest::Reachable(double violation)
{
    const std::size_t count = m_candidates.size();
    std::size_t end = 0;
    while (end < count && !(violation < 0.0))
    {
        const std::size_t begin = end;
        end = MoveToFront(begin, count, 10.0 * ShortestStep(begin, count));
        for (std::size_t k = begin; k < end; ++k)
            violation -= ViolationTaken(m_candidates[k]);
    }
    return end;
}

void DualRatioTest::Group(std::size_t end, double violation)
{
    m_groupEnd.clear();
    for (std::size_t begin = 0; begin < end && !(violation < 0.0);)
    {
        const std::size_t next = MoveToFront(begin, end, ShortestStep(begin, end));
        for (std::size_t k = begin; k < next; ++k)
            violation -= ViolationTaken(m_candidates[k]);
        m_groupEnd.push_back(next);
        begin = next;
    }
}

/// The largest pivot of the last group, or of an earlier one if that is too small to be safe; the
/// groups before it are flipped.
Index DualRatioTest::ChooseByPivot()
{
    double largest = 0.0;
    for (std::size_t k = 0; k < m_groupEnd.back(); ++k)
        largest = std::max(largest, m_candidates[k].pivot);
    const double wanted = std::min(kSafePivotShare * largest, kSafePivot);
    // Some group holds the largest.
    for (std::size_t group = m_groupEnd.size() - 1;; --group)
    {
        const std::size_t begin = group == 0 ? 0 : m_groupEnd[group - 1];
        std::size_t best = begin;
        for (std::size_t k = begin; k < m_groupEnd[group]; ++k)
        {
            if (m_candidates[k].pivot > m_candidates[best].pivot)
                best = k;
        }
        if (m_candidates[best].pivot < wanted)
            continue;
        for (std::size_t k = 0; k < begin; ++k)
            m_flips.push_back(m_candidates[k].variable);
        return m_candidates[best].variable;
    }
}

}  // namespace nuv
