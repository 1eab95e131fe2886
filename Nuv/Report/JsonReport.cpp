#include "Nuv/Report/JsonReport.hpp"

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Report/JsonWriter.hpp"
#include "Nuv/Report/Words.hpp"

#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

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
        if (!solution.reducedCosts.empty())
            json.Key("reduced_cost")
                .Number(solution.reducedCosts[j])
                .Key("basis")
                .Text(WordOf(solution.basis.columns[j]));
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
        solution.basis.rows[i] == BasisStatus::AtLower || !std::isfinite(model.RowUpper()[i]);
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
        if (!solution.duals.empty())
            json.Key("dual")
                .Number(solution.duals[i])
                .Key("basis")
                .Text(WordOf(solution.basis.rows[i]));
        if (!solution.sensitivity.rowUpper.empty())
            WriteRange(json, "rhs_range", RangeOfRow(model, solution, i));
        json.Close('}');
    }
    json.Close(']');
}

std::string_view NameOf(const Model& model, const IisMember& member)
{
    if (const Row* const row = std::get_if<Row>(&member.of))
        return model.RowName(model.IndexOf(*row));
    return model.VariableName(model.IndexOf(std::get<Variable>(member.of)));
}

void WriteConflict(Json& json, const Model& model, const Solution& solution)
{
    json.Key("conflict").Open('[');
    for (const IisMember& member : solution.iis.members)
    {
        const Row* const row = std::get_if<Row>(&member.of);
        json.Open('{').Key(row ? "row" : "variable").Text(NameOf(model, member));
        json.Key("side").Text(member.upper ? "upper" : "lower").Close('}');
    }
    json.Close(']');
}

/// The multipliers of the infeasibility proof, exact, by the rows that have one.
void WriteFarkas(Json& json, const Model& model, const Solution& solution)
{
    json.Key("farkas").Open('[');
    const bool isProved = solution.status == Status::Infeasible && solution.proved;
    const ExactVector multipliers = isProved ? solution.certificate->dual : ExactVector{};
    for (std::uint32_t i = 0; i < multipliers.numerator.size(); ++i)
        if (multipliers.numerator[i] != 0)
            json.Open('{')
                .Key("name")
                .Text(model.RowName(i))
                .Key("multiplier")
                .Text(ToString(multipliers.At(i)))
                .Close('}');
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

/// Lines and columns count from 1; 0 stands for none.
void WritePlace(Json& json, const Error& error)
{
    for (const auto& [key, number] :
         {std::pair("line", error.line), std::pair("column", error.column)})
    {
        json.Key(key);
        number == 0 ? json.Raw("null") : json.Count(number);
    }
}

void WriteTextOrNull(Json& json, std::string_view key, std::string_view text)
{
    json.Key(key);
    text.empty() ? json.Raw("null") : json.Text(text);
}

void WriteWarnings(Json& json, std::span<const Diagnostic> diagnostics)
{
    json.Key("warnings").Open('[');
    for (const Diagnostic& diagnostic : diagnostics)
    {
        if (diagnostic.severity != Severity::Warning)
            continue;
        json.Open('{');
        WritePlace(json, diagnostic.error);
        json.Key("code").Text(diagnostic.error.code);
        json.Key("text").Text(diagnostic.error.text).Close('}');
    }
    json.Close(']');
}

/// How the first stage ended, and the pivots that a basis took to come back where it did.
void WriteSinglePrecisionStage(Json& json, const SinglePrecisionResult& stage)
{
    json.Key("float_stage").Open('{').Key("outcome").Text(WordOf(stage.outcome));
    if (stage.outcome == SinglePrecisionOutcome::Cycling)
        json.Key("period").Count(stage.period);
    json.Close('}');
}

void WriteVerdict(Json& json, const Solution& solution)
{
    json.Key("schema").Text(kResultSchema).Key("status").Text(WordOf(solution.status));
    json.Key("objective");
    if (solution.values.empty() && solution.exactObjective.empty())
        json.Raw("null");
    else
        json.Number(solution.objective);
    json.Key("numbers").Text(WordOf(solution.numbers));
    json.Key("proof").Open('{');
    json.Key("outcome").Text(solution.proved ? "proved" : "not proved");
    if (!solution.exactObjective.empty())
        json.Key("objective").Text(solution.exactObjective);
    if (solution.status == Status::Stopped)
        json.Key("primal_violation")
            .Number(solution.primalViolation)
            .Key("dual_violation")
            .Number(solution.dualViolation);
    json.Close('}').Key("pivots").Open('{');
    json.Key("float").Count(solution.singlePrecision.pivots);
    json.Key("double").Count(solution.stages[Stage::Double].pivots);
    json.Key("exact").Count(solution.stages[Stage::Exact].pivots).Close('}');
    WriteSinglePrecisionStage(json, solution.singlePrecision);
}

}  // namespace

std::string JsonReport(const Model& model, const Solution& solution,
                       std::span<const Diagnostic> diagnostics)
{
    Json json;
    json.Open('{');
    WriteVerdict(json, solution);
    WriteVariables(json, model, solution);
    WriteRows(json, model, solution);
    WriteConflict(json, model, solution);
    WriteFarkas(json, model, solution);
    WriteRay(json, model, solution);
    WriteWarnings(json, diagnostics);
    return json.Close('}').Finish();
}

std::string ErrorJson(std::string_view schema, const Error& error,
                      std::span<const Diagnostic> diagnostics)
{
    Json json;
    json.Open('{').Key("schema").Text(schema).Key("status").Text("error");
    json.Key("code").Text(error.code).Key("text").Text(error.text);
    WriteTextOrNull(json, "hint", error.hint);
    WriteTextOrNull(json, "file", error.file);
    WritePlace(json, error);
    WriteWarnings(json, diagnostics);
    return json.Close('}').Finish();
}

}  // namespace nuv
