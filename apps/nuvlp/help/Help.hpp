/// What `--help` prints, from the table of arguments.
#pragma once

#include "apps/nuvlp/Arguments.hpp"

#include <string>

namespace nuvlp
{

/// The verbs, what holds for all of them, and the exit codes.
[[nodiscard]] std::string CommandHelp(const Command& command);

/// How a verb is called and what it takes.
[[nodiscard]] std::string VerbHelp(const Command& command, const Verb& verb);

}  // namespace nuvlp
