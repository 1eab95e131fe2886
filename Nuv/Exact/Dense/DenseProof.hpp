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

    /// @return whether it is proved that there is no point, by the duals of the basis for the sum
    /// of violations, -1 or 1 for a basic variable below or above its bounds.
    [[nodiscard]] bool ProveInfeasible(const DenseForm& form,
                                       const std::vector<BasisStatus>& status,
                                       const std::vector<signed char>& violations);

    /// @return whether it is proved that the objective improves for ever, from the point of the
    /// basis in the direction in which this nonbasic variable takes the basic ones along.
    [[nodiscard]] bool ProveUnbounded(const DenseForm& form, const std::vector<BasisStatus>& status,
                                      Index moving, bool movesUp);

    // The numbers of a proved optimum, each the nearest double.
    [[nodiscard]] double Objective() const;
    [[nodiscard]] double Value(Index column) const;
    [[nodiscard]] double ReducedCost(Index column) const;
    [[nodiscard]] double Dual(Index row) const;

    [[nodiscard]] double Activity(Index row) const;

    /// The same exactly; `constant` is that of the objective.
    void WriteCertificate(const Rational& constant, Certificate& certificate) const;

private:
    [[nodiscard]] bool StateMatrix(const std::vector<BasisStatus>& status);
    [[nodiscard]] bool WeighViolatedRows(const std::vector<signed char>& violations);
    void StateViolationCost(const std::vector<signed char>& violations, unsigned at);
    void TakeMultipliers();
    [[nodiscard]] bool StateMove(Index moving, bool movesUp);
    void TakeRay(Index moving, bool movesUp);
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

    // Of the sum of violations: its common factor, and by row minus what a violated one counts.
    WideInteger m_weight;
    std::vector<WideInteger> m_rowWeights;
    unsigned m_weightBits = 0;  // same bits: set with the weight
    std::vector<Word> m_multipliers;
    std::vector<Word> m_ray;
};

}  // namespace nuv
