/// What `--help` prints, and what is said of a wrong call.
#pragma once

namespace CLI
{
class App;
}

namespace nuvlp
{

/// Sets up the help of the application; its verbs take it over when they are added.
void SetUpHelp(CLI::App& app);

/// Adds what stands in the help of the application alone, when all verbs are there.
void FinishHelp(CLI::App& app);

/// Whether the first argument, null if there is none, is a verb or an option. CLI11 would only say
/// that it misses a verb, not which one it does not know.
/// @return false, with a message on stderr, if it is not.
[[nodiscard]] bool StartsWithVerb(const CLI::App& app, const char* argument);

}  // namespace nuvlp
