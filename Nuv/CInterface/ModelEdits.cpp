// Models: making, asking and changing them.
#include "Nuv/CInterface/Arrays.hpp"
#include "Nuv/CInterface/BulkEditor.hpp"

#include <limits>

namespace nuv::c
{
namespace
{

/// Number k of a list of indices, or k.
std::uint32_t IndexAt(const std::uint32_t* indices, std::uint32_t k) noexcept
{
    return indices ? indices[k] : k;
}

/// All bounds are checked before any is set.
template <class HandleAt>
void SetBounds(Model& model, std::uint32_t count, const std::uint32_t* indices, const double* lower,
               const double* upper, std::span<const double> oldLower,
               std::span<const double> oldUpper, const char* what, const HandleAt& handleAt)
{
    CheckIndices(indices, count, static_cast<std::uint32_t>(oldLower.size()), what);
    const auto boundsAt = [&](std::uint32_t k)
    {
        const std::uint32_t index = IndexAt(indices, k);
        return BoundsAt(lower, upper, k, {oldLower[index], oldUpper[index]}, what, index);
    };
    for (std::uint32_t k = 0; k < count; ++k)
        (void)boundsAt(k);
    for (std::uint32_t k = 0; k < count; ++k)
        model.SetBounds(handleAt(IndexAt(indices, k)), boundsAt(k));
}

template <class NameAt>
std::string NamesOf(std::uint32_t count, const NameAt& nameAt)
{
    std::string names;
    for (std::uint32_t k = 0; k < count; ++k)
        names.append(nameAt(k)).push_back('\0');
    return names;
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvModel* NuvModelConstruct(void)
{
    return Construct<NuvModel>();
}

NuvModel* NuvModelConstructCopy(const NuvModel* model)
{
    if (!IsHandle(model))
        return nullptr;
    // A model that nobody can ask for is not made first.
    return Construct<NuvModel>(model->model);
}

void NuvModelDestruct(NuvModel* model)
{
    Destruct(model);
}

NuvModelResult NuvModelSetCosts(NuvModel* model, uint32_t count, const uint32_t* columns,
                                const double* costs, NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       NuvModel& handle = Checked(model);
                       CheckIndices(columns, count, handle.model->VariableCount(), "column");
                       Require(costs || count == 0, "costs is null");
                       for (std::uint32_t k = 0; k < count; ++k)
                           Finite(costs[k], "the cost of column", IndexAt(columns, k));
                       nuv::Model& changed = Changeable(handle);
                       for (std::uint32_t k = 0; k < count; ++k)
                           changed.SetCost(changed.VariableAt(IndexAt(columns, k)), costs[k]);
                   });
}

NuvModelResult NuvModelSetColumnBounds(NuvModel* model, uint32_t count, const uint32_t* columns,
                                       const double* lower, const double* upper,
                                       NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       nuv::Model& changed = Changeable(Checked(model));
                       SetBounds(changed, count, columns, lower, upper, changed.VariableLower(),
                                 changed.VariableUpper(), "column",
                                 [&](std::uint32_t at) { return changed.VariableAt(at); });
                   });
}

NuvModelResult NuvModelSetRowBounds(NuvModel* model, uint32_t count, const uint32_t* rows,
                                    const double* lower, const double* upper,
                                    NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       nuv::Model& changed = Changeable(Checked(model));
                       SetBounds(changed, count, rows, lower, upper, changed.RowLower(),
                                 changed.RowUpper(), "row",
                                 [&](std::uint32_t at) { return changed.RowAt(at); });
                   });
}

NuvModelResult NuvModelSetCoefficients(NuvModel* model, uint32_t count, const uint32_t* rows,
                                       const uint32_t* columns, const double* coefficients,
                                       NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       NuvModel& handle = Checked(model);
                       Require((rows && columns && coefficients) || count == 0, "an array is null");
                       CheckIndices(rows, count, handle.model->RowCount(), "row");
                       CheckIndices(columns, count, handle.model->VariableCount(), "column");
                       for (std::uint32_t k = 0; k < count; ++k)
                           Finite(coefficients[k], "a coefficient of row", rows[k]);
                       nuv::Model& changed = Changeable(handle);
                       // Without it an entry might find no memory after others are in.
                       nuv::BulkEditor::MakeRoom(changed, count);
                       for (std::uint32_t k = 0; k < count; ++k)
                           changed.SetCoefficient(changed.RowAt(rows[k]),
                                                  changed.VariableAt(columns[k]), coefficients[k]);
                   });
}

