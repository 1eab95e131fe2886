/// Names that differ in nothing but the case of their letters: two names to a program, one to most
/// readers of the file.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"

#include <functional>
#include <string_view>
#include <vector>

namespace nuv
{

/// Warns of each of `places.size()` names that reads as one before it does, with the code
/// `<format>.names-in-other-case`. The names are different from each other, or empty; `places` is
/// where each stands first, `what` says what they are names of.
void WarnOfNamesInOtherCase(DiagnosticLog& log, std::string_view format, std::string_view what,
                            const std::vector<const char*>& places,
                            const std::function<std::string_view(std::uint32_t)>& name);

}  // namespace nuv
