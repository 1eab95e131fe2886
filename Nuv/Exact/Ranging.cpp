/// One evaluation for both kinds of numbers. It works on columns that the caller has scaled: entry
/// (i, j) times rowScale_i * columnScale_j, so the cost of column j is scaled by its columnScale
/// and the logical of row i, whose column stays minus the unit vector, by 1 / rowScale_i.
#include "Nuv/Exact/Ranging.hpp"

#include "Nuv/Algebra/RealField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/Exact/ExactFactors.hpp"
#include "Nuv/SparseSimplex/BasisFactors.hpp"
#include "Nuv/SparseSimplex/ScaledForm.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

namespace nuv
{
namespace
{

/// Exact up to this many rows; beyond, the size of the numbers would cost more than their digits
/// are worth.
constexpr Index kMostExactRows = 40;

/// A kind of numbers: how a form's data, the exact solution, and solutions with its basis look in
/// it.
struct InDoubles
{
    using Value = double;

    InDoubles(const BoundedForm& linear, const CertifiedResult& solved)
        : scaled(linear), form(linear), result(solved)
    {
    }
    /// The columns of [A, -I].
    [[nodiscard]] SparseVectors<Value> Columns() const
    {
        return scaled.matrix->byVariable;
    }
    [[nodiscard]] Value Solution(Index variable) const
    {
        return result.record.value[variable] / scaled.Scale(variable);
    }
    [[nodiscard]] Value Reduced(Index variable) const
    {
        return result.record.reduced[variable] * scaled.Scale(variable);
    }
    [[nodiscard]] Value Bound(Index variable, bool upper) const
    {
        return upper ? scaled.upper[variable] : scaled.lower[variable];
    }
    [[nodiscard]] double ShiftedCost(Index column, Value change) const
    {
        return form.cost[column] + change / scaled.Scale(column);
    }
    [[nodiscard]] double ShiftedSide(Index logical, bool upper, Value change) const
    {
        return (upper ? form.Upper(logical) : form.Lower(logical)) + change * scaled.Scale(logical);
    }
    [[nodiscard]] double SolutionInDouble(Index variable) const
    {
        return Solution(variable) * scaled.Scale(variable);
    }
    [[nodiscard]] static bool Matters(Value entry)
    {
        return std::fabs(entry) > 1e-9;
    }
    /// The basis of a proof is regular, so nothing is replaced.
    void Factorise(const SparseVectors<Value>& columns, std::vector<Index>& head)
    {
        (void)FactoriseBasis(lu, Selected(columns, head), form.columns, head);
    }
    /// The solution x of B x = the unit vector of a row; empty if the control stopped it.
    [[nodiscard]] std::vector<Value> SolveForward(Index row, SolveControl& /*control*/) const
    {
        std::vector<Value> unit(form.rows, 0.0);
        unit[row] = 1.0;
        lu.SolveForward(unit);
        return unit;
    }
    /// The solution y of B' y = the unit vector of a position; empty if the control stopped it.
    [[nodiscard]] std::vector<Value> SolveBackward(Index position, SolveControl& /*control*/) const
    {
        std::vector<Value> unit(form.rows, 0.0);
        unit[position] = 1.0;
        lu.SolveBackward(unit);
        return unit;
    }

    ScaledForm scaled;
    const BoundedForm& form;
    const CertifiedResult& result;
    SparseLu<RealField> lu;
};

struct InRationals
{
    using Value = Rational;

