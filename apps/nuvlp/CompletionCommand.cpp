// nuvlp completion SHELL and nuvlp man: what the command takes, for shells and for man.
#include "Commands.hpp"
#include "Output.hpp"

#include "apps/nuvlp/help/Completion.hpp"

#include <memory>
#include <string>

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

}  // namespace nuvlp
