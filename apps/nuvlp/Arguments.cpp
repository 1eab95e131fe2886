// The only source that includes the argument parser, which is most of its compile time. The parser
// splits the command line; what a value may be, and what is said of a wrong one, stands here.
#include "Arguments.hpp"

#include "Nearest.hpp"
#include "Output.hpp"

#include "apps/nuvlp/help/Help.hpp"
#include "Nuv/Report/JsonReport.hpp"

#include <CLI/CLI.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <utility>

namespace nuvlp
{
namespace
{

/// "lp, mps or mps-free".
std::string Alternatives(const std::vector<std::string>& words)
{
    std::string text;
    for (std::size_t k = 0; k < words.size(); ++k)
        text += (k == 0 ? "" : k + 1 == words.size() ? " or " : ", ") + words[k];
    return text;
}

template <class Number>
bool ReadNumber(const std::string& text, Number& number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= 0;
}

/// Puts a value where the option wants it.
class Assign
{
public:
    explicit Assign(const std::string& text) : m_text(text) {}

    /// @return what would have been right; empty if it is.
    std::string operator()(std::string* target) const
    {
        *target = m_text;
        return {};
    }
    std::string operator()(const std::function<void(const std::string&)>& use) const
    {
        use(m_text);
        return {};
    }
    std::string operator()(double* target) const
    {
        return ReadNumber(m_text, *target) ? "" : "a number that is 0 or more";
    }
    std::string operator()(std::optional<std::uint64_t>* target) const
    {
        return ReadNumber(m_text, target->emplace()) ? "" : "a whole number that is 0 or more";
    }
    std::string operator()(bool*) const
    {
        return "no value";
    }
    std::string operator()(std::monostate) const
    {
        return "no value";
    }

private:
    const std::string& m_text;
};

std::string LacksValue(const Option& option)
{
    return option.names.back() + " needs a value: " + ValueWords(option);
}

void TakeValue(const Option& option, const std::string& text)
{
    // Such as "-o $RESULT" of a script in which RESULT is not set.
    if (text.empty() && option.names.back().starts_with('-'))
        throw CLI::ValidationError(LacksValue(option));
    const bool isChoice =
        option.choices.empty() || std::ranges::find(option.choices, text) != option.choices.end();
    const std::string wanted =
        isChoice ? std::visit(Assign(text), option.target) : Alternatives(option.choices);
    if (!wanted.empty())
        throw CLI::ValidationError(fmt::format("{} takes {}, not '{}'{}", option.names.back(),
                                               wanted, text,
                                               DidYouMean(Nearest(text, option.choices))));
}

/// What has no value: the targets of a flag.
void TakeFlag(const Option& option)
{
    if (bool* const* const flag = std::get_if<bool*>(&option.target))
        **flag = true;
    else
        std::get<std::function<void(const std::string&)>>(option.target)("");
}

void AddOption(CLI::App& app, const Option& option)
{
    std::string names;
    for (const std::string& name : option.names)
        names.append(names.empty() ? "" : ",").append(name);
    if (option.value.empty())
        app.add_flag_callback(names, [&option] { TakeFlag(option); })->disable_flag_override();
    else if (option.repeats)
        app.add_option_function<std::vector<std::string>>(
               names,
               [&option](const std::vector<std::string>& texts)
               {
                   for (const std::string& text : texts)
                       TakeValue(option, text);
               })
            ->type_name(option.value)
            ->allow_extra_args(false);
    else
        app.add_option_function<std::string>(names, [&option](const std::string& text)
                                             { TakeValue(option, text); })
            ->type_name(option.value);
}

/// Whether a word may name the option: it begins as a long name, or has the letter of a short one.
bool IsMentioned(const Option& option, const std::vector<std::string>& words)
{
    for (const std::string& word : words)
        for (const std::string& name : option.names)
        {
            if (name.starts_with("--") ? word.starts_with(name)
                                       : word.starts_with('-') && word.find(name[1]) != word.npos)
                return true;
        }
    return false;
}

/// An option that no word mentions need not be known: telling the parser of all of them would take
/// as long as solving a small model.
void AddArguments(CLI::App& app, const Verb& verb, const std::vector<std::string>& words)
{
    for (const Option& option : verb.positionals)
    {
        AddOption(app, option);
        app.get_option(option.names.front())->required(!option.isOptional);
    }
    std::vector<const Option*> options;
    for (const Option& option : verb.options)
    {
        if (IsMentioned(option, words))
            options.push_back(&option);
    }
    for (const Option* const option : options)
        AddOption(app, *option);
    for (const Option* const option : options)
        for (const Exclusion& other : option->excludes)
        {
            CLI::Option* const excluded = app.get_option_no_throw(other.name);
            if (excluded != nullptr)
                app.get_option(option->names.back())->excludes(excluded);
        }
}

/// Why two options contradict each other, behind the parser's words for that they do.
std::string WithReason(const std::string& text, const Verb& verb)
{
    for (const Option& option : verb.options)
        for (const Exclusion& other : option.excludes)
        {
            const std::string& name = option.names.back();
            const bool isThis = text == name + " excludes " + other.name ||
                                text == other.name + " excludes " + name;
            if (isThis && !other.reason.empty())
                return text + ": " + other.reason;
        }
    return text;
}

/// What is wrong with a call, in words of our own where the parser's would puzzle.
std::string Complaint(const CLI::ParseError& error, const Verb& verb)
{
    const std::string text = error.what();
    if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr)
        return WithReason(text, verb);
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr)
        return text;
    // Of a flag that was given a value, the parser says the name without its dashes.
    const std::size_t dashes = text.starts_with("-") ? 0 : 2;
    const std::string name = std::string(dashes, '-') + text.substr(0, text.find_first_of(": "));
    if (text.find("received") != std::string::npos)
        return name + " is given twice";
    const auto option = std::ranges::find_if(verb.options, [&](const Option& each)
                                             { return each.names.back() == name; });
    return option == verb.options.end() || option->value.empty() ? name + " takes no value"
                                                                 : LacksValue(*option);
}

