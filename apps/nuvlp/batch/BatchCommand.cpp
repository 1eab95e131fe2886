// nuvlp batch FILE TABLE: a model solved once for each row of a table.
#include "apps/nuvlp/Commands.hpp"
#include "apps/nuvlp/Input.hpp"
#include "apps/nuvlp/Interrupts.hpp"
#include "apps/nuvlp/Output.hpp"
#include "apps/nuvlp/batch/ScenarioRun.hpp"

#include "Nuv/Io/TextFile.hpp"
#include "Nuv/Report/JsonWriter.hpp"
#include "Nuv/Report/Words.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <thread>

#include <unistd.h>

namespace nuvlp
{
namespace
{

constexpr std::string_view kScenarioSchema = "nuvlp/scenario/1";

/// Why --exact asks for nothing where nothing is proved.
constexpr const char* kNeedsProof = "the exact objective comes with the proof";

struct BatchArguments
{
    ModelSource source;
    std::string table;
    Output output;  ///< as JSON: an object a line
    std::string shard;
    std::vector<std::string> values;
    nuv::CoefficientMeaning numbers = nuv::CoefficientMeaning::ShortestDecimal;
    std::optional<std::uint64_t> threads;
    std::optional<std::uint64_t> maxPivots;
    bool exact = false;
    bool floatOnly = false;
    bool noProof = false;
    bool progress = false;
    bool quiet = false;
};

/// For programs an error is a line on standard output: the file of the results tells by being there
/// that a part is done.
Output ErrorsOf(const BatchArguments& options)
{
    const bool isFile = !options.output.path.empty() && options.output.path != "-";
    return {"", options.output.json && !isFile};
}

ExitCode Report(const BatchArguments& options, const nuv::Error& error, ExitCode code)
{
    return Report(ErrorsOf(options), kScenarioSchema, error, code);
}

/// Part `part` of `parts`, from 1.
struct Shard
{
    std::size_t part = 1;
    std::size_t parts = 1;
};

std::optional<Shard> ShardOf(const std::string& text)
{
    Shard shard;
    const char* const end = text.data() + text.size();
    const auto [slash, fault] = std::from_chars(text.data(), end, shard.part);
    if (fault != std::errc() || slash == end || *slash != '/')
        return std::nullopt;
    const auto [rest, secondFault] = std::from_chars(slash + 1, end, shard.parts);
    const bool isShard =
        secondFault == std::errc() && rest == end && shard.part >= 1 && shard.part <= shard.parts;
    return isShard ? std::optional(shard) : std::nullopt;
}

/// A cell, in quotes where it has a comma, a quote or a line's end.
std::string CsvCell(std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == std::string_view::npos)
        return std::string(text);
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

/// How results are written.
class Writer
{
public:
    Writer(const nuv::Model& model, const ScenarioTable& table, const BatchArguments& options,
           std::vector<std::uint32_t> asked)
        : m_model(model),
          m_table(table),
          m_exact(options.exact),
          m_isJson(options.output.json),
          m_asked(std::move(asked))
    {
    }

    /// The first line of comma-separated values.
    [[nodiscard]] std::string Head() const
    {
        if (m_isJson)
            return "";
        std::string text = "scenario,verdict,proved,objective";
        text += m_exact ? ",exact" : "";
        for (const std::uint32_t j : m_asked)
            text += "," + CsvCell(m_model.VariableName(j));
        return text + "\n";
    }

    [[nodiscard]] std::string Line(std::size_t scenario, const nuv::Solution& solution) const
    {
        return m_isJson ? JsonLine(m_table.labels[scenario], solution)
                        : CsvLine(m_table.labels[scenario], solution);
    }

private:
    static std::string NumberText(double value)
    {
        return std::isnan(value) ? std::string() : fmt::format("{}", value);
    }

    static double ValueOf(const nuv::Solution& solution, std::uint32_t j)
    {
        return solution.status == nuv::Status::Optimal && j < solution.values.size()
                   ? solution.values[j]
                   : nuv::Solution::kUnknown;
    }

    [[nodiscard]] std::string CsvLine(const std::string& label, const nuv::Solution& solution) const
    {
        const bool isOptimal = solution.status == nuv::Status::Optimal;
        std::string text = fmt::format("{},{},{},{}", CsvCell(label), nuv::WordOf(solution.status),
                                       solution.proved ? "yes" : "no",
                                       isOptimal ? NumberText(solution.objective) : std::string());
        if (m_exact)
            text += "," + solution.exactObjective;
        for (const std::uint32_t j : m_asked)
            text += "," + NumberText(ValueOf(solution, j));
        return text + "\n";
    }

