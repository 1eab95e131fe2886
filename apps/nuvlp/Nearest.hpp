/// The known word that an unknown one was meant to be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nuvlp
{

/// @return the known word that `word` becomes by the fewest insertions, deletions, replacements and
/// swaps of neighbours, or that it is the beginning of; empty if that takes more than a third of
/// its letters.
[[nodiscard]] std::string Nearest(std::string_view word, const std::vector<std::string>& known);

/// "; did you mean 'word'?", or "" for "".
[[nodiscard]] std::string DidYouMean(std::string_view word);

}  // namespace nuvlp