/// What to say of a word such as "--max-pivots=", to which the parser would add the word behind it.
std::string WordWithoutValue(const std::vector<std::string>& words, const Verb& verb)
{
    for (const std::string& word : words)
        for (const Option& option : verb.options)
        {
            const bool isEmptied =
                std::ranges::any_of(option.names, [&](const std::string& name)
                                    { return name.size() > 2 && word == name + "="; });
            if (isEmptied)
                return option.value.empty() ? option.names.back() + " takes no value"
                                            : LacksValue(option);
        }
    return {};
}

/// Behind this word no argument is an option.
constexpr std::string_view kEndOfOptions = "--";

/// What to say of the arguments that the verb does not take, if there are some; an option that it
/// does not know comes before what stands too much because of it. The parser lists the end of
/// options among them.
std::string ExtraWords(std::vector<std::string> extras, const Verb& verb)
{
    auto end = std::ranges::find(extras, kEndOfOptions);
    if (end != extras.end())
        end = extras.erase(end);
    if (extras.empty())
        return {};
    const auto option = std::find_if(extras.begin(), end,
                                     [](const std::string& word)
                                     { return word.size() > 1 && word.front() == '-'; });
    if (option == end)
        return fmt::format("'{}' is one argument too many", extras.front());
    std::vector<std::string> names;
    for (const Option& each : OptionsOf(verb))
        names.insert(names.end(), each.names.begin(), each.names.end());
    const std::string name = option->substr(0, option->find('='));
    return fmt::format("{} has no option {}{}", verb.name, name, DidYouMean(Nearest(name, names)));
}

ExitCode RefuseCall(const Command& command, const Verb* verb, const std::string& text,
                    const std::string& hint, bool asJson)
{
    std::fprintf(stderr, "%s: %s\n%s\n", command.name.c_str(), text.c_str(), hint.c_str());
    if (!verb || verb->schema.empty() || !asJson)
        return ExitCode::Usage;
    const nuv::Error error{"usage", text, hint, "", 0, 0};
    return WriteOutput(nuv::ErrorJson(verb->schema, error, {}), ExitCode::Usage);
}

