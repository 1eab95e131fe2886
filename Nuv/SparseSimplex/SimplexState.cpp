#include "Nuv/SparseSimplex/SimplexState.hpp"

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
    SparseVectors<double> columns;
    for (const Index variable : head)
    {
        if (variable >= form.columns)
            columns.Append(variable - form.columns, -1.0);
        else
        {
            for (std::size_t at = form.byColumn.start[variable];
                 at < form.byColumn.start[variable + 1]; ++at)
                columns.Append(form.byColumn.index[at], form.byColumn.value[at]);
        }
        columns.Close();
    }
    std::vector<Index> position;
    const auto replacements = lu.Factorise(columns, position);
    std::vector<Index> newHead(head.size());
    for (Index k = 0; k < head.size(); ++k)
        newHead[position[k]] = head[k];
    for (const auto& replacement : replacements)
    {
        const Index dropped = head[replacement.column];
        status[dropped] = DefaultNonbasicStatus(lower[dropped], upper[dropped]);
        SetToBound(dropped);
        reduced[dropped] = 0.0;
    }
    for (const auto& replacement : replacements)
    {
        newHead[replacement.row] = form.columns + replacement.row;
        status[form.columns + replacement.row] = BasisStatus::Basic;
    }
    head = std::move(newHead);
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
    for (Index j = 0; j < form.columns; ++j)
    {
        if (status[j] == BasisStatus::Basic)
        {
            reduced[j] = 0.0;
            continue;
        }
        double sum = nonbasicCost[j];
        for (std::size_t at = form.byColumn.start[j]; at < form.byColumn.start[j + 1]; ++at)
            sum -= form.byColumn.value[at] * dual[form.byColumn.index[at]];
        reduced[j] = sum;
    }
    for (Index i = 0; i < form.rows; ++i)
    {
        const Index logical = form.columns + i;
        reduced[logical] =
            status[logical] == BasisStatus::Basic ? 0.0 : nonbasicCost[logical] + dual[i];
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
        if (std::fabs(factor) < 1e-14)
            continue;
        result.value[form.columns + i] = -factor;
        result.touched.push_back(form.columns + i);
        for (std::size_t at = form.byRow.start[i]; at < form.byRow.start[i + 1]; ++at)
        {
            double& entry = result.value[form.byRow.index[at]];
            if (entry == 0.0)
                result.touched.push_back(form.byRow.index[at]);
            entry += factor * form.byRow.value[at];
            // A sum that cancels to zero must not be listed twice.
            if (entry == 0.0)
                entry = 1e-100;
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
    if (variable >= form.columns)
    {
        byRow[variable - form.columns] -= factor;
        return;
    }
    for (std::size_t at = form.byColumn.start[variable]; at < form.byColumn.start[variable + 1];
         ++at)
        byRow[form.byColumn.index[at]] += factor * form.byColumn.value[at];
}

}  // namespace nuv