    InRationals(const BoundedForm& linear, const CertifiedResult& solved)
        : form(linear), result(solved), exact(linear), factors(exact)
    {
        value.reserve(form.Variables());
        for (Index j = 0; j < form.columns; ++j)
            value.push_back(result.certificate.primal.At(j));
        for (Index i = 0; i < form.rows; ++i)
        {
            Rational activity(0);
            for (const auto [column, entry] : form.matrix.Row(i))
                activity += form.ExactEntry(i, column, entry) * value[column];
            value.push_back(activity);
        }
    }
    [[nodiscard]] SparseVectors<Value> Columns() const
    {
        return ColumnsWithLogicals<Rational>(form, [this](Index variable, Index row, double entry)
                                             { return form.ExactEntry(row, variable, entry); });
    }
    [[nodiscard]] Value Solution(Index variable) const
    {
        return value[variable];
    }
    [[nodiscard]] Value Reduced(Index variable) const
    {
        Rational reduced = form.ExactCost(variable);
        form.VisitColumn(variable,
                         [&](Index row, double entry) {
                             reduced -= form.ExactEntry(row, variable, entry) *
                                        result.certificate.dual.At(row);
                         });
        return reduced;
    }
    [[nodiscard]] Value Bound(Index variable, bool upper) const
    {
        return upper ? form.ExactUpper(variable) : form.ExactLower(variable);
    }
    [[nodiscard]] double ShiftedCost(Index column, const Value& change) const
    {
        return ToDouble(form.ExactCost(column) + change);
    }
    [[nodiscard]] double ShiftedSide(Index logical, bool upper, const Value& change) const
    {
        return ToDouble(Bound(logical, upper) + change);
    }
    [[nodiscard]] double SolutionInDouble(Index variable) const
    {
        return ToDouble(value[variable]);
    }
    [[nodiscard]] static bool Matters(const Value& entry)
    {
        return entry != 0;
    }
    void Factorise(const SparseVectors<Value>& /*columns*/, std::vector<Index>& head)
    {
        (void)factors.Factorise(head);
    }
    [[nodiscard]] std::vector<Value> SolveForward(Index row, SolveControl& control)
    {
        ExactVector solution;
        return factors.SolveForward(Unit(row), solution, control) ? Numbers(solution)
                                                                  : std::vector<Value>();
    }
    [[nodiscard]] std::vector<Value> SolveBackward(Index position, SolveControl& control)
    {
        ExactVector solution;
        return factors.SolveBackward(Unit(position), solution, control) ? Numbers(solution)
                                                                        : std::vector<Value>();
    }
    [[nodiscard]] ScaledVector Unit(Index at) const
    {
        ScaledVector unit{std::vector<Integer>(form.rows), {}};
        unit.value[at] = 1;
        return unit;
    }
    [[nodiscard]] static std::vector<Value> Numbers(const ExactVector& vector)
    {
        std::vector<Value> numbers;
        for (Index k = 0; k < vector.numerator.size(); ++k)
            numbers.push_back(vector.At(k));
        return numbers;
    }

    const BoundedForm& form;
    const CertifiedResult& result;
    std::vector<Rational> value;
    ExactForm exact;
    ExactFactors factors;
};

template <class Kind>
class Ranging
{
public:
    using Value = typename Kind::Value;

    Ranging(const BoundedForm& form, const CertifiedResult& result)
        : m_form(form),
          m_status(result.record.basis),
          m_kind(form, result),
          m_columns(m_kind.Columns())
    {
        for (Index v = 0; v < form.Variables(); ++v)
        {
            m_reduced.push_back(m_kind.Reduced(v));
            if (m_status[v] == BasisStatus::Basic)
                m_head.push_back(v);
        }
        m_kind.Factorise(m_columns, m_head);
    }

    [[nodiscard]] std::optional<Sensitivity> Analyse(SolveControl& control)
    {
        Sensitivity result;
        result.cost.resize(m_form.columns);
        result.rowLower.resize(m_form.rows);
        result.rowUpper.resize(m_form.rows);
        for (Index j = 0; j < m_form.columns; ++j)
        {
            if (m_status[j] != BasisStatus::Basic)
                result.cost[j] = NonbasicCost(j);
        }
        for (Index k = 0; k < m_form.rows; ++k)
        {
            if (control.IsStopped())
                return std::nullopt;
            if (!m_form.IsLogical(m_head[k]))
                result.cost[m_head[k]] = BasicCost(k, control);
        }
        for (Index i = 0; i < m_form.rows; ++i)
        {
            if (control.IsStopped())
                return std::nullopt;
            RangeSides(i, control, result.rowLower[i], result.rowUpper[i]);
        }
        if (m_isStopped)
            return std::nullopt;
        return result;
    }

private:
    /// An interval of changes around zero, open towards infinity where nothing limits it.
    struct Changes
    {
        std::optional<Value> down;
        std::optional<Value> up;

        /// Keeps room + change * rate from falling below zero.
        void Limit(const Value& room, const Value& rate)
        {
            const Value end = -room / rate;
            // same bits (#2 -> >=): an end that is there already
            if (rate > Value(0) && (!down || end > *down))
                down = end;
            // same bits (#2 -> <=): an end that is there already
            if (rate < Value(0) && (!up || end < *up))
                up = end;
        }
    };

    [[nodiscard]] AllowedRange NonbasicCost(Index column) const
    {
        const Value zeroReduced = -m_reduced[column];
        const double end = m_kind.ShiftedCost(column, zeroReduced);
        if (m_form.IsFixed(column))
            return {};
        switch (m_status[column])
        {
        case BasisStatus::AtLower:
            return {end, kInfinity};
        case BasisStatus::AtUpper:
            return {-kInfinity, end};
        default:
            return {end, end};
        }
    }

