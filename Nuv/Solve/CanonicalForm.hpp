/// From the general form to the core's, and back:
///
///     minimise cost . x, rowLower <= A x <= rowUpper, columnLower <= x <= columnUpper
///     maximise c . y,    A' y <= b,                   y >= 0
///
/// Step by step: the sense turns; a variable with a lower bound is shifted there (x = lower + y),
/// one with an upper bound only is mirrored (x = upper - y), one without bounds is split (x = y -
/// y'), a fixed one is put in; a row with two sides becomes two rows, a free one none; a variable
/// with two bounds gets a row of its own. Optionally rows and columns are scaled by powers of two,
/// which changes exponents and no other bit. Invariant: every variable of the model has a plan, and
/// the plan is all that the way back needs.
#pragma once

#include "Nuv/Solve/Scaling.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <span>
#include <vector>

namespace nuv
{

/// Maximise cost . y subject to byRow y <= rhs, y >= 0.
struct CanonicalForm
{
    Index rows = 0;
    Index columns = 0;
    std::vector<double> cost;
    std::vector<double> rhs;
    SparseVectors<double> byRow;
};

enum class ColumnKind : std::uint8_t
{
    Shifted,   ///< x = offset + y
    Mirrored,  ///< x = offset - y
    Split,     ///< x = y - y', in two neighbouring columns
    Fixed,     ///< x = offset, without a column
};

struct ColumnPlan
{
    ColumnKind kind = ColumnKind::Shifted;
    Index column = kNoIndex;    ///< of y
    Index boundRow = kNoIndex;  ///< the row y <= upper - lower, where there is one
    double offset = 0.0;
    int exponent = 0;  ///< y is scaled: y = 2^exponent times the column's variable
};

/// Where the two sides of a row went, if it has them.
struct RowPlan
{
    Index upperRow = kNoIndex;  ///< a . y <= upper
    Index lowerRow = kNoIndex;  ///< -a . y <= -lower
};

struct Canonicalisation
{
    CanonicalForm form;
    std::vector<ColumnPlan> columns;
    std::vector<RowPlan> rows;
};

/// Lowers a form whose bounds do not contradict each other.
[[nodiscard]] Canonicalisation ToCanonicalForm(const BoundedForm& form,
                                               Scaling scaling = Scaling::None);

/// @return x for the canonical y.
[[nodiscard]] std::vector<double> FromCanonicalPoint(const Canonicalisation& canonicalised,
                                                     std::span<const double> y);

/// @return the basis of the general form that a canonical basis stands for. Labels count from 1:
/// columns first, then the rows' slacks.
[[nodiscard]] Basis FromCanonicalBasis(const Canonicalisation& canonicalised,
                                       std::span<const Index> basicLabels);

/// What rounding to binary32 does to the numbers of a canonical form.
struct Binary32Report
{
    std::size_t numbers = 0;             ///< that are not zero
    std::size_t inexact = 0;             ///< that binary32 cannot hold exactly
    std::size_t overflowing = 0;         ///< that become infinite
    double largestRelativeChange = 0.0;  ///< among those that stay finite
    /// The place of the first number that overflows, in the general form: its row (kNoIndex: the
    /// objective, or a variable's bounds) and its column (kNoIndex: a right-hand side).
    Index row = kNoIndex;
    Index column = kNoIndex;
};

[[nodiscard]] Binary32Report ReportBinary32(const Canonicalisation& canonicalised);

}  // namespace nuv
