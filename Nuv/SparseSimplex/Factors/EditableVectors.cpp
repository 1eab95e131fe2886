/// Storage in one block, a vector without room moving to its end.
#include "Nuv/SparseSimplex/Factors/EditableVectors.hpp"

namespace nuv
{

void EditableVectors::Load(const SparseVectors<double>& vectors, std::span<const Index> order)
{
    m_range.assign(order.size(), {});
    m_index = vectors.index;
    m_value = vectors.value;
    for (Index k = 0; k < vectors.Count(); ++k)
    {
        const std::size_t size = vectors.start[k + 1] - vectors.start[k];
        m_range[order[k]] = {vectors.start[k], size, size};
    }
}

void EditableVectors::Load(const SparseVectors<double>& vectors)
{
    m_range.resize(vectors.Count());
    m_index = vectors.index;
    m_value = vectors.value;
    for (Index k = 0; k < vectors.Count(); ++k)
    {
        const std::size_t size = vectors.start[k + 1] - vectors.start[k];
        m_range[k] = {vectors.start[k], size, size};
    }
}

void EditableVectors::LoadTransposed(const EditableVectors& other)
{
    m_range.assign(other.Count(), {});
    for (Index k = 0; k < other.Count(); ++k)
    {
        for (const Index at : other.Indices(k))
            ++m_range[at].room;
    }
    std::size_t end = 0;
    for (Range& range : m_range)
    {
        range.begin = end;
        end += range.room;
    }
    m_index.resize(end);
    m_value.resize(end);
    for (Index k = 0; k < other.Count(); ++k)
    {
        for (const auto [at, entry] : other[k])
        {
            Range& range = m_range[at];
            m_index[range.begin + range.size] = k;
            m_value[range.begin + range.size] = entry;
            ++range.size;
        }
    }
}

double* EditableVectors::Find(Index number, Index at) noexcept
{
    const Range& range = m_range[number];
    for (std::size_t place = range.begin; place < range.begin + range.size; ++place)
    {
        if (m_index[place] == at)
            return &m_value[place];
    }
    return nullptr;
}

void EditableVectors::Append(Index number, Index at, double entry)
{
    Range& range = m_range[number];
    if (range.size == range.room)
        MoveToEnd(range);
    m_index[range.begin + range.size] = at;
    m_value[range.begin + range.size] = entry;
    ++range.size;
}

void EditableVectors::MoveToEnd(Range& range)
{
    const std::size_t begin = m_index.size();
    const std::size_t room = 2 * range.size + 4;  // same bits: room alone
    m_index.resize(begin + room);
    m_value.resize(begin + room);
    for (std::size_t k = 0; k < range.size; ++k)
    {
        m_index[begin + k] = m_index[range.begin + k];
        m_value[begin + k] = m_value[range.begin + k];
    }
    range = {begin, range.size, room};
}

void EditableVectors::Remove(Index number, Index at) noexcept
{
    Range& range = m_range[number];
    std::size_t place = range.begin;
    while (m_index[place] != at)
        ++place;
    --range.size;
    m_index[place] = m_index[range.begin + range.size];
    m_value[place] = m_value[range.begin + range.size];
}

void EditableVectors::Empty(Index number) noexcept
{
    m_range[number].size = 0;
}

}  // namespace nuv
