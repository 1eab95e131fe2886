/// LU factors of a basis in doubles, kept up by Forrest and Tomlin's update (1972): the column that
/// comes in replaces one of U, whose row is eliminated by those behind it, and its pivot becomes
/// the last. Solves with few nonzeros visit only what these reach (Gilbert and Peierls 1988).
/// Invariant: column c of the factorised matrix pivots in row position[c] and is known by that
/// number from then on; SolveForward takes a vector by rows and leaves one by positions,
/// SolveBackward the reverse.
#pragma once

#include "Nuv/Algebra/SparseElimination.hpp"
#include "Nuv/SparseSimplex/Factors/Triangle.hpp"
#include "Nuv/SparseSimplex/Factors/WorkVector.hpp"

#include <cstdint>
#include <vector>

namespace nuv
{

class BasisLu
{
public:
    /// Factorises the square matrix of these columns and forgets earlier updates.
    /// @return the columns replaced because the matrix is singular; none if it is not.
    std::vector<Replacement> Factorise(const SparseVectors<double>& columns,
                                       std::vector<Index>& position);

    /// Overwrites b, by rows, with the solution x of B x = b, by positions.
    void SolveForward(WorkVector& vector);

    /// The same for a column that may come in: the next Update takes the last one so solved.
    void SolveEntering(WorkVector& vector);

    /// Overwrites c, by positions, with the solution y of B' y = c, by rows.
    void SolveBackward(WorkVector& vector);

    /// The same for the unit vector of a position: row `position` of the inverse.
    void SolveUnitBackward(Index position, WorkVector& vector);

    /// Replaces the column at `position` by the one solved by SolveEntering, whose entry there is
    /// `pivot`. @return by which share of the new pivot two ways to compute it disagree.
    double Update(Index position, double pivot);

    [[nodiscard]] Index Updates() const noexcept
    {
        return m_updates;
    }
    /// Entries of the factors as they were made, and what updates added to them.
    [[nodiscard]] std::size_t FactorEntries() const noexcept
    {
        return m_factorEntries;
    }
    [[nodiscard]] std::size_t UpdateEntries() const noexcept
    {
        return m_etas.index.size() + m_spikeEntries;
    }

private:
    void ApplyEtasForward(WorkVector& vector) const;
    void ApplyEtasBackward(WorkVector& vector) const;
    void SolveUpper(Substitution& kind, WorkVector& vector);
    void SolveLower(Substitution& kind, WorkVector& vector);
    void SolveUpperTransposed(Substitution& kind, WorkVector& vector);
    void SolveLowerTransposed(Substitution& kind, WorkVector& vector);
    void SolveUnitUpper(Index position, WorkVector& vector);
    void RemoveFromUpper(Index position);
    void AddSpikeToUpper(Index position);

    Index m_size = 0;                 // same bits: set with the factors
    Index m_updates = 0;              // same bits: set with the factors
    std::size_t m_factorEntries = 0;  // same bits: set with the factors
    std::size_t m_spikeEntries = 0;   // same bits: set with the factors
    // By which position a step pivots, kNoIndex where an update took a step's pivot to the end, and
    // the step of each position.
    std::vector<Index> m_lowerOrder;
    std::vector<Index> m_upperOrder;
    std::vector<Index> m_upperStep;
    std::vector<double> m_pivot;  ///< of U, by position
    EditableVectors m_lowerColumns;
    EditableVectors m_lowerRows;
    EditableVectors m_upperColumns;
    EditableVectors m_upperRows;
    // Row etas of the updates: row m_etaRow[k] less the multiples of vector k.
    std::vector<Index> m_etaRow;
    SparseVectors<double> m_etas;
    // What the next update needs: the entering column between L and U, and a row of U's inverse.
    std::vector<Index> m_spikeIndex;
    std::vector<double> m_spikeValue;
    Index m_unitPosition = kNoIndex;
    std::vector<Index> m_unitIndex;
    std::vector<double> m_unitValue;
    WorkVector m_work;
    ReachSearch m_search;
    // The kinds of solves; columns that may enter are sparser than other right sides, and so are
    // unit vectors.
    Substitution m_lowerForward{Direction::FirstToLast};
    Substitution m_lowerEntering{Direction::FirstToLast};
    Substitution m_lowerBackward{Direction::LastToFirst};
    Substitution m_lowerUnit{Direction::LastToFirst};
    Substitution m_upperForward{Direction::LastToFirst};
    Substitution m_upperEntering{Direction::LastToFirst};
    Substitution m_upperBackward{Direction::FirstToLast};
    Substitution m_upperUnit{Direction::FirstToLast};
};

}  // namespace nuv
