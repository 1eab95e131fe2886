/// The bounded-variable dual simplex in doubles, for bases that are dual feasible or nearly so:
/// dual devex prices, and a ratio test of two passes as Harris's. Reduced costs of the wrong sign
/// are no obstacle: a variable with two bounds goes to the other one, the cost of any other is
/// shifted until its reduced cost is zero. The caller takes the shifts back and lets the primal
/// simplex, for which the basis is feasible then, do the rest.
#pragma once

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

    /// Runs on the working bounds and costs until the basis is feasible (Optimal, for the costs as
    /// shifted) or no variable can repair a violation (Infeasible).
    SimplexVerdict Run();

    /// Whether working costs differ from what they were.
    [[nodiscard]] bool CostsWereShifted() const noexcept
    {
        return m_shifted;
    }

private:
    void StartAfresh();
    void MakeDualFeasible();
    void Shift(Index variable);
    [[nodiscard]] bool Iterate(SimplexVerdict& verdict);
    [[nodiscard]] Index ChooseLeaving() const;
    [[nodiscard]] double Violation(Index position) const;
    [[nodiscard]] double AdmissiblePivot(Index variable, double sign) const;
    [[nodiscard]] Index ChooseEntering(double sign) const;
    void Pivot(Index position, Index entering);
    void UpdateReducedCosts(Index entering, Index leaving);
    void UpdateWeights(Index position);

    SimplexState& m_state;
    SolveControl& m_control;
    std::uint64_t m_pivotsLeft = 0;
    bool m_shifted = false;
    bool m_fresh = false;       ///< nothing happened since the last refactorisation
    bool m_inaccurate = false;  ///< the last pivot's row and column disagreed about it
    std::vector<double> m_weight;
    std::vector<double> m_row;
    std::vector<double> m_column;
    WorkRow m_pivotRow;
};

}  // namespace nuv