    [[nodiscard]] std::string JsonLine(const std::string& label,
                                       const nuv::Solution& solution) const
    {
        const bool isOptimal = solution.status == nuv::Status::Optimal;
        nuv::Json json;
        json.Open('{').Key("schema").Text(kScenarioSchema).Key("scenario").Text(label);
        json.Key("verdict").Text(nuv::WordOf(solution.status));
        json.Key("proved").Raw(solution.proved ? "true" : "false");
        json.Key("objective").Raw(isOptimal ? nuv::JsonNumber(solution.objective) : "null");
        if (m_exact)
            json.Key("exact").Raw(solution.exactObjective.empty()
                                      ? "null"
                                      : nuv::JsonString(solution.exactObjective));
        if (!m_asked.empty())
        {
            json.Key("values").Open('{');
            for (const std::uint32_t j : m_asked)
                json.Key(m_model.VariableName(j))
                    .Raw(isOptimal ? nuv::JsonNumber(ValueOf(solution, j)) : "null");
            json.Close('}');
        }
        return json.Close('}').Finish();
    }

    const nuv::Model& m_model;
    const ScenarioTable& m_table;
    bool m_exact;
    bool m_isJson;
    std::vector<std::uint32_t> m_asked;
};

/// How far the run is, on a line that is written over.
class Counter
{
public:
    explicit Counter(std::size_t all) : m_all(all), m_start(Clock::now()) {}
    ~Counter()
    {
        std::fputs("\r\033[K", stderr);
    }
    Counter(const Counter&) = delete;
    Counter& operator=(const Counter&) = delete;

