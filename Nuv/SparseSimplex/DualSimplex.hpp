/// The bounded-variable dual simplex in doubles (Koberstein, The dual simplex method, techniques
/// for a fast and stable implementation, 2005): steepest-edge prices (Forrest and Goldfarb 1992), a
/// ratio test that passes the bounds of boxed variables while the dual objective still grows
/// (Fourer 1994) and takes Harris's largest pivot where it ends, and costs that may be perturbed.
/// Reduced costs of the wrong sign are no obstacle: a variable with two bounds goes to the other
/// one; of the others a first phase looks for a basis that is right for them, and what it leaves is
/// shifted to zero. The caller takes shifts and perturbation back and lets the primal simplex, for
/// which the basis is feasible then, do the rest.
#pragma once

#include "Nuv/SparseSimplex/DualRatioTest.hpp"
#include "Nuv/SparseSimplex/PrimalSimplex.hpp"
#include "Nuv/SparseSimplex/SimplexState.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <cstdint>
#include <vector>

namespace nuv
{

class DualSimplex
{
public:
    DualSimplex(SimplexState& state, SolveControl& control);

    /// What Run may do about reduced costs before its first pivot.
    enum class Start : std::uint8_t
    {
        AsItIs,      ///< wrong ones are shifted: for a basis that is nearly dual feasible
        Factorised,  ///< the same, of a state whose factors and values stand
        Perturbed,   ///< perturbs costs against ties, and runs a first phase where it is called for
    };

    /// Runs on the working bounds and costs until the basis is feasible (Optimal, for the costs as
    /// shifted) or no variable can repair a violation (Infeasible).
    SimplexVerdict Run(Start start = Start::AsItIs);

    /// Whether working costs differ from what they were.
    [[nodiscard]] bool CostsWereShifted() const noexcept
    {
        return m_shifted;
    }

    /// Where the last run was Infeasible: the basic variable that no other can bring to its bound.
    [[nodiscard]] Index Blocked() const noexcept
    {
        return m_blocked;
    }

private:
    SimplexVerdict RunPhase(bool isFactorised = false);
    void RunPhaseOne();
    void StartAfresh();
    void Prepare();
    void ComputeReducedCosts();
    SimplexVerdict RunPerturbed();
    void PerturbCosts(double share);
    [[nodiscard]] bool WantsPhaseOne() const;
    void MakeDualFeasible();
    void Shift(Index variable);
    [[nodiscard]] bool Iterate(SimplexVerdict& verdict);
    [[nodiscard]] Index ChooseLeaving() const;
    [[nodiscard]] bool WeightIsRight(Index position);
    void NoteViolation(Index position);
    void NoteViolations();
    void Flip(const std::vector<Index>& flips);
    void Pivot(Index position, Index entering);
    void UpdateReducedCosts(Index entering, Index leaving);
    void UpdateWeights(Index position);

    SimplexState& m_state;
    SolveControl& m_control;
    std::uint64_t m_pivotsLeft = 0;  // same bits: set by each run
    Index m_blocked = kNoIndex;
    bool m_shifted = false;
    bool m_boxed = false;  ///< in the first phase, whose bounds are not those of the program
    /// Nothing happened since the last refactorisation.
    bool m_fresh = false;  // same bits: set by each run
    /// The last pivot's row and column disagreed about it.
    bool m_inaccurate = false;  // same bits: set by each run
    DualRatioTest m_ratioTest;
    std::vector<double> m_weight;            ///< by position: |row of the inverse|^2
    std::vector<double> m_squaredViolation;  ///< by position, zero within the tolerance
    WorkVector m_row;
    WorkVector m_column;
    WorkVector m_flipped;
    WorkVector m_pivotRow;
};

}  // namespace nuv
