/// The verbs of the command and what each takes, as one table of data: the parser obeys it, and
/// help, completion and the manual are printed from it, so that they say what the command does.
#pragma once

#include "ExitCodes.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace nuvlp
{

/// Where the value of an option goes; what it points to outlives the parse. The type says what is
/// accepted: a flag has no value, numbers are 0 or more.
using Target = std::variant<std::monostate, bool*, std::string*, double*,
                            std::optional<std::uint64_t>*, std::function<void(const std::string&)>>;

/// An option that contradicts another, and why, where that is not plain from their names.
struct Exclusion
{
    std::string name;
    std::string reason = {};
};

struct Option
{
    std::vector<std::string> names;         ///< "-o", "--output"; of a positional its name alone
    std::string value = {};                 ///< what it takes: "RESULT", "N"; empty for a flag
    std::string text;                       ///< what it does
    Target target;                          ///< nowhere for --help and --version
    std::vector<std::string> choices = {};  ///< if it takes one of these words only
    std::string standard = {};              ///< what holds without it, if that is worth saying
    std::vector<Exclusion> excludes = {};   ///< options that contradict it
    bool repeats = false;                   ///< may be given more than once
    bool isOptional = false;                ///< of a positional: may be left out

    [[nodiscard]] bool TakesFile() const;
};

struct Verb
{
    std::string name;
    std::string text;
    std::vector<Option> positionals = {};  ///< in this order; the last one may be optional
    std::vector<Option> options = {};      ///< besides --help
    std::function<ExitCode()> run = {};
    std::string schema = {};  ///< of what it writes with --json, if it has that

    void Add(std::vector<Option> more);
};

struct Command
{
    std::string name;
    std::string version;
    std::string text;
    std::vector<Verb> verbs;
};

/// What stands before any verb: --help and --version.
[[nodiscard]] std::vector<Option> CommandOptions();

/// --help, and what the verb has of its own.
[[nodiscard]] std::vector<Option> OptionsOf(const Verb& verb);

/// What a call of the verb names besides options: "FILE", "[VERB]".
[[nodiscard]] std::string UsageWord(const Option& positional);

/// "RESULT", "lp|mps" where there are a few choices, or "" for a flag.
[[nodiscard]] std::string ValueWords(const Option& option);

/// Runs the verb that the arguments name, with its targets filled. Help and version go to stdout;
/// what is wrong with a call goes to stderr, with a hint where one can be given, and is a result as
/// well where `--json` asks a verb for that.
/// @return what the verb returned, Success after help, or Usage.
[[nodiscard]] ExitCode RunCommand(const Command& command, int argc, char** argv);

}  // namespace nuvlp
