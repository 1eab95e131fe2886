// From the changes of the form to those of the model, and the model with them.
#include "Nuv/Solve/Repair.hpp"

#include "Nuv/Algebra/RationalText.hpp"
#include "Nuv/Solve/Elastic/ElasticModel.hpp"
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
        // A text says any number that a double is near to; of doubles it has to be a wider one.
        const double nearest = ToDouble(to);
        const bool hasText =
            IsWritten() && std::isfinite(nearest) && (nearest != 0.0 || to.Sign() == 0);
        result.to = hasText ? nearest : AsWide(to, upper, m_form.numbers);
        result.amount = ToDouble(change.amount);
        result.exactTo = ToString(to);
        result.exactAmount = ToString(change.amount);
        return result;
    }

    [[nodiscard]] Model With(const std::vector<RepairChange>& changes) const
    {
        Model repaired = m_model;
        for (const RepairChange& change : changes)
            std::visit([&](auto handle) { Move(repaired, handle, change); }, change.of);
        return repaired;
    }

private:
    /// The number that a side goes to, as a model takes it; empty for an infinite one.
    [[nodiscard]] std::string TextOf(const RepairChange& change) const
    {
        if (!std::isfinite(change.to))
            return {};
        if (ToDouble(*ReadRational(change.exactTo)) == change.to && IsWritten())
            return change.exactTo;
        return ToString(ToRational(change.to, CoefficientMeaning::ShortestDecimal));
    }

    template <class Handle>
    void Move(Model& model, Handle handle, const RepairChange& change) const
    {
        const std::string text = TextOf(change);
        if (text.empty())
            (void)model.SetBounds(handle, Widened(model, change));
        else if (change.upper)
            (void)model.SetExactUpper(handle, text);
        else
            (void)model.SetExactLower(handle, text);
    }

    /// The bounds of what has to go beyond all doubles.
    [[nodiscard]] Bounds Widened(const Model& model, const RepairChange& change) const
    {
        const Index v = PlaceOf(m_model, change.of);
        const bool isRow = m_form.IsLogical(v);
        const Index at = isRow ? m_form.RowOf(v) : v;
        if (change.upper)
            return {isRow ? model.RowLower()[at] : model.VariableLower()[at], Infinity};
        return {-Infinity, isRow ? model.RowUpper()[at] : model.VariableUpper()[at]};
    }

    [[nodiscard]] bool IsWritten() const
    {
        return m_form.numbers == CoefficientMeaning::ShortestDecimal;
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
    if (options.certificate && result.proved)
    {
        ElasticModel elastic = ElasticModelOf(model, form, *weights, repair);
        result.elastic = std::move(elastic.model);
        result.certificate = std::make_shared<Certificate>(std::move(elastic.certificate));
    }
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
