/// Substitution over a triangular factor.
#include "Nuv/SparseSimplex/Factors/Triangle.hpp"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <cmath>

namespace nuv
{

void ReachSearch::Resize(Index size)
{
    m_mark.assign(size, 0);
    m_epoch = 0;
}

bool ReachSearch::Run(const EditableVectors& triangle, std::span<const Index> start)
{
    // A share of all numbers, and of the edges for long vectors, beyond which the walk along all
    // steps is no slower.
    const std::size_t most = m_mark.size() / 5;
    m_order.clear();
    if (start.size() > most)
        return false;
    // same bits: after four billion searches; before, it only takes time
    if (m_epoch == std::numeric_limits<std::uint32_t>::max())
        Resize(static_cast<Index>(m_mark.size()));
    ++m_epoch;
    for (const Index root : start)
    {
        if (m_mark[root] == m_epoch)
            continue;
        m_mark[root] = m_epoch;
        m_stack.push_back({root, 0});
        while (!m_stack.empty())
        {
            Frame& frame = m_stack.back();
            const std::span<const Index> successors = triangle.Indices(frame.number);
            while (frame.next < successors.size() && m_mark[successors[frame.next]] == m_epoch)
                ++frame.next;
            if (frame.next < successors.size())
            {
                const Index number = successors[frame.next++];
                m_mark[number] = m_epoch;
                m_stack.push_back({number, 0});
                continue;
            }
            m_order.push_back(frame.number);
            m_stack.pop_back();
            if (m_order.size() > most)
            {
                m_stack.clear();
                return false;
            }
        }
    }
    std::reverse(m_order.begin(), m_order.end());
    return true;
}

namespace
{

/// One step: the unknown by its pivot, and its multiple taken from what is left of later steps.
inline void Eliminate(const EditableVectors& triangle, Index number, const double* pivot,
                      WorkVector& vector)
{
    double& unknown = vector.value[number];
    if (unknown == 0.0)
        return;
    // same bits (-> <=): nothing is as large as that limit
    if (std::fabs(unknown) < tolerance::kNegligible)
    {
        unknown = 0.0;
        return;
    }
    vector.touched.push_back(number);
    if (pivot != nullptr)
        unknown /= pivot[number];
    const double factor = unknown;
    for (const auto [at, entry] : triangle[number])
        vector.value[at] -= entry * factor;
}

}  // namespace

void Substitution::Run(const EditableVectors& triangle, std::span<const Index> order,
                       const double* pivot, ReachSearch& search, WorkVector& vector)
{
    constexpr double kDense = 0.15;
    constexpr double kLatest = 0.1;
    if (vector.touched.empty())
        return;
    if (m_share < kDense && search.Run(triangle, vector.touched))
    {
        vector.touched.clear();
        for (const Index number : search.Order())
            Eliminate(triangle, number, pivot, vector);
    }
    else if (m_direction == Direction::FirstToLast)
    {
        vector.touched.clear();
        for (const Index number : order)
            if (number != kNoIndex)
                Eliminate(triangle, number, pivot, vector);
    }
    else
    {
        vector.touched.clear();
        for (std::size_t step = order.size(); step-- > 0;)
            if (order[step] != kNoIndex)
                Eliminate(triangle, order[step], pivot, vector);
    }
    const double share =
        static_cast<double>(vector.touched.size()) / static_cast<double>(vector.value.size());
    m_share += kLatest * (share - m_share);
}

}  // namespace nuv
