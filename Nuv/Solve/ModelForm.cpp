#include "Nuv/Solve/ModelForm.hpp"

#include <algorithm>
#include <numeric>

namespace nuv
{
namespace
{

/// The model's rows, each sorted by column.
SparseVectors<double> SortedRows(const Model& model)
{
    SparseVectors<double> rows;
    rows.index.reserve(model.NonzeroCount());
    rows.value.reserve(model.NonzeroCount());
    std::vector<std::size_t> order;
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
    {
        const std::span<const std::uint32_t> columns = model.RowColumns(i);
        const std::span<const double> values = model.RowCoefficients(i);
        order.resize(columns.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        if (!std::ranges::is_sorted(columns))
            std::ranges::sort(order, {}, [&](std::size_t at) { return columns[at]; });
        for (const std::size_t at : order)
            if (values[at] != 0.0)
                rows.Append(columns[at], values[at]);
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
    form.byRow = SortedRows(model);
    form.byColumn = Transposed(form.byRow, form.columns);
    return form;
}

}  // namespace nuv
