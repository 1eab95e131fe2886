/// The word for each value of the enums that results are made of, in one table each: JSON is
/// written and read with them, and the text reports and the options of the command use the same.
#pragma once

#include "Nuv/Report/Claim.hpp"
#include "Nuv/Report/ClaimReport.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuv
{

template <class Enum>
struct Word
{
    Enum value;
    std::string_view text;
};

/// Has a `kTable` for each of these enums.
template <class Enum>
struct Words;

template <>
struct Words<Status>
{
    static constexpr Word<Status> kTable[] = {
        {Status::Optimal, WordOf(Status::Optimal)},
        {Status::Infeasible, WordOf(Status::Infeasible)},
        {Status::Unbounded, WordOf(Status::Unbounded)},
        {Status::Stopped, WordOf(Status::Stopped)},
        {Status::Invalid, WordOf(Status::Invalid)},
    };
};

template <>
struct Words<StopReason>
{
    static constexpr Word<StopReason> kTable[] = {
        {StopReason::None, "none"},
        {StopReason::TimeLimit, "time-limit"},
        {StopReason::PivotLimit, "pivot-limit"},
        {StopReason::Cancelled, "interrupt"},
    };
};

template <>
struct Words<Sense>
{
    static constexpr Word<Sense> kTable[] = {
        {Sense::Minimize, "minimise"},
        {Sense::Maximize, "maximise"},
    };
};

template <>
struct Words<BasisStatus>
{
    static constexpr Word<BasisStatus> kTable[] = {
        {BasisStatus::Basic, "basic"},
        {BasisStatus::AtLower, "lower"},
        {BasisStatus::AtUpper, "upper"},
        {BasisStatus::Free, "free"},
    };
};

template <>
struct Words<CoefficientMeaning>
{
    static constexpr Word<CoefficientMeaning> kTable[] = {
        {CoefficientMeaning::ShortestDecimal, "written"},
        {CoefficientMeaning::StoredDouble, "stored"},
    };
};

template <>
struct Words<SinglePrecisionStop>
{
    static constexpr Word<SinglePrecisionStop> kTable[] = {
        {SinglePrecisionStop::None, "none"},
        {SinglePrecisionStop::PivotLimit, "pivot-limit"},
        {SinglePrecisionStop::PivotBudget, "pivot-budget"},
        {SinglePrecisionStop::Memory, "memory"},
        {SinglePrecisionStop::Cycling, "cycling"},
        {SinglePrecisionStop::Control, "stopped"},
        {SinglePrecisionStop::Empty, "empty"},
        {SinglePrecisionStop::OutOfRange, "out-of-range"},
        {SinglePrecisionStop::Skipped, "skipped"},
    };
};

template <>
struct Words<ClaimedStatus>
{
    static constexpr Word<ClaimedStatus> kTable[] = {
        {ClaimedStatus::Feasible, "feasible"},
        {ClaimedStatus::Optimal, "optimal"},
        {ClaimedStatus::Infeasible, "infeasible"},
        {ClaimedStatus::Unbounded, "unbounded"},
    };
};

template <>
struct Words<Judgement>
{
    static constexpr Word<Judgement> kTable[] = {
        {Judgement::Confirmed, "confirmed"},
        {Judgement::Refuted, "refuted"},
        {Judgement::Undecided, "undecided"},
    };
};

template <>
struct Words<Evidence>
{
    static constexpr Word<Evidence> kTable[] = {
        {Evidence::None, "none"},
        {Evidence::Values, "values"},
        {Evidence::Certificate, "certificate"},
        {Evidence::Basis, "basis"},
        {Evidence::Iis, "iis"},
        {Evidence::Solve, "solve"},
    };
};

template <class Enum>
[[nodiscard]] constexpr std::string_view WordOf(Enum value)
{
    for (const Word<Enum>& word : Words<Enum>::kTable)
        if (word.value == value)
            return word.text;
    return {};
}

/// @return nothing for a word that is not in the table.
template <class Enum>
[[nodiscard]] constexpr std::optional<Enum> FromWord(std::string_view text)
{
    for (const Word<Enum>& word : Words<Enum>::kTable)
        if (word.text == text)
            return word.value;
    return std::nullopt;
}

/// Whether it is to be said how far values and prices are off: of what was stopped, and of what was
/// believed.
[[nodiscard]] inline bool HasViolations(const Solution& solution) noexcept
{
    return solution.status == Status::Stopped ||
           (!solution.proved && !solution.reducedCosts.empty());
}

/// All words of the table, in its order.
template <class Enum>
[[nodiscard]] std::vector<std::string> AllWords()
{
    std::vector<std::string> words;
    for (const Word<Enum>& word : Words<Enum>::kTable)
        words.emplace_back(word.text);
    return words;
}

}  // namespace nuv
