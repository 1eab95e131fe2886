/// Rows that restrict nothing: the logical is basic and the dual zero.
#include "Nuv/SparseSimplex/Presolve/Rules.hpp"

namespace nuv::presolve
{
namespace
{

void Restore(const Removal& removal, const SparseVectors<double>& kept, RestoredPoint& point)
{
    double activity = 0.0;
    for (const auto [column, entry] : kept[removal.kept])
        activity += entry * point.value[column];
    point.activity[removal.row] = activity;
    point.dual[removal.row] = 0.0;
    point.basis.rows[removal.row] = BasisStatus::Basic;
}

}  // namespace

bool DropRow(ReducibleForm& form, Index row)
{
    const ActivityRange& range = form.ActivityOf(row);
    double& low = form.rowLower[row];
    double& high = form.rowUpper[row];
    if (range.Least() > high + Margin(high) || range.Largest() < low - Margin(low))
    {
        form.contradiction = true;
        return true;
    }
    const bool lowerIsIdle = range.Least() >= low;
    const bool upperIsIdle = range.Largest() <= high;
    if (lowerIsIdle && upperIsIdle)
    {
        form.Note({.restore = Restore, .row = row, .kept = form.KeepRow(row)});
        form.RemoveRow(row);
        return true;
    }
    // An idle side of a row that is no equation only hides that the other one alone counts.
    if (!form.IsEquation(row) &&
        ((lowerIsIdle && low > -kInfinity) || (upperIsIdle && high < kInfinity)))
        form.SetSides(row, lowerIsIdle ? -kInfinity : low, upperIsIdle ? kInfinity : high);
    return false;
}

}  // namespace nuv::presolve
