// From the changes of the form to those of the model, and the model with them.
#include "Nuv/Solve/Repair.hpp"

#include "Nuv/Model/ModelBuilder.hpp"
#include "Nuv/Solve/FeasibilityRepair.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

/// @return where a handle stands among the variables of the form; kNoIndex if it is not of the
/// model.
Index PlaceOf(const Model& model, const std::variant<Variable, Row>& of)
{
    if (const Variable* const variable = std::get_if<Variable>(&of))
        return model.Owns(*variable) ? model.IndexOf(*variable) : kNoIndex;
    const Row row = std::get<Row>(of);
    return model.Owns(row) ? model.VariableCount() + model.IndexOf(row) : kNoIndex;
}

Result<std::vector<double>> WeightsOf(const Model& model, const RepairOptions& options)
{
    std::vector<double> weights(std::size_t{model.VariableCount()} + model.RowCount(), 1.0);
    for (const RepairWeight& weight : options.weights)
    {
        const Index at = PlaceOf(model, weight.of);
        if (at == kNoIndex)
            return Error{"repair.unknown",
                         "a weight is of something that is not of this model",
                         "use handles of this model",
                         "",
                         0,
                         0};
        if (!(weight.weight > 0.0))
            return Error{"repair.weight",
                         "a weight is not positive",
                         "weights are positive; infinity says that something stays",
                         "",
                         0,
                         0};
        weights[at] = weight.weight;
    }
    return weights;
}

/// The double next to a bound that is as wide as it, or wider.
double AsWide(const Rational& bound, bool upper, CoefficientMeaning numbers)
{
    double number = ToDouble(bound);
    const auto isTooNarrow = [&]
    {
        const Rational meant = ToRational(number, numbers);
        return upper ? meant < bound : meant > bound;
    };
    while (std::isfinite(number) && isTooNarrow())
        number = std::nextafter(number, upper ? Infinity : -Infinity);
    return number;
}

class Repairing
{
public:
    Repairing(const Model& model, const BoundedForm& form) : m_model(model), m_form(form) {}

    [[nodiscard]] RepairChange ChangeOf(const BoundChange& change) const
    {
        const auto& [v, upper] = change.bound;
        const double from = upper ? m_form.Upper(v) : m_form.Lower(v);
        const Rational side = upper ? m_form.ExactUpper(v) : m_form.ExactLower(v);
        const Rational to = upper ? side + change.amount : side - change.amount;
        RepairChange result;
        if (m_form.IsLogical(v))
            result.of = m_model.RowAt(m_form.RowOf(v));
        else
            result.of = m_model.VariableAt(v);
        result.upper = upper;
        result.from = from;
        result.to = AsWide(to, upper, m_form.numbers);
        result.amount = ToDouble(change.amount);
        result.exactTo = ToString(to);
        result.exactAmount = ToString(change.amount);
        return result;
    }

    [[nodiscard]] Model With(const std::vector<RepairChange>& changes) const
    {
        Model repaired = m_model;
        for (const RepairChange& change : changes)
        {
            const Index v = PlaceOf(m_model, change.of);
            Bounds bounds = m_form.IsLogical(v)
                                ? Bounds{repaired.RowLower()[m_form.RowOf(v)],
                                         repaired.RowUpper()[m_form.RowOf(v)]}
                                : Bounds{repaired.VariableLower()[v], repaired.VariableUpper()[v]};
            (change.upper ? bounds.upper : bounds.lower) = change.to;
            const NumberPlace other = PlaceOfBound(v, !change.upper);
            const std::string* const text = repaired.Exact().Find(other);
            const std::string kept = text != nullptr ? *text : "";
            std::visit([&](auto handle) { (void)repaired.SetBounds(handle, bounds); }, change.of);
            if (!kept.empty())
            {
                ModelBuilder builder(std::move(repaired));
                builder.SetExact(other, kept);
                repaired = builder.Take();
            }
        }
        return repaired;
    }

private:
    [[nodiscard]] NumberPlace PlaceOfBound(Index v, bool upper) const
    {
        using Of = NumberPlace::Of;
        if (m_form.IsLogical(v))
            return {upper ? Of::RowUpper : Of::RowLower, m_form.RowOf(v)};
        return {upper ? Of::VariableUpper : Of::VariableLower, v};
    }

    const Model& m_model;
    const BoundedForm& m_form;
};

}  // namespace

std::string Outcome(const RepairResult& repair)
{
    switch (repair.status)
    {
    case Status::Optimal:
        return repair.changes.empty() ? "feasible as it stands" : "repaired";
    case Status::Infeasible:
        return "infeasible: what has to stay excludes itself";
    case Status::Invalid:
        return "invalid: " + repair.failure.text;
    default:
        break;
    }
    Solution stopped;
    stopped.status = Status::Stopped;
    stopped.stopReason = repair.stopReason;
    return stopped.Outcome();
}

RepairResult Repair(const Model& model, const RepairOptions& options)
{
    RepairResult result;
    result.numbers = options.numbers;
    Result<std::vector<double>> weights = WeightsOf(model, options);
    if (std::optional<Error> fault = model.FindFault())
        result.failure = std::move(*fault);
    else if (!weights)
        result.failure = weights.GetError();
    if (!result.failure.code.empty())
        return result;
    SolveControl control(options.limits);
    const BoundedForm form = FormOf(model, options.numbers);
    const FeasibilityRepair repair = FindRepair(form, *weights, control);
    result.status = repair.elastic.certificate.status;
    result.proved = repair.elastic.record.proved;
    result.stopReason = repair.elastic.record.stopReason;
    if (result.status != Status::Optimal)
        return result;
    const Repairing repairing(model, form);
    for (const BoundChange& change : repair.changes)
        result.changes.push_back(repairing.ChangeOf(change));
    result.total = ToDouble(repair.total);
    result.exactTotal = ToString(repair.total);
    result.model = repairing.With(result.changes);
    return result;
}

}  // namespace nuv
