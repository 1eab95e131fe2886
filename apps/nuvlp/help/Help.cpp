#include "apps/nuvlp/help/Help.hpp"

#include <algorithm>
#include <string_view>

namespace nuvlp
{
namespace
{

constexpr std::size_t kTextColumn = 30;
constexpr std::size_t kLineLength = 80;

/// `head` and, from the text's column on, `text` in lines that fit a terminal.
std::string Entry(const std::string& head, std::string_view text)
{
    std::string lines = "  " + head;
    std::size_t column = lines.size();
    if (column + 1 > kTextColumn)
    {
        lines += '\n';
        column = 0;
    }
    lines.append(kTextColumn - column, ' ');
    column = kTextColumn;
    while (!text.empty())
    {
        const std::size_t length = std::min(text.find(' '), text.size());
        if (column > kTextColumn && column + 1 + length > kLineLength)
        {
            lines.append("\n").append(kTextColumn, ' ');
            column = kTextColumn;
        }
        else if (column > kTextColumn)
        {
            lines += ' ';
            ++column;
        }
        lines += text.substr(0, length);
        column += length;
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return lines + '\n';
}

std::string OptionEntry(const Option& option)
{
    std::string head;
    for (const std::string& name : option.names)
        head.append(head.empty() ? "" : ",").append(name);
    const std::string words = ValueWords(option);
    if (!words.empty() && words != head)
        head += ' ' + words;
    const std::string standard = option.standard.empty() ? "" : " (" + option.standard + ")";
    return Entry(head, option.text + standard);
}

std::string OptionEntries(const std::vector<Option>& options)
{
    std::string text;
    for (const Option& option : options)
        text += OptionEntry(option);
    return text;
}

std::string ExitCodeEntries()
{
    std::string text;
    for (const ExitCodeEntry& entry : kExitCodes)
    {
        const std::string code = std::to_string(static_cast<int>(entry.code));
        text.append("  ").append(code).append(5 - code.size(), ' ').append(entry.text).append("\n");
    }
    return text;
}

}  // namespace

std::string CommandHelp(const Command& command)
{
    std::string verbs;
    for (const Verb& verb : command.verbs)
        verbs += Entry(verb.name, verb.text);
    return command.text + "\nUsage: " + command.name + " VERB [OPTIONS] [FILE ...]\n\nOptions:\n" +
           OptionEntries(CommandOptions()) + "\nVerbs:\n" + verbs + "\n" + command.name +
           " VERB --help lists what a verb takes.\n\nExit codes:\n" + ExitCodeEntries();
}

std::string VerbHelp(const Command& command, const Verb& verb)
{
    std::string usage = command.name + " " + verb.name + " [OPTIONS]";
    for (const Option& positional : verb.positionals)
        usage += " " + UsageWord(positional);
    return verb.text + "\nUsage: " + usage + "\n" +
           (verb.positionals.empty() ? "" : "\nArguments:\n" + OptionEntries(verb.positionals)) +
           "\nOptions:\n" + OptionEntries(OptionsOf(verb));
}

}  // namespace nuvlp
