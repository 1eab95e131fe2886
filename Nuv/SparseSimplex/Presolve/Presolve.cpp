/// The order of the rules, and the forms before and behind them.
#include "Nuv/SparseSimplex/Presolve/Presolve.hpp"

#include "Nuv/SparseSimplex/Presolve/Rules.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

using namespace presolve;

Presolve::Presolve(const BoundedForm& form) : m_form(form)
{
    Reduce();
    m_reduces = !m_form.contradiction && !m_form.Removals().empty();
    if (m_reduces)
        BuildForm();
}

void Presolve::Reduce()
{
    constexpr int kPasses = 20;
    for (int pass = 0; pass < kPasses && !m_form.contradiction && !m_form.IsTired(); ++pass)
    {
        // same bits: to look at nothing changes nothing
        if (m_form.rowsNoted.Empty() && m_form.columnsNoted.Empty())
            return;
        ReduceColumns();
        ReduceRows();
    }
}

void Presolve::ReduceRows()
{
    for (const Index row : m_form.rowsNoted.Take())
    {
        if (m_form.contradiction)
            return;
        if (!m_form.HasRow(row))
            continue;
        (void)(TurnIntoBound(m_form, row) || ForceRow(m_form, row) || DropRow(m_form, row) ||
               SubstituteByPair(m_form, row));
    }
}

/// What moves costs changes duals, so the bounds of these serve the first walk only.
void Presolve::ReduceColumns()
{
    const std::vector<Index> noted = m_form.columnsNoted.Take();
    BoundDuals();
    for (const Index column : noted)
    {
        if (m_form.contradiction)
            return;
        if (m_form.HasColumn(column))
            (void)(FixColumn(m_form, column) ||
                   FixDominated(m_form, column, m_dualLower, m_dualUpper));
    }
    for (const Index column : noted)
    {
        if (m_form.contradiction)
            return;
        if (m_form.HasColumn(column))
            (void)(AbsorbSlack(m_form, column) || SubstituteFree(m_form, column));
    }
}

/// The signs of duals by the sides of rows, and what columns of one entry say of them.
void Presolve::BoundDuals()
{
    m_dualLower.resize(m_form.rows);
    m_dualUpper.resize(m_form.rows);
    for (Index i = 0; i < m_form.rows; ++i)
    {
        m_dualLower[i] = m_form.rowUpper[i] < kInfinity ? -kInfinity : 0.0;
        m_dualUpper[i] = m_form.rowLower[i] > -kInfinity ? kInfinity : 0.0;
    }
    for (Index j = 0; j < m_form.columns; ++j)
    {
        if (m_form.HasColumn(j) && m_form.columnCount[j] == 1)
            BoundDualsBy(j);
    }
}

/// Without an upper bound the reduced cost c - a y is not negative, without a lower one not
/// positive.
void Presolve::BoundDualsBy(Index column)
{
    m_form.VisitColumn(column,
                       [&](Index row, double entry)
                       {
                           const double bound = m_form.cost[column] / entry;
                           const bool positive = entry > 0.0;  // same bits (-> >=): not 0
                           if (std::isinf(positive ? m_form.upper[column] : m_form.lower[column]))
                               m_dualUpper[row] = std::min(m_dualUpper[row], bound);
                           if (std::isinf(positive ? m_form.lower[column] : m_form.upper[column]))
                               m_dualLower[row] = std::max(m_dualLower[row], bound);
                       });
}

void Presolve::BuildForm()
{
    std::vector<Index> place(m_form.rows, kNoIndex);
    for (Index i = 0; i < m_form.rows; ++i)
    {
        if (!m_form.HasRow(i))
            continue;
        place[i] = static_cast<Index>(m_rows.size());
        m_rows.push_back(i);
        m_reduced.rowLower.push_back(m_form.rowLower[i]);
        m_reduced.rowUpper.push_back(m_form.rowUpper[i]);
    }
    SparseVectors<double> entries;
    for (Index j = 0; j < m_form.columns; ++j)
    {
        if (!m_form.HasColumn(j))
            continue;
        m_columns.push_back(j);
        m_reduced.cost.push_back(m_form.cost[j]);
        m_reduced.columnLower.push_back(m_form.lower[j]);
        m_reduced.columnUpper.push_back(m_form.upper[j]);
        m_form.VisitColumn(j, [&](Index row, double entry) { entries.Append(place[row], entry); });
        entries.Close();
    }
    m_reduced.rows = static_cast<Index>(m_rows.size());
    m_reduced.columns = static_cast<Index>(m_columns.size());
    m_reduced.constant = m_form.constant;
    // By rows, which brings entries that were added into their order.
    m_reduced.matrix =
        SparseMatrix<double>::FromRows(Transposed(entries, m_reduced.rows), m_reduced.columns);
}

RestoredPoint Presolve::RestorePoint(const SimplexState& state) const
{
    RestoredPoint point;
    point.value.resize(m_form.columns);
    point.reduced.resize(m_form.columns);
    point.activity.resize(m_form.rows);
    point.dual.resize(m_form.rows);
    point.basis.columns.resize(m_form.columns);
    point.basis.rows.resize(m_form.rows);
    const ScaledForm& scaled = state.form;
    const auto reduced = [&](Index v)
    { return state.reduced[v] / scaled.Scale(v) / scaled.costScale; };
    for (Index j = 0; j < m_reduced.columns; ++j)
    {
        point.value[m_columns[j]] = state.value[j] * scaled.Scale(j);
        point.reduced[m_columns[j]] = reduced(j);
        point.basis.columns[m_columns[j]] = state.status[j];
    }
    for (Index i = 0; i < m_reduced.rows; ++i)
    {
        const Index v = scaled.Logical(i);
        point.activity[m_rows[i]] = state.value[v] * scaled.Scale(v);
        point.dual[m_rows[i]] = reduced(v);
        point.basis.rows[m_rows[i]] = state.status[v];
    }
    const std::vector<Removal>& removals = m_form.Removals();
    for (std::size_t k = removals.size(); k-- > 0;)
        removals[k].restore(removals[k], m_form.Kept(), point);
    return point;
}

}  // namespace nuv
