/// LU factors of a sparse basis matrix with product-form updates, over any field: doubles for the
/// simplex, residues modulo a prime for p-adic lifting, rationals where all is small. Pivots are
/// chosen by Markowitz cost among entries that pass the field's threshold, so singleton rows and
/// columns go first and the work is in what remains.
/// Invariant: column c of the factorised matrix pivots in row position[c] and is known by that
/// number from then on; SolveForward takes a vector indexed by rows and leaves one indexed by
/// positions, SolveBackward the reverse.
#pragma once

#include "Nuv/Algebra/SparseElimination.hpp"
#include "Nuv/Algebra/SparseMatrix.hpp"

#include <cstdint>
#include <utility>
#include <vector>

namespace nuv
{

template <class Field>
class SparseLu
{
public:
    using Value = typename Field::Value;

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

private:
    enum class Direction : std::uint8_t
    {
        FirstToLast,
        LastToFirst,
    };
    enum class Diagonal : std::uint8_t
    {
        Ones,
        Pivots,
    };
    template <Direction direction, Diagonal diagonal>
    void Substitute(const SparseVectors<Value>& vectors, const SparseVectors<Value>& across,
                    std::vector<Value>& vector) const;
    template <Direction direction, Diagonal diagonal>
    void SubstituteByEntries(const SparseVectors<Value>& vectors, std::vector<Value>& vector) const;
    template <Direction direction, Diagonal diagonal>
    void SubstituteBySums(const SparseVectors<Value>& across, std::vector<Value>& vector) const;
    [[nodiscard]] bool IsDense(const std::vector<Value>& vector) const;
    [[nodiscard]] SparseVectors<Value> Flipped(const SparseVectors<Value>& vectors) const;

    Field m_field;
    // Row m_order[k] pivoted in step k. Pivots and vectors are numbered by step, so that a solve
    // walks them from end to end; the entries of the vectors are numbered by row.
    std::vector<Index> m_order;
    std::vector<Value> m_pivotInverse;
    // L without its diagonal of ones and U without its pivots, each by columns and by rows.
    SparseVectors<Value> m_lowerColumns;
    SparseVectors<Value> m_lowerRows;
    SparseVectors<Value> m_upperColumns;
    SparseVectors<Value> m_upperRows;
    // One eta vector per update, without its pivot.
    std::vector<Index> m_etaPivot;
    std::vector<Value> m_etaInverse;
    SparseVectors<Value> m_etas;
};

}  // namespace nuv
