// Aligned tables of names and numbers. Numbers are the shortest decimals that read back as the same
// doubles.
#include "TextReport.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <string_view>
#include <vector>

namespace nuvlp
{
namespace
{

/// Wider names push their line to the right instead of all the others.
constexpr std::size_t kWidestColumn = 48;

std::size_t Characters(std::string_view text)
{
    const auto first = [](char c) { return (static_cast<unsigned char>(c) & 0xC0u) != 0x80u; };
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), first));
}

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
                widths[i] = std::max(widths[i], std::min(Characters(line[i]), kWidestColumn));
        }
        std::string text;
        for (const std::vector<std::string>& line : m_lines)
        {
            for (std::size_t i = 0; i < line.size(); ++i)
            {
                const std::size_t had = Characters(line[i]);
                const std::string blanks(had < widths[i] ? widths[i] - had : 0, ' ');
                text += i == 0 ? line[i] + blanks : "  " + blanks + line[i];
            }
            text += '\n';
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

std::string_view StatusWord(nuv::SolveStatus status)
{
    switch (status)
    {
    case nuv::SolveStatus::Optimal:
        return "optimal";
    case nuv::SolveStatus::Infeasible:
        return "infeasible";
    case nuv::SolveStatus::Unbounded:
        return "unbounded";
    case nuv::SolveStatus::Stopped:
        return "stopped";
    case nuv::SolveStatus::Invalid:
        break;
    }
    return "invalid";
}

std::string StopWords(nuv::StopReason reason)
{
    switch (reason)
    {
    case nuv::StopReason::TimeLimit:
        return " by the time limit";
    case nuv::StopReason::PivotLimit:
        return " by the pivot limit";
    case nuv::StopReason::Cancelled:
        return " by an interrupt";
    case nuv::StopReason::None:
        break;
    }
    return "";
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

std::string Head(const nuv::Solution& solution)
{
    std::string text = fmt::format("status     {}", StatusWord(solution.status));
    if (solution.status == nuv::SolveStatus::Stopped)
        text += StopWords(solution.proof.stopReason);
    text += '\n';
    const bool optimal = solution.status == nuv::SolveStatus::Optimal;
    if (optimal || !solution.values.empty())
        text += "objective  " + Number(solution.objective) + "\n";
    const std::string exact =
        solution.exactObjective.empty() ? "" : ", exactly " + solution.exactObjective;
    text += fmt::format("proof      {}{}\n", solution.proved ? "proved" : "not proved", exact);
    if (solution.status == nuv::SolveStatus::Stopped && !solution.values.empty())
    {
        text += fmt::format("violation  {} of a bound, {} of an optimality condition\n",
                            Number(solution.proof.primalViolation),
                            Number(solution.proof.dualViolation));
    }
    return text;
}

std::string Values(const nuv::Model& model, const nuv::Solution& solution)
{
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
                     NameOf nameOf)
{
    Table table;
    table.Add({std::move(title), std::move(unit)});
    for (std::uint32_t k = 0; k < entries.size(); ++k)
    {
        if (entries[k] != 0.0)
            table.Add({std::string(nameOf(k)), Number(entries[k])});
    }
    return table.HasLines() ? "\n" + table.Text() : "";
}

}  // namespace

std::string TextReport(const nuv::Model& model, const nuv::Solution& solution, Detail detail)
{
    std::string text = Head(solution);
    if (detail == Detail::Verdict)
        return text;
    if (solution.values.size() == model.VariableCount() &&
        solution.activities.size() == model.RowCount())
        text += Values(model, solution);
    text += NonZeros("the objective improves for ever along", "direction", solution.ray,
                     [&](std::uint32_t j) { return model.VariableName(j); });
    text += NonZeros("these rows contradict each other", "multiplier", solution.farkas,
                     [&](std::uint32_t i) { return model.RowName(i); });
    return text;
}

}  // namespace nuvlp
