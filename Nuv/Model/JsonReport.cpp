#include "Nuv/Model/JsonReport.hpp"

#include <charconv>
#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

/// The length of the UTF-8 sequence that `text` begins with, 0 if there is none.
std::size_t SequenceLength(std::string_view text)
{
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const std::size_t length = byte(0) < 0x80   ? 1
                               : byte(0) < 0xC2 ? 0
                               : byte(0) < 0xE0 ? 2
                               : byte(0) < 0xF0 ? 3
                               : byte(0) < 0xF5 ? 4
                                                : 0;
    if (length == 0 || length > text.size())
        return 0;
    for (std::size_t at = 1; at < length; ++at)
        if ((byte(at) & 0xC0U) != 0x80U)
            return 0;
    // Overlong forms, surrogates and what lies beyond the last character.
    if (length == 3 &&
        ((byte(0) == 0xE0 && byte(1) < 0xA0) || (byte(0) == 0xED && byte(1) >= 0xA0)))
        return 0;
    if (length == 4 &&
        ((byte(0) == 0xF0 && byte(1) < 0x90) || (byte(0) == 0xF4 && byte(1) >= 0x90)))
        return 0;
    return length;
}

std::string Escaped(char c)
{
    constexpr std::string_view digits = "0123456789abcdef";
    switch (c)
    {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    case '\r':
        return "\\r";
    default:
        break;
    }
    const auto code = static_cast<unsigned char>(c);
    if (code >= 0x20)
        return std::string(1, c);
    return std::string("\\u00") + digits[code >> 4] + digits[code & 15U];
}

/// Writes objects and arrays with the commas where they belong.
class Json
{
public:
    Json& Key(std::string_view name)
    {
        Separate();
        m_text.append(JsonString(name)).append(":");
        m_isFirst = true;
        return *this;
    }
    Json& Raw(std::string_view value)
    {
        Separate();
        m_text.append(value);
        return *this;
    }
    Json& Text(std::string_view value)
    {
        return Raw(JsonString(value));
    }
    Json& Number(double value)
    {
        return Raw(JsonNumber(value));
    }
    Json& Count(std::uint64_t value)
    {
        return Raw(std::to_string(value));
    }
    Json& Open(char bracket)
    {
        Separate();
        m_text += bracket;
        m_isFirst = true;
        return *this;
    }
    Json& Close(char bracket)
    {
        m_text += bracket;
        m_isFirst = false;
        return *this;
    }
    [[nodiscard]] std::string Finish()
    {
        return std::move(m_text) + "\n";
    }

private:
    void Separate()
    {
        if (!m_isFirst)
            m_text += ',';
        m_isFirst = false;
    }

    std::string m_text;
    bool m_isFirst = true;
};

std::string_view BasisWord(BasisStatus status)
{
    switch (status)
    {
    case BasisStatus::Basic:
        return "basic";
    case BasisStatus::AtLower:
        return "lower";
    case BasisStatus::AtUpper:
        return "upper";
    case BasisStatus::Free:
        break;
    }
    return "free";
}

void WriteRange(Json& json, std::string_view key, const AllowedRange& range)
{
    json.Key(key).Open('[').Number(range.lower).Number(range.upper).Close(']');
}

void WriteVariables(Json& json, const Model& model, const Solution& solution)
{
    json.Key("variables").Open('[');
    for (std::uint32_t j = 0; j < solution.values.size(); ++j)
    {
        json.Open('{').Key("name").Text(model.VariableName(j));
        json.Key("value").Number(solution.values[j]);
        json.Key("reduced_cost").Number(solution.reducedCosts[j]);
        json.Key("basis").Text(BasisWord(solution.proof.basis.columns[j]));
        if (!solution.sensitivity.cost.empty())
            WriteRange(json, "objective_range", solution.sensitivity.cost[j]);
        json.Close('}');
    }
    json.Close(']');
}

/// The range of the side at which the row rests, or of the only one it has.
const AllowedRange& RangeOfRow(const Model& model, const Solution& solution, std::uint32_t i)
{
    const bool isLower =
        solution.proof.basis.rows[i] == BasisStatus::AtLower || !std::isfinite(model.RowUpper()[i]);
    return isLower ? solution.sensitivity.rowLower[i] : solution.sensitivity.rowUpper[i];
}

