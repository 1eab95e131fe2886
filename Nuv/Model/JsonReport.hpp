/// A solution as programs read it: one JSON object of the schema "nuvlp/result/1". Numbers are the
/// shortest decimals that read back to the same bits, infinities are null, exact values are strings
/// "p/q", names are UTF-8 whatever bytes the file had.
#pragma once

#include "Nuv/Model/Diagnostics.hpp"
#include "Nuv/Model/Solution.hpp"

#include <span>
#include <string>
#include <string_view>

namespace nuv
{

[[nodiscard]] std::string JsonReport(const Model& model, const Solution& solution,
                                     std::span<const Diagnostic> diagnostics);

/// A JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string JsonString(std::string_view text);

/// A JSON number, or null for one that is infinite or none.
[[nodiscard]] std::string JsonNumber(double value);

/// The word for a status: "optimal", "infeasible", "unbounded", "stopped" or "invalid".
[[nodiscard]] std::string_view StatusWord(SolveStatus status);

}  // namespace nuv
