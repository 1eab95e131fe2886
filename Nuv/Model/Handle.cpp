/// What handles need seldom: a new origin, the origin of an index that is not of the last stretch,
/// and the removal of places.
#include "Nuv/Model/Handle.hpp"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <numeric>

namespace nuv
{

std::uint32_t HandleOrigins::NewOrigin() noexcept
{
    static std::atomic<std::uint32_t> last{0};
    return ++last;
}

std::uint32_t HandleOrigins::OriginOfEarlier(std::uint32_t index) const noexcept
{
    const auto behind =
        std::upper_bound(m_stretches.begin(), m_stretches.end(), index,
                         [](std::uint32_t at, const Stretch& of) { return at < of.begin; });
    return std::prev(behind)->origin;
}

void HandleOrigins::Remove(const std::vector<bool>& marked)
{
    if (m_count == m_made)
    {
        m_indexAt.resize(m_count);
        std::iota(m_indexAt.begin(), m_indexAt.end(), 0u);
        m_placeOf = m_indexAt;
    }
    std::uint32_t kept = 0;
    for (std::uint32_t place = 0; place < m_count; ++place)
    {
        const std::uint32_t index = m_indexAt[place];
        m_placeOf[index] = marked[place] ? Variable::NoIndex : kept;
        if (!marked[place])
            m_indexAt[kept++] = index;
    }
    m_indexAt.resize(kept);
    m_count = kept;
}

void HandleOrigins::TakeBack(std::uint32_t count) noexcept
{
    const bool isStored = m_count != m_made;
    m_made -= m_count - count;
    m_count = count;
    if (isStored)
    {
        m_indexAt.resize(m_count);
        m_placeOf.resize(m_made);
    }
    // What is added from now on has another origin.
    m_isOpen = false;
    while (!m_stretches.empty() && m_stretches.back().begin >= m_made)
        m_stretches.pop_back();
}

}  // namespace nuv
