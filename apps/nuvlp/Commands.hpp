/// The verbs of nuvlp, one source each: what it takes, and what it does.
#pragma once

#include "Arguments.hpp"

namespace nuvlp
{

[[nodiscard]] Verb SolveVerb();
[[nodiscard]] Verb BatchVerb();
[[nodiscard]] Verb CheckVerb();
[[nodiscard]] Verb ConvertVerb();
[[nodiscard]] Verb PlotVerb();
[[nodiscard]] Verb ProveVerb();
[[nodiscard]] Verb VerifyVerb();
[[nodiscard]] Verb RepairVerb();
[[nodiscard]] Verb SelftestVerb();
/// These speak of the whole command, which outlives them; HelpVerb comes last and knows those
/// before.
[[nodiscard]] Verb CompletionVerb(const Command& command);
[[nodiscard]] Verb ManVerb(const Command& command);
[[nodiscard]] Verb HelpVerb(const Command& command);

}  // namespace nuvlp
