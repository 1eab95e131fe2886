/// The bookkeeping of rows and columns that are present, and of what changed.
#include "Nuv/SparseSimplex/Presolve/ReducibleForm.hpp"

#include <cmath>
#include <utility>

namespace nuv::presolve
{
namespace
{

void CountEntries(const SparseVectors<double>& vectors, std::vector<Index>& count)
{
    count.resize(vectors.Count());
    for (Index k = 0; k < vectors.Count(); ++k)
        count[k] = static_cast<Index>(vectors.Indices(k).size());
}

}  // namespace

double Margin(double number) noexcept
{
    return kSame * (1.0 + std::fabs(number));
}

double Sum(double number, double change) noexcept
{
    constexpr double kCancelled = 1e-13;
    const double sum = number + change;  // a number may be infinite
    // same bits (-> >=): what is left of a cancellation has no such digits
    return std::isinf(number) || std::fabs(sum) > kCancelled * std::fabs(number) ? sum : 0.0;
}

Worklist::Worklist(Index count) : m_list(count), m_noted(count, true)
{
    for (Index k = 0; k < count; ++k)
        m_list[k] = k;
}

void Worklist::Note(Index number)
{
    if (m_noted[number])
        return;
    m_noted[number] = true;
    m_list.push_back(number);
}

std::vector<Index> Worklist::Take()
{
    for (const Index number : m_list)
        m_noted[number] = false;
    return std::exchange(m_list, {});
}

ReducibleForm::ReducibleForm(const BoundedForm& form)
    : rows(form.rows),
      columns(form.columns),
      cost(form.cost),
      lower(form.columnLower),
      upper(form.columnUpper),
      rowLower(form.rowLower),
      rowUpper(form.rowUpper),
      rowsNoted(form.rows),
      columnsNoted(form.columns),
      m_rowGone(form.rows, false),
      m_columnGone(form.columns, false),
      m_activity(form.rows),
      m_activityKnown(form.rows, false),
      m_mostWork(100 * (std::uint64_t{form.matrix.EntryCount()} + form.rows))
{
    m_byRow.Load(form.matrix.Rows());
    m_byColumn.Load(form.matrix.Columns());
    CountEntries(form.matrix.Rows(), rowCount);
    CountEntries(form.matrix.Columns(), columnCount);
    for (Index j = 0; j < columns; ++j)
    {
        for (const auto [row, entry] : form.matrix.Column(j))
        {
            if (entry == 0.0)
                RemoveEntry(row, j);
        }
    }
}

void ReducibleForm::ForgetActivities(Index column)
{
    VisitColumn(column,
                [this](Index row, double)
                {
                    m_activityKnown[row] = false;
                    rowsNoted.Note(row);
                });
}

void ReducibleForm::SetBounds(Index column, double newLower, double newUpper)
{
    lower[column] = newLower;
    upper[column] = newUpper;
    ForgetActivities(column);
    columnsNoted.Note(column);
}

void ReducibleForm::SetSides(Index row, double newLower, double newUpper)
{
    rowLower[row] = newLower;
    rowUpper[row] = newUpper;
    rowsNoted.Note(row);
    VisitRow(row, [this](Index column, double) { columnsNoted.Note(column); });
}

void ReducibleForm::RemoveRow(Index row)
{
    VisitRow(row,
             [this](Index column, double)
             {
                 --columnCount[column];
                 columnsNoted.Note(column);
             });
    m_rowGone[row] = true;
}

void ReducibleForm::RemoveColumn(Index column)
{
    VisitColumn(column, [this](Index row, double) { --rowCount[row]; });
    ForgetActivities(column);
    m_columnGone[column] = true;
}

void ReducibleForm::AddToEntry(Index row, Index column, double change)
{
    m_activityKnown[row] = false;
    rowsNoted.Note(row);
    columnsNoted.Note(column);
    m_work += m_byColumn.Indices(column).size();
    double* const inColumn = m_byColumn.Find(column, row);
    if (inColumn == nullptr)
    {
        m_byColumn.Append(column, row, change);
        m_byRow.Append(row, column, change);
        ++rowCount[row];
        ++columnCount[column];
        return;
    }
    m_work += m_byRow.Indices(row).size();
    *inColumn = Sum(*inColumn, change);
    if (*inColumn == 0.0)
        RemoveEntry(row, column);
    else
        *m_byRow.Find(row, column) = *inColumn;
}

void ReducibleForm::RemoveEntry(Index row, Index column)
{
    m_byColumn.Remove(column, row);
    m_byRow.Remove(row, column);
    --rowCount[row];
    --columnCount[column];
}

const ActivityRange& ReducibleForm::ActivityOf(Index row)
{
    ActivityRange& range = m_activity[row];
    if (m_activityKnown[row])
        return range;
    range = {};
    VisitRow(row,
             [&](Index column, double entry)
             {
                 const bool grows = entry > 0.0;  // same bits (-> >=): an entry is not 0
                 const double low = entry * (grows ? lower[column] : upper[column]);
                 const double high = entry * (grows ? upper[column] : lower[column]);
                 if (std::isinf(low))
                     ++range.leastInfinite;
                 else
                     range.least += low;
                 if (std::isinf(high))
                     ++range.largestInfinite;
                 else
                     range.largest += high;
             });
    m_activityKnown[row] = true;
    return range;
}

double ReducibleForm::LeastWithout(Index row, Index column, double entry)
{
    const ActivityRange& range = ActivityOf(row);
    // same bits (-> >=): an entry is not 0
    const double part = entry * (entry > 0.0 ? lower[column] : upper[column]);
    if (std::isinf(part))
        return range.leastInfinite == 1 ? range.least : -kInfinity;
    return range.leastInfinite == 0 ? range.least - part : -kInfinity;
}

double ReducibleForm::LargestWithout(Index row, Index column, double entry)
{
    const ActivityRange& range = ActivityOf(row);
    // same bits (-> >=): an entry is not 0
    const double part = entry * (entry > 0.0 ? upper[column] : lower[column]);
    if (std::isinf(part))
        return range.largestInfinite == 1 ? range.largest : kInfinity;
    return range.largestInfinite == 0 ? range.largest - part : kInfinity;
}

ReducibleForm::OnlyEntry ReducibleForm::OnlyEntryOfRow(Index row)
{
    OnlyEntry only;
    VisitRow(row, [&](Index column, double entry) { only = {column, entry}; });
    return only;
}

ReducibleForm::OnlyEntry ReducibleForm::OnlyEntryOfColumn(Index column)
{
    OnlyEntry only;
    VisitColumn(column, [&](Index row, double entry) { only = {row, entry}; });
    return only;
}

Index ReducibleForm::KeepRow(Index row, Index without)
{
    VisitRow(row,
             [&](Index column, double entry)
             {
                 if (column != without)
                     m_kept.Append(column, entry);
             });
    m_kept.Close();
    return m_kept.Count() - 1;
}

Index ReducibleForm::KeepColumn(Index column, Index without)
{
    VisitColumn(column,
                [&](Index row, double entry)
                {
                    if (row != without)
                        m_kept.Append(row, entry);
                });
    m_kept.Close();
    return m_kept.Count() - 1;
}

}  // namespace nuv::presolve
