/// LU factors of a sparse basis matrix with product-form updates, over any field: doubles for the
/// simplex, residues modulo a prime for p-adic lifting, rationals where all is small. Pivots are
/// chosen by Markowitz cost among entries that pass the field's threshold, so singleton rows and
/// columns go first and the work is in what remains.
/// Invariant: column c of the factorised matrix pivots in row position[c] and is known by that
/// number from then on; SolveForward takes a vector indexed by rows and leaves one indexed by
/// positions, SolveBackward the reverse.
#pragma once

#include "Nuv/Algebra/SparseMatrix.hpp"

#include <utility>
#include <vector>

namespace nuv
{

template <class Field>
class SparseLu
{
public:
    using Value = typename Field::Value;

    /// A column that had no pivot, and the row whose logical (minus the unit vector) took its
    /// place.
    struct Replacement
    {
        Index column;
        Index row;
    };

    explicit SparseLu(Field field = Field()) : m_field(std::move(field)) {}

    [[nodiscard]] const Field& GetField() const noexcept
    {
        return m_field;
    }

    /// Factorises the square matrix of these columns and forgets earlier updates.
    /// @return the columns replaced because the matrix is singular; none if it is not.
    std::vector<Replacement> Factorise(const SparseVectors<Value>& columns,
                                       std::vector<Index>& position);

    /// Overwrites b, by rows, with the solution x of B x = b, by positions.
    void SolveForward(std::vector<Value>& vector) const;

    /// Overwrites c, by positions, with the solution y of B' y = c, by rows.
    void SolveBackward(std::vector<Value>& vector) const;

    /// Replaces the column at `position` by one whose SolveForward is `solved`.
    void Update(Index position, const std::vector<Value>& solved);

    [[nodiscard]] Index Updates() const noexcept
    {
        return m_etas.Count();
    }
    [[nodiscard]] std::size_t FactorEntries() const noexcept
    {
        return m_lower.index.size() + m_upperColumns.index.size() + m_pivotInverse.size();
    }
    [[nodiscard]] std::size_t UpdateEntries() const noexcept
    {
        return m_etas.index.size();
    }

private:
    void SolveLower(std::vector<Value>& vector) const;
    void SolveUpper(std::vector<Value>& vector) const;
    void SolveUpperTransposed(std::vector<Value>& vector) const;
    void SolveLowerTransposed(std::vector<Value>& vector) const;

    Field m_field;
    // Rows in the order in which they pivoted; the diagonal by row.
    std::vector<Index> m_order;
    std::vector<Value> m_pivotInverse;
    // L minus identity: one column per pivot that eliminated anything, and the same by rows.
    std::vector<Index> m_lowerPivot;
    SparseVectors<Value> m_lower;
    SparseVectors<Value> m_lowerRows;
    // U minus diagonal, by columns and by rows, both numbered by position.
    SparseVectors<Value> m_upperColumns;
    SparseVectors<Value> m_upperRows;
    // One eta vector per update, without its pivot.
    std::vector<Index> m_etaPivot;
    std::vector<Value> m_etaInverse;
    SparseVectors<Value> m_etas;
};

}  // namespace nuv
