/// What the primal and the dual simplex in doubles share: a scaled form with working bounds and
/// costs, a basis with its factors, the values of all variables and the reduced costs.
/// Invariants between steps: every nonbasic variable has the value that its status names; the
/// basic ones satisfy A x - r = 0 up to rounding since the last refactorisation.
#pragma once

#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/Factors/BasisLu.hpp"
#include "Nuv/SparseSimplex/ScaledForm.hpp"

#include <vector>

namespace nuv
{

class SimplexState
{
public:
    SimplexState(const ScaledForm& scaled, const Basis& start);

    /// Factorises the basis afresh, replacing columns that make it singular, and recomputes the
    /// values of the basic variables.
    void Refactorise();

    /// Whether enough updates have piled up that fresh factors pay.
    [[nodiscard]] bool WantsRefactorisation() const noexcept;

    /// Recomputes the basic values from the nonbasic ones.
    void ComputeValues();

    /// reduced = costs - A' y with B' y = the basic ones of `costs` (by position in `basicCost`).
    void ComputeReducedCosts(const std::vector<double>& nonbasicCost,
                             const std::vector<double>& basicCost);

    /// The column of `variable`, which may enter by the next Exchange, in terms of the basis.
    void SolveColumn(Index variable, WorkVector& byPosition);

    /// Row `position` of the basis inverse.
    void SolveUnitRow(Index position, WorkVector& byRow);

    /// row' A for all variables that have a side, the logicals' entries being minus those of `row`;
    /// what it holds for others is no use.
    void PriceRow(const WorkVector& row, WorkVector& result) const;

    /// Exchanges the basic variable at `position`, which comes to rest with `leavingStatus`, for
    /// `entering`, the variable of the last SolveColumn, whose entry at the position is `pivot`.
    void Exchange(Index position, Index entering, BasisStatus leavingStatus, double pivot);

    /// Adds factor times the column of `variable`.
    void AddColumn(Index variable, double factor, WorkVector& byRow) const;

    /// Puts a nonbasic variable on the bound its status names; to be called when the status or the
    /// bound changes.
    void SetToBound(Index variable) noexcept;

    [[nodiscard]] Basis ExportBasis() const;

    /// By how much the basic variables miss their bounds together, in units of the form.
    [[nodiscard]] double SumOfViolations() const;

    [[nodiscard]] bool IsFixed(Index variable) const noexcept
    {
        return lower[variable] == upper[variable];
    }

    const ScaledForm& form;
    std::vector<double> lower;
    std::vector<double> upper;
    std::vector<double> cost;
    std::vector<double> value;
    std::vector<double> reduced;
    std::vector<BasisStatus> status;
    /// Where a nonbasic variable may go from where it rests: up (1), down (-1) or both ways (2);
    /// 0 for one that is basic or fixed.
    std::vector<signed char> side;
    std::vector<Index> head;  ///< the basic variable at each position
    BasisLu lu;

private:
    void NoteSide(Index variable) noexcept;
    void PriceByRows(const WorkVector& row, WorkVector& result) const;
    void PriceByColumns(const WorkVector& row, WorkVector& result) const;

    WorkVector m_work;
    /// The last exchange left factors that disagree with its pivot.
    bool m_inaccurate = false;  // same bits: set with the factors
};

}  // namespace nuv
