// Numbers of a model that no double says.
#include "Nuv/CInterface/Arrays.hpp"
#include "Nuv/Model/ModelErrors.hpp"
#include "Nuv/Model/WrittenNumber.hpp"

namespace nuv::c
{
namespace
{

NumberPlace PlaceOf(const Model& model, std::uint32_t place, std::uint32_t at, std::uint32_t column)
{
    RequireOneOf(place, NUV_PLACE_Entry + 1, "place of a number");
    const bool isOfColumn = place >= NUV_PLACE_Cost && place <= NUV_PLACE_ColumnUpper;
    const bool isOfRow = place >= NUV_PLACE_RowLower;
    Require(!isOfColumn || at < model.VariableCount(), "there is no such column");
    Require(!isOfRow || at < model.RowCount(), "there is no such row");
    Require(place != NUV_PLACE_Entry || column < model.VariableCount(), "there is no such column");
    return {static_cast<NumberPlace::Of>(place), place == NUV_PLACE_Constant ? 0 : at,
            place == NUV_PLACE_Entry ? column : 0};
}

/// Sets the number at a place, which is of the model.
bool SetNumber(Model& model, const NumberPlace& place, const std::string& text)
{
    using Of = NumberPlace::Of;
    switch (place.of)
    {
    case Of::ObjectiveConstant:
        return model.SetExactConstant(text);
    case Of::Objective:
        return model.SetExactCost(model.VariableAt(place.at), text);
    case Of::VariableLower:
        return model.SetExactLower(model.VariableAt(place.at), text);
    case Of::VariableUpper:
        return model.SetExactUpper(model.VariableAt(place.at), text);
    case Of::RowLower:
        return model.SetExactLower(model.RowAt(place.at), text);
    case Of::RowUpper:
        return model.SetExactUpper(model.RowAt(place.at), text);
    case Of::Entry:
        break;
    }
    return model.SetExactCoefficient(model.RowAt(place.at), model.VariableAt(place.column), text);
}

/// Whether the model, as a file may have it, has bounds where `place` is one that no number keeps.
bool HasImpossibleBounds(const Model& model, const NumberPlace& place)
{
    using Of = NumberPlace::Of;
    const bool isOfRow = place.of == Of::RowLower || place.of == Of::RowUpper;
    if (!isOfRow && place.of != Of::VariableLower && place.of != Of::VariableUpper)
        return false;
    return isOfRow
               ? !ArePossible({model.RowLower()[place.at], model.RowUpper()[place.at]})
               : !ArePossible({model.VariableLower()[place.at], model.VariableUpper()[place.at]});
}

/// What could be refused is tried on a copy, since a model remembers what it has refused; what is
/// not goes where the model is, which has it or, for want of memory, stays as it was.
void SetNumberOf(NuvModel& handle, const NumberPlace& place, const std::string& text)
{
    if (const Result<WrittenNumber> number = ReadNumber(text); !number)
        Fail(NUV_MODELRESULT_InvalidModel, number.GetError());
    if (!HasImpossibleBounds(*handle.model, place))
    {
        (void)SetNumber(Changeable(handle), place, text);
        return;
    }
    const auto changed = std::make_shared<Model>(*handle.model);
    if (!SetNumber(*changed, place, text))
        Fail(NUV_MODELRESULT_InvalidModel, *changed->Failure());
    handle.model = changed;
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvModelSetExact(NuvModel* model, uint32_t place, uint32_t at, uint32_t column,
                                const char* text, NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       NuvModel& handle = Checked(model);
                       const std::string number = &Given(text, "text");
                       SetNumberOf(handle, PlaceOf(*handle.model, place, at, column), number);
                   });
}

uint64_t NuvModelGetExact(const NuvModel* model, uint32_t place, uint32_t at, uint32_t column,
                          char* buffer, uint64_t size)
{
    uint64_t needed = 0;
    (void)Guarded(nullptr,
                  [&]
                  {
                      const nuv::Model& held = *Checked(model).model;
                      const std::string* said = held.Exact().Find(PlaceOf(held, place, at, column));
                      if (said)
                          needed = CopyText(*said, buffer, size);
                  });
    return needed;
}
