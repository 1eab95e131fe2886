/// The verbs of nuvlp. Each adds its subcommand with its options to the application and, when it is
/// the one that was called, leaves its exit code in `exitCode`.
#pragma once

#include "ExitCodes.hpp"

namespace CLI
{
class App;
}

namespace nuvlp
{

void AddSolveCommand(CLI::App& app, ExitCode& exitCode);
void AddCheckCommand(CLI::App& app, ExitCode& exitCode);
void AddConvertCommand(CLI::App& app, ExitCode& exitCode);
void AddPlotCommand(CLI::App& app, ExitCode& exitCode);
void AddProveCommand(CLI::App& app, ExitCode& exitCode);
void AddSelftestCommand(CLI::App& app, ExitCode& exitCode);
void AddCompletionCommands(CLI::App& app, ExitCode& exitCode);

}  // namespace nuvlp
