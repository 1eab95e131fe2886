/// Rows whose least sum is their upper side, or whose largest is their lower one: every column
/// rests at the bound that makes it so.
#include "Nuv/SparseSimplex/Presolve/Rules.hpp"

#include <algorithm>
#include <cmath>

namespace nuv::presolve
{
namespace
{

/// The columns came back at their bounds, with reduced costs that may have the wrong sign there.
/// The dual makes them right: at the upper side it is not positive, and must be no larger than each
/// reduced / entry; the column that asks for most becomes basic in exchange for the logical.
void Restore(const Removal& removal, const SparseVectors<double>& kept, RestoredPoint& point)
{
    const double sign = removal.side == Side::Upper ? 1.0 : -1.0;
    double dual = 0.0;
    Index entering = kNoIndex;
    double activity = 0.0;
    for (const auto [column, entry] : kept[removal.kept])
    {
        activity += entry * point.value[column];
        const double wanted = point.reduced[column] / entry;
        if (sign * wanted < sign * dual)
        {
            dual = wanted;
            entering = column;
        }
    }
    point.activity[removal.row] = activity;
    point.dual[removal.row] = dual;
    point.basis.rows[removal.row] = BasisStatus::Basic;
    if (entering == kNoIndex)
        return;
    for (const auto [column, entry] : kept[removal.kept])
        point.reduced[column] -= entry * dual;
    point.reduced[entering] = 0.0;
    point.basis.columns[entering] = BasisStatus::Basic;
    point.basis.rows[removal.row] =
        removal.side == Side::Upper ? BasisStatus::AtUpper : BasisStatus::AtLower;
}

/// The sign of a fixed column's reduced cost says nothing about a dual.
bool HasFixedColumn(ReducibleForm& form, Index row)
{
    bool found = false;
    form.VisitRow(row, [&](Index column, double)
                  { found = found || form.lower[column] == form.upper[column]; });
    return found;
}

}  // namespace

bool ForceRow(ReducibleForm& form, Index row)
{
    const ActivityRange& range = form.ActivityOf(row);
    const double low = form.rowLower[row];
    const double high = form.rowUpper[row];
    // Farther off, the row could not be satisfied.
    const bool atUpper = std::isfinite(high) && std::fabs(range.Least() - high) <= Margin(high);
    const bool atLower = std::isfinite(low) && std::fabs(range.Largest() - low) <= Margin(low);
    if ((!atUpper && !atLower) || HasFixedColumn(form, row))
        return false;
    const Index kept = form.KeepRow(row);
    form.Note({.restore = Restore,
               .row = row,
               .kept = kept,
               .side = atUpper ? Side::Upper : Side::Lower});
    form.RemoveRow(row);
    for (Index k = 0; k < form.Kept().Indices(kept).size(); ++k)
    {
        const Index column = form.Kept().Indices(kept)[k];
        // same bits (-> >=): an entry is not 0
        const bool atItsLower = (form.Kept().Values(kept)[k] > 0.0) == atUpper;
        RemoveFixed(form, column, atItsLower ? form.lower[column] : form.upper[column],
                    atItsLower ? Side::Lower : Side::Upper);
    }
    return true;
}

}  // namespace nuv::presolve
