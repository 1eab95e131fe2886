/// What postsolve knows: the point and the basis of a form from which rows and columns were taken,
/// and of each reduction what its inverse needs. Reductions are undone in reverse order, so an
/// inverse sees the form as its reduction left it, and brings back the form that this one found.
///
/// Invariant, of all rows and columns present: activity = A x, reduced = cost - A' dual, for the
/// matrix and the costs as they were at that time.
#pragma once

#include "Nuv/SparseSimplex/Basis.hpp"

#include "Nuv/Algebra/SparseMatrix.hpp"

#include <array>
#include <vector>

namespace nuv::presolve
{

struct RestoredPoint
{
    // By column.
    std::vector<double> value;
    std::vector<double> reduced;
    // By row.
    std::vector<double> activity;
    std::vector<double> dual;
    Basis basis;
};

/// What else an inverse wants to know of its reduction.
enum class Side : unsigned char
{
    Neither,
    Lower,
    Upper,
    Both,
};

/// One reduction, for its inverse.
struct Removal
{
    using Restore = void (*)(const Removal& removal, const SparseVectors<double>& kept,
                             RestoredPoint& point);

    Restore restore = nullptr;
    Index row = kNoIndex;
    Index column = kNoIndex;
    Index other = kNoIndex;  ///< a second column
    Index kept = kNoIndex;   ///< the first of the vectors that are kept for it
    Side side = Side::Neither;
    std::array<double, 6> number{};
};

/// Where a column rests that is fixed by bounds of different origin: where its reduced cost wants
/// it.
[[nodiscard]] inline BasisStatus RestingPlace(double reduced) noexcept
{
    return reduced < 0.0 ? BasisStatus::AtUpper : BasisStatus::AtLower;
}

}  // namespace nuv::presolve
