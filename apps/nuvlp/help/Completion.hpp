/// Shell completion and the manual, written from the table of arguments.
#pragma once

#include "apps/nuvlp/Arguments.hpp"

#include <string>

namespace nuvlp
{

[[nodiscard]] std::string BashCompletion(const Command& command);
[[nodiscard]] std::string ZshCompletion(const Command& command);
[[nodiscard]] std::string FishCompletion(const Command& command);

/// A page for man, in the macros of man(7).
[[nodiscard]] std::string ManualPage(const Command& command);

}  // namespace nuvlp
