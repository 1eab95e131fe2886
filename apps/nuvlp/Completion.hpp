/// Shell completion and the manual, written from the table of options.
#pragma once

#include "OptionTable.hpp"

#include <string>

namespace nuvlp
{

[[nodiscard]] std::string BashCompletion(const CommandTable& table);
[[nodiscard]] std::string ZshCompletion(const CommandTable& table);
[[nodiscard]] std::string FishCompletion(const CommandTable& table);

/// A page for man, in the macros of man(7).
[[nodiscard]] std::string ManualPage(const CommandTable& table);

}  // namespace nuvlp
