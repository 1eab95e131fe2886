/// Exact solution of a sparse linear system of which only the bump is lifted: what pivots without
/// elimination (see SingletonOrder) is found by substitution, before the bump or after it. All in
/// integers over a common denominator, which grows where a pivot does not divide.
#pragma once

#include "Nuv/Algebra/DixonSolver.hpp"
#include "Nuv/Algebra/Singletons/IntegerEntries.hpp"
#include "Nuv/Algebra/Singletons/SingletonOrder.hpp"

#include <memory>
#include <vector>

namespace nuv
{

/// A square matrix by columns, column k pivoting in row k: where `rowSingletons` and
/// `columnSingletons` pivot, each in the order in which they were found, and the others.
struct PeeledMatrix
{
    SparseVectors<ExactNumber> columns;
    std::vector<Index> rowSingletons;
    std::vector<Index> columnSingletons;
    std::vector<Index> bump;  ///< numbered by the factors as it is here

    PeeledMatrix() = default;
    /// Of the columns by the row where they pivot.
    PeeledMatrix(SparseVectors<ExactNumber> columnsByPivotRow, const SingletonOrder& order);
};

class PeeledSolver
{
public:
    /// `factors` are those of the bump.
    PeeledSolver(const PeeledMatrix& matrix, const SparseLu<PrimeField>& factors,
                 DixonSolver::Side side);

    /// @return false if `stop` ended it.
    [[nodiscard]] bool Solve(const ScaledVector& rightSide, ExactVector& solution,
                             const StopPredicate& stop);

    /// The lifting of the bump.
    [[nodiscard]] DixonSolver& Lifting() noexcept
    {
        return *m_lifting;
    }

private:
    void TakeEquations(const SparseVectors<ExactNumber>& equations);
    [[nodiscard]] Integer Remainder(Index equation, const ScaledVector& rightSide) const;
    void Substitute(Index equation, const ScaledVector& rightSide);
    [[nodiscard]] bool SolveBump(const ScaledVector& rightSide, const StopPredicate& stop);
    void Enlarge(const Integer& factor);
    void BringToOneDenominator();

    std::vector<Index> m_first;  ///< equations in the order in which they are solved
    std::vector<Index> m_bump;
    std::vector<Index> m_last;
    SparseVectors<Index> m_equations;  ///< unknowns, without values
    IntegerEntries m_entries;          ///< times the scale of their equation
    std::vector<Scale> m_scale;
    std::vector<Integer> m_pivot;  ///< by equation that is not of the bump
    std::unique_ptr<DixonSolver> m_lifting;

    // Per solve: unknown k is m_numerator[k] * m_enlarged[m_enlargedOf[k]] / m_denominator.
    std::vector<Integer> m_numerator;
    Integer m_denominator = 1;  // same bits: each solve sets it
    std::vector<Integer> m_enlarged;
    std::vector<std::size_t> m_enlargedOf;
};

}  // namespace nuv
