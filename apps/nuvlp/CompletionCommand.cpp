// nuvlp completion SHELL and nuvlp man: what the command takes, for shells and for man.
#include "Commands.hpp"
#include "Completion.hpp"
#include "Input.hpp"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>

namespace nuvlp
{
namespace
{

ExitCode WriteCompletion(const CLI::App& app, const std::string& shell)
{
    const CommandTable table = TableOf(app);
    return WriteOutput(shell == "bash"  ? BashCompletion(table)
                       : shell == "zsh" ? ZshCompletion(table)
                                        : FishCompletion(table),
                       ExitCode::Success);
}

}  // namespace

void AddCompletionCommands(CLI::App& app, ExitCode& exitCode)
{
    const auto shell = std::make_shared<std::string>();
    CLI::App* const completion =
        app.add_subcommand("completion", "Print what makes a shell complete the arguments");
    completion->add_option("SHELL", *shell, "The shell: source what is printed in it")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
    completion->callback([shell, &app, &exitCode] { exitCode = WriteCompletion(app, *shell); });
    app.add_subcommand("man", "Print the manual page, for man -l -")
        ->callback([&app, &exitCode]
                   { exitCode = WriteOutput(ManualPage(TableOf(app)), ExitCode::Success); });
}

}  // namespace nuvlp
