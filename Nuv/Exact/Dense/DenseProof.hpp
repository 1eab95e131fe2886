/// From a basis of a dense form to its exact basic solution and duals, and their check.
#pragma once

#include "Nuv/Algebra/Dense/BorderedSystem.hpp"
#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Certificate/Dense/DenseCheck.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"

#include <vector>

namespace nuv
{

class DenseProof
{
public:
    /// @return whether the basis is proved to be optimal; if not, it is none, or numbers are long.
    [[nodiscard]] bool ProveOptimal(const DenseForm& form, const std::vector<BasisStatus>& status);

    // The numbers of a proved optimum, each the nearest double.
    [[nodiscard]] double Objective() const;
    [[nodiscard]] double Value(Index column) const;
    [[nodiscard]] double ReducedCost(Index column) const;
    [[nodiscard]] double Dual(Index row) const;

    [[nodiscard]] double Activity(Index row) const;

    /// The same exactly; `constant` is that of the objective.
    void WriteCertificate(const Rational& constant, Certificate& certificate) const;

private:
    [[nodiscard]] bool StateSystem(const std::vector<BasisStatus>& status);
    [[nodiscard]] bool StateRightSide(const std::vector<BasisStatus>& status, unsigned at);
    [[nodiscard]] const WideInteger& RestingValue(Index variable, BasisStatus status) const;
    void TakeSolution(const std::vector<BasisStatus>& status);

    IntegerForm m_numbers;
    BorderedSystem m_system;
    DenseOptimum m_optimum;
    DenseCheck m_check;
    std::vector<Index> m_basic;  ///< columns
    std::vector<Index> m_tight;  ///< rows whose logical is nonbasic
};

}  // namespace nuv
