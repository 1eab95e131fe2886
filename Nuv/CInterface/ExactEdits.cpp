// Numbers of a model that no double says.
#include "Nuv/CInterface/Arrays.hpp"

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

/// A copy, so that a number for which there is no memory has changed nothing.
std::shared_ptr<Model> WithExact(const Model& model, const NumberPlace& place,
                                 const std::string& text)
{
    auto changed = std::make_shared<Model>(model);
    if (!SetNumber(*changed, place, text))
        Fail(NUV_MODELRESULT_InvalidModel, *changed->Failure());
    return changed;
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
                       handle.model = WithExact(*handle.model,
                                                PlaceOf(*handle.model, place, at, column), number);
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
