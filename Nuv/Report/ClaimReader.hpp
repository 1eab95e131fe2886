/// Solution files: the JSON that this project writes (nuvlp/result/1), or plain text with a name
/// and a value in each line and comments behind '#'. Which of the two it is, the first character
/// says.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Report/Claim.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuv
{

struct ClaimReadResult
{
    /// Empty if there was an error.
    std::optional<Claim> claim;
    std::vector<Diagnostic> diagnostics;
};

/// Reads what `text` says about `model`. `status` replaces what it says of the status, which plain
/// text says nothing of: without it that is a claim of an optimum. `numbers` replaces what it says
/// of the numbers that it is about: without it plain text is about those that are written.
[[nodiscard]] ClaimReadResult ReadClaim(std::string_view text, const std::string& file,
                                        const Model& model, std::optional<ClaimedStatus> status,
                                        std::optional<CoefficientMeaning> numbers = std::nullopt);

/// A decimal, for itself or for the nearest double, or p/q of integers.
/// @return nothing for any other text, and for what is beyond doubles.
[[nodiscard]] std::optional<Rational> ReadExactNumber(std::string_view text,
                                                      CoefficientMeaning numbers);

}  // namespace nuv
