/// Iterative refinement (Gleixner, Steffy and Wolter, Iterative refinement for linear programming,
/// 2016): shifts the program to the exact basic solution, scales its largest violation and its
/// largest wrong reduced cost to about one, and solves on in doubles. Returns a basis only.
#pragma once

#include "Nuv/Exact/ExactForm.hpp"
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

    /// Solves the enlarged program from the basis and writes the one at its end into `status`.
    /// @return what the simplex in doubles says of the enlarged program.
    SimplexVerdict Run(const ExactBasis& basis, SolveControl& control,
                       std::vector<BasisStatus>& status);

private:
    [[nodiscard]] bool MoveBounds(const ExactBasis& basis);
    void MoveCosts(const ExactBasis& basis);
    [[nodiscard]] static double Distance(const Rational& bound, const Integer& numerator,
                                         const Integer& denominator);

    const ExactForm& m_exact;
    ScaledForm m_scaled;
    /// The last enlargements, as powers of two: a feasible solution is looked at as closely as the
    /// last one that was not.
    int m_primalZoom = 50;
    int m_dualZoom = 50;
};

}  // namespace nuv
