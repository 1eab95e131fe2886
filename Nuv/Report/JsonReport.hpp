/// A solution as programs read it: one JSON object of the schema kResultSchema, and what the
/// objects of all schemas have in common. Numbers are the shortest decimals that read back to the
/// same bits, infinities are null, exact values are strings "p/q", names are UTF-8 whatever bytes
/// the file had. The Farkas multipliers are those of Certificate.hpp, which no sense of the
/// objective turns round. docs/json.md tells what each key means, docs/schemas holds the schemas.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Solve/Repair.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <span>
#include <string>
#include <string_view>

namespace nuv
{

class Json;

/// The schema of a solution, as the key "schema" names it.
inline constexpr std::string_view kResultSchema = "nuvlp/result/1";

/// The solution of a model as one object, one line. The diagnostics are those of reading the model.
[[nodiscard]] std::string JsonReport(const Model& model, const Solution& solution,
                                     std::span<const Diagnostic> diagnostics);

/// The schema of a repair.
inline constexpr std::string_view kRepairSchema = "nuvlp/repair/1";

/// The same of a repair.
[[nodiscard]] std::string RepairJson(const Model& model, const RepairResult& repair,
                                     std::span<const Diagnostic> diagnostics);

/// The beginning of an object: its schema and the version of this library.
[[nodiscard]] Json OpenReport(std::string_view schema);

/// "model": name, sense and size.
void WriteModel(Json& json, const Model& model);

/// "seconds", to the microsecond.
void WriteSeconds(Json& json, double seconds);

/// A key with a text, or with null for an empty one.
void WriteTextOrNull(Json& json, std::string_view key, std::string_view text);

/// The array `key` of what a reader or writer had to say, where it is at least as grave as `least`.
void WriteDiagnostics(Json& json, std::string_view key, std::span<const Diagnostic> diagnostics,
                      Severity least);

/// The result where an error took its place: an object of the same schema with the status "error",
/// then code, text, hint, file, line and column, null where there is none, and the warnings.
[[nodiscard]] std::string ErrorJson(std::string_view schema, const Error& error,
                                    std::span<const Diagnostic> diagnostics);

}  // namespace nuv