    void Show(std::size_t done) const
    {
        const double seconds = std::chrono::duration<double>(Clock::now() - m_start).count();
        const double rate = seconds > 0.0 ? static_cast<double>(done) / seconds : 0.0;
        const std::string left =
            rate > 0.0 ? fmt::format(", {:.0f} s left", static_cast<double>(m_all - done) / rate)
                       : std::string();
        fmt::print(stderr, "\r\033[K{} of {} scenarios, {:.0f}/s{}", done, m_all, rate, left);
    }

private:
    using Clock = std::chrono::steady_clock;
    std::size_t m_all;
    Clock::time_point m_start;
};

nuv::Result<std::vector<std::uint32_t>> AskedValues(const nuv::Model& model,
                                                    const BatchArguments& options)
{
    std::vector<std::uint32_t> asked;
    for (const std::string& name : options.values)
    {
        const std::optional<nuv::Variable> variable = model.FindVariable(name);
        if (!variable)
            return UsageError(fmt::format("the model has no variable '{}'", name),
                              "names count in their letter case");
        asked.push_back(model.IndexOf(*variable));
    }
    return asked;
}

/// The options of each solve; all start from the basis of the model as it stands.
nuv::SolveOptions SolveOptionsOf(const nuv::Model& model, const BatchArguments& options)
{
    nuv::SolveOptions solve;
    solve.numbers = options.numbers;
    solve.singlePrecisionOnly = options.floatOnly;
    solve.doublePrecisionOnly = options.noProof;
    solve.iisWork = 0;
    if (options.maxPivots)
        solve.limits.singlePrecisionPivots = solve.limits.doublePivots = solve.limits.exactPivots =
            *options.maxPivots;
    solve.limits.keepGoing = [](const nuv::Progress&) { return !IsInterrupted(); };
    if (options.floatOnly)
        return solve;
    nuv::Solution base = nuv::Solve(model, solve);
    if (!base.basis.columns.empty() || !base.basis.rows.empty())
        solve.start = std::move(base.basis);
    return solve;
}

/// More threads than that gain nothing, and at some number there are no more to be had.
std::size_t ThreadsOf(const BatchArguments& options)
{
    const std::uint64_t processors = std::max(1U, std::thread::hardware_concurrency());
    return static_cast<std::size_t>(std::min(options.threads.value_or(processors), 4 * processors));
}

/// What an interrupted run leaves: the scenarios that are done. A part, which is there in full or
/// not at all, is not left, and neither is a table of none.
ExitCode WriteSome(const BatchArguments& options, const std::string& head,
                   const ScenarioLines& lines, std::size_t all)
{
    if (lines.done == 0 || !options.shard.empty())
    {
        const std::string text = "interrupted; nothing is written";
        fmt::print(stderr, "nuvlp: {}\n", text);
        const std::vector failure{nuv::WithoutPlace({"interrupted", text, "", "", 0, 0})};
        return WriteError(ErrorsOf(options), kScenarioSchema, failure, ExitCode::Stopped);
    }
    fmt::print(stderr, "nuvlp: interrupted; {} of {} scenarios are done and written\n", lines.done,
               all);
    return WriteTo(options.output.path, head + lines.text, ExitCode::Stopped);
}

ExitCode SolveTable(const BatchArguments& options, const nuv::Model& model,
                    const ScenarioTable& table, const Shard& shard)
{
    nuv::Result<std::vector<std::uint32_t>> asked = AskedValues(model, options);
    if (!asked)
        return Report(options, asked.GetError(), ExitCode::Usage);
    const Writer writer(model, table, options, *std::move(asked));
    const std::size_t first = table.Count() * (shard.part - 1) / shard.parts;
    const std::size_t last = table.Count() * shard.part / shard.parts;
    std::optional<Counter> counter;
    if (options.progress && isatty(STDERR_FILENO) != 0)
        counter.emplace(last - first);
    ScenarioRun run{model, table, SolveOptionsOf(model, options), first, last, 1, {}, {}};
    run.threads = ThreadsOf(options);
    run.write = [&writer](std::size_t scenario, const nuv::Solution& solution)
    { return writer.Line(scenario, solution); };
    if (counter)
        run.progress = [&counter](std::size_t done) { counter->Show(done); };
    const ScenarioLines lines = SolveScenarios(run);
    counter.reset();
    // Parts that are put together have one first line.
    const std::string head = shard.part == 1 ? writer.Head() : "";
    return lines.done == last - first
               ? WriteTo(options.output.path, head + lines.text, ExitCode::Success)
               : WriteSome(options, head, lines, last - first);
}

ExitCode Run(const BatchArguments& options)
{
    const std::optional<Shard> shard = options.shard.empty() ? Shard{} : ShardOf(options.shard);
    if (!shard)
        return Report(options, UsageError("--shard takes PART/PARTS, as in 2/8"), ExitCode::Usage);
    const bool isPart = !options.shard.empty() && !options.output.path.empty();
    if (isPart && std::filesystem::exists(options.output.path))
    {
        if (!options.quiet)
            fmt::print(stderr, "nuvlp: '{}' is there already\n", options.output.path);
        return ExitCode::Success;
    }
    if (options.source.file == "-" && options.table == "-")
        return Report(options,
                      UsageError("only one of model and table can come from standard input"),
                      ExitCode::Usage);
    const nuv::ReadResult reading =
        ReadModel(options.source, options.quiet ? Show::Errors : Show::Warnings);
    if (!reading.Ok())
        return WriteError(ErrorsOf(options), kScenarioSchema, reading.diagnostics,
                          ExitCodeOf(reading.GetError()));
    const nuv::Result<std::string> text = nuv::ReadTextFile(options.table);
    if (!text)
        return Report(options, text.GetError(), ExitCodeOf(text.GetError()));
    const nuv::Result<ScenarioTable> table =
        ReadScenarios(*text, nuv::DisplayName(options.table), *reading.model);
    if (!table)
        return Report(options, table.GetError(), ExitCode::BadModel);
    CatchInterrupts();
    return SolveTable(options, *reading.model, *table, *shard);
}

}  // namespace

Verb BatchVerb()
{
    const auto options = std::make_shared<BatchArguments>();
    Verb verb{.name = "batch",
              .text = "Solve a model once for each row of a table",
              .run = [options] { return Run(*options); },
              .schema = std::string(kScenarioSchema)};
    AddModelSource(verb, options->source);
    verb.positionals.push_back(
        {.names = {"TABLE"},
         .value = "TABLE",
         .text = "The scenarios, as CSV or JSON Lines: numbers under cost:VARIABLE, "
                 "lower:VARIABLE, upper:VARIABLE, side:ROW, row-lower:ROW, row-upper:ROW",
         .target = &options->table});
    verb.Add({
        {.names = {"-o", "--out"},
         .value = "RESULT",
         .text = "The file to write to, whole or not at all; standard output if not given",
         .target = &options->output.path},
        {.names = {"--format"},
         .value = "FORMAT",
         .text = "Write results as comma-separated values or an object a line",
         .target = [options](const std::string& word) { options->output.json = word == "jsonl"; },
         .choices = {"csv", "jsonl"},
         .standard = "csv"},
        {.names = {"--json"},
         .text = "Write an object a line, as --format jsonl does",
         .target = &options->output.json,
         .excludes = {{"--format"}}},
        {.names = {"--value"},
         .value = "VARIABLE",
         .text = "Write the value of this variable too; as often as needed",
         .target = [options](const std::string& name) { options->values.push_back(name); },
         .repeats = true},
        {.names = {"--exact"}, .text = "Write the exact objective too", .target = &options->exact},
        {.names = {"--threads"},
         .value = "N",
         .text = "Use so many threads; as many as there are processors if not given",
         .target = &options->threads},
        {.names = {"--shard"},
         .value = "PART/PARTS",
         .text = "Solve this part of the table; a RESULT that is there already is left alone",
         .target = &options->shard},
        NumbersOption([options](nuv::CoefficientMeaning numbers) { options->numbers = numbers; }),
        {.names = {"--float-only"},
         .text = "Believe single precision and prove nothing",
         .target = &options->floatOnly,
         .excludes = {{"--exact", kNeedsProof}}},
        {.names = {"--no-proof"},
         .text = "Believe the simplex in double precision and prove nothing",
         .target = &options->noProof,
         .excludes = {{"--exact", kNeedsProof}, {"--float-only"}}},
        {.names = {"--max-pivots"},
         .value = "N",
         .text = "Stop a stage of a solve after so many pivots",
         .target = &options->maxPivots},
        {.names = {"--progress"},
         .text = "Show how far it is, if standard error is a terminal",
         .target = &options->progress},
        {.names = {"-q", "--quiet"}, .text = "Print no warnings", .target = &options->quiet},
    });
    return verb;
}

}  // namespace nuvlp
