/// Rows of one entry: L <= a x <= U bounds x as well.
#include "Nuv/SparseSimplex/Presolve/Rules.hpp"

#include <algorithm>
#include <utility>

namespace nuv::presolve
{
namespace
{

/// If the column rests at a bound that is the row's, it is the row that rests: the column is basic
/// and its reduced cost becomes the row's dual.
void Restore(const Removal& removal, const SparseVectors<double>&, RestoredPoint& point)
{
    const double entry = removal.number[0];
    BasisStatus& column = point.basis.columns[removal.column];
    BasisStatus& row = point.basis.rows[removal.row];
    double& reduced = point.reduced[removal.column];
    point.activity[removal.row] = entry * point.value[removal.column];
    point.dual[removal.row] = 0.0;
    row = BasisStatus::Basic;
    const bool atRow = (column == BasisStatus::AtLower && removal.side != Side::Upper) ||
                       (column == BasisStatus::AtUpper && removal.side != Side::Lower);
    if (!atRow || removal.side == Side::Neither)
        return;
    // same bits (-> >=): an entry is not 0
    row = (column == BasisStatus::AtLower) == (entry > 0.0) ? BasisStatus::AtLower
                                                            : BasisStatus::AtUpper;
    column = BasisStatus::Basic;
    point.dual[removal.row] = reduced / entry;
    reduced = 0.0;
}

}  // namespace

bool TurnIntoBound(ReducibleForm& form, Index row)
{
    if (form.rowCount[row] != 1)
        return false;
    const auto [column, entry] = form.OnlyEntryOfRow(row);
    double low = form.rowLower[row] / entry;
    double high = form.rowUpper[row] / entry;
    if (entry < 0.0)  // same bits (-> <=): an entry is not 0
        std::swap(low, high);
    const bool raises = low > form.lower[column];
    const bool lowers = high < form.upper[column];
    low = std::max(low, form.lower[column]);
    high = std::min(high, form.upper[column]);
    if (low > high + Margin(high))
    {
        form.contradiction = true;
        return true;
    }
    // Bounds that meet but for rounding meet at the one that was there.
    if (low > high - Margin(high))
        (raises ? low : high) = raises ? high : low;
    form.Note({.restore = Restore,
               .row = row,
               .column = column,
               .side = raises && lowers ? Side::Both
                       : raises         ? Side::Lower
                       : lowers         ? Side::Upper
                                        : Side::Neither,
               .number = {entry}});
    form.RemoveRow(row);
    if (raises || lowers)
        form.SetBounds(column, low, high);
    return true;
}

}  // namespace nuv::presolve
