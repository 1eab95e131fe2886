// The elastic program has the columns of the form and, for each bound that may move, one more by
// which its variable passes it at the bound's weight:
//
//     v = y + above - below,   y within the bounds,   minimise sum of weights * (above + below)
//
// A column of the form has its own column again, with the sign of the passing; a row's logical has
// a unit column. Bounds that cross, lower > upper, leave no y: both together have to move by at
// least lower - upper, and any value between them costs just that if both may move at one weight.
// So y gets [upper, lower] and the constant weight * (lower - upper) is left out; where only one
// of them may move, y is fixed at the other.
#include "Nuv/Solve/FeasibilityRepair.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

class ElasticProgram
{
public:
    ElasticProgram(const BoundedForm& original, const std::vector<double>& weights)
        : form(original),
          m_original(original),
          m_weights(weights),
          m_below(original.Variables(), kNoIndex),
          m_above(original.Variables(), kNoIndex)
    {
        form.constant = 0.0;
        form.exact.EraseObjective();
        std::fill(form.cost.begin(), form.cost.end(), 0.0);
        SparseVectors<double> columns = original.matrix.Columns();
        for (Index v = 0; v < original.Variables(); ++v)
            Relax(v, columns);
        form.columns = static_cast<Index>(form.cost.size());
        form.matrix = SparseMatrix<double>::FromColumns(std::move(columns), form.rows);
    }

    /// What the bounds of a variable have to change by at a point of the elastic program.
    void AppendChanges(Index v, const ExactVector& point, std::vector<BoundChange>& changes) const
    {
        Rational below = PassedBy(m_below[v], point);
        Rational above = PassedBy(m_above[v], point);
        if (BoundsCross(m_original, v))
        {
            const Rational value = ValueOf(v, point);
            below = std::max(m_original.ExactLower(v) - value, Rational(0));
            above = std::max(value - m_original.ExactUpper(v), Rational(0));
        }
        if (below.Sign() > 0)
            changes.push_back({{v, false}, std::move(below)});
        if (above.Sign() > 0)
            changes.push_back({{v, true}, std::move(above)});
    }

    /// The value of a variable of the original at a point of the elastic program.
    [[nodiscard]] Rational ValueOf(Index v, const ExactVector& point) const
    {
        if (!m_original.IsLogical(v))
            return point.At(v) + PassedBy(m_above[v], point) - PassedBy(m_below[v], point);
        Rational activity = 0;
        for (const auto [column, entry] : m_original.matrix.Row(m_original.RowOf(v)))
            activity +=
                m_original.ExactEntry(m_original.RowOf(v), column, entry) * ValueOf(column, point);
        return activity;
    }

    BoundedForm form;

private:
    void Relax(Index v, SparseVectors<double>& columns)
    {
        const bool lowerMoves = MayMove(m_original, m_weights, {v, false});
        const bool upperMoves = MayMove(m_original, m_weights, {v, true});
        // If neither may move the bounds stay crossed, and that is the proof. Bounds that cross are
        // finite and have one weight, and an upper one is no default: where the lower one moves,
        // the upper one does.
        if (BoundsCross(m_original, v) && upperMoves)
            TakeBounds(v, lowerMoves);
        if (lowerMoves)
            m_below[v] = AppendColumn(v, -1.0, columns);
        if (upperMoves)
            m_above[v] = AppendColumn(v, 1.0, columns);
    }

    /// Makes the upper bound the original's lower one, and the lower bound its upper one if that is
    /// wanted.
    void TakeBounds(Index v, bool lowerFromUpper)
    {
        const bool isRow = m_original.IsLogical(v);
        const Index at = isRow ? m_original.RowOf(v) : v;
        const FormPlace places[] = {
            {isRow ? FormPlace::Of::RowLower : FormPlace::Of::ColumnLower, at},
            {isRow ? FormPlace::Of::RowUpper : FormPlace::Of::ColumnUpper, at}};
        double* const bounds[] = {&(isRow ? form.rowLower : form.columnLower)[at],
                                  &(isRow ? form.rowUpper : form.columnUpper)[at]};
        const bool fromUpper[] = {lowerFromUpper, false};
        for (const std::size_t to : {std::size_t{0}, std::size_t{1}})
        {
            *bounds[to] = fromUpper[to] ? m_original.Upper(v) : m_original.Lower(v);
            form.exact.Erase(places[to]);
            if (const Rational* exact = m_original.exact.Find(places[fromUpper[to] ? 1 : 0]))
                form.exact.Set(places[to], *exact);
        }
    }

    Index AppendColumn(Index v, double sign, SparseVectors<double>& columns)
    {
        AppendColumnOf(m_original, v, sign, columns, form.exact);
        form.cost.push_back(m_weights[v]);
        form.columnLower.push_back(0.0);
        form.columnUpper.push_back(kInfinity);
        return static_cast<Index>(form.cost.size()) - 1;
    }

    [[nodiscard]] static Rational PassedBy(Index column, const ExactVector& point)
    {
        return column == kNoIndex ? Rational(0) : point.At(column);
    }

    const BoundedForm& m_original;
    const std::vector<double>& m_weights;
    std::vector<Index> m_below;  ///< by variable: the column by which it passes its lower bound
    std::vector<Index> m_above;  ///< the same of its upper bound
};

}  // namespace

bool MayMove(const BoundedForm& form, const std::vector<double>& weights,
             const BoundOfVariable& bound)
{
    const double value = bound.upper ? form.Upper(bound.variable) : form.Lower(bound.variable);
    return std::isfinite(value) && std::isfinite(weights[bound.variable]) &&
           !IsDefault(form, bound);
}

FeasibilityRepair FindRepair(const BoundedForm& form, const std::vector<double>& weights,
                             SolveControl& control)
{
    const ElasticProgram program(form, weights);
    FeasibilityRepair repair;
    repair.elastic = SolveCertified(program.form, nullptr, control);
    if (repair.elastic.certificate.status != Status::Optimal)
        return repair;
    for (Index v = 0; v < form.Variables(); ++v)
        program.AppendChanges(v, repair.elastic.certificate.primal, repair.changes);
    for (const BoundChange& change : repair.changes)
        repair.total += ToRational(weights[change.bound.variable], form.numbers) * change.amount;
    for (Index j = 0; j < form.columns; ++j)
        repair.point.push_back(program.ValueOf(j, repair.elastic.certificate.primal));
    return repair;
}

}  // namespace nuv
