/// The computational form of a linear program (Maros, Computational Techniques of the Simplex
/// Method, 2003, chapter 1), which every solving stage works on:
///
///     minimise  cost . x + constant
///     subject to  rowLower <= A x <= rowUpper,  columnLower <= x <= columnUpper,
///
/// with A sparse and all numbers doubles; a bound may be infinite. Row i has a logical variable of
/// index columns + i whose value is the row's activity, so that the rows read A x - r = 0 and all
/// restrictions are bounds on columns + rows variables. The columns of all variables are those of
/// [A, -I].
///
/// What a number is in exact terms is said by `exact` where that has an entry, and by the double
/// and `numbers` everywhere else; an entry for an infinite bound counts for nothing.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Algebra/SparseMatrix.hpp"
#include "Nuv/SparseSimplex/ExactTable.hpp"

#include <compare>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace nuv
{

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct BoundedForm
{
    Index rows = 0;
    Index columns = 0;
    CoefficientMeaning numbers = CoefficientMeaning::StoredDouble;
    double constant = 0.0;
    std::vector<double> cost;
    std::vector<double> columnLower;
    std::vector<double> columnUpper;
    std::vector<double> rowLower;
    std::vector<double> rowUpper;
    SparseMatrix<double> matrix;  ///< A
    ExactTable exact;

    [[nodiscard]] Index Variables() const noexcept
    {
        return rows + columns;
    }
    [[nodiscard]] bool IsLogical(Index variable) const noexcept
    {
        return variable >= columns;
    }
    [[nodiscard]] double Lower(Index variable) const noexcept
    {
        return variable < columns ? columnLower[variable] : rowLower[variable - columns];
    }
    [[nodiscard]] double Upper(Index variable) const noexcept
    {
        return variable < columns ? columnUpper[variable] : rowUpper[variable - columns];
    }
    [[nodiscard]] double Cost(Index variable) const noexcept
    {
        return variable < columns ? cost[variable] : 0.0;
    }

    /// The logical variable of a row, and the row of a logical variable.
    [[nodiscard]] Index Logical(Index row) const noexcept
    {
        return columns + row;
    }
    [[nodiscard]] Index RowOf(Index logical) const noexcept
    {
        return logical - columns;
    }
    /// Two numbers may be next to one double, so doubles alone cannot tell.
    [[nodiscard]] bool IsFixed(Index variable) const
    {
        return Lower(variable) == Upper(variable) &&
               (exact.Empty() || ExactLower(variable) == ExactUpper(variable));
    }

    // The numbers themselves; a bound is finite.
    [[nodiscard]] Rational ExactLower(Index variable) const;
    [[nodiscard]] Rational ExactUpper(Index variable) const;
    [[nodiscard]] Rational ExactCost(Index variable) const;
    [[nodiscard]] Rational ExactConstant() const;
    /// `entry` of the variable's column of [A, -I].
    [[nodiscard]] Rational ExactEntry(Index row, Index variable, double entry) const;

    /// Calls visit(row, entry) for each entry of the variable's column of [A, -I].
    template <class Visit>
    void VisitColumn(Index variable, const Visit& visit) const
    {
        if (IsLogical(variable))
        {
            visit(RowOf(variable), -1.0);
            return;
        }
        for (const auto [row, entry] : matrix.Column(variable))
            visit(row, entry);
    }

    /// @return what is wrong with the data, empty if nothing is: array lengths, a matrix of another
    /// shape or with entries out of order, a number that is NaN, an infinite coefficient, a lower
    /// bound of +infinity or an upper one of -infinity.
    [[nodiscard]] std::string Defect() const;

private:
    [[nodiscard]] Rational Exactly(const FormPlace& place, double number) const;
};

/// The columns of [A, -I], logicals behind those of A. transform(row, entry) makes the values.
template <class Value, class Transform>
[[nodiscard]] SparseVectors<Value> ColumnsWithLogicals(const BoundedForm& form,
                                                       const Transform& transform)
{
    SparseVectors<Value> result;
    result.start.reserve(std::size_t{form.Variables()} + 1);
    const std::size_t entries = form.matrix.EntryCount() + form.rows;  // same bits: room alone
    result.index.reserve(entries);
    result.value.reserve(entries);
    for (Index v = 0; v < form.Variables(); ++v)
    {
        form.VisitColumn(v, [&](Index row, double entry)
                         { result.Append(row, transform(v, row, entry)); });
        result.Close();
    }
    return result;
}

/// Whether the lower bound of a variable exceeds its upper one.
[[nodiscard]] bool BoundsCross(const BoundedForm& form, Index variable);

/// Appends `sign` times the column of a variable of [A, -I] to the columns of another form, whose
/// exact numbers are `exact`.
void AppendColumnOf(const BoundedForm& form, Index variable, double sign,
                    SparseVectors<double>& columns, ExactTable& exact);

/// @return a variable whose lower bound exceeds its upper one, which no point satisfies; kNoIndex
/// if there is none.
[[nodiscard]] Index FindCrossedBounds(const BoundedForm& form);

/// One bound of a variable: of a column, or one side of a row by its logical.
struct BoundOfVariable
{
    Index variable = kNoIndex;
    bool upper = false;
    auto operator<=>(const BoundOfVariable&) const = default;
};

/// Whether a bound is the one that a variable has when none is stated: a column's lower bound of 0.
[[nodiscard]] bool IsDefault(const BoundedForm& form, const BoundOfVariable& bound) noexcept;

/// The form with these and the default bounds alone and no cost: whether they exclude each other.
[[nodiscard]] BoundedForm RestrictedTo(const BoundedForm& form,
                                       std::span<const BoundOfVariable> bounds);

}  // namespace nuv
