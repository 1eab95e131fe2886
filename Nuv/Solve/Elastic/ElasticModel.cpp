// The proof is that of the program in FeasibilityRepair.cpp, whose duals say of each variable v, a
// column or a row's activity, with which multiplier d its bounds count: d is the dual of a row, and
// of a column 0 - a' y. In the elastic model the lower bound has a multiplier p >= 0 of its own and
// the upper one q >= 0, with p - q = d, which keeps all columns in balance. Where the bounds leave
// room, only one of both is not 0. Where they cross, lower > upper, v rests there at one of
// [upper, lower] and weight w * (lower - upper) is paid in any case:
//
//     d >= 0, at the upper:   d * upper + w * (lower - upper) = w * lower - (w - d) * upper
//     d <= 0, at the lower:   d * lower + w * (lower - upper) = (w + d) * lower - w * upper
//
// so p = w and q = w - d, or p = w + d and q = w. Neither exceeds w, since the columns by which v
// may pass its bounds have the reduced costs w - d and w + d. Where the upper bound alone may move,
// v is fixed at the lower one, and the second line holds whatever the sign of d. A proof that there
// is no repair has no costs: w = 0.
#include "Nuv/Solve/Elastic/ElasticModel.hpp"

#include "Nuv/Model/ModelBuilder.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace nuv
{
namespace
{

ExactVector OverOneDenominator(const std::vector<Rational>& numbers)
{
    ExactVector vector;
    for (const Rational& number : numbers)
        vector.denominator = LeastCommonMultiple(vector.denominator, number.Denominator());
    for (const Rational& number : numbers)
        vector.numerator.push_back((number * Rational(vector.denominator)).Numerator());
    return vector;
}

class Elastic
{
public:
    Elastic(const Model& model, const BoundedForm& form, const std::vector<double>& weights,
            const FeasibilityRepair& repair)
        : m_model(model), m_form(form), m_weights(weights), m_repair(repair)
    {
        m_builder.SetName(model.Name());
        for (Index j = 0; j < form.columns; ++j)
            StateColumn(j);
        for (Index i = 0; i < form.rows; ++i)
            StateRow(i);
        for (Index v = 0; v < form.Variables(); ++v)
            for (const bool upper : {false, true})
                if (MayMove(form, weights, {v, upper}))
                    StateSide({v, upper});
    }

    ElasticModel Take()
    {
        ElasticModel elastic;
        elastic.certificate.status = m_repair.elastic.certificate.status;
        if (elastic.certificate.status == Status::Optimal)
        {
            elastic.certificate.objective = m_repair.total;
            elastic.certificate.primal = OverOneDenominator(Point());
        }
        if (m_repair.elastic.certificate.contradiction != kNoIndex)
            elastic.certificate.contradiction = Contradiction();
        else if (elastic.certificate.status != Status::Stopped)
            elastic.certificate.dual = OverOneDenominator(Duals());
        elastic.model = m_builder.Take();
        return elastic;
    }

private:
    /// A side that may move: where it stands in the elastic model.
    struct Moving
    {
        BoundOfVariable bound;
        Index column;
        Index row;
    };

    [[nodiscard]] NumberPlace PlaceOf(const BoundOfVariable& bound) const
    {
        using Of = NumberPlace::Of;
        if (m_form.IsLogical(bound.variable))
            return {bound.upper ? Of::RowUpper : Of::RowLower, m_form.RowOf(bound.variable)};
        return {bound.upper ? Of::VariableUpper : Of::VariableLower, bound.variable};
    }

    /// Says of a number in the elastic model what the model says of its own.
    void SayAs(const NumberPlace& place, const NumberPlace& original)
    {
        if (const std::string* const text = m_model.Exact().Find(original))
            m_builder.SetExact(place, *text);
    }

    /// The bounds of a variable that stay.
    [[nodiscard]] Bounds Staying(Index v) const
    {
        return {MayMove(m_form, m_weights, {v, false}) ? -Infinity : m_form.Lower(v),
                MayMove(m_form, m_weights, {v, true}) ? Infinity : m_form.Upper(v)};
    }

    void StateColumn(Index j)
    {
        (void)m_builder.InternVariable(m_model.VariableName(j));
        const Bounds bounds = Staying(j);
        m_builder.SetVariableBounds(j, bounds);
        for (const bool upper : {false, true})
            if (std::isfinite(upper ? bounds.upper : bounds.lower))
                SayAs(PlaceOf({j, upper}), PlaceOf({j, upper}));
    }

    void StateRow(Index i)
    {
        const Index v = m_form.columns + i;
        const Bounds bounds = Staying(v);
        m_rowAt.push_back(kNoIndex);
        if (!std::isfinite(bounds.lower) && !std::isfinite(bounds.upper))
            return;
        m_rowAt[i] = AppendRow(std::string(m_model.RowName(i)), bounds, v);
        for (const bool upper : {false, true})
            if (std::isfinite(upper ? bounds.upper : bounds.lower))
                SayAs({PlaceOf({v, upper}).of, m_rowAt[i]}, PlaceOf({v, upper}));
    }

    void StateSide(const BoundOfVariable& bound)
    {
        const auto& [v, upper] = bound;
        std::string name = upper ? "over_" : "short_";
        name += m_form.IsLogical(v) ? m_model.RowName(m_form.RowOf(v)) : m_model.VariableName(v);
        std::string variable = name;
        while (!m_builder.InternVariable(variable).isNew)
            variable += '_';
        const Index column = m_builder.Made().VariableCount() - 1;
        m_builder.SetObjectiveCoefficient(column, m_weights[v]);
        const Bounds bounds =
            upper ? Bounds{-Infinity, m_form.Upper(v)} : Bounds{m_form.Lower(v), Infinity};
        const Index row = AppendRow(std::move(name), bounds, v);
        m_builder.AppendEntry(column, upper ? -1.0 : 1.0);
        SayAs({upper ? NumberPlace::Of::RowUpper : NumberPlace::Of::RowLower, row}, PlaceOf(bound));
        m_moving.push_back({bound, column, row});
    }

    /// With the terms of a variable: itself, or those of the row whose activity it is.
    Index AppendRow(std::string name, Bounds bounds, Index v)
    {
        while (!m_builder.AppendRow(name, bounds).Valid())
            name += '_';
        const Index row = m_builder.Made().RowCount() - 1;
        if (!m_form.IsLogical(v))
        {
            m_builder.AppendEntry(v, 1.0);
            return row;
        }
        const Index i = m_form.RowOf(v);
        for (std::size_t k = 0; k < m_model.RowColumns(i).size(); ++k)
        {
            const Index column = m_model.RowColumns(i)[k];
            m_builder.AppendEntry(column, m_model.RowCoefficients(i)[k]);
            SayAs({NumberPlace::Of::Entry, row, column}, {NumberPlace::Of::Entry, i, column});
        }
        return row;
    }

    [[nodiscard]] std::vector<Rational> Point() const
    {
        std::vector<Rational> point = m_repair.point;
        for (const Moving& moving : m_moving)
        {
            const auto change = std::ranges::find_if(m_repair.changes, [&](const BoundChange& made)
                                                     { return IsSame(made, moving); });
            point.push_back(change == m_repair.changes.end() ? Rational(0) : change->amount);
        }
        return point;
    }

    [[nodiscard]] static bool IsSame(const BoundChange& made, const Moving& moving)
    {
        return made.bound.variable == moving.bound.variable &&
               made.bound.upper == moving.bound.upper;
    }

    /// What the bounds of each variable count with in the proof, lower less upper.
    [[nodiscard]] std::vector<Rational> MultipliersOfBounds() const
    {
        const ExactVector& dual = m_repair.elastic.certificate.dual;
        std::vector<Rational> multipliers(m_form.Variables());
        for (Index i = 0; i < m_form.rows; ++i)
        {
            const Rational y = dual.At(i);
            multipliers[m_form.columns + i] = y;
            if (y.Sign() != 0)
                for (const auto [column, entry] : m_form.matrix.Row(i))
                    multipliers[column] -= m_form.ExactEntry(i, column, entry) * y;
        }
        return multipliers;
    }

    struct Split
    {
        Rational lower;
        Rational upper;
    };

    /// p and q.
    [[nodiscard]] Split SplitOf(Index v, const Rational& d) const
    {
        // Of bounds that cross without being a contradiction the upper one moves.
        const bool lowerMoves = MayMove(m_form, m_weights, {v, false});
        if (!BoundsCross(m_form, v))
            return {std::max(d, Rational(0)), std::max(Rational(-d), Rational(0))};
        const bool isPriced = m_repair.elastic.certificate.status == Status::Optimal;
        const Rational w = isPriced ? ToRational(m_weights[v], m_form.numbers) : Rational(0);
        return lowerMoves && d.Sign() >= 0 ? Split{w, w - d} : Split{w + d, w};
    }

    [[nodiscard]] std::vector<Rational> Duals() const
    {
        const std::vector<Rational> multipliers = MultipliersOfBounds();
        std::vector<Split> splits;
        for (Index v = 0; v < m_form.Variables(); ++v)
            splits.push_back(SplitOf(v, multipliers[v]));
        std::vector<Rational> duals(m_builder.Made().RowCount());
        for (const Moving& moving : m_moving)
        {
            Split& split = splits[moving.bound.variable];
            Rational& multiplier = moving.bound.upper ? split.upper : split.lower;
            duals[moving.row] = moving.bound.upper ? Rational(-multiplier) : multiplier;
            multiplier = 0;
        }
        for (Index i = 0; i < m_form.rows; ++i)
            if (m_rowAt[i] != kNoIndex)
                duals[m_rowAt[i]] =
                    splits[m_form.columns + i].lower - splits[m_form.columns + i].upper;
        return duals;
    }

    /// Bounds that cross, of which none may move.
    [[nodiscard]] Index Contradiction() const
    {
        Index v = 0;
        while (!BoundsCross(m_form, v) || MayMove(m_form, m_weights, {v, true}))
            ++v;
        return m_form.IsLogical(v) ? m_builder.Made().VariableCount() + m_rowAt[m_form.RowOf(v)]
                                   : v;
    }

    const Model& m_model;
    const BoundedForm& m_form;
    const std::vector<double>& m_weights;
    const FeasibilityRepair& m_repair;
    ModelBuilder m_builder;
    std::vector<Index> m_rowAt;  ///< by row of the model: where its sides that stay are
    std::vector<Moving> m_moving;
};

}  // namespace

ElasticModel ElasticModelOf(const Model& model, const BoundedForm& form,
                            const std::vector<double>& weights, const FeasibilityRepair& repair)
{
    return Elastic(model, form, weights, repair).Take();
}

}  // namespace nuv
