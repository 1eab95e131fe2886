/// The checks that let every stage behind this trust its input.
#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

bool AllFinite(const std::vector<double>& values)
{
    for (const double value : values)
    {
        if (!std::isfinite(value))
            return false;
    }
    return true;
}

/// Comparisons with NaN are false, so one test per bound refuses it too.
bool BoundsAreUsable(const std::vector<double>& lower, const std::vector<double>& upper)
{
    for (std::size_t k = 0; k < lower.size(); ++k)
    {
        if (!(lower[k] < kInfinity) || !(upper[k] > -kInfinity))
            return false;
    }
    return true;
}

/// Whether each vector names each index once, and in order.
bool EntriesAreOrdered(const SparseVectors<double>& vectors)
{
    for (Index k = 0; k < vectors.Count(); ++k)
    {
        const std::span<const Index> indices = vectors.Indices(k);
        for (std::size_t at = 1; at < indices.size(); ++at)
        {
            if (indices[at] <= indices[at - 1])
                return false;
        }
    }
    return true;
}

}  // namespace

std::string BoundedForm::Defect() const
{
    if (std::size_t{rows} + columns >= kNoIndex)
        return "too many rows and columns";
    if (cost.size() != columns || columnLower.size() != columns || columnUpper.size() != columns)
        return "column arrays of the wrong length";
    if (rowLower.size() != rows || rowUpper.size() != rows)
        return "row arrays of the wrong length";
    if (matrix.Columns().Count() != columns || matrix.Rows().Count() != rows ||
        !EntriesAreOrdered(matrix.Columns()))
        return "matrix entries out of range or out of order";
    if (!std::isfinite(constant) || !AllFinite(cost) || !AllFinite(matrix.Columns().value))
        return "a coefficient is not finite";
    if (!BoundsAreUsable(columnLower, columnUpper) || !BoundsAreUsable(rowLower, rowUpper))
        return "a bound is NaN or infinite on the wrong side";
    return {};
}

Rational BoundedForm::Exactly(const FormPlace& place, double number) const
{
    const Rational* const found = exact.Empty() ? nullptr : exact.Find(place);
    return found != nullptr ? *found : ToRational(number, numbers);
}

Rational BoundedForm::ExactLower(Index variable) const
{
    return IsLogical(variable)
               ? Exactly({FormPlace::Of::RowLower, RowOf(variable)}, Lower(variable))
               : Exactly({FormPlace::Of::ColumnLower, variable}, Lower(variable));
}

Rational BoundedForm::ExactUpper(Index variable) const
{
    return IsLogical(variable)
               ? Exactly({FormPlace::Of::RowUpper, RowOf(variable)}, Upper(variable))
               : Exactly({FormPlace::Of::ColumnUpper, variable}, Upper(variable));
}

Rational BoundedForm::ExactCost(Index variable) const
{
    return IsLogical(variable) ? Rational(0)
                               : Exactly({FormPlace::Of::Cost, variable}, cost[variable]);
}

Rational BoundedForm::ExactConstant() const
{
    return Exactly({FormPlace::Of::Constant}, constant);
}

Rational BoundedForm::ExactEntry(Index row, Index variable, double entry) const
{
    return Exactly({FormPlace::Of::Entry, row, variable}, entry);
}

bool BoundsCross(const BoundedForm& form, Index variable)
{
    const double lower = form.Lower(variable);
    const double upper = form.Upper(variable);
    if (form.exact.Empty() || std::isinf(lower) || std::isinf(upper))
        return lower > upper;
    return form.ExactLower(variable) > form.ExactUpper(variable);
}

void AppendColumnOf(const BoundedForm& form, Index variable, double sign,
                    SparseVectors<double>& columns, ExactTable& exact)
{
    form.VisitColumn(
        variable,
        [&](Index row, double entry)
        {
            columns.Append(row, sign * entry);
            const Rational* const number = form.exact.Find({FormPlace::Of::Entry, row, variable});
            if (number != nullptr)
                exact.Set({FormPlace::Of::Entry, row, columns.Count()},
                          // same bits (-> <=): it is 1 or -1
                          sign < 0.0 ? Rational(-*number) : *number);
        });
    columns.Close();
}

Index FindCrossedBounds(const BoundedForm& form)
{
    for (Index v = 0; v < form.Variables(); ++v)
    {
        if (BoundsCross(form, v))
            return v;
    }
    return kNoIndex;
}

bool IsDefault(const BoundedForm& form, const BoundOfVariable& bound) noexcept
{
    return !bound.upper && !form.IsLogical(bound.variable) &&
           form.columnLower[bound.variable] == 0.0;
}

BoundedForm RestrictedTo(const BoundedForm& form, std::span<const BoundOfVariable> bounds)
{
    BoundedForm restricted = form;
    restricted.exact.EraseObjective();
    std::ranges::fill(restricted.cost, 0.0);
    for (double& lower : restricted.columnLower)
        lower = lower == 0.0 ? 0.0 : -kInfinity;
    std::ranges::fill(restricted.rowLower, -kInfinity);
    for (auto* upper : {&restricted.columnUpper, &restricted.rowUpper})
        std::ranges::fill(*upper, kInfinity);
    for (const auto& [variable, upper] : bounds)
    {
        const bool isRow = form.IsLogical(variable);
        const Index at = isRow ? form.RowOf(variable) : variable;
        if (upper)
            (isRow ? restricted.rowUpper : restricted.columnUpper)[at] = form.Upper(variable);
        else
            (isRow ? restricted.rowLower : restricted.columnLower)[at] = form.Lower(variable);
    }
    return restricted;
}

}  // namespace nuv
