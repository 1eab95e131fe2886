/// Iterative refinement (Gleixner, Steffy and Wolter, Iterative refinement for linear programming,
/// 2016): shifts the program to the exact basic solution, scales its largest violation and its
/// largest wrong reduced cost to about one, and solves on in doubles. Returns a basis only.
#pragma once

#include "Nuv/Exact/ExactForm.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/PrimalSimplex.hpp"
#include "Nuv/SparseSimplex/ScaledForm.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <vector>

namespace nuv
{

/// A basis with its exact solution.
struct ExactBasis
{
    const std::vector<BasisStatus>& status;  ///< by variable
    const std::vector<Index>& head;          ///< the basic variable at each position
    const ExactVector& values;               ///< of the basic variables, by position
    const ExactVector& duals;                ///< by row
};

class Refinement
{
public:
    /// `scaled` is the same form scaled, of which a copy is shifted.
    Refinement(const ExactForm& exact, const ScaledForm& scaled);

    /// Solves the enlarged program from the basis and writes the one at its end into `status`, and
    /// what seems to make it infeasible into `blocked`.
    /// @return what the simplex in doubles says of the enlarged program.
    SimplexVerdict Run(const ExactBasis& basis, SolveControl& control,
                       std::vector<BasisStatus>& status, BlockedRow& blocked);

    /// An equation may nearly follow from others, so that where its logical is basic no column has
    /// an entry in its row of the tableau that doubles take for a pivot. If it is such a one whose
    /// violation nothing could help, its row of the tableau takes its place, enlarged until it has
    /// pivots. @return whether it is.
    [[nodiscard]] bool EnlargeEquation(const BlockedRow& blocked, SolveControl& control);

private:
    [[nodiscard]] bool MoveBounds(const ExactBasis& basis);
    void MoveCosts(const ExactBasis& basis);
    [[nodiscard]] static double Distance(const Rational& bound, const Integer& numerator,
                                         const Integer& denominator);

    const ExactForm& m_exact;
    ScaledForm m_scaled;
    /// The last enlargements, as powers of two: a feasible solution is looked at as closely as the
    /// last one that was not.
    int m_primalZoom = 50;  // same bits: one of many right choices
    int m_dualZoom = 50;    // same bits: one of many right choices
};

}  // namespace nuv
