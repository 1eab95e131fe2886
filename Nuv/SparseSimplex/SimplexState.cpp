/// The linear systems of a basis: B x_B = -N x_N for values, B' y = c_B and d = c - [A, -I]' y for
/// reduced costs, and single columns and rows of the tableau.
#include "Nuv/SparseSimplex/SimplexState.hpp"

#include "Nuv/SparseSimplex/BasisFactors.hpp"
#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

SimplexState::SimplexState(const ScaledForm& scaled, const Basis& start)
    : form(scaled),
      lower(scaled.lower),
      upper(scaled.upper),
      cost(scaled.cost),
      value(scaled.Variables()),
      reduced(scaled.Variables()),
      status(scaled.Variables()),
      side(scaled.Variables())
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
    for (Index v = 0; v < form.Variables(); ++v)
        NoteSide(v);
    m_inaccurate = false;
    ComputeValues();
}

bool SimplexState::WantsRefactorisation() const noexcept
{
    constexpr Index kMostUpdates = 100;  // same bits: one of many right choices
    return m_inaccurate || lu.Updates() >= kMostUpdates ||
           (lu.Updates() >= 20 && lu.UpdateEntries() > 3 * lu.FactorEntries());
}

void SimplexState::ComputeValues()
{
    m_work.Reset(form.rows);
    for (Index v = 0; v < form.Variables(); ++v)
    {
        // same bits (jp always): a column times 0 adds nothing
        if (status[v] != BasisStatus::Basic && value[v] != 0.0)
            AddColumn(v, -value[v], m_work);
    }
    lu.SolveForward(m_work);
    for (Index k = 0; k < form.rows; ++k)
        value[head[k]] = m_work.value[k];
}

void SimplexState::ComputeReducedCosts(const std::vector<double>& nonbasicCost,
                                       const std::vector<double>& basicCost)
{
    WorkVector& dual = m_work;
    dual.Reset(form.rows);
    for (Index k = 0; k < form.rows; ++k)
    {
        if (basicCost[k] != 0.0)
            dual.Set(k, basicCost[k]);
    }
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
            sum -= entry * dual.value[row];
        reduced[v] = sum;
    }
}

void SimplexState::SolveColumn(Index variable, WorkVector& byPosition)
{
    byPosition.Reset(form.rows);
    AddColumn(variable, 1.0, byPosition);
    lu.SolveEntering(byPosition);
}

void SimplexState::SolveUnitRow(Index position, WorkVector& byRow)
{
    lu.SolveUnitBackward(position, byRow);
}

void SimplexState::PriceRow(const WorkVector& row, WorkVector& result) const
{
    // A dense row meets nearly every entry of the matrix anyway, and sums over columns need no
    // list of what they touch.
    constexpr std::size_t kDense = 4;
    result.Reset(form.Variables());
    // same bits (-> /, -> >=, always, never): both price all that is not basic
    if (row.touched.size() * kDense > form.rows)
        PriceByColumns(row, result);
    else
        PriceByRows(row, result);
}

void SimplexState::PriceByRows(const WorkVector& row, WorkVector& result) const
{
    for (const Index i : row.touched)
    {
        const double factor = row.value[i];
        // same bits (-> <=): nothing is as large as that limit
        if (std::fabs(factor) < tolerance::kNegligible)
            continue;
        if (side[form.Logical(i)] != 0)
            result.Set(form.Logical(i), -factor);
        for (const auto [column, coefficient] : form.Row(i))
            result.Add(column, factor * coefficient);
    }
}

void SimplexState::PriceByColumns(const WorkVector& row, WorkVector& result) const
{
    for (Index j = 0; j < form.columns; ++j)
    {
        if (side[j] == 0)
            continue;
        double sum = 0.0;
        for (const auto [i, entry] : form.Column(j))
            sum += entry * row.value[i];
        // same bits (-> >): nothing is as large as that limit
        if (std::fabs(sum) >= tolerance::kNegligible)
            result.Set(j, sum);
    }
    for (const Index i : row.touched)
    {
        if (side[form.Logical(i)] != 0)
            result.Set(form.Logical(i), -row.value[i]);
    }
}

void SimplexState::Exchange(Index position, Index entering, BasisStatus leavingStatus, double pivot)
{
    m_inaccurate = lu.Update(position, pivot) > tolerance::kAgreement;
    const Index leaving = head[position];
    status[leaving] = leavingStatus;
    status[entering] = BasisStatus::Basic;
    NoteSide(leaving);
    NoteSide(entering);
    head[position] = entering;
}

void SimplexState::NoteSide(Index variable) noexcept
{
    const BasisStatus now = status[variable];
    side[variable] = now == BasisStatus::Basic || IsFixed(variable) ? 0
                     : now == BasisStatus::AtLower                  ? 1
                     : now == BasisStatus::AtUpper                  ? -1
                                                                    : 2;
}

void SimplexState::SetToBound(Index variable) noexcept
{
    NoteSide(variable);
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

double SimplexState::SumOfViolations() const
{
    double sum = 0.0;
    for (const Index v : head)
        sum += std::max({0.0, lower[v] - value[v], value[v] - upper[v]}) * form.Scale(v);
    return sum;
}

void SimplexState::AddColumn(Index variable, double factor, WorkVector& byRow) const
{
    for (const auto [row, entry] : form.Column(variable))
        byRow.Add(row, factor * entry);
}

}  // namespace nuv
