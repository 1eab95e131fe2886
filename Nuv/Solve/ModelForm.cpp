#include "Nuv/Solve/ModelForm.hpp"

#include "Nuv/Algebra/RationalText.hpp"

#include <optional>
#include <utility>

namespace nuv
{
namespace
{

/// The model's rows without their zeros.
SparseVectors<double> NonzerosByRow(const Model& model)
{
    SparseVectors<double> rows;
    rows.index.reserve(model.NonzeroCount());
    rows.value.reserve(model.NonzeroCount());
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
    {
        const std::span<const std::uint32_t> columns = model.RowColumns(i);
        const std::span<const double> values = model.RowCoefficients(i);
        for (std::size_t at = 0; at < columns.size(); ++at)
        {
            if (values[at] != 0.0)
                rows.Append(columns[at], values[at]);
        }
        rows.Close();
    }
    return rows;
}

FormPlace PlaceInForm(const NumberPlace& place)
{
    switch (place.of)
    {
    case NumberPlace::Of::ObjectiveConstant:
        break;
    case NumberPlace::Of::Objective:
        return {FormPlace::Of::Cost, place.at};
    case NumberPlace::Of::VariableLower:
        return {FormPlace::Of::ColumnLower, place.at};
    case NumberPlace::Of::VariableUpper:
        return {FormPlace::Of::ColumnUpper, place.at};
    case NumberPlace::Of::RowLower:
        return {FormPlace::Of::RowLower, place.at};
    case NumberPlace::Of::RowUpper:
        return {FormPlace::Of::RowUpper, place.at};
    case NumberPlace::Of::Entry:
        return {FormPlace::Of::Entry, place.at, place.column};
    }
    return {FormPlace::Of::Constant};
}

void TakeExactNumbers(const Model& model, bool negatesObjective, ExactTable& table)
{
    for (const auto& [place, text] : model.Exact())
    {
        std::optional<Rational> number = ReadRational(text);
        if (!number)
            continue;
        if (negatesObjective && place.of <= NumberPlace::Of::Objective)
            number = -*number;
        table.Set(PlaceInForm(place), std::move(*number));
    }
}

}  // namespace

BoundedForm FormOf(const Model& model, CoefficientMeaning numbers)
{
    const double sign = model.ObjectiveSense() == Sense::Maximize ? -1.0 : 1.0;
    BoundedForm form;
    form.numbers = numbers;
    form.rows = model.RowCount();
    form.columns = model.VariableCount();
    form.constant = sign * model.ObjectiveConstant();
    for (const double coefficient : model.Objective())
        form.cost.push_back(sign * coefficient);
    form.columnLower.assign(model.VariableLower().begin(), model.VariableLower().end());
    form.columnUpper.assign(model.VariableUpper().begin(), model.VariableUpper().end());
    form.rowLower.assign(model.RowLower().begin(), model.RowLower().end());
    form.rowUpper.assign(model.RowUpper().begin(), model.RowUpper().end());
    form.matrix = SparseMatrix<double>::FromRows(NonzerosByRow(model), form.columns);
    if (numbers == CoefficientMeaning::ShortestDecimal)
        TakeExactNumbers(model, sign < 0.0, form.exact);
    return form;
}

}  // namespace nuv
