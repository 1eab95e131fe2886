#include "Nuv/Report/JsonReport.hpp"

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Report/JsonWriter.hpp"
#include "Nuv/Report/Words.hpp"
#include "Nuv/Utils/NuvVersion.h"

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

/// A number, or exactly, as text, where that was asked for.
void WriteNumber(Json& json, std::string_view key, const Solution& solution,
                 std::vector<std::string> ExactTexts::*texts, std::size_t at, double number)
{
    const bool isExact = solution.exact && at < ((*solution.exact).*texts).size();
    if (!isExact || ((*solution.exact).*texts)[at].empty())
        json.Key(key).Number(number);
    else
        json.Key(key).Text(((*solution.exact).*texts)[at]);
}

void WriteVariables(Json& json, const Model& model, const Solution& solution)
{
    json.Key("variables").Open('[');
    for (std::uint32_t j = 0; j < solution.values.size(); ++j)
    {
        json.Open('{').Key("name").Text(model.VariableName(j));
        WriteNumber(json, "value", solution, &ExactTexts::values, j, solution.values[j]);
        if (!solution.reducedCosts.empty())
        {
            WriteNumber(json, "reduced_cost", solution, &ExactTexts::reducedCosts, j,
                        solution.reducedCosts[j]);
            json.Key("basis").Text(WordOf(solution.basis.columns[j]));
        }
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
        WriteNumber(json, "activity", solution, &ExactTexts::activities, i, activity);
        json.Key("lower").Number(lower).Key("upper").Number(upper);
        WriteNumber(json, "slack", solution, &ExactTexts::slacks, i,
                    std::fmin(upper - activity, activity - lower) + 0.0);
        if (!solution.duals.empty())
        {
            WriteNumber(json, "dual", solution, &ExactTexts::duals, i, solution.duals[i]);
            json.Key("basis").Text(WordOf(solution.basis.rows[i]));
        }
        if (!solution.sensitivity.rowUpper.empty())
            WriteRange(json, "rhs_range", RangeOfRow(model, solution, i));
        json.Close('}');
    }
    json.Close(']');
}

/// "row" or "variable" with its name, and its side.
void WriteSide(Json& json, const Model& model, const std::variant<Variable, Row>& of, bool upper)
{
    if (const Row* const row = std::get_if<Row>(&of))
        json.Key("row").Text(model.RowName(model.IndexOf(*row)));
    else
        json.Key("variable").Text(model.VariableName(model.IndexOf(std::get<Variable>(of))));
    json.Key("side").Text(upper ? "upper" : "lower");
}

void WriteIis(Json& json, const Model& model, const Solution& solution)
{
    json.Key("iis").Open('[');
    for (const IisMember& member : solution.iis.members)
    {
        json.Open('{');
        WriteSide(json, model, member.of, member.upper);
        json.Close('}');
    }
    json.Close(']');
}

void WriteChanges(Json& json, const Model& model, const RepairResult& repair)
{
    json.Key("changes").Open('[');
    for (const RepairChange& change : repair.changes)
    {
        json.Open('{');
        WriteSide(json, model, change.of, change.upper);
        json.Key("from").Number(change.from).Key("to").Number(change.to);
        json.Key("exact_to").Text(change.exactTo);
        json.Key("amount").Number(change.amount);
        json.Key("exact_amount").Text(change.exactAmount).Close('}');
    }
    json.Close(']');
}

