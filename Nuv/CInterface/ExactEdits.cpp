// Numbers of a model that no double says.
#include "Nuv/Algebra/RationalText.hpp"
#include "Nuv/CInterface/Arrays.hpp"
#include "Nuv/Model/ModelBuilder.hpp"

#include <cmath>

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

/// Sets the double at a place, which forgets what was said beside it.
void SetDouble(Model& model, const NumberPlace& place, double value)
{
    using Of = NumberPlace::Of;
    const std::uint32_t at = place.at;
    switch (place.of)
    {
    case Of::ObjectiveConstant:
        model.SetObjectiveConstant(value);
        break;
    case Of::Objective:
        model.SetCost(model.VariableAt(at), value);
        break;
    case Of::VariableLower:
        model.SetBounds(model.VariableAt(at), {value, model.VariableUpper()[at]});
        break;
    case Of::VariableUpper:
        model.SetBounds(model.VariableAt(at), {model.VariableLower()[at], value});
        break;
    case Of::RowLower:
        model.SetBounds(model.RowAt(at), {value, model.RowUpper()[at]});
        break;
    case Of::RowUpper:
        model.SetBounds(model.RowAt(at), {model.RowLower()[at], value});
        break;
    case Of::Entry:
        model.SetCoefficient(model.RowAt(at), model.VariableAt(place.column), value);
        break;
    }
}

/// The place of the other bound, what was said of which setting this one forgets.
std::optional<NumberPlace> OtherBound(NumberPlace place)
{
    using Of = NumberPlace::Of;
    const Of other = place.of == Of::VariableLower   ? Of::VariableUpper
                     : place.of == Of::VariableUpper ? Of::VariableLower
                     : place.of == Of::RowLower      ? Of::RowUpper
                     : place.of == Of::RowUpper      ? Of::RowLower
                                                     : Of::Entry;
    if (other == Of::Entry)
        return std::nullopt;
    place.of = other;
    return place;
}

std::shared_ptr<Model> WithExact(const Model& model, const NumberPlace& place,
                                 const std::string& text)
{
    const std::optional<Rational> number = ReadRational(text);
    const double nearest = number ? ToDouble(*number) : 0.0;
    if (!number || !std::isfinite(nearest) || (nearest == 0.0 && *number != 0))
        Fail(NUV_MODELRESULT_InvalidModel, "model.not-a-number",
             "'" + text + "' is no number that a double is near to",
             "write an integer, a decimal or a quotient of integers");
    Model changed = model;
    SetDouble(changed, place, nearest);
    ModelBuilder builder(std::move(changed));
    if (ToRational(nearest, CoefficientMeaning::ShortestDecimal) != *number)
        builder.SetExact(place, text);
    const std::optional<NumberPlace> other = OtherBound(place);
    if (const std::string* said = other ? model.Exact().Find(*other) : nullptr)
        builder.SetExact(*other, *said);
    return std::make_shared<Model>(builder.Take());
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
