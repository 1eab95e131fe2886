/// BOUNDS, and what follows from bounds that are missing. A variable starts with [0, +inf); each
/// record sets one side or both, the last one of a side holds.
#include "Nuv/Io/Infinity.hpp"
#include "Nuv/Io/Mps/MpsBuilder.hpp"

#include "Nuv/Io/LetterCase.hpp"

#include <fmt/core.h>

#include <cmath>

namespace nuv::mps
{

/// What a record of this type sets. Without `needsValue` the sides become infinite, or those of a
/// binary variable.
struct Builder::BoundType
{
    std::string_view name;
    bool setsLower;
    bool setsUpper;
    bool needsValue;
    bool integer;
    bool semiContinuous;
};

const Builder::BoundType* Builder::FindBoundType(std::string_view name) noexcept
{
    static constexpr BoundType kTypes[] = {
        {"up", false, true, true, false, false},  {"lo", true, false, true, false, false},
        {"fx", true, true, true, false, false},   {"fr", true, true, false, false, false},
        {"mi", true, false, false, false, false}, {"pl", false, true, false, false, false},
        {"bv", true, true, false, true, false},   {"li", true, false, true, true, false},
        {"ui", false, true, true, true, false},   {"sc", false, true, true, false, true},
        {"si", false, true, true, true, true},
    };
    for (const BoundType& type : kTypes)
    {
        if (EqualsIgnoringCase(name, type.name))
            return &type;
    }
    return nullptr;
}

bool BoundNeedsValue(std::string_view type) noexcept
{
    const Builder::BoundType* const found = Builder::FindBoundType(type);
    return found != nullptr && found->needsValue;
}

bool Builder::AddBound(const Record& record)
{
    const BoundType* const type = FindBoundType(record.type);
    if (type == nullptr)
    {
        return m_messages.Fail(record.Begin(), "mps.unknown-bound-type",
                               fmt::format("'{}' is no type of a bound", record.type),
                               "bounds are of type LO, UP, FX, FR, MI or PL");
    }
    if (!IsInFirstSet(m_boundSet, record))
        return true;
    const std::string_view name = record.first;
    const std::optional<Variable> column = Made().FindVariable(name);
    if (!column)
        return m_messages.UnknownColumn(name);
    if (type->semiContinuous || (type->integer && !m_options.relax))
        return RefuseInteger(*type, record);
    m_boundPlaces.resize(Made().VariableCount());
    WrittenNumber number;
    if (!TakeBoundValue(*type, record, number))
        return false;
    SetBound(*type, column->Index(), number, record);
    return true;
}

bool Builder::RefuseInteger(const BoundType& type, const Record& record)
{
    if (type.semiContinuous)
    {
        return m_messages.Fail(record.Begin(), "mps.semi-continuous",
                               fmt::format("'{}' is semi-continuous", record.first),
                               "a linear program has no such variables");
    }
    return m_messages.Fail(
        record.Begin(), "mps.integer", fmt::format("'{}' is an integer variable", record.first),
        "--relax takes integer variables for continuous ones within their bounds");
}

bool Builder::TakeBoundValue(const BoundType& type, const Record& record, WrittenNumber& number)
{
    if (!type.needsValue)
        return true;
    if (!m_messages.TakeNumber(record.firstNumber, record.first, number))
        return false;
    const double value = number.value;
    if (std::fabs(value) >= kInfiniteFrom)
    {
        number = std::copysign(Infinity, value);
    }
    else if (std::fabs(value) >= kInfiniteForSomeFrom)
    {
        m_log.Warn(record.firstNumber.data(), "mps.large-bound",
                   fmt::format("the bound {} is a number here and infinite for other programs",
                               record.firstNumber),
                   "leave the bound out, or take a smaller number");
    }
    if ((type.setsLower && number.value == Infinity) ||
        (type.setsUpper && number.value == -Infinity))
    {
        return m_messages.Fail(
            record.firstNumber.data(), "mps.impossible-bound",
            fmt::format("no value of '{}' can keep this bound", record.first),
            "an upper bound may be inf and a lower bound -inf, not the other way");
    }
    return true;
}

void Builder::StoreBounds(std::uint32_t column, const WrittenNumber& lower,
                          const WrittenNumber& upper)
{
    m_builder.SetVariableBounds(column, {lower.value, upper.value});
    Keep(m_builder, {NumberPlace::Of::VariableLower, column}, lower);
    Keep(m_builder, {NumberPlace::Of::VariableUpper, column}, upper);
}

void Builder::SetBound(const BoundType& type, std::uint32_t column, const WrittenNumber& number,
                       const Record& record)
{
    BoundPlaces& places = m_boundPlaces[column];
    const WrittenNumber lowerBefore = LowerOf(Made(), Made().VariableAt(column));
    const WrittenNumber upperBefore = UpperOf(Made(), Made().VariableAt(column));
    WrittenNumber lower = lowerBefore;
    WrittenNumber upper = upperBefore;
    const bool binary = type.integer && !type.needsValue;
    if (type.setsLower)
        lower = type.needsValue ? number : WrittenNumber(binary ? 0.0 : -Infinity);
    if (type.setsUpper)
        upper = type.needsValue ? number : WrittenNumber(binary ? 1.0 : Infinity);
    if (type.setsLower && places.lower != nullptr && !(lower == lowerBefore))
        NoteSecondBound(places.lower, record);
    else if (type.setsUpper && places.upper != nullptr && !(upper == upperBefore))
        NoteSecondBound(places.upper, record);
    if (type.setsLower)
        places.lower = record.Begin();
    if (type.setsUpper)
        places.upper = record.Begin();
    m_firstInteger = type.integer && m_firstInteger == nullptr ? record.Begin() : m_firstInteger;
    StoreBounds(column, lower, upper);
}

void Builder::NoteSecondBound(const char* before, const Record& record)
{
    constexpr std::string_view kCode = "mps.bound-redefined";
    if (m_log.Full(kCode))
        return m_log.CountOnly(kCode);
    m_log.Warn(record.Begin(), std::string(kCode),
               fmt::format("a bound of '{}' is set a second time, after line {}; this one holds",
                           record.first, m_log.LineOf(before)),
               "take one of them out");
}

void Builder::FinishBounds()
{
    FinishIntegers();
    for (std::uint32_t column = 0; column < m_boundPlaces.size(); ++column)
        FinishBound(column);
}

/// What other programs read differently: an upper bound that is not positive under a lower bound
/// that nobody set, and an infinite lower bound without an upper one.
void Builder::FinishBound(std::uint32_t column)
{
    const BoundPlaces& places = m_boundPlaces[column];
    const std::string_view name = Made().VariableName(column);
    const double upper = Made().VariableUpper()[column];
    double lower = Made().VariableLower()[column];
    if (places.lower == nullptr && places.upper != nullptr && upper < 0.0)
    {
        lower = -Infinity;
        m_builder.SetVariableBounds(column, {lower, upper});
        m_log.Warn(places.upper, "mps.negative-upper-bound",
                   fmt::format("'{}' has the upper bound {} and no lower one: that becomes -inf",
                               name, upper),
                   "some programs keep 0, and find the model infeasible; write MI or LO too");
    }
    else if (places.lower == nullptr && places.upper != nullptr && upper == 0.0)
    {
        m_log.Warn(
            places.upper, "mps.zero-upper-bound",
            fmt::format("'{}' has the upper bound 0 and no lower one: it is fixed at 0", name),
            "some programs take the lower bound for -inf; write FX, MI or LO");
    }
    else if (places.lower != nullptr && places.upper == nullptr && lower == -Infinity)
    {
        m_log.Warn(places.lower, "mps.no-upper-bound",
                   fmt::format("'{}' has the lower bound -inf and no upper one: it is free", name),
                   "some programs take the upper bound for 0; write FR or UP");
    }
    if (lower > upper)
    {
        m_log.Warn(
            places.upper != nullptr ? places.upper : places.lower, "mps.contradictory-bounds",
            fmt::format("the bounds {} <= {} <= {} contradict each other", lower, name, upper),
            "no value can keep them: the model is infeasible");
    }
}

void Builder::FinishIntegers()
{
    if (m_integers.empty() && m_firstInteger == nullptr)
        return;
    std::size_t unbounded = 0;
    m_boundPlaces.resize(Made().VariableCount());
    for (const std::uint32_t column : m_integers)
    {
        const BoundPlaces& places = m_boundPlaces[column];
        if (places.lower != nullptr || places.upper != nullptr)
            continue;
        m_builder.SetVariableBounds(column, {0.0, 1.0});
        ++unbounded;
    }
    const char* const at = m_integers.empty() ? m_firstInteger : m_columnPlaces[m_integers[0]];
    m_log.Warn(at, "mps.relaxed", "integer variables are taken for continuous ones",
               "the answer bounds that of the integer model and need not be whole");
    if (unbounded != 0)
    {
        m_log.Warn(at, "mps.integer-without-bounds",
                   fmt::format("{} integer variable{} without bounds {} between 0 and 1, as most "
                               "programs take them",
                               unbounded, unbounded == 1 ? "" : "s", unbounded == 1 ? "is" : "are"),
                   "write bounds for them");
    }
}

}  // namespace nuv::mps
