#include "Nuv/Solve/ModelForm.hpp"

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

}  // namespace

BoundedForm FormOf(const Model& model)
{
    const double sign = model.ObjectiveSense() == Sense::Maximize ? -1.0 : 1.0;
    BoundedForm form;
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
    return form;
}

}  // namespace nuv
