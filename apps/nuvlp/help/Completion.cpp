// Each shell gets the same: verbs, the options of a verb, the words that an option takes, and files
// where one is expected.
#include "apps/nuvlp/help/Completion.hpp"

#include <fmt/core.h>

#include <string_view>

namespace nuvlp
{
namespace
{

std::string Joined(const std::vector<std::string>& words, std::string_view separator)
{
    std::string text;
    for (const std::string& word : words)
        text.append(text.empty() ? "" : separator).append(word);
    return text;
}

std::string VerbNames(const Command& command)
{
    std::vector<std::string> names;
    names.reserve(command.verbs.size());
    for (const Verb& verb : command.verbs)
        names.push_back(verb.name);
    return Joined(names, " ");
}

std::string OptionNames(const std::vector<Option>& options)
{
    std::vector<std::string> names;
    names.reserve(options.size());
    for (const Option& option : options)
        names.push_back(Joined(option.names, " "));
    return Joined(names, " ");
}

/// The text with every character of `special` preceded by `by`.
std::string Escaped(std::string_view text, std::string_view special, std::string_view by)
{
    std::string result;
    for (const char c : text)
    {
        if (special.find(c) != std::string_view::npos)
            result += by;
        result += c;
    }
    return result;
}

/// For between single quotes of a shell.
std::string Quoted(std::string_view text)
{
    return "'" + Escaped(text, "'", "'\\'") + "'";
}

/// The case of one verb: what follows an option that takes a value, and what may stand elsewhere.
std::string BashVerb(const Verb& verb)
{
    std::string cases;
    for (const Option& option : OptionsOf(verb))
    {
        if (option.value.empty())
            continue;
        const std::string reply = !option.choices.empty()
                                      ? fmt::format("words=\"{}\"", Joined(option.choices, " "))
                                      : (option.TakesFile() ? "files=1" : ":");
        cases += fmt::format("            {}) {} ;;\n", Joined(option.names, "|"), reply);
    }
    std::string others = fmt::format("words=\"{}\"", OptionNames(OptionsOf(verb)));
    for (const Option& positional : verb.positionals)
        others += positional.TakesFile()
                      ? " files=1"
                      : fmt::format(" words+=\" {}\"", Joined(positional.choices, " "));
    return fmt::format("    {})\n        case $previous in\n{}            *) {} ;;\n"
                       "        esac ;;\n",
                       verb.name, cases, others);
}

/// What _arguments makes of an option: '(-o --output)'{-o,--output}'[text]:RESULT:_files'.
std::string ZshOption(const Option& option)
{
    std::string action;
    if (!option.choices.empty())
        action = fmt::format(":{}:({})", option.value, Joined(option.choices, " "));
    else if (!option.value.empty())
        action = fmt::format(":{}:{}", option.value, option.TakesFile() ? "_files" : "");
    const std::string text = Quoted("[" + Escaped(option.text, "[]:", "\\") + "]" + action);
    if (option.names.size() == 1)
        return option.names.front() + text;
    return fmt::format("'({})'{{{}}}{}", Joined(option.names, " "), Joined(option.names, ","),
                       text);
}

std::string ZshVerb(const Verb& verb)
{
    std::string text = fmt::format("        {}) _arguments -s", verb.name);
    for (const Option& option : OptionsOf(verb))
        text += " \\\n            " + ZshOption(option);
    for (std::size_t k = 0; k < verb.positionals.size(); ++k)
    {
        const Option& positional = verb.positionals[k];
        text += fmt::format(
            " \\\n            '{}:{}:{}'", k + 1, positional.value,
            positional.choices.empty() ? "_files" : "(" + Joined(positional.choices, " ") + ")");
    }
    return text + " ;;\n";
}

std::string FishOption(const std::string& condition, const Option& option)
{
    std::string text = "complete -c nuvlp -n " + Quoted(condition);
    for (const std::string& name : option.names)
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    if (!option.choices.empty())
        text += " -x -a " + Quoted(Joined(option.choices, " "));
    else if (!option.value.empty())
        text += option.TakesFile() ? " -r -F" : " -x";
    return text + " -d " + Quoted(option.text) + "\n";
}

}  // namespace

std::string BashCompletion(const Command& command)
{
    std::string verbs;
    for (const Verb& verb : command.verbs)
        verbs += BashVerb(verb);
    return fmt::format("# Completion of nuvlp for bash.\n"
                       "_nuvlp()\n"
                       "{{\n"
                       "    local current=${{COMP_WORDS[COMP_CWORD]}}\n"
                       "    local previous=${{COMP_WORDS[COMP_CWORD-1]}} words= files=\n"
                       "    COMPREPLY=()\n"
                       "    # --option=value comes in three words.\n"
                       "    [[ $previous == = ]] && previous=${{COMP_WORDS[COMP_CWORD-2]}}\n"
                       "    [[ $current == = ]] && current=\n"
                       "    if [[ $COMP_CWORD -eq 1 ]]; then\n"
                       "        COMPREPLY=($(compgen -W \"{} {}\" -- \"$current\"))\n"
                       "        return\n"
                       "    fi\n"
                       "    case ${{COMP_WORDS[1]}} in\n"
                       "{}"
                       "    esac\n"
                       "    COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
                       "    if [[ $files && $current != -?* ]]; then\n"
                       "        local file\n"
                       "        while IFS= read -r file; do COMPREPLY+=(\"$file\"); done \\\n"
                       "            < <(compgen -f -- \"$current\")\n"
                       "        compopt -o filenames 2>/dev/null\n"
                       "    fi\n"
                       "}}\n"
                       "complete -F _nuvlp nuvlp\n",
                       VerbNames(command), OptionNames(CommandOptions()), verbs);
}

std::string ZshCompletion(const Command& command)
{
    std::string described;
    std::string verbs;
    for (const Verb& verb : command.verbs)
    {
        described += "        " + Quoted(verb.name + ":" + verb.text) + "\n";
        verbs += ZshVerb(verb);
    }
    std::string options;
    for (const Option& option : CommandOptions())
        options += " \\\n            " + ZshOption(option);
    return fmt::format("#compdef nuvlp\n"
                       "# Completion of nuvlp for zsh.\n"
                       "_nuvlp()\n"
                       "{{\n"
                       "    local -a verbs=(\n{}    )\n"
                       "    if (( CURRENT == 2 )); then\n"
                       "        _describe verb verbs\n"
                       "        _arguments -s{}\n"
                       "        return\n"
                       "    fi\n"
                       "    shift words\n"
                       "    (( CURRENT-- ))\n"
                       "    case $words[1] in\n"
                       "{}"
                       "    esac\n"
                       "}}\n"
                       "if [[ $funcstack[1] == _nuvlp ]]; then _nuvlp \"$@\"; else compdef _nuvlp "
                       "nuvlp; fi\n",
                       described, options, verbs);
}

std::string FishCompletion(const Command& command)
{
    std::string text = "# Completion of nuvlp for fish.\ncomplete -c nuvlp -f\n";
    for (const Option& option : CommandOptions())
        text += FishOption("__fish_use_subcommand", option);
    for (const Verb& verb : command.verbs)
    {
        text += fmt::format("complete -c nuvlp -n '__fish_use_subcommand' -a {} -d {}\n", verb.name,
                            Quoted(verb.text));
        const std::string condition = "__fish_seen_subcommand_from " + verb.name;
        for (const Option& option : OptionsOf(verb))
            text += FishOption(condition, option);
        for (const Option& positional : verb.positionals)
            text += fmt::format("complete -c nuvlp -n '{}' {}\n", condition,
                                positional.choices.empty()
                                    ? "-F"
                                    : "-a " + Quoted(Joined(positional.choices, " ")));
    }
    return text;
}

}  // namespace nuvlp
