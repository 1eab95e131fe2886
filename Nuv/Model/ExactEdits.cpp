/// Numbers of a model that no double says, out of texts.
#include "Nuv/Algebra/RationalText.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Model/ModelErrors.hpp"
#include "Nuv/Model/WrittenNumber.hpp"

#include <cmath>
#include <functional>
#include <string>
#include <utility>

namespace nuv
{
namespace
{

/// Sets the double of a place; one type for all, so that there is one SetExact in the program.
using Setter = std::function<bool(double)>;

}  // namespace

Result<WrittenNumber> ReadNumber(std::string_view text)
{
    const std::optional<Rational> number = ReadRational(text);
    WrittenNumber written = number ? WrittenNumber(*number) : WrittenNumber();
    if (number && std::isfinite(written.value) && (written.value != 0.0 || *number == 0))
        return written;
    return MakeError("model.not-a-number", Quoted(text) + " is no number that a double is near to",
                     "write an integer, a decimal or a quotient of integers");
}

/// What is said beside doubles is made before a double is set: where there is no memory for it,
/// nothing has changed.
template <class Set>
bool Model::SetExact(const NumberPlace& place, std::string_view text, const Set& set,
                     ExactNumbers kept)
{
    const Result<WrittenNumber> number = ReadNumber(text);
    if (!number)
        return Fail(number.GetError());
    if (number->exact)
        kept.Set(place, std::string(text));
    if (!set(number->value))
        return false;
    m_exact.Take(std::move(kept));
    return true;
}

template <class Set>
bool Model::SetExactBound(const NumberPlace& place, const NumberPlace& other, std::string_view text,
                          const Set& set)
{
    ExactNumbers kept;
    if (const std::string* const said = m_exact.Find(other))
        kept.Set(other, *said);
    return SetExact(place, text, set, std::move(kept));
}

bool Model::SetExactCost(Variable variable, std::string_view number)
{
    return SetExact({NumberPlace::Of::Objective, IndexOf(variable)}, number,
                    Setter([&](double nearest) { return SetCost(variable, nearest); }));
}

bool Model::SetExactConstant(std::string_view number)
{
    return SetExact({NumberPlace::Of::ObjectiveConstant}, number,
                    Setter([&](double nearest) { return SetObjectiveConstant(nearest); }));
}

bool Model::SetExactCoefficient(Row row, Variable variable, std::string_view number)
{
    return SetExact({NumberPlace::Of::Entry, IndexOf(row), IndexOf(variable)}, number,
                    Setter([&](double nearest) { return SetCoefficient(row, variable, nearest); }));
}

bool Model::SetExactLower(Variable variable, std::string_view number)
{
    const std::uint32_t at = IndexOf(variable);
    return SetExactBound(
        {NumberPlace::Of::VariableLower, at}, {NumberPlace::Of::VariableUpper, at}, number,
        Setter(
            [&](double nearest)
            {
                const bool isKnown = Locate("a bound is set for", variable) != Variable::NoIndex;
                return isKnown && SetBounds(variable, {nearest, m_variableUpper[at]});
            }));
}

bool Model::SetExactUpper(Variable variable, std::string_view number)
{
    const std::uint32_t at = IndexOf(variable);
    return SetExactBound(
        {NumberPlace::Of::VariableUpper, at}, {NumberPlace::Of::VariableLower, at}, number,
        Setter(
            [&](double nearest)
            {
                const bool isKnown = Locate("a bound is set for", variable) != Variable::NoIndex;
                return isKnown && SetBounds(variable, {m_variableLower[at], nearest});
            }));
}

bool Model::SetExactLower(Row row, std::string_view number)
{
    const std::uint32_t at = IndexOf(row);
    return SetExactBound({NumberPlace::Of::RowLower, at}, {NumberPlace::Of::RowUpper, at}, number,
                         Setter(
                             [&](double nearest)
                             {
                                 const bool isKnown =
                                     Locate("a side is set for", row) != Row::NoIndex;
                                 return isKnown && SetBounds(row, {nearest, m_rowUpper[at]});
                             }));
}

bool Model::SetExactUpper(Row row, std::string_view number)
{
    const std::uint32_t at = IndexOf(row);
    return SetExactBound({NumberPlace::Of::RowUpper, at}, {NumberPlace::Of::RowLower, at}, number,
                         Setter(
                             [&](double nearest)
                             {
                                 const bool isKnown =
                                     Locate("a side is set for", row) != Row::NoIndex;
                                 return isKnown && SetBounds(row, {m_rowLower[at], nearest});
                             }));
}

}  // namespace nuv