/// What to call instead of a call without a verb.
ExitCode RefuseMissingVerb(const Command& command, const char* argument)
{
    const std::string lists = command.name + " --help lists them.";
    if (!argument)
        return RefuseCall(command, nullptr, "a verb is missing", lists, false);
    const std::string word = argument;
    if (word.size() > 1 && word.front() == '-')
        return RefuseCall(
            command, nullptr, fmt::format("a verb is missing before {}", word),
            fmt::format("Write {} solve {} FILE, or another verb: {}", command.name, word, lists),
            false);
    std::vector<std::string> names;
    for (const Verb& verb : command.verbs)
        names.push_back(verb.name);
    names.emplace_back("--version");
    const bool isFile = word.find_first_of("./") != std::string::npos || word == "-";
    return isFile ? RefuseCall(command, nullptr, fmt::format("a verb is missing before '{}'", word),
                               fmt::format("Write {} solve {}, or another verb: {}", command.name,
                                           word, lists),
                               false)
                  : RefuseCall(command, nullptr,
                               fmt::format("there is no verb '{}'{}", word,
                                           DidYouMean(Nearest(word, names))),
                               lists, false);
}

ExitCode RunVerb(const Command& command, const Verb& verb, int argc, char** argv)
{
    // From right to left, as the parser takes them.
    std::vector<std::string> words(argv + 2, argv + argc);
    const auto endOfOptions = std::ranges::find(words, kEndOfOptions);
    const bool asJson = std::find(words.begin(), endOfOptions, "--json") != endOfOptions;
    std::string text = WordWithoutValue({words.begin(), endOfOptions}, verb);
    std::ranges::reverse(words);
    CLI::App app(verb.text, command.name + " " + verb.name);
    app.allow_extras();
    app.set_help_flag("-h,--help");
    AddArguments(app, verb, words);
    try
    {
        if (text.empty())
        {
            app.parse(words);
            text = ExtraWords(app.remaining(), verb);
        }
    }
    catch (const CLI::CallForHelp&)
    {
        return WriteOutput(VerbHelp(command, verb), ExitCode::Success);
    }
    catch (const CLI::ParseError& error)
    {
        text = ExtraWords(app.remaining(), verb);
        if (text.empty())
            text = Complaint(error, verb);
    }
    if (text.empty())
        return verb.run();
    return RefuseCall(command, &verb, text,
                      fmt::format("{} {} --help says more.", command.name, verb.name), asJson);
}

}  // namespace

bool Option::TakesFile() const
{
    constexpr std::string_view kFiles[] = {"FILE",   "MODEL",  "PICTURE",    "SOLUTION",
                                           "RESULT", "REPORT", "CERTIFICATE"};
    return std::ranges::find(kFiles, value) != std::end(kFiles);
}

void Verb::Add(std::vector<Option> more)
{
    std::ranges::move(more, std::back_inserter(options));
}

std::vector<Option> CommandOptions()
{
    return {{.names = {"-h", "--help"}, .text = "Print this help and exit", .target = {}},
            {.names = {"--version"}, .text = "Print the version and exit", .target = {}}};
}

std::vector<Option> OptionsOf(const Verb& verb)
{
    std::vector<Option> options = {CommandOptions().front()};
    options.insert(options.end(), verb.options.begin(), verb.options.end());
    return options;
}

std::string UsageWord(const Option& positional)
{
    return positional.isOptional ? "[" + positional.value + "]" : positional.value;
}

std::string ValueWords(const Option& option)
{
    constexpr std::size_t kMostChoices = 8;  // Of more the line would be too long.
    if (option.choices.empty() || option.choices.size() > kMostChoices)
        return option.value;
    std::string words;
    for (const std::string& choice : option.choices)
        words.append(words.empty() ? "" : "|").append(choice);
    return words;
}

ExitCode RunCommand(const Command& command, int argc, char** argv)
{
    const std::string first = argc > 1 ? argv[1] : "";
    if (first == "-h" || first == "--help")
        return WriteOutput(CommandHelp(command), ExitCode::Success);
    if (first == "--version")
        return WriteOutput(fmt::format("{} {}\n", command.name, command.version),
                           ExitCode::Success);
    const auto verb = std::ranges::find(command.verbs, first, &Verb::name);
    return verb == command.verbs.end() ? RefuseMissingVerb(command, argc > 1 ? argv[1] : nullptr)
                                       : RunVerb(command, *verb, argc, argv);
}

}  // namespace nuvlp
