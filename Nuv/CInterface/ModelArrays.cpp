// Models in bulk: many columns or rows in one call, all of them or none.
#include "Nuv/CInterface/Arrays.hpp"
#include "Nuv/CInterface/Records.hpp"
#include "Nuv/CInterface/BulkEditor.hpp"
#include "Nuv/Model/Transposed.hpp"

#include <limits>

namespace nuv::c
{
namespace
{

constexpr Bounds kFreeRow{-Infinity, Infinity};

[[noreturn]] void NameTaken(const char* what, std::string_view name)
{
    Fail(NUV_MODELRESULT_InvalidModel, std::string("model.duplicate-") + what,
         std::string("there is already a ") + what + " called '" + std::string(name) + "'",
         "give each a name of its own");
}

/// Fails where a model would have more columns or rows than an index can name.
void CheckRoom(std::uint32_t had, std::uint32_t more)
{
    Require(more < NUV_MODEL_NO_INDEX - had, "there would be more columns or rows than indices");
}

void AppendColumns(BulkEditor& editor, const Model& model, std::uint32_t count, const double* costs,
                   const double* lower, const double* upper, Names names)
{
    const std::uint32_t first = model.VariableCount();
    CheckRoom(first, count);
    for (std::uint32_t k = 0; k < count; ++k)
    {
        const std::string_view name = names.Next();
        const Bounds bounds = BoundsAt(lower, upper, k, {}, "column", first + k);
        const double cost = Finite(At(costs, k, 0.0), "the cost of column", first + k);
        if (!editor.AppendColumn(name, bounds, cost))
            NameTaken("variable", name);
    }
}

/// The vectors have been checked.
void AppendRows(BulkEditor& editor, const Model& model, const Vectors& rows, const double* lower,
                const double* upper, Names names)
{
    const std::uint32_t first = model.RowCount();
    CheckRoom(first, rows.count);
    for (std::uint32_t k = 0; k < rows.count; ++k)
    {
        const std::string_view name = names.Next();
        const Bounds bounds = BoundsAt(lower, upper, k, kFreeRow, "row", first + k);
        if (!editor.AppendRow(name, bounds, rows.Indices(k), rows.Values(k)))
            NameTaken("row", name);
    }
}

/// The arrays' matrix by rows; `storage` holds it where it came by columns.
struct Matrix
{
    std::vector<std::uint64_t> starts;
    CompressedVectors byRow;
    Vectors rows;
};

void ToRows(const NuvModelArrays& arrays, Matrix& matrix)
{
    const bool byRows = arrays.layout == NUV_LAYOUT_ByRows;
    matrix.rows = {byRows ? arrays.numRows : arrays.numColumns, arrays.starts, arrays.indices,
                   arrays.values};
    const std::uint64_t entries = arrays.starts ? arrays.starts[matrix.rows.count] : 0;
    Require(entries == arrays.numEntries, "the last start is not the number of entries");
    matrix.rows.Check(byRows ? arrays.numColumns : arrays.numRows, byRows ? "row" : "column", 0);
    if (byRows)
        return;
    if (!arrays.starts)
    {
        matrix.rows.count = arrays.numRows;
        return;
    }
    const std::size_t size = static_cast<std::size_t>(entries);
    const std::vector<std::size_t> starts(arrays.starts, arrays.starts + arrays.numColumns + 1);
    matrix.byRow =
        Transposed(starts, {arrays.indices, size}, {arrays.values, size}, arrays.numRows);
    matrix.starts.assign(matrix.byRow.starts.begin(), matrix.byRow.starts.end());
    matrix.rows = {arrays.numRows, matrix.starts.data(), matrix.byRow.indices.data(),
                   matrix.byRow.values.data()};
}

std::shared_ptr<Model> ModelOf(const NuvModelArrays& arrays)
{
    RequireOneOf(arrays.sense, 2, "sense");
    RequireOneOf(arrays.layout, 2, "layout");
    Require(arrays.reserved == 0, "a reserved number is not zero");
    // Before the arrays are read to their ends, whatever these are.
    CheckRoom(arrays.numColumns, 0);
    CheckRoom(arrays.numRows, 0);
    Matrix matrix;
    ToRows(arrays, matrix);
    auto model = std::make_shared<Model>();
    model->SetSense(arrays.sense == NUV_SENSE_Maximize ? Sense::Maximize : Sense::Minimize);
    model->SetObjectiveConstant(Finite(arrays.constant, "the constant of objective", 0));
    BulkEditor editor(*model);
    AppendColumns(editor, *model, arrays.numColumns, arrays.costs, arrays.columnLower,
                  arrays.columnUpper,
                  {arrays.columnNames, arrays.columnNamesSize, arrays.numColumns});
    AppendRows(editor, *model, matrix.rows, arrays.rowLower, arrays.rowUpper,
               {arrays.rowNames, arrays.rowNamesSize, arrays.numRows});
    editor.Commit();
    return model;
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvModelArraysInit(NuvModelArrays* arrays, uint32_t size)
{
    return Guarded(nullptr, [&] { FillIn(arrays, "arrays", NuvModelArrays{}, size); });
}

NuvModelResult NuvModelAssignArrays(NuvModel* model, const NuvModelArrays* arrays,
                                    NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics, [&] { Checked(model).model = ModelOf(TakeIn(arrays, "arrays")); });
}

NuvModelResult NuvModelGetArrays(NuvModel* model, NuvModelArrays* arrays)
{
    return Guarded(nullptr,
                   [&]
                   {
                       const nuv::Model& held = *Checked(model).model;
                       (void)Given(arrays, "arrays");
                       const auto starts = held.RowStarts();
                       NuvModelArrays result{};
                       if constexpr (sizeof(std::size_t) == sizeof(std::uint64_t))
                           result.starts = reinterpret_cast<const std::uint64_t*>(starts.data());
                       else
                       {
                           model->starts.assign(starts.begin(), starts.end());
                           result.starts = model->starts.data();
                       }
                       result.sense = held.ObjectiveSense() == nuv::Sense::Maximize
                                          ? NUV_SENSE_Maximize
                                          : NUV_SENSE_Minimize;
                       result.numColumns = held.VariableCount();
                       result.numRows = held.RowCount();
                       result.layout = NUV_LAYOUT_ByRows;
                       result.numEntries = held.NonzeroCount();
                       result.constant = held.ObjectiveConstant();
                       result.costs = held.Objective().data();
                       result.columnLower = held.VariableLower().data();
                       result.columnUpper = held.VariableUpper().data();
                       result.rowLower = held.RowLower().data();
                       result.rowUpper = held.RowUpper().data();
                       result.indices = held.Columns().data();
                       result.values = held.Coefficients().data();
                       FillIn(arrays, "arrays", result);
                   });
}

NuvModelResult NuvModelAddColumns(NuvModel* model, uint32_t count, const double* costs,
                                  const double* lower, const double* upper, const char* names,
                                  uint64_t namesSize, NuvDiagnostics* diagnostics)
{
    return Guarded(
        diagnostics,
        [&]
        {
            nuv::Model& changed = Changeable(Checked(model));
            nuv::BulkEditor editor(changed);
            AppendColumns(editor, changed, count, costs, lower, upper, {names, namesSize, count});
            editor.Commit();
        });
}

NuvModelResult NuvModelAddRows(NuvModel* model, uint32_t count, const double* lower,
                               const double* upper, const uint64_t* starts, const uint32_t* columns,
                               const double* coefficients, const char* names, uint64_t namesSize,
                               NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       nuv::Model& changed = Changeable(Checked(model));
                       const Vectors rows = {count, starts, columns, coefficients};
                       rows.Check(changed.VariableCount(), "row", changed.RowCount());
                       nuv::BulkEditor editor(changed);
                       AppendRows(editor, changed, rows, lower, upper, {names, namesSize, count});
                       editor.Commit();
                   });
}
