/// The verbs and their options as a table, read off the one that parses them: what help, completion
/// and the manual say is what the command takes.
#pragma once

#include <string>
#include <vector>

namespace CLI
{
class App;
class Option;
}  // namespace CLI

namespace nuvlp
{

struct OptionEntry
{
    std::vector<std::string> names;    ///< "-o", "--output"; of a positional its name alone
    std::string value;                 ///< what it takes: "RESULT", "N"; empty for a flag
    std::vector<std::string> choices;  ///< if it takes one of these words only
    std::string text;
    std::string standard;  ///< what holds if it is not given, if that is worth saying

    [[nodiscard]] bool TakesFile() const;
};

struct VerbEntry
{
    std::string name;
    std::string text;
    std::vector<OptionEntry> positionals;
    std::vector<OptionEntry> options;
};

struct CommandTable
{
    std::string name;
    std::string text;
    std::vector<OptionEntry> options;  ///< before any verb
    std::vector<VerbEntry> verbs;
};

[[nodiscard]] OptionEntry EntryOf(const CLI::Option& option);
[[nodiscard]] CommandTable TableOf(const CLI::App& app);

/// "RESULT", "lp|mps", or "" for a flag.
[[nodiscard]] std::string ValueWords(const OptionEntry& option);

}  // namespace nuvlp
