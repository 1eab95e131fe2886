/// What became of a claim, for people and for programs.
#pragma once

#include "Nuv/Model/ClaimCheck.hpp"

#include <string>
#include <string_view>

namespace nuvlp
{

[[nodiscard]] std::string ClaimText(const nuv::ClaimReport& report);

/// One JSON object of the schema "nuvlp/proof/1".
[[nodiscard]] std::string ClaimJson(const nuv::ClaimReport& report);

}  // namespace nuvlp
