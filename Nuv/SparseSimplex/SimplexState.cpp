/// The linear systems of a basis: B x_B = -N x_N for values, B' y = c_B and d = c - [A, -I]' y for
/// reduced costs, and single columns and rows of the tableau.
#include "Nuv/SparseSimplex/SimplexState.hpp"

#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <cmath>

namespace nuv
{

SimplexState::SimplexState(const ScaledForm& scaled, const Basis& start)
    : form(scaled),
      lower(scaled.lower),
      upper(scaled.upper),
      cost(scaled.cost),
      value(scaled.Variables(), 0.0),
      reduced(scaled.Variables(), 0.0),
      status(scaled.Variables(), BasisStatus::Basic),
      m_work(scaled.rows, 0.0)
{
    for (Index v = 0; v < form.Variables(); ++v)
    {
        status[v] = start[v];
        if (status[v] == BasisStatus::Basic)
            head.push_back(v);
        else
            SetToBound(v);
    }
}

void SimplexState::Refactorise()
{
    const std::vector<BasisReplacement> replacements =
        FactoriseBasis(lu, Selected(form.matrix->byVariable, head), form.columns, head);
    for (const auto& [dropped, logical] : replacements)
    {
        status[dropped] = DefaultNonbasicStatus(lower[dropped], upper[dropped]);
        SetToBound(dropped);
        reduced[dropped] = 0.0;
    }
    for (const auto& [dropped, logical] : replacements)
        status[logical] = BasisStatus::Basic;
    ComputeValues();
}

bool SimplexState::WantsRefactorisation() const noexcept
{
    constexpr Index kMostUpdates = 100;
    return lu.Updates() >= kMostUpdates ||
           (lu.Updates() >= 20 && lu.UpdateEntries() > 3 * lu.FactorEntries());
}

void SimplexState::ComputeValues()
{
    m_work.assign(form.rows, 0.0);
    for (Index v = 0; v < form.Variables(); ++v)
    {
        if (status[v] != BasisStatus::Basic && value[v] != 0.0)
            AddColumn(v, -value[v], m_work);
    }
    lu.SolveForward(m_work);
    for (Index k = 0; k < form.rows; ++k)
        value[head[k]] = m_work[k];
}

void SimplexState::ComputeReducedCosts(const std::vector<double>& nonbasicCost,
                                       const std::vector<double>& basicCost)
{
    std::vector<double> dual = basicCost;
    lu.SolveBackward(dual);
    for (Index v = 0; v < form.Variables(); ++v)
    {
        if (status[v] == BasisStatus::Basic)
        {
            reduced[v] = 0.0;
            continue;
        }
        double sum = nonbasicCost[v];
        for (const auto [row, entry] : form.Column(v))
            sum -= entry * dual[row];
        reduced[v] = sum;
    }
}

void SimplexState::SolveColumn(Index variable, std::vector<double>& byPosition) const
{
    byPosition.assign(form.rows, 0.0);
    AddColumn(variable, 1.0, byPosition);
    lu.SolveForward(byPosition);
}

void SimplexState::SolveUnitRow(Index position, std::vector<double>& byRow) const
{
    byRow.assign(form.rows, 0.0);
    byRow[position] = 1.0;
    lu.SolveBackward(byRow);
}

void SimplexState::PriceRow(const std::vector<double>& row, WorkRow& result) const
{
    result.value.resize(form.Variables(), 0.0);
    result.Clear();
    for (Index i = 0; i < form.rows; ++i)
    {
        const double factor = row[i];
        if (std::fabs(factor) < tolerance::kNegligible)
            continue;
        result.value[form.Logical(i)] = -factor;
        result.touched.push_back(form.Logical(i));
        for (const auto [column, coefficient] : form.Row(i))
        {
            double& entry = result.value[column];
            if (entry == 0.0)
                result.touched.push_back(column);
            entry += factor * coefficient;
            // A sum that cancels to zero must not be listed twice.
            if (entry == 0.0)
                entry = tolerance::kCancelled;
        }
    }
}

void SimplexState::Exchange(Index position, Index entering, BasisStatus leavingStatus,
                            const std::vector<double>& column)
{
    lu.Update(position, column);
    const Index leaving = head[position];
    status[leaving] = leavingStatus;
    status[entering] = BasisStatus::Basic;
    head[position] = entering;
}

void SimplexState::SetToBound(Index variable) noexcept
{
    switch (status[variable])
    {
    case BasisStatus::AtLower:
        value[variable] = lower[variable];
        break;
    case BasisStatus::AtUpper:
        value[variable] = upper[variable];
        break;
    case BasisStatus::Free:
        value[variable] = 0.0;
        break;
    case BasisStatus::Basic:
        break;
    }
}

Basis SimplexState::ExportBasis() const
{
    Basis basis;
    basis.columns.assign(status.begin(), status.begin() + form.columns);
    basis.rows.assign(status.begin() + form.columns, status.end());
    return basis;
}

void SimplexState::AddColumn(Index variable, double factor, std::vector<double>& byRow) const
{
    for (const auto [row, entry] : form.Column(variable))
        byRow[row] += factor * entry;
}

}  // namespace nuv
