/// RHS and RANGES: what the rows are compared with. Both only collect; the bounds of rows are made
/// when the file has been read, since RANGES may come before RHS.
#include "Nuv/Io/Mps/MpsParser.hpp"

#include "fmt/format.h"

#include <cmath>

namespace nuv::mps
{

bool Parser::ReadRightHandSide(const Record& record)
{
    if (!InFirstSet(m_rhsSet, record))
        return true;
    m_rightHandSides.resize(m_types.size(), 0.0);
    m_rhsPlaces.resize(m_rowNames.Size(), nullptr);
    if (!AddRightHandSide(record.first, record.firstNumber))
        return false;
    if (record.second.empty() && record.secondNumber.empty())
        return true;
    return AddRightHandSide(record.second, record.secondNumber);
}

bool Parser::AddRightHandSide(std::string_view row, std::string_view number)
{
    std::uint32_t index = 0;
    double value = 0.0;
    if (!FindRow(row, index) || !OnlyOnce(m_rhsPlaces, index, row, "right-hand side") ||
        !TakeNumber(number, row, value))
        return false;
    const std::uint32_t to = m_rowStates[index].to;
    if (to == kDropped)
        return true;
    if (to != kObjective)
        return SetRightHandSide(to, value, number);
    if (!std::isfinite(value))
    {
        return Fail(number.data(), "mps.not-finite", "the objective's constant is infinite",
                    "only bounds may be infinite");
    }
    SetConstant(row, value);
    return true;
}

void Parser::SetConstant(std::string_view row, double value)
{
    if (value == 0.0)
        return;
    m_model.SetObjectiveConstant(m_options.mpsConstantPlus ? value : -value);
    m_log.Note(row.data(), "mps.objective-constant",
               fmt::format("the objective's constant is {}: {} the right-hand side of its row",
                           m_model.ObjectiveConstant(),
                           m_options.mpsConstantPlus ? "as asked," : "the negative of"),
               m_options.mpsConstantPlus
                   ? ""
                   : "some programs add it; --mps-objective-constant=plus does so");
}

bool Parser::SetRightHandSide(std::uint32_t row, double value, std::string_view number)
{
    const char type = m_types[row];
    const bool unlimited = type == 'L' ? value > 0.0 : value < 0.0;
    if (std::fabs(value) >= kInfiniteFrom && type != 'E' && unlimited)
    {
        m_log.Note(number.data(), "mps.infinite-number",
                   fmt::format("{} is taken for infinity: row '{}' has no limit there", number,
                               m_model.RowName(row)));
        value = std::copysign(Infinity, value);
    }
    else if (std::isinf(value))
    {
        return Fail(number.data(), "mps.impossible-bound",
                    fmt::format("no number can keep row '{}' there", m_model.RowName(row)),
                    "only the limit of an L row may be inf, and that of a G row -inf");
    }
    m_rightHandSides[row] = value;
    return true;
}

bool Parser::ReadRange(const Record& record)
{
    if (!InFirstSet(m_rangeSet, record))
        return true;
    m_rangePlaces.resize(m_rowNames.Size(), nullptr);
    if (!AddRange(record.first, record.firstNumber))
        return false;
    if (record.second.empty() && record.secondNumber.empty())
        return true;
    return AddRange(record.second, record.secondNumber);
}

bool Parser::AddRange(std::string_view row, std::string_view number)
{
    std::uint32_t index = 0;
    double value = 0.0;
    if (!FindRow(row, index) || !OnlyOnce(m_rangePlaces, index, row, "range") ||
        !TakeNumber(number, row, value))
        return false;
    const std::uint32_t to = m_rowStates[index].to;
    if (to == kObjective || to == kDropped)
    {
        m_log.Warn(row.data(), "mps.range-of-free-row",
                   fmt::format("the range of '{}' is left out: rows of type N have no limits", row),
                   "take it out");
        return true;
    }
    m_ranges.push_back({to, value, number});
    return true;
}

bool Parser::OnlyOnce(std::vector<const char*>& places, std::uint32_t index, std::string_view row,
                      std::string_view what)
{
    if (places[index] != nullptr)
    {
        return Fail(row.data(), "mps.repeated-entry",
                    fmt::format("row '{}' has a second {}; the first is in line {}", row, what,
                                m_log.LineOf(places[index])),
                    "take one of them out");
    }
    places[index] = row.data();
    return true;
}

bool Parser::FinishRows()
{
    m_rightHandSides.resize(m_types.size(), 0.0);
    for (std::uint32_t row = 0; row < m_types.size(); ++row)
    {
        Bounds limits = {m_rightHandSides[row], m_rightHandSides[row]};
        if (m_types[row] == 'L')
            limits.lower = -Infinity;
        else if (m_types[row] == 'G')
            limits.upper = Infinity;
        m_model.SetRowBounds(row, limits);
    }
    for (const RangeEntry& range : m_ranges)
    {
        if (!FinishRange(range))
            return false;
    }
    return true;
}

/// L: [rhs - |R|, rhs]; G: [rhs, rhs + |R|]; E: [rhs, rhs + R], or [rhs + R, rhs] for R < 0.
bool Parser::FinishRange(const RangeEntry& range)
{
    const char type = m_types[range.row];
    const bool down = type == 'L' || (type == 'E' && range.value < 0.0);
    const double value = m_rightHandSides[range.row];
    const double end = EndOfRange(value, std::fabs(range.value), range.text, !down);
    // From a row without limit no range leads back.
    if (std::isinf(value))
    {
        m_log.Warn(range.text.data(), "mps.range-without-limit",
                   fmt::format("the range of '{}' is left out: the row has no limit to count from",
                               m_model.RowName(range.row)),
                   "give the row a right-hand side");
        return true;
    }
    if (std::isinf(end) && !std::isinf(range.value))
    {
        return Fail(range.text.data(), "mps.number-too-large",
                    fmt::format("the range leads '{}' beyond the largest double",
                                m_model.RowName(range.row)),
                    "leave it out if the row has no limit there");
    }
    m_model.SetRowBounds(range.row, {down ? end : value, down ? value : end});
    return true;
}

}  // namespace nuv::mps