void WriteStopReason(Json& json, StopReason reason)
{
    WriteTextOrNull(json, "stop_reason", reason == StopReason::None ? "" : WordOf(reason));
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

/// The point from which the ray starts, by the variables that are not 0 there.
void WritePoint(Json& json, const Model& model, const Solution& solution)
{
    json.Key("point").Open('[');
    const bool isProved = solution.status == Status::Unbounded && solution.proved;
    const ExactVector point = isProved ? solution.certificate->primal : ExactVector{};
    for (std::uint32_t j = 0; j < point.numerator.size(); ++j)
        if (point.numerator[j] != 0)
        {
            json.Open('{').Key("name").Text(model.VariableName(j)).Key("value");
            solution.exact ? json.Text(ToString(point.At(j))) : json.Number(ToDouble(point.At(j)));
            json.Close('}');
        }
    json.Close(']');
}

void WriteRay(Json& json, const Model& model, const Solution& solution)
{
    json.Key("ray").Open('[');
    for (std::uint32_t j = 0; j < solution.ray.size(); ++j)
        if (solution.ray[j] != 0.0)
        {
            json.Open('{').Key("name").Text(model.VariableName(j));
            WriteNumber(json, "value", solution, &ExactTexts::ray, j, solution.ray[j]);
            json.Close('}');
        }
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

void WriteError(Json& json, const Error& error)
{
    json.Key("code").Text(error.code).Key("text").Text(error.text);
    WriteTextOrNull(json, "hint", error.hint);
    WriteTextOrNull(json, "file", error.file);
    WritePlace(json, error);
}

/// To the microsecond, which is more than a clock tells.
void WriteStage(Json& json, std::string_view key, const StageRecord& stage)
{
    json.Key(key).Open('{').Key("ran").Raw(stage.ran ? "true" : "false");
    json.Key("pivots").Count(stage.pivots);
    WriteSeconds(json, stage.seconds);
}

/// Of the first stage also how it ended, and the pivots that a basis took to come back where it
/// did.
void WriteStages(Json& json, const Solution& solution)
{
    json.Key("stages").Open('{');
    WriteStage(json, "single_precision", solution.stages[Stage::SinglePrecision]);
    const SinglePrecisionResult& first = solution.singlePrecision;
    json.Key("outcome").Text(first.stop == SinglePrecisionStop::None ? WordOf(first.status)
                                                                     : WordOf(first.stop));
    if (first.stop == SinglePrecisionStop::Cycling)
        json.Key("period").Count(first.period);
    json.Close('}');
    WriteStage(json, "double_precision", solution.stages[Stage::Double]);
    json.Close('}');
    WriteStage(json, "exact", solution.stages[Stage::Exact]);
    json.Close('}').Key("check").Open('{').Key("ran").Raw(solution.proved ? "true" : "false");
    WriteSeconds(json, solution.checkSeconds);
    json.Close('}').Close('}');
}

std::string_view WordOf(Uniqueness unique)
{
    return unique == Uniqueness::Unique ? "true" : "false";
}

void WriteVerdict(Json& json, const Solution& solution)
{
    json.Key("status").Text(WordOf(solution.status));
    WriteStopReason(json, solution.stopReason);
    json.Key("objective");
    if (solution.values.empty() && solution.exactObjective.empty())
        json.Raw("null");
    else if (solution.exact && !solution.exactObjective.empty())
        json.Text(solution.exactObjective);
    else
        json.Number(solution.objective);
    json.Key("numbers").Text(WordOf(solution.numbers));
    json.Key("proof").Open('{');
    json.Key("outcome").Text(solution.proved ? "proved" : "not proved");
    if (!solution.exactObjective.empty())
        json.Key("objective").Text(solution.exactObjective);
    if (HasViolations(solution))
        json.Key("primal_violation")
            .Number(solution.primalViolation)
            .Key("dual_violation")
            .Number(solution.dualViolation);
    json.Close('}');
    if (solution.unique.point != Uniqueness::Unknown)
        json.Key("unique_point").Raw(WordOf(solution.unique.point));
    if (solution.unique.duals != Uniqueness::Unknown)
        json.Key("unique_duals").Raw(WordOf(solution.unique.duals));
    if (!solution.sensitivity.cost.empty() || !solution.sensitivity.rowUpper.empty())
        json.Key("ranges_exact").Raw(solution.sensitivity.exact ? "true" : "false");
    WriteSeconds(json, solution.seconds);
    WriteStages(json, solution);
}

}  // namespace

void WriteSeconds(Json& json, double seconds)
{
    json.Key("seconds").Number(std::round(seconds * 1e6) / 1e6);
}

Json OpenReport(std::string_view schema)
{
    Json json;
    json.Open('{').Key("schema").Text(schema).Key("version").Text(NUV_VERSION);
    return json;
}

void WriteModel(Json& json, const Model& model)
{
    json.Key("model").Open('{');
    WriteTextOrNull(json, "name", model.Name());
    json.Key("sense").Text(WordOf(model.ObjectiveSense()));
    json.Key("rows").Count(model.RowCount()).Key("variables").Count(model.VariableCount());
    json.Key("nonzeros").Count(model.NonzeroCount()).Close('}');
}

void WriteTextOrNull(Json& json, std::string_view key, std::string_view text)
{
    json.Key(key);
    text.empty() ? json.Raw("null") : json.Text(text);
}

void WriteDiagnostics(Json& json, std::string_view key, std::span<const Diagnostic> diagnostics,
                      Severity least)
{
    json.Key(key).Open('[');
    for (const Diagnostic& diagnostic : diagnostics)
        // The error that ended the reading is the result itself.
        if (diagnostic.severity != Severity::Error && diagnostic.severity <= least)
        {
            json.Open('{').Key("severity").Text(SeverityName(diagnostic.severity));
            WriteError(json, diagnostic.error);
            json.Close('}');
        }
    json.Close(']');
}

std::string RepairJson(const Model& model, const RepairResult& repair,
                       std::span<const Diagnostic> diagnostics)
{
    Json json = OpenReport(kRepairSchema);
    WriteModel(json, model);
    json.Key("status").Text(repair.status != Status::Optimal ? WordOf(repair.status)
                            : repair.changes.empty()         ? "feasible"
                                                             : "repaired");
    WriteStopReason(json, repair.stopReason);
    json.Key("numbers").Text(WordOf(repair.numbers));
    json.Key("proof").Open('{').Key("outcome");
    json.Text(repair.proved ? "proved" : "not proved").Close('}');
    if (repair.status == Status::Optimal)
        json.Key("total").Number(repair.total).Key("exact_total").Text(repair.exactTotal);
    WriteChanges(json, model, repair);
    WriteDiagnostics(json, "warnings", diagnostics, Severity::Warning);
    return json.Close('}').Finish();
}

std::string JsonReport(const Model& model, const Solution& solution,
                       std::span<const Diagnostic> diagnostics)
{
    Json json = OpenReport(kResultSchema);
    WriteModel(json, model);
    WriteVerdict(json, solution);
    WriteVariables(json, model, solution);
    WriteRows(json, model, solution);
    WriteIis(json, model, solution);
    WriteFarkas(json, model, solution);
    WritePoint(json, model, solution);
    WriteRay(json, model, solution);
    WriteDiagnostics(json, "warnings", diagnostics, Severity::Warning);
    return json.Close('}').Finish();
}

std::string ErrorJson(std::string_view schema, const Error& error,
                      std::span<const Diagnostic> diagnostics)
{
    Json json = OpenReport(schema);
    json.Key("status").Text("error");
    WriteError(json, error);
    WriteDiagnostics(json, "warnings", diagnostics, Severity::Warning);
    return json.Close('}').Finish();
}

}  // namespace nuv
