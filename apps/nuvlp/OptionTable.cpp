#include "OptionTable.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <string_view>

namespace nuvlp
{
namespace
{

std::vector<std::string> Split(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    while (true)
    {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.emplace_back(text.substr(0, end));
        if (end == text.size())
            return parts;
        text.remove_prefix(end + 1);
    }
}

void ReadOptions(const CLI::App& app, std::vector<OptionEntry>& options,
                 std::vector<OptionEntry>& positionals)
{
    for (const CLI::Option* const option : app.get_options())
        (option->get_positional() ? positionals : options).push_back(EntryOf(*option));
}

}  // namespace

bool OptionEntry::TakesFile() const
{
    constexpr std::string_view files[] = {"FILE",     "MODEL",  "PICTURE",
                                          "SOLUTION", "RESULT", "REPORT"};
    return std::ranges::find(files, value) != std::end(files);
}

OptionEntry EntryOf(const CLI::Option& option)
{
    OptionEntry entry;
    entry.text = option.get_description();
    entry.standard = option.get_default_str();
    if (option.get_positional())
    {
        entry.names = {option.get_name(true)};
        entry.value = entry.names.front();
    }
    else
        for (const std::string& name : Split(option.get_name(false, true), ','))
            entry.names.push_back(name);
    if (option.get_type_size() == 0)
        return entry;
    // CLI11 writes "NAME:{a,b}", with what the checks of an option are called behind colons.
    const std::string type = option.get_type_name();
    const std::size_t open = type.find('{');
    if (open != std::string::npos)
        entry.choices =
            Split(std::string_view(type).substr(open + 1, type.find('}') - open - 1), ',');
    if (entry.value.empty())
        entry.value = type.substr(0, type.find(':'));
    return entry;
}

CommandTable TableOf(const CLI::App& app)
{
    CommandTable table;
    table.name = app.get_name();
    table.text = app.get_description();
    std::vector<OptionEntry> none;
    ReadOptions(app, table.options, none);
    for (const CLI::App* const verb : app.get_subcommands({}))
    {
        VerbEntry& entry = table.verbs.emplace_back();
        entry.name = verb->get_name();
        entry.text = verb->get_description();
        ReadOptions(*verb, entry.options, entry.positionals);
    }
    return table;
}

std::string ValueWords(const OptionEntry& option)
{
    if (option.choices.empty())
        return option.value;
    std::string words;
    for (const std::string& choice : option.choices)
        words.append(words.empty() ? "" : "|").append(choice);
    return words;
}

}  // namespace nuvlp
