/// Columns that one row alone uses. With the rest of the row v and the entry a, L <= v + a x <= U
/// and l <= x <= u say of the rest L - max a x <= v <= U - min a x, and x fills what it lacks. In
/// an equation a x = L - v, so that x's cost is one of the other columns: c_k - a_k c / a.
#include "Nuv/SparseSimplex/Presolve/Rules.hpp"

#include <algorithm>
#include <cmath>

namespace nuv::presolve
{
namespace
{

enum Number : unsigned char
{
    Entry,
    Cost,
    Lower,
    Upper,
    RowLower,
    RowUpper,
};

/// The row rests at a side of its own, the column is at the bound that gives the row most room.
void RestoreResting(const Removal& removal, bool atLower, RestoredPoint& point)
{
    // same bits (-> >=): an entry is not 0
    const bool columnAtUpper = atLower == (removal.number[Entry] > 0.0);
    point.value[removal.column] = removal.number[columnAtUpper ? Upper : Lower];
    point.basis.columns[removal.column] =
        columnAtUpper ? BasisStatus::AtUpper : BasisStatus::AtLower;
}

/// The dual is zero but for the cost that was moved: the column rests where the row stays within
/// its sides, or is basic and the row rests.
void RestoreBasic(const Removal& removal, double rest, RestoredPoint& point)
{
    const auto& number = removal.number;
    BasisStatus& column = point.basis.columns[removal.column];
    BasisStatus& row = point.basis.rows[removal.row];
    const auto fits = [&](double value)
    {
        const double sum = rest + number[Entry] * value;
        return std::isfinite(value) && number[RowLower] < number[RowUpper] &&
               sum >= number[RowLower] && sum <= number[RowUpper];
    };
    if (fits(number[Lower]) || fits(number[Upper]))
    {
        column = fits(number[Lower]) ? BasisStatus::AtLower : BasisStatus::AtUpper;
        point.value[removal.column] = number[fits(number[Lower]) ? Lower : Upper];
        return;
    }
    // The side that the row misses without the column, or for a free one a side that it has.
    const bool atLower = std::isinf(number[RowUpper]) || rest < number[RowLower] ||
                         (std::isfinite(number[RowLower]) && !(rest > number[RowUpper]));
    const double side = number[atLower ? RowLower : RowUpper];
    point.value[removal.column] = (side - rest) / number[Entry];
    column = BasisStatus::Basic;
    row = atLower ? BasisStatus::AtLower : BasisStatus::AtUpper;
}

void Restore(const Removal& removal, const SparseVectors<double>&, RestoredPoint& point)
{
    const double entry = removal.number[Entry];
    double& dual = point.dual[removal.row];
    const BasisStatus row = point.basis.rows[removal.row];
    point.reduced[removal.column] = -entry * dual;
    dual += removal.number[Cost] / entry;
    if (row == BasisStatus::Basic)
        RestoreBasic(removal, point.activity[removal.row], point);
    else
        RestoreResting(removal, row == BasisStatus::AtLower, point);
    point.activity[removal.row] += entry * point.value[removal.column];
}

/// Which of its sides a row is an equation for, since a column that its bounds do not hold has a
/// cost: the sign of the dual tells.
void RestoreSide(const Removal& removal, const SparseVectors<double>&, RestoredPoint& point)
{
    // The column that came back before is basic where the row was, since it is an equation there.
    point.basis.rows[removal.row] =
        removal.side == Side::Lower ? BasisStatus::AtLower : BasisStatus::AtUpper;
}

/// @return whether the row is an equation now.
bool MakeEquation(ReducibleForm& form, Index column, Index row, double dual)
{
    if (!IsImpliedFree(form, column))
        return false;
    const bool atLower = dual > 0.0;  // same bits (-> >=): with 0 nobody asks
    const double side = atLower ? form.rowLower[row] : form.rowUpper[row];
    if (std::isinf(side))
    {
        form.contradiction = true;
        return false;
    }
    form.Note({.restore = RestoreSide, .row = row, .side = atLower ? Side::Lower : Side::Upper});
    form.SetSides(row, side, side);
    return true;
}

void MoveCost(ReducibleForm& form, Index column, Index row, double dual)
{
    form.constant += dual * form.rowLower[row];
    form.VisitRow(row,
                  [&](Index other, double entry)
                  {
                      if (other == column)
                          return;
                      form.cost[other] = Sum(form.cost[other], -entry * dual);
                      form.columnsNoted.Note(other);
                  });
}

}  // namespace

bool AbsorbSlack(ReducibleForm& form, Index column)
{
    if (form.columnCount[column] != 1)
        return false;
    const auto [row, entry] = form.OnlyEntryOfColumn(column);
    if (std::isinf(form.rowLower[row]) && std::isinf(form.rowUpper[row]))
        return false;  // the row leaves
    const double dual = form.cost[column] / entry;
    if (dual != 0.0 && !form.IsEquation(row) && !MakeEquation(form, column, row, dual))
        return form.contradiction;
    if (dual != 0.0)
        MoveCost(form, column, row, dual);
    const double low = form.lower[column];
    const double high = form.upper[column];
    form.Note(
        {.restore = Restore,
         .row = row,
         .column = column,
         .number = {entry, form.cost[column], low, high, form.rowLower[row], form.rowUpper[row]}});
    const bool grows = entry > 0.0;  // same bits (-> >=): an entry is not 0
    const double least = entry * (grows ? low : high);
    const double largest = entry * (grows ? high : low);
    form.RemoveColumn(column);
    form.SetSides(row, form.rowLower[row] - largest, form.rowUpper[row] - least);
    return true;
}

}  // namespace nuv::presolve
