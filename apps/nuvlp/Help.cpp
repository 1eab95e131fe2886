#include "Help.hpp"

#include "ExitCodes.hpp"
#include "OptionTable.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

namespace nuvlp
{
namespace
{

/// Says what a value is, and leaves out how it is checked.
class Formatter : public CLI::Formatter
{
public:
    Formatter()
    {
        column_width(30);
        label("SUBCOMMAND", "VERB");
    }

    std::string make_option_opts(const CLI::Option* option) const override
    {
        const std::string value = option->get_positional() ? "" : ValueWords(EntryOf(*option));
        return value.empty() ? "" : " " + value;
    }

    std::string make_option_desc(const CLI::Option* option) const override
    {
        const OptionEntry entry = EntryOf(*option);
        return entry.standard.empty() ? entry.text : entry.text + " (" + entry.standard + ")";
    }
};

std::string ExitCodeWords()
{
    std::string text = "Exit codes:\n";
    for (const ExitCodeEntry& entry : kExitCodes)
    {
        const std::string code = std::to_string(static_cast<int>(entry.code));
        text.append("  ").append(code).append(5 - code.size(), ' ').append(entry.text).append("\n");
    }
    return text;
}

std::string FailureWords(const CLI::App* app, const CLI::Error& error)
{
    std::string verb;
    for (const CLI::App* const called : app->get_subcommands())
        verb = " " + called->get_name();
    return "nuvlp: " + std::string(error.what()) + "\nnuvlp" + verb + " --help says more.\n";
}

}  // namespace

void SetUpHelp(CLI::App& app)
{
    app.formatter(std::make_shared<Formatter>());
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.set_version_flag("--version", "nuvlp " NUVLP_VERSION, "Print the version and exit");
    app.failure_message(FailureWords);
}

void FinishHelp(CLI::App& app)
{
    for (CLI::App* const verb : app.get_subcommands({}))
        verb->group("Verbs");
    app.footer(ExitCodeWords());
}

bool StartsWithVerb(const CLI::App& app, const char* argument)
{
    if (!argument)
        std::fputs("nuvlp: a verb is missing\n", stderr);
    else if (argument[0] == '-' ||
             std::ranges::any_of(app.get_subcommands({}), [argument](const CLI::App* verb)
                                 { return verb->get_name() == argument; }))
        return true;
    else
        std::fprintf(stderr, "nuvlp: there is no verb '%s'\n", argument);
    std::fputs("nuvlp --help lists them.\n", stderr);
    return false;
}

}  // namespace nuvlp
