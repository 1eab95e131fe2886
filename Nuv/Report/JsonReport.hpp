/// A solution as programs read it: one JSON object of the schema kResultSchema. Numbers are the
/// shortest decimals that read back to the same bits, infinities are null, exact values are strings
/// "p/q", names are UTF-8 whatever bytes the file had. The Farkas multipliers are those of
/// Certificate.hpp, which no sense of the objective turns round.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <span>
#include <string>
#include <string_view>

namespace nuv
{

inline constexpr std::string_view kResultSchema = "nuvlp/result/1";

[[nodiscard]] std::string JsonReport(const Model& model, const Solution& solution,
                                     std::span<const Diagnostic> diagnostics);

/// The result where an error took its place: an object of the same schema with the status "error",
/// then code, text, hint, file, line and column, null where there is none, and the warnings.
[[nodiscard]] std::string ErrorJson(std::string_view schema, const Error& error,
                                    std::span<const Diagnostic> diagnostics);

}  // namespace nuv
