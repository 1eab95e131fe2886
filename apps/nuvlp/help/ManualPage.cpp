// The manual says what --help says, with a few examples.
#include "apps/nuvlp/help/Completion.hpp"
#include "apps/nuvlp/ExitCodes.hpp"

#include <fmt/core.h>

#include <string_view>

namespace nuvlp
{
namespace
{

/// Text for roff: a hyphen that can be copied, a backslash that is one, no accidental request.
std::string Roff(std::string_view text)
{
    std::string result;
    if (text.starts_with('.') || text.starts_with('\''))
        result += "\\&";
    for (const char c : text)
    {
        if (c == '-')
            result += "\\-";
        else if (c == '\\')
            result += "\\e";
        else
            result += c;
    }
    return result;
}

std::string OptionText(const Option& option)
{
    std::string names;
    for (const std::string& name : option.names)
        names.append(names.empty() ? "" : ", ").append("\\fB" + Roff(name) + "\\fR");
    if (!option.value.empty() && option.names.front() != option.value)
        names += " \\fI" + Roff(ValueWords(option)) + "\\fR";
    else if (!option.choices.empty())
        names += " (\\fI" + Roff(ValueWords(option)) + "\\fR)";
    const std::string standard =
        option.standard.empty() ? "" : " The default is " + option.standard + ".";
    return fmt::format(".TP\n{}\n{}.{}\n", names, Roff(option.text), Roff(standard));
}

std::string VerbText(const Verb& verb)
{
    std::string positionals;
    std::string options;
    for (const Option& positional : verb.positionals)
    {
        positionals += " \\fI" + Roff(UsageWord(positional)) + "\\fR";
        options += OptionText(positional);
    }
    for (const Option& option : OptionsOf(verb))
        options += OptionText(option);
    return fmt::format(".SS nuvlp {0}\n\\fBnuvlp {0}\\fR [\\fIOPTIONS\\fR]{1}\n.PP\n{2}.\n{3}",
                       verb.name, positionals, Roff(verb.text), options);
}

}  // namespace

std::string ManualPage(const Command& command)
{
    std::string verbs;
    for (const Verb& verb : command.verbs)
        verbs += VerbText(verb);
    std::string options;
    for (const Option& option : CommandOptions())
        options += OptionText(option);
    std::string codes;
    for (const ExitCodeEntry& entry : kExitCodes)
        codes += fmt::format(".TP\n{}\n{}\n", static_cast<int>(entry.code), Roff(entry.text));
    return fmt::format(
        ".TH NUVLP 1 \"\" \"nuvlp {}\" \"User Commands\"\n"
        ".SH NAME\nnuvlp \\- solve and prove linear programs\n"
        ".SH SYNOPSIS\n\\fBnuvlp\\fR \\fIVERB\\fR [\\fIOPTIONS\\fR] [\\fIFILE\\fR ...]\n"
        ".SH DESCRIPTION\n{} Results go to standard output, everything else to standard error.\n"
        ".SH OPTIONS\n{}"
        ".SH VERBS\n{}"
        ".SH EXIT STATUS\n{}"
        ".SH EXAMPLES\n"
        ".nf\nnuvlp solve factory.lp\n"
        "nuvlp solve \\-\\-json \\-o result.json factory.lp\n"
        "nuvlp prove factory.lp result.json\n"
        "nuvlp convert factory.lp \\-o factory.mps\n"
        "nuvlp plot factory.lp \\-o factory.svg\n.fi\n",
        NUVLP_VERSION, Roff(command.text), options, verbs, codes);
}

}  // namespace nuvlp
