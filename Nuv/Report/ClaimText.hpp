/// What became of a claim, for people and for programs.
#pragma once

#include "Nuv/Model/Model.hpp"
#include "Nuv/Report/ClaimReport.hpp"

#include <string>
#include <string_view>

namespace nuv
{

[[nodiscard]] std::string ClaimText(const ClaimReport& report);

inline constexpr std::string_view kProofSchema = "nuvlp/proof/1";

/// One JSON object of the schema kProofSchema.
[[nodiscard]] std::string ClaimJson(const Model& model, const ClaimReport& report);

}  // namespace nuv
