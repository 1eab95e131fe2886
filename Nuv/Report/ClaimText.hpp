/// What became of a claim, for people and for programs.
#pragma once

#include "Nuv/Report/CheckClaim.hpp"

#include <string>
#include <string_view>

namespace nuvlp
{

[[nodiscard]] std::string ClaimText(const nuv::ClaimReport& report);

inline constexpr std::string_view kProofSchema = "nuvlp/proof/1";

/// One JSON object of the schema kProofSchema.
[[nodiscard]] std::string ClaimJson(const nuv::ClaimReport& report);

}  // namespace nuvlp
