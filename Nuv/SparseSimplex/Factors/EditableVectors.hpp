/// Sparse vectors that change one by one: the columns or the rows of a triangular factor under
/// updates, or of a matrix that is being reduced.
#pragma once

#include "Nuv/Algebra/SparseMatrix.hpp"

#include <span>
#include <vector>

namespace nuv
{

/// Sparse vectors known by the number of their row or column, each with room to grow.
class EditableVectors
{
public:
    /// `vectors` by step, those of step k belonging to number order[k].
    void Load(const SparseVectors<double>& vectors, std::span<const Index> order);
    /// `vectors` by number.
    void Load(const SparseVectors<double>& vectors);
    /// The same entries by the other direction.
    void LoadTransposed(const EditableVectors& other);

    [[nodiscard]] SparseView<double> operator[](Index number) const noexcept
    {
        const Range& range = m_range[number];
        return {std::span(m_index).subspan(range.begin, range.size),
                std::span(m_value).subspan(range.begin, range.size)};
    }
    [[nodiscard]] std::span<const Index> Indices(Index number) const noexcept
    {
        const Range& range = m_range[number];
        return std::span(m_index).subspan(range.begin, range.size);
    }
    [[nodiscard]] Index Count() const noexcept
    {
        return static_cast<Index>(m_range.size());
    }

    /// @return the entry `at` of a vector, null if it has none there.
    [[nodiscard]] double* Find(Index number, Index at) noexcept;
    void Append(Index number, Index at, double entry);
    /// Takes the entry `at` out of a vector that holds it.
    void Remove(Index number, Index at) noexcept;
    void Empty(Index number) noexcept;

private:
    struct Range
    {
        std::size_t begin = 0;  // same bits: set with the vector
        std::size_t size = 0;
        std::size_t room = 0;
    };
    void MoveToEnd(Range& range);

    std::vector<Range> m_range;
    std::vector<Index> m_index;
    std::vector<double> m_value;
};

}  // namespace nuv