void WriteRows(Json& json, const Model& model, const Solution& solution)
{
    json.Key("rows").Open('[');
    for (std::uint32_t i = 0; i < solution.activities.size(); ++i)
    {
        const double lower = model.RowLower()[i];
        const double upper = model.RowUpper()[i];
        const double activity = solution.activities[i];
        json.Open('{').Key("name").Text(model.RowName(i));
        json.Key("activity").Number(activity);
        json.Key("lower").Number(lower).Key("upper").Number(upper);
        json.Key("slack").Number(std::fmin(upper - activity, activity - lower) + 0.0);
        json.Key("dual").Number(solution.duals[i]);
        if (!solution.sensitivity.rowUpper.empty())
            WriteRange(json, "rhs_range", RangeOfRow(model, solution, i));
        json.Close('}');
    }
    json.Close(']');
}

void WriteConflict(Json& json, const Model& model, const Solution& solution)
{
    json.Key("conflict").Open('[');
    for (const ConflictMember& member : solution.conflict.members)
    {
        const bool isRow = member.variable >= model.VariableCount();
        const std::string_view name = isRow ? model.RowName(member.variable - model.VariableCount())
                                            : model.VariableName(member.variable);
        json.Open('{').Key(isRow ? "row" : "variable").Text(name);
        json.Key("side").Text(member.upper ? "upper" : "lower").Close('}');
    }
    json.Close(']');
}

void WriteRay(Json& json, const Model& model, const Solution& solution)
{
    json.Key("ray").Open('[');
    for (std::uint32_t j = 0; j < solution.ray.size(); ++j)
        if (solution.ray[j] != 0.0)
            json.Open('{')
                .Key("name")
                .Text(model.VariableName(j))
                .Key("value")
                .Number(solution.ray[j])
                .Close('}');
    json.Close(']');
}

void WriteWarnings(Json& json, std::span<const Diagnostic> diagnostics)
{
    json.Key("warnings").Open('[');
    for (const Diagnostic& diagnostic : diagnostics)
    {
        if (diagnostic.severity != Severity::Warning)
            continue;
        json.Open('{').Key("line").Count(diagnostic.error.line);
        json.Key("column").Count(diagnostic.error.column);
        json.Key("code").Text(diagnostic.error.code);
        json.Key("text").Text(diagnostic.error.text).Close('}');
    }
    json.Close(']');
}

void WriteVerdict(Json& json, const Solution& solution)
{
    json.Key("schema").Text("nuvlp/result/1").Key("status").Text(StatusWord(solution.status));
    json.Key("objective");
    if (solution.values.empty() && solution.exactObjective.empty())
        json.Raw("null");
    else
        json.Number(solution.objective);
    json.Key("proof").Open('{');
    json.Key("outcome").Text(solution.proved ? "proved" : "not proved");
    if (!solution.exactObjective.empty())
        json.Key("objective").Text(solution.exactObjective);
    if (solution.status == SolveStatus::Stopped)
        json.Key("primal_violation")
            .Number(solution.proof.primalViolation)
            .Key("dual_violation")
            .Number(solution.proof.dualViolation);
    json.Close('}').Key("pivots").Open('{');
    json.Key("float").Count(solution.floatStage.pivots);
    json.Key("double").Count(solution.proof.doublePivots);
    json.Key("exact").Count(solution.proof.exactPivots).Close('}');
}

}  // namespace

std::string JsonString(std::string_view text)
{
    std::string result = "\"";
    while (!text.empty())
    {
        const std::size_t length = SequenceLength(text);
        if (length == 1)
            result += Escaped(text[0]);
        else if (length == 0)
            result += "\xEF\xBF\xBD";
        else
            result += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result + "\"";
}

std::string JsonNumber(double value)
{
    if (!std::isfinite(value))
        return "null";
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value + 0.0);
    return std::string(buffer, end.ptr);
}

std::string_view StatusWord(SolveStatus status)
{
    switch (status)
    {
    case SolveStatus::Optimal:
        return "optimal";
    case SolveStatus::Infeasible:
        return "infeasible";
    case SolveStatus::Unbounded:
        return "unbounded";
    case SolveStatus::Stopped:
        return "stopped";
    case SolveStatus::Invalid:
        break;
    }
    return "invalid";
}

std::string JsonReport(const Model& model, const Solution& solution,
                       std::span<const Diagnostic> diagnostics)
{
    Json json;
    json.Open('{');
    WriteVerdict(json, solution);
    WriteVariables(json, model, solution);
    WriteRows(json, model, solution);
    WriteConflict(json, model, solution);
    WriteRay(json, model, solution);
    WriteWarnings(json, diagnostics);
    return json.Close('}').Finish();
}

}  // namespace nuv
