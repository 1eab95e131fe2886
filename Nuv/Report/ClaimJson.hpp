/// Claims in the JSON that a solve writes, the schema kResultSchema.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Report/Claim.hpp"
#include "Nuv/Report/JsonReader.hpp"

namespace nuv::claim
{

/// Reads what the parsed JSON of a result claims: without a status only if none is needed, and with
/// the numbers that the claim has already if the file's word on them is not asked for.
/// @return false after an error.
[[nodiscard]] bool ReadResultJson(const JsonValue& result, bool needsStatus, bool readsNumbers,
                                  const Model& model, DiagnosticLog& log, Claim& claim);

}  // namespace nuv::claim
