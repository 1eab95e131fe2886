/// Columns that an equation a x + sum a_k x_k = b defines: x = (b - sum a_k x_k) / a goes into all
/// other rows and the objective, and the equation leaves with the column. What x's bounds say of
/// the others must follow from what stays: they are implied, or of a row of two they become bounds
/// of the other column.
#include "Nuv/SparseSimplex/Presolve/Rules.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuv::presolve
{
namespace
{

/// A pivot smaller than this share of its column's largest entry would magnify rounding.
constexpr double kStable = 0.01;

/// The column is basic and the equation rests. For the rows r of the column, A'_rk = a_rk - a_rj
/// a_k / a, so the reduced costs of others are the same with the dual that makes the column's zero.
void Restore(const Removal& removal, const SparseVectors<double>& kept, RestoredPoint& point)
{
    const auto [pivot, cost, side] =
        std::tuple{removal.number[0], removal.number[1], removal.number[2]};
    double value = side;
    for (const auto [column, entry] : kept[removal.kept])
        value -= entry * point.value[column];
    double reduced = cost;
    for (const auto [row, entry] : kept[removal.kept + 1])
    {
        reduced -= entry * point.dual[row];
        point.activity[row] += entry * side / pivot;
    }
    point.value[removal.column] = value / pivot;
    point.reduced[removal.column] = 0.0;
    point.basis.columns[removal.column] = BasisStatus::Basic;
    point.activity[removal.row] = side;
    point.dual[removal.row] = reduced / pivot;
    point.basis.rows[removal.row] = BasisStatus::AtLower;
}

/// If the other column rests at a bound that was this one's, this one rests, and the other is
/// basic.
void RestorePair(const Removal& removal, const SparseVectors<double>&, RestoredPoint& point)
{
    const double entry = removal.number[0];
    const double otherEntry = removal.number[1];
    BasisStatus& column = point.basis.columns[removal.column];
    BasisStatus& other = point.basis.columns[removal.other];
    const bool atLower = other == BasisStatus::AtLower && removal.side != Side::Upper;
    const bool atUpper = other == BasisStatus::AtUpper && removal.side != Side::Lower;
    if (!atLower && !atUpper)
        return;
    // Where the entries have one sign, one column grows as the other falls.
    // same bits (-> <=): no entry is 0
    column = atLower == (entry * otherEntry < 0.0) ? BasisStatus::AtLower : BasisStatus::AtUpper;
    other = BasisStatus::Basic;
    const double change = point.reduced[removal.other] / otherEntry;
    point.dual[removal.row] += change;
    point.reduced[removal.column] = -entry * change;
    point.reduced[removal.other] = 0.0;
}

double LargestIn(ReducibleForm& form, Index column)
{
    double largest = 0.0;
    form.VisitColumn(column,
                     [&](Index, double entry) { largest = std::max(largest, std::fabs(entry)); });
    return largest;
}

void Substitute(ReducibleForm& form, Index row, Index column, double pivot)
{
    const double side = form.rowLower[row];
    const double cost = form.cost[column];
    const Index kept = form.KeepRow(row, column);
    (void)form.KeepColumn(column, row);
    form.Note({.restore = Restore,
               .row = row,
               .column = column,
               .kept = kept,
               .number = {pivot, cost, side}});
    form.RemoveRow(row);
    form.RemoveColumn(column);
    form.constant += cost * side / pivot;
    const SparseVectors<double>& vectors = form.Kept();
    for (const auto [other, entry] : vectors[kept])
    {
        form.cost[other] = Sum(form.cost[other], -cost * entry / pivot);
        form.columnsNoted.Note(other);
        for (const auto [at, factor] : vectors[kept + 1])
            form.AddToEntry(at, other, -factor * entry / pivot);
    }
    for (const auto [at, factor] : vectors[kept + 1])
    {
        form.rowLower[at] = Sum(form.rowLower[at], -factor * side / pivot);
        form.rowUpper[at] = Sum(form.rowUpper[at], -factor * side / pivot);
    }
}

struct Entry
{
    Index column = kNoIndex;
    double value = 0.0;  // same bits: set with the column
};

/// Gives the bounds of `column` to `other`.
/// @return whether they leave it anything.
bool PassBounds(ReducibleForm& form, Index row, const Entry& column, const Entry& other)
{
    const double side = form.rowLower[row];
    double low = (side - column.value * form.upper[column.column]) / other.value;
    double high = (side - column.value * form.lower[column.column]) / other.value;
    if (column.value * other.value < 0.0)  // same bits (-> <=): no entry is 0
        std::swap(low, high);
    const bool raises = low > form.lower[other.column];
    const bool lowers = high < form.upper[other.column];
    low = std::max(low, form.lower[other.column]);
    high = std::min(high, form.upper[other.column]);
    if (low > high + Margin(high))
        return false;
    if (low > high - Margin(high))
        (raises ? low : high) = raises ? high : low;
    if (!raises && !lowers)
        return true;
    form.Note({.restore = RestorePair,
               .row = row,
               .column = column.column,
               .other = other.column,
               .side = raises && lowers ? Side::Both
                       : raises         ? Side::Lower
                                        : Side::Upper,
               .number = {column.value, other.value}});
    form.SetBounds(other.column, low, high);
    return true;
}

/// The best equation to leave with a column: the shortest of those whose entry is stable.
struct Definition
{
    Index row = kNoIndex;
    double pivot = 0.0;  // same bits: set with the row
};

Definition FindDefinition(ReducibleForm& form, Index column)
{
    Definition best;
    const double stable = kStable * LargestIn(form, column);
    form.VisitColumn(column,
                     [&](Index row, double entry)
                     {
                         if (form.IsEquation(row) && std::fabs(entry) >= stable &&
                             (best.row == kNoIndex || form.rowCount[row] < form.rowCount[best.row]))
                             best = {row, entry};
                     });
    return best;
}

}  // namespace

bool SubstituteByPair(ReducibleForm& form, Index row)
{
    if (form.rowCount[row] != 2 || !form.IsEquation(row))
        return false;
    Entry first;
    Entry second;
    form.VisitRow(row,
                  [&](Index column, double entry)
                  {
                      second = first;
                      first = {column, entry};
                  });
    if (form.columnCount[first.column] > form.columnCount[second.column])
        std::swap(first, second);
    if (std::fabs(first.value) < kStable * LargestIn(form, first.column))
        std::swap(first, second);
    if (std::fabs(first.value) < kStable * LargestIn(form, first.column) ||
        form.lower[second.column] == form.upper[second.column])
        return false;
    if (!PassBounds(form, row, first, second))
    {
        form.contradiction = true;
        return true;
    }
    Substitute(form, row, first.column, first.value);
    return true;
}

bool SubstituteFree(ReducibleForm& form, Index column)
{
    constexpr Index kLongestColumn = 3;
    constexpr Index kLongestRow = 8;
    if (form.columnCount[column] > kLongestColumn)
        return false;
    const Definition found = FindDefinition(form, column);
    if (found.row == kNoIndex || form.rowCount[found.row] > kLongestRow ||
        !IsImpliedFree(form, column))
        return false;
    Substitute(form, found.row, column, found.pivot);
    return true;
}

bool IsImpliedFree(ReducibleForm& form, Index column)
{
    bool below = std::isinf(form.lower[column]);
    bool above = std::isinf(form.upper[column]);
    form.VisitColumn(column,
                     [&](Index row, double entry)
                     {
                         if (below && above)
                             return;
                         const double byUpper =
                             (form.rowUpper[row] - form.LeastWithout(row, column, entry)) / entry;
                         const double byLower =
                             (form.rowLower[row] - form.LargestWithout(row, column, entry)) / entry;
                         const bool grows = entry > 0.0;  // same bits (-> >=): no entry is 0
                         const double least = grows ? byLower : byUpper;
                         const double largest = grows ? byUpper : byLower;
                         below = below || least >= form.lower[column] - Margin(form.lower[column]);
                         above =
                             above || largest <= form.upper[column] + Margin(form.upper[column]);
                     });
    return below && above;
}

}  // namespace nuv::presolve
