/// Columns whose value is known: they move to the sides of their rows.
#include "Nuv/SparseSimplex/Presolve/Rules.hpp"

#include <algorithm>
#include <cmath>

namespace nuv::presolve
{
namespace
{

void Restore(const Removal& removal, const SparseVectors<double>& kept, RestoredPoint& point)
{
    const double value = removal.number[0];
    double reduced = removal.number[1];
    for (const auto [row, entry] : kept[removal.kept])
    {
        point.activity[row] += entry * value;
        reduced -= entry * point.dual[row];
    }
    point.value[removal.column] = value;
    point.reduced[removal.column] = reduced;
    BasisStatus& status = point.basis.columns[removal.column];
    switch (removal.side)
    {
    case Side::Lower:
        status = BasisStatus::AtLower;
        break;
    case Side::Upper:
        status = BasisStatus::AtUpper;
        break;
    case Side::Both:
        status = RestingPlace(reduced);
        break;
    case Side::Neither:
        status = BasisStatus::Free;
        break;
    }
}

/// Takes a column to a bound that may be infinite, in which case nothing holds it.
void RemoveAtBound(ReducibleForm& form, Index column, Side side)
{
    const double bound = side == Side::Lower ? form.lower[column] : form.upper[column];
    if (std::isinf(bound))
        form.contradiction = true;
    else
        RemoveFixed(form, column, bound, side);
}

void RemoveEmpty(ReducibleForm& form, Index column)
{
    const double cost = form.cost[column];
    const BasisStatus at = DefaultNonbasicStatus(form.lower[column], form.upper[column]);
    if (cost != 0.0)
        // same bits (-> >=): it is not 0
        RemoveAtBound(form, column, cost > 0.0 ? Side::Lower : Side::Upper);
    else if (at == BasisStatus::Free)
        RemoveFixed(form, column, 0.0, Side::Neither);
    else
        RemoveAtBound(form, column, at == BasisStatus::AtLower ? Side::Lower : Side::Upper);
}

/// The least and the largest share of a dual in a reduced cost.
struct Share
{
    double least;
    double largest;
};

Share ShareOf(double entry, double dualLower, double dualUpper) noexcept
{
    // same bits (-> >=): an entry is not 0
    return entry > 0.0 ? Share{-entry * dualUpper, -entry * dualLower}
                       : Share{-entry * dualLower, -entry * dualUpper};
}

/// Whether no row and no cost minds a column that falls (or grows).
bool IsHarmless(ReducibleForm& form, Index column, bool falls)
{
    bool harmless = falls ? form.cost[column] >= 0.0 : form.cost[column] <= 0.0;
    form.VisitColumn(column,
                     [&](Index row, double entry)
                     {
                         const bool grows = entry > 0.0;  // same bits (-> >=): no entry is 0
                         const double side =
                             grows == falls ? form.rowLower[row] : form.rowUpper[row];
                         harmless = harmless && std::isinf(side);
                     });
    return harmless;
}

}  // namespace

void RemoveFixed(ReducibleForm& form, Index column, double value, Side side)
{
    form.Note({.restore = Restore,
               .column = column,
               .kept = form.KeepColumn(column),
               .side = side,
               .number = {value, form.cost[column]}});
    form.constant += form.cost[column] * value;
    if (value != 0.0)
    {
        form.VisitColumn(column,
                         [&](Index row, double entry)
                         {
                             form.rowLower[row] = Sum(form.rowLower[row], -entry * value);
                             form.rowUpper[row] = Sum(form.rowUpper[row], -entry * value);
                         });
    }
    form.RemoveColumn(column);
}

bool FixColumn(ReducibleForm& form, Index column)
{
    if (form.lower[column] == form.upper[column])
    {
        RemoveFixed(form, column, form.lower[column], Side::Both);
        return true;
    }
    if (form.columnCount[column] != 0)
        return false;
    RemoveEmpty(form, column);
    return true;
}

bool FixDominated(ReducibleForm& form, Index column, const std::vector<double>& dualLower,
                  const std::vector<double>& dualUpper)
{
    double least = form.cost[column];
    double largest = form.cost[column];
    form.VisitColumn(column,
                     [&](Index row, double entry)
                     {
                         const Share share = ShareOf(entry, dualLower[row], dualUpper[row]);
                         least += share.least;
                         largest += share.largest;
                     });
    const double margin = Margin(form.cost[column]);
    if (least > margin || largest < -margin)
    {
        RemoveAtBound(form, column, least > margin ? Side::Lower : Side::Upper);
        return true;
    }
    for (const Side side : {Side::Lower, Side::Upper})
    {
        const double bound = side == Side::Lower ? form.lower[column] : form.upper[column];
        if (std::isfinite(bound) && IsHarmless(form, column, side == Side::Lower))
        {
            RemoveAtBound(form, column, side);
            return true;
        }
    }
    return false;
}

}  // namespace nuv::presolve
