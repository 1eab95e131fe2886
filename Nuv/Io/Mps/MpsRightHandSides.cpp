/// RHS and RANGES: what the rows are compared with. Both only collect; the bounds of rows are made
/// when the file has been read, since RANGES may come before RHS.
#include "Nuv/Io/Infinity.hpp"
#include "Nuv/Io/Mps/MpsBuilder.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <fmt/core.h>

#include <cmath>
#include <utility>

namespace nuv::mps
{

bool Builder::AddRightHandSide(const Record& record)
{
    if (!IsInFirstSet(m_rhsSet, record))
        return true;
    m_rightHandSides.resize(m_types.size());
    m_rhsPlaces.resize(m_rowNames.Size(), nullptr);
    if (!SetRightHandSide(record.first, record.firstNumber))
        return false;
    if (record.second.empty() && record.secondNumber.empty())
        return true;
    return SetRightHandSide(record.second, record.secondNumber);
}

bool Builder::SetRightHandSide(std::string_view row, std::string_view text)
{
    std::uint32_t index = 0;
    WrittenNumber number;
    if (!FindRow(row, index) || !OnlyOnce(m_rhsPlaces, index, row, "right-hand side") ||
        !m_messages.TakeNumber(text, row, number))
        return false;
    const std::uint32_t to = m_rowStates[index].to;
    if (to == kDropped)
        return true;
    if (to != kObjective)
        return SetSide(to, std::move(number), text);
    if (!std::isfinite(number.value))
    {
        return m_messages.Fail(text.data(), "mps.not-finite",
                               "the objective's constant is infinite",
                               "only bounds may be infinite");
    }
    SetConstant(row, number);
    return true;
}

void Builder::SetConstant(std::string_view row, const WrittenNumber& number)
{
    if (number.value == 0.0)
        return;
    const WrittenNumber constant = m_options.mpsConstantPlus ? number : -number;
    m_builder.SetObjectiveConstant(constant.value);
    Keep(m_builder, {NumberPlace::Of::ObjectiveConstant}, constant);
    m_log.Note(row.data(), "mps.objective-constant",
               fmt::format("the objective's constant is {}: {} the right-hand side of its row",
                           NumberText(constant),
                           m_options.mpsConstantPlus ? "as asked," : "the negative of"),
               m_options.mpsConstantPlus
                   ? ""
                   : "some programs add it; --mps-objective-constant=plus does so");
}

bool Builder::SetSide(std::uint32_t row, WrittenNumber number, std::string_view text)
{
    const char type = m_types[row];
    const double value = number.value;
    const bool unlimited = type == 'L' ? value > 0.0 : value < 0.0;
    if (std::fabs(value) >= kInfiniteFrom && type != 'E' && unlimited)
    {
        m_log.Note(text.data(), "mps.infinite-number",
                   fmt::format("{} is taken for infinity: row '{}' has no limit there", text,
                               Made().RowName(row)));
        number = std::copysign(Infinity, value);
    }
    else if (std::isinf(value))
    {
        return m_messages.Fail(
            text.data(), "mps.impossible-bound",
            fmt::format("no number can keep row '{}' there", Made().RowName(row)),
            "only the limit of an L row may be inf, and that of a G row -inf");
    }
    m_rightHandSides[row] = std::move(number);
    return true;
}

bool Builder::AddRange(const Record& record)
{
    if (!IsInFirstSet(m_rangeSet, record))
        return true;
    m_rangePlaces.resize(m_rowNames.Size(), nullptr);
    if (!SetRange(record.first, record.firstNumber))
        return false;
    if (record.second.empty() && record.secondNumber.empty())
        return true;
    return SetRange(record.second, record.secondNumber);
}

bool Builder::SetRange(std::string_view row, std::string_view text)
{
    std::uint32_t index = 0;
    WrittenNumber number;
    if (!FindRow(row, index) || !OnlyOnce(m_rangePlaces, index, row, "range") ||
        !m_messages.TakeNumber(text, row, number))
        return false;
    const std::uint32_t to = m_rowStates[index].to;
    if (to == kObjective || to == kDropped)
    {
        m_log.Warn(row.data(), "mps.range-of-free-row",
                   fmt::format("the range of '{}' is left out: rows of type N have no limits", row),
                   "take it out");
        return true;
    }
    m_ranges.push_back({to, std::move(number), text});
    return true;
}

bool Builder::OnlyOnce(std::vector<const char*>& places, std::uint32_t index, std::string_view row,
                       std::string_view what)
{
    if (places[index] != nullptr)
    {
        return m_messages.Fail(row.data(), "mps.repeated-entry",
                               fmt::format("row '{}' has a second {}; the first is in line {}", row,
                                           what, m_log.LineOf(places[index])),
                               "take one of them out");
    }
    places[index] = row.data();
    return true;
}

bool Builder::FinishRows()
{
    m_rightHandSides.resize(m_types.size());
    for (std::uint32_t row = 0; row < m_types.size(); ++row)
    {
        const WrittenNumber& side = m_rightHandSides[row];
        StoreSides(row, m_types[row] == 'L' ? WrittenNumber(-Infinity) : side,
                   m_types[row] == 'G' ? WrittenNumber(Infinity) : side);
    }
    for (const RangeEntry& range : m_ranges)
    {
        if (!FinishRange(range))
            return false;
    }
    return true;
}

void Builder::StoreSides(std::uint32_t row, const WrittenNumber& lower, const WrittenNumber& upper)
{
    m_builder.SetRowBounds(row, {lower.value, upper.value});
    Keep(m_builder, {NumberPlace::Of::RowLower, row}, lower);
    Keep(m_builder, {NumberPlace::Of::RowUpper, row}, upper);
}

/// L: [rhs - |R|, rhs]; G: [rhs, rhs + |R|]; E: [rhs, rhs + R], or [rhs + R, rhs] for R < 0.
bool Builder::FinishRange(const RangeEntry& range)
{
    const char type = m_types[range.row];
    const bool isNegative = std::signbit(range.number.value);
    const bool down = type == 'L' || (type == 'E' && range.number.value < 0.0);
    const WrittenNumber& side = m_rightHandSides[range.row];
    const WrittenNumber end = side + (down == isNegative ? range.number : -range.number);
    // From a row without limit no range leads back.
    if (std::isinf(side.value))
    {
        m_log.Warn(range.text.data(), "mps.range-without-limit",
                   fmt::format("the range of '{}' is left out: the row has no limit to count from",
                               Made().RowName(range.row)),
                   "give the row a right-hand side");
        return true;
    }
    if (std::isinf(end.value) && !std::isinf(range.number.value))
    {
        return m_messages.Fail(range.text.data(), "mps.number-too-large",
                               fmt::format("the range leads '{}' beyond the largest double",
                                           Made().RowName(range.row)),
                               "leave it out if the row has no limit there");
    }
    StoreSides(range.row, down ? end : side, down ? side : end);
    return true;
}

}  // namespace nuv::mps