    /// Raising the cost of the variable at `position` by t lowers each reduced cost by t times the
    /// entry of that row of the tableau.
    [[nodiscard]] AllowedRange BasicCost(Index position, SolveControl& control)
    {
        const std::vector<Value> row = m_kind.SolveBackward(position, control);
        if (row.empty())
        {
            m_isStopped = true;
            return {};
        }
        Changes changes;
        for (Index v = 0; v < m_form.Variables(); ++v)
        {
            if (m_status[v] == BasisStatus::Basic || m_form.IsFixed(v))
                continue;
            const Value entry = TableauEntry(v, row);
            if (!Kind::Matters(entry))
                continue;
            if (m_status[v] != BasisStatus::AtUpper)
                changes.Limit(m_reduced[v], -entry);
            if (m_status[v] != BasisStatus::AtLower)
                changes.Limit(-m_reduced[v], entry);
        }
        const Index column = m_head[position];
        return {changes.down ? m_kind.ShiftedCost(column, *changes.down) : -kInfinity,
                changes.up ? m_kind.ShiftedCost(column, *changes.up) : kInfinity};
    }

    [[nodiscard]] Value TableauEntry(Index variable, const std::vector<Value>& row) const
    {
        Value sum(0);
        for (const auto [at, entry] : m_columns[variable])
        {
            if (row[at] != Value(0))
                sum += row[at] * entry;
        }
        return sum;
    }

    /// A side that does not hold the activity may come as close as the activity itself.
    void RangeSides(Index row, SolveControl& control, AllowedRange& lower, AllowedRange& upper)
    {
        const Index logical = m_form.columns + row;
        const double activity = m_kind.SolutionInDouble(logical);
        lower = {-kInfinity, activity};
        upper = {activity, kInfinity};
        const bool equation = m_form.IsFixed(logical);
        if (m_status[logical] == BasisStatus::Basic || m_status[logical] == BasisStatus::Free)
        {
            if (equation)  // same bits (jp always): no side is a NaN
                lower = upper = {activity, activity};
            return;
        }
        const AllowedRange moving = ActiveSide(row, control);
        if (m_status[logical] == BasisStatus::AtLower || equation)
            lower = moving;
        if (m_status[logical] == BasisStatus::AtUpper || equation)
            upper = moving;
        if (!equation)
        {
            lower.upper = std::min(lower.upper, m_form.rowUpper[row]);
            upper.lower = std::max(upper.lower, m_form.rowLower[row]);
        }
    }

    /// Moving the active side by t moves the basic variables by t times the solution for the unit
    /// right side.
    [[nodiscard]] AllowedRange ActiveSide(Index row, SolveControl& control)
    {
        const std::vector<Value> column = m_kind.SolveForward(row, control);
        if (column.empty())
        {
            m_isStopped = true;
            return {};
        }
        Changes changes;
        for (Index k = 0; k < m_form.rows; ++k)
        {
            if (!Kind::Matters(column[k]))
                continue;
            const Index v = m_head[k];
            const Value value = m_kind.Solution(v);
            // same bits (in InDoubles): an infinite end is none
            if (std::isfinite(m_form.Lower(v)))
                changes.Limit(std::max(Value(0), Value(value - m_kind.Bound(v, false))), column[k]);
            // same bits (in InDoubles): an infinite end is none
            if (std::isfinite(m_form.Upper(v)))
                changes.Limit(std::max(Value(0), Value(m_kind.Bound(v, true) - value)), -column[k]);
        }
        const Index logical = m_form.columns + row;
        const bool atUpper = m_status[logical] == BasisStatus::AtUpper;
        return {changes.down ? m_kind.ShiftedSide(logical, atUpper, *changes.down) : -kInfinity,
                changes.up ? m_kind.ShiftedSide(logical, atUpper, *changes.up) : kInfinity};
    }

    const BoundedForm& m_form;
    const Basis& m_status;
    Kind m_kind;
    SparseVectors<Value> m_columns;
    std::vector<Index> m_head;
    std::vector<Value> m_reduced;
    bool m_isStopped = false;
};

}  // namespace

std::optional<Sensitivity> AnalyseSensitivity(const BoundedForm& form,
                                              const CertifiedResult& result, SolveControl& control)
{
    if (form.rows > kMostExactRows)
        return Ranging<InDoubles>(form, result).Analyse(control);
    std::optional<Sensitivity> ranges = Ranging<InRationals>(form, result).Analyse(control);
    if (ranges)
        ranges->exact = true;
    return ranges;
}

}  // namespace nuv
