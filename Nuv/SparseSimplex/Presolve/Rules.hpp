/// The reductions, each in a file with its inverse. A rule is asked about one row or column that is
/// present, and says whether it took something away; sources are Brearley, Mitra and Williams,
/// Analysis of mathematical programming problems prior to applying the simplex algorithm, 1975, and
/// Andersen and Andersen, Presolving in linear programming, 1995.
#pragma once

#include "Nuv/SparseSimplex/Presolve/ReducibleForm.hpp"

namespace nuv::presolve
{

/// A row without entries, or one whose sides its columns cannot leave, restricts nothing.
bool DropRow(ReducibleForm& form, Index row);

/// A row of one entry is a bound of its column.
bool TurnIntoBound(ReducibleForm& form, Index row);

/// A row that reaches its side only with all columns at the bounds that take it there.
bool ForceRow(ReducibleForm& form, Index row);

/// A column that a bound of its own, or its cost and no row, holds in its place.
bool FixColumn(ReducibleForm& form, Index column);

/// A column whose reduced cost has one sign for all duals that can be: within `dualLower` and
/// `dualUpper`, by row.
bool FixDominated(ReducibleForm& form, Index column, const std::vector<double>& dualLower,
                  const std::vector<double>& dualUpper);

/// A column that only one row uses is a slack of that row, if it costs nothing or the row is an
/// equation, by which its cost goes to the others.
bool AbsorbSlack(ReducibleForm& form, Index column);

/// A row of two entries that is an equation says what one of its columns is.
bool SubstituteByPair(ReducibleForm& form, Index row);

/// A column whose bounds follow from those of others leaves with an equation that says what it is,
/// if few entries come of it.
bool SubstituteFree(ReducibleForm& form, Index column);

/// Takes a column out that has this value from now on, and rests at that side: Both if its reduced
/// cost is to tell, Neither if it has no bound.
void RemoveFixed(ReducibleForm& form, Index column, double value, Side side);

/// Whether the rows keep a column within its bounds by themselves.
[[nodiscard]] bool IsImpliedFree(ReducibleForm& form, Index column);

}  // namespace nuv::presolve
