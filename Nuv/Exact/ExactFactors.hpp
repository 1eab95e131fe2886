/// A basis of a bounded form, factorised so that systems with it can be solved exactly.
#pragma once

#include "Nuv/Algebra/Singletons/PeeledSolver.hpp"
#include "Nuv/Exact/ExactForm.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <memory>
#include <vector>

namespace nuv
{

class ExactFactors
{
public:
    explicit ExactFactors(const ExactForm& form) : m_exact(form) {}

    /// Factorises the basis of these variables and sorts `head` by position. If the matrix is
    /// singular, variables are replaced by logicals until it is not.
    /// @return the variables that were replaced.
    std::vector<Index> Factorise(std::vector<Index>& head);

    /// Solves B x = b, b by rows, x by positions. @return false if the control stopped it.
    [[nodiscard]] bool SolveForward(const ScaledVector& rightSide, ExactVector& solution,
                                    SolveControl& control);

    /// Solves B' y = c, c by positions, y by rows. @return false if the control stopped it.
    [[nodiscard]] bool SolveBackward(const ScaledVector& rightSide, ExactVector& solution,
                                     SolveControl& control);

private:
    [[nodiscard]] bool FactoriseBump(std::vector<Index>& head);
    [[nodiscard]] std::vector<Index> FactoriseWhole(std::vector<Index>& head);

    const ExactForm& m_exact;
    std::unique_ptr<SparseLu<PrimeField>> m_factors;  ///< of the bump
    PeeledMatrix m_matrix;                            ///< the columns times their divisors
    std::vector<Index> m_head;  ///< by position; empty while no column has a divisor
    std::unique_ptr<PeeledSolver> m_forward;
    std::unique_ptr<PeeledSolver> m_backward;
};

/// The row of the basis inverse that belongs to a basic variable. @return false if the basis is
/// singular or the control stopped it.
[[nodiscard]] bool RowOfInverse(const ExactForm& exact, const BlockedRow& blocked,
                                SolveControl& control, ExactVector& row);

}  // namespace nuv
