// Aligned tables of names and numbers. Numbers are the shortest decimals that read back as the same
// doubles.
#include "Nuv/Report/TextReport.hpp"

#include "Nuv/Io/Utf8.hpp"
#include "Nuv/Report/Words.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <string_view>
#include <vector>

namespace nuv
{
namespace
{

/// Wider names push their line to the right instead of all the others.
constexpr std::size_t kWidestColumn = 48;

/// The first column is set to the left, the others to the right.
class Table
{
public:
    void Add(std::vector<std::string> line)
    {
        m_lines.push_back(std::move(line));
    }

    [[nodiscard]] bool HasLines() const
    {
        return m_lines.size() > 1;
    }

    [[nodiscard]] std::string Text() const
    {
        std::vector<std::size_t> widths;
        for (const std::vector<std::string>& line : m_lines)
        {
            widths.resize(line.size(), 0);
            for (std::size_t i = 0; i < line.size(); ++i)
                widths[i] = std::max(widths[i], std::min(DisplayWidth(line[i]), kWidestColumn));
        }
        std::string text;
        for (const std::vector<std::string>& line : m_lines)
        {
            for (std::size_t i = 0; i < line.size(); ++i)
            {
                const std::size_t had = DisplayWidth(line[i]);
                const std::string blanks(had < widths[i] ? widths[i] - had : 0, ' ');
                text += i == 0 ? line[i] + blanks : "  " + blanks + line[i];
            }
            text.erase(text.find_last_not_of(' ') + 1) += '\n';
        }
        return text;
    }

private:
    std::vector<std::vector<std::string>> m_lines;
};

std::string Number(double value)
{
    // Adding zero turns a negative zero into a plain one.
    return fmt::format("{}", value + 0.0);
}

std::string CycleWords(const SinglePrecisionResult& stage)
{
    return fmt::format("basis repeated after {} pivots, a cycle of {}", stage.pivots, stage.period);
}

std::string BoundWords(double lower, double upper)
{
    if (lower == upper)
        return "= " + Number(lower);
    if (std::isinf(lower) && std::isinf(upper))
        return "free";
    if (std::isinf(lower))
        return "<= " + Number(upper);
    if (std::isinf(upper))
        return ">= " + Number(lower);
    return Number(lower) + " .. " + Number(upper);
}

/// The distance to the nearer side; negative outside.
std::string SlackWords(double activity, double lower, double upper)
{
    const double slack = std::min(upper - activity, activity - lower);
    return std::isinf(slack) ? "" : Number(slack);
}

/// Nothing where it is not known.
std::string UniquenessWords(const UniqueOptimum& unique)
{
    if (unique.point == Uniqueness::Unknown || unique.duals == Uniqueness::Unknown)
        return "";
    const bool isOnePoint = unique.point == Uniqueness::Unique;
    const bool isOneSet = unique.duals == Uniqueness::Unique;
    return fmt::format("unique     {}, {}\n",
                       isOnePoint ? "no other point is optimal" : "other points are optimal too",
                       isOneSet ? "the duals are the only ones" : "there are other duals");
}

std::string Head(const Solution& solution)
{
    std::string text = fmt::format("status     {}\n", solution.Outcome());
    const bool optimal = solution.status == Status::Optimal;
    if (optimal || !solution.values.empty())
        text += "objective  " +
                (solution.exact ? solution.exactObjective : Number(solution.objective)) + "\n";
    text += solution.proved ? fmt::format("proof      proved as {}{}\n", WordOf(solution.numbers),
                                          solution.exact ? "" : ExactWords(solution.exactObjective))
                            : "proof      not proved\n";
    text += UniquenessWords(solution.unique);
    if (HasViolations(solution) && !solution.values.empty())
    {
        text += fmt::format("violation  {} of a bound, {} of an optimality condition\n",
                            Number(solution.primalViolation), Number(solution.dualViolation));
    }
    return text;
}

/// The tables with all digits, prices among them.
std::string ExactValues(const Model& model, const ExactTexts& exact)
{
    Table variables;
    variables.Add({"variable", "value", "reduced cost"});
    for (std::uint32_t j = 0; j < exact.values.size(); ++j)
        variables.Add({std::string(model.VariableName(j)), exact.values[j], exact.reducedCosts[j]});
    Table rows;
    rows.Add({"row", "activity", "slack", "dual"});
    for (std::uint32_t i = 0; i < exact.activities.size(); ++i)
        rows.Add(
            {std::string(model.RowName(i)), exact.activities[i], exact.slacks[i], exact.duals[i]});
    return (variables.HasLines() ? "\n" + variables.Text() : "") +
           (rows.HasLines() ? "\n" + rows.Text() : "");
}

std::string Values(const Model& model, const Solution& solution)
{
    if (solution.exact)
        return ExactValues(model, *solution.exact);
    Table variables;
    variables.Add({"variable", "value"});
    for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
        variables.Add({std::string(model.VariableName(j)), Number(solution.values[j])});
    Table rows;
    rows.Add({"row", "activity", "bound", "slack"});
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
    {
        const double activity = solution.activities[i];
        const double lower = model.RowLower()[i];
        const double upper = model.RowUpper()[i];
        rows.Add({std::string(model.RowName(i)), Number(activity), BoundWords(lower, upper),
                  SlackWords(activity, lower, upper)});
    }
    return (variables.HasLines() ? "\n" + variables.Text() : "") +
           (rows.HasLines() ? "\n" + rows.Text() : "");
}

/// The entries of a direction or of a combination that are not zero, under their names.
template <class NameOf>
std::string NonZeros(std::string title, std::string unit, std::span<const double> entries,
                     const std::vector<std::string>& exact, NameOf nameOf)
{
    Table table;
    table.Add({std::move(title), std::move(unit)});
    for (std::uint32_t k = 0; k < entries.size(); ++k)
    {
        if (entries[k] != 0.0)
            table.Add({std::string(nameOf(k)), k < exact.size() ? exact[k] : Number(entries[k])});
    }
    return table.HasLines() ? "\n" + table.Text() : "";
}

/// "row need" or "variable x".
std::string NameOf(const Model& model, const std::variant<Variable, Row>& of)
{
    const Row* const row = std::get_if<Row>(&of);
    return row != nullptr
               ? "row " + std::string(model.RowName(model.IndexOf(*row)))
               : "variable " +
                     std::string(model.VariableName(model.IndexOf(std::get<Variable>(of))));
}

/// Rows and bounds that exclude each other, under their names.
std::string IisWords(const Model& model, const Iis& iis)
{
    Table table;
    table.Add({iis.minimal ? "IIS: these exclude each other, each is needed"
                           : "these exclude each other, some may be dispensable",
               "side"});
    for (const IisMember& member : iis.members)
    {
        const Row* const row = std::get_if<Row>(&member.of);
        const bool isRow = row != nullptr;
        const std::uint32_t index =
            isRow ? model.IndexOf(*row) : model.IndexOf(std::get<Variable>(member.of));
        const std::span<const double> sides =
            isRow ? (member.upper ? model.RowUpper() : model.RowLower())
                  : (member.upper ? model.VariableUpper() : model.VariableLower());
        table.Add(
            {NameOf(model, member.of), (member.upper ? "<= " : ">= ") + Number(sides[index])});
    }
    return table.HasLines() ? "\n" + table.Text() : "";
}

std::string RangeWords(const AllowedRange& range)
{
    return Number(range.lower) + " .. " + Number(range.upper);
}

/// How far the numbers of the model may move before another basis is optimal.
std::string Ranges(const Model& model, const Solution& solution)
{
    if (solution.sensitivity.cost.empty() && solution.sensitivity.rowUpper.empty())
        return "";
    Table variables;
    variables.Add({"variable", "reduced cost", "objective may be"});
    for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
        variables.Add({std::string(model.VariableName(j)), Number(solution.reducedCosts[j]),
                       RangeWords(solution.sensitivity.cost[j])});
    Table rows;
    rows.Add({"row", "dual", "lower side may be", "upper side may be"});
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
        rows.Add(
            {std::string(model.RowName(i)), Number(solution.duals[i]),
             std::isinf(model.RowLower()[i]) ? "" : RangeWords(solution.sensitivity.rowLower[i]),
             std::isinf(model.RowUpper()[i]) ? "" : RangeWords(solution.sensitivity.rowUpper[i])});
    return (solution.sensitivity.exact ? "" : "\nranges in double precision\n") +
           (variables.HasLines() ? "\n" + variables.Text() : "") +
           (rows.HasLines() ? "\n" + rows.Text() : "");
}

}  // namespace

std::string ExactWords(std::string_view exact)
{
    constexpr std::size_t kLongest = 60;
    if (exact.size() <= kLongest)
        return exact.empty() ? "" : fmt::format(", exactly {}", exact);
    const std::size_t digits = exact.size() - (exact.front() == '-' ? 1 : 0);
    const std::size_t below = exact.size() - std::min(exact.find('/'), exact.size());
    return below == 0 ? fmt::format(", exactly an integer of {} digits", digits)
                      : fmt::format(", exactly a quotient of {} by {} digits, which --json prints",
                                    digits - below, below - 1);
}

std::string RepairText(const Model& model, const RepairResult& repair)
{
    std::string text = fmt::format("status     {}\n", Outcome(repair));
    if (repair.status == Status::Optimal && !repair.changes.empty())
        text += "change     " + Number(repair.total) + "\n";
    text += repair.proved ? fmt::format("proof      proved as {}{}\n", WordOf(repair.numbers),
                                        ExactWords(repair.changes.empty() ? "" : repair.exactTotal))
                          : "proof      not proved\n";
    Table table;
    table.Add({"what has to move", "from", "to", "by"});
    for (const RepairChange& change : repair.changes)
    {
        constexpr std::size_t kLongest = 20;
        const std::string side = change.upper ? "<= " : ">= ";
        const bool isShort = change.exactAmount.size() <= kLongest;
        table.Add({NameOf(model, change.of), side + Number(change.from), side + Number(change.to),
                   isShort ? change.exactAmount : Number(change.amount)});
    }
    return table.HasLines() ? text + "\n" + table.Text() : text;
}

std::string TextReport(const Model& model, const Solution& solution, Detail detail)
{
    std::string text = Head(solution);
    if (detail == Detail::Verdict)
        return text;
    if (solution.proved && solution.singlePrecision.stop == SinglePrecisionStop::Cycling)
        text +=
            "note       single precision stopped: " + CycleWords(solution.singlePrecision) + "\n";
    if (solution.values.size() == model.VariableCount() &&
        solution.activities.size() == model.RowCount())
        text += Values(model, solution);
    const ExactTexts exact = solution.exact.value_or(ExactTexts());
    text += NonZeros("the objective improves for ever along", "direction", solution.ray, exact.ray,
                     [&](std::uint32_t j) { return model.VariableName(j); });
    // The multipliers prove the same of perhaps more rows; two lists would puzzle.
    if (!solution.iis.members.empty())
        text += IisWords(model, solution.iis);
    else
        text += NonZeros("these rows contradict each other", "multiplier", solution.farkas, {},
                         [&](std::uint32_t i) { return model.RowName(i); });
    text += Ranges(model, solution);
    return text;
}

}  // namespace nuv