NuvModelResult NuvModelRemoveColumns(NuvModel* model, uint32_t count, const uint32_t* columns,
                                     NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       NuvModel& handle = Checked(model);
                       CheckIndices(columns, count, handle.model->VariableCount(), "column");
                       std::vector<nuv::Variable> removed;
                       for (std::uint32_t k = 0; k < count; ++k)
                           removed.push_back(handle.model->VariableAt(IndexAt(columns, k)));
                       const auto changed = std::make_shared<nuv::Model>(*handle.model);
                       changed->Remove(removed);
                       handle.model = changed;
                   });
}

NuvModelResult NuvModelRemoveRows(NuvModel* model, uint32_t count, const uint32_t* rows,
                                  NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       NuvModel& handle = Checked(model);
                       CheckIndices(rows, count, handle.model->RowCount(), "row");
                       std::vector<nuv::Row> removed;
                       for (std::uint32_t k = 0; k < count; ++k)
                           removed.push_back(handle.model->RowAt(IndexAt(rows, k)));
                       const auto changed = std::make_shared<nuv::Model>(*handle.model);
                       changed->Remove(removed);
                       handle.model = changed;
                   });
}

NuvModelResult NuvModelSetSense(NuvModel* model, uint32_t sense)
{
    return Guarded(nullptr,
                   [&]
                   {
                       NuvModel& handle = Checked(model);
                       RequireOneOf(sense, 2, "sense");
                       Changeable(handle).SetSense(sense == NUV_SENSE_Maximize
                                                       ? nuv::Sense::Maximize
                                                       : nuv::Sense::Minimize);
                   });
}

NuvModelResult NuvModelSetConstant(NuvModel* model, double constant, NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       NuvModel& handle = Checked(model);
                       Finite(constant, "the constant of objective", 0);
                       Changeable(handle).SetObjectiveConstant(constant);
                   });
}

NuvModelResult NuvModelSetName(NuvModel* model, const char* name)
{
    return Guarded(nullptr, [&] { Changeable(Checked(model)).SetName(&Given(name, "name")); });
}

NuvModelResult NuvModelSetObjectiveName(NuvModel* model, const char* name)
{
    return Guarded(nullptr,
                   [&] { Changeable(Checked(model)).SetObjectiveName(&Given(name, "name")); });
}

const char* NuvModelGetName(const NuvModel* model)
{
    return IsHandle(model) ? model->model->Name().c_str() : nullptr;
}

const char* NuvModelGetObjectiveName(const NuvModel* model)
{
    return IsHandle(model) ? model->model->ObjectiveName().c_str() : nullptr;
}

uint32_t NuvModelGetNumColumns(const NuvModel* model)
{
    return IsHandle(model) ? model->model->VariableCount() : 0;
}

uint32_t NuvModelGetNumRows(const NuvModel* model)
{
    return IsHandle(model) ? model->model->RowCount() : 0;
}

uint64_t NuvModelGetNumEntries(const NuvModel* model)
{
    return IsHandle(model) ? model->model->NonzeroCount() : 0;
}

uint64_t NuvModelGetColumnName(const NuvModel* model, uint32_t column, char* buffer, uint64_t size)
{
    if (column >= NuvModelGetNumColumns(model))
        return 0;
    return CopyText(model->model->VariableName(column), buffer, size);
}

uint64_t NuvModelGetRowName(const NuvModel* model, uint32_t row, char* buffer, uint64_t size)
{
    if (row >= NuvModelGetNumRows(model))
        return 0;
    return CopyText(model->model->RowName(row), buffer, size);
}

NuvModelResult NuvModelMakeColumnNames(const NuvModel* model, NuvText** names)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(names, "names") = nullptr;
                       const nuv::Model& held = *Checked(model).model;
                       MakeText(names, NamesOf(held.VariableCount(), [&](std::uint32_t column)
                                               { return held.VariableName(column); }));
                   });
}

NuvModelResult NuvModelMakeRowNames(const NuvModel* model, NuvText** names)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(names, "names") = nullptr;
                       const nuv::Model& held = *Checked(model).model;
                       MakeText(names, NamesOf(held.RowCount(), [&](std::uint32_t row)
                                               { return held.RowName(row); }));
                   });
}

uint32_t NuvModelFindColumn(const NuvModel* model, const char* name)
{
    if (!IsHandle(model) || !name)
        return NUV_MODEL_NO_INDEX;
    const auto found = model->model->FindVariable(name);
    return found ? model->model->IndexOf(*found) : NUV_MODEL_NO_INDEX;
}

uint32_t NuvModelFindRow(const NuvModel* model, const char* name)
{
    if (!IsHandle(model) || !name)
        return NUV_MODEL_NO_INDEX;
    const auto found = model->model->FindRow(name);
    return found ? model->model->IndexOf(*found) : NUV_MODEL_NO_INDEX;
}
