// nuvlp completion SHELL, nuvlp man and nuvlp help: what the command takes, for shells, man and
// people.
#include "Commands.hpp"
#include "Output.hpp"

#include "apps/nuvlp/help/Completion.hpp"
#include "apps/nuvlp/help/Help.hpp"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace nuvlp
{
namespace
{

ExitCode WriteCompletion(const Command& command, const std::string& shell)
{
    return WriteOutput(shell == "bash"  ? BashCompletion(command)
                       : shell == "zsh" ? ZshCompletion(command)
                                        : FishCompletion(command),
                       ExitCode::Success);
}

ExitCode WriteHelp(const Command& command, const std::string& name)
{
    const auto verb = std::ranges::find(command.verbs, name, &Verb::name);
    return WriteOutput(verb == command.verbs.end() ? CommandHelp(command)
                                                   : VerbHelp(command, *verb),
                       ExitCode::Success);
}

}  // namespace

Verb CompletionVerb(const Command& command)
{
    const auto shell = std::make_shared<std::string>();
    Verb verb{.name = "completion",
              .text = "Print what makes a shell complete the arguments",
              .run = [shell, &command] { return WriteCompletion(command, *shell); }};
    verb.positionals.push_back({.names = {"SHELL"},
                                .value = "SHELL",
                                .text = "The shell: source what is printed in it",
                                .target = shell.get(),
                                .choices = {"bash", "zsh", "fish"}});
    return verb;
}

Verb ManVerb(const Command& command)
{
    return {.name = "man", .text = "Print the manual page, for man -l -", .run = [&command] {
                return WriteOutput(ManualPage(command), ExitCode::Success);
            }};
}

Verb HelpVerb(const Command& command)
{
    const auto name = std::make_shared<std::string>();
    std::vector<std::string> verbs;
    for (const Verb& verb : command.verbs)
        verbs.push_back(verb.name);
    verbs.emplace_back("help");
    Verb help{.name = "help",
              .text = "Print what the command takes, or what one verb does",
              .run = [name, &command] { return WriteHelp(command, *name); }};
    help.positionals.push_back({.names = {"VERB"},
                                .value = "VERB",
                                .text = "The verb; all of them if not given",
                                .target = name.get(),
                                .choices = std::move(verbs),
                                .isOptional = true});
    return help;
}

}  // namespace nuvlp
