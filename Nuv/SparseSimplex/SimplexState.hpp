/// What the primal and the dual simplex in doubles share: a scaled form with working bounds and
/// costs, a basis with its factors, the values of all variables and the reduced costs.
/// Invariants between steps: every nonbasic variable has the value that its status names; the
/// basic ones satisfy A x - r = 0 up to rounding since the last refactorisation.
#pragma once

#include "Nuv/Algebra/RealField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/BasisFactors.hpp"
#include "Nuv/SparseSimplex/ScaledForm.hpp"

#include <vector>

namespace nuv
{

/// A dense vector that remembers where it may be nonzero, so that clearing it costs what filling it
/// did.
struct WorkRow
{
    std::vector<double> value;
    std::vector<Index> touched;

    void Clear()
    {
        for (const Index at : touched)
            value[at] = 0.0;
        touched.clear();
    }
};

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

    /// The column of `variable` in terms of the basis.
    void SolveColumn(Index variable, std::vector<double>& byPosition) const;

    /// Row `position` of the basis inverse.
    void SolveUnitRow(Index position, std::vector<double>& byRow) const;

    /// row' A for all variables, the logicals' entries being minus those of `row`.
    void PriceRow(const std::vector<double>& row, WorkRow& result) const;

    /// Exchanges the basic variable at `position`, which comes to rest with `leavingStatus`, for
    /// `entering`, whose SolveColumn is `column`.
    void Exchange(Index position, Index entering, BasisStatus leavingStatus,
                  const std::vector<double>& column);

    /// Puts a nonbasic variable on the bound its status names.
    void SetToBound(Index variable) noexcept;

    [[nodiscard]] Basis ExportBasis() const;

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
    std::vector<Index> head;  ///< the basic variable at each position
    SparseLu<RealField> lu;

private:
    /// Adds factor times the column of `variable`.
    void AddColumn(Index variable, double factor, std::vector<double>& byRow) const;

    std::vector<double> m_work;
};

}  // namespace nuv
