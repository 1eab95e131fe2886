/// One evaluation for both kinds of numbers. It works on columns that the caller has scaled: entry
/// (i, j) times rowScale_i * columnScale_j, so the cost of column j is scaled by its columnScale
/// and the logical of row i, whose column stays minus the unit vector, by 1 / rowScale_i.
#include "Nuv/Exact/Ranging.hpp"

#include "Nuv/Algebra/RationalField.hpp"
#include "Nuv/Algebra/RealField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/SparseSimplex/BasisFactors.hpp"
#include "Nuv/SparseSimplex/ScaledForm.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

namespace nuv
{
namespace
{

/// Rationals up to this many rows; beyond, their size would cost more than the digits are worth.
constexpr Index kMostExactRows = 40;

/// A kind of numbers: how a form's data, and the exact solution, look in it.
struct InDoubles
{
    using Field = RealField;
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

    ScaledForm scaled;
    const BoundedForm& form;
    const CertifiedResult& result;
};

struct InRationals
{
    using Field = RationalField;
    using Value = Rational;

    InRationals(const BoundedForm& linear, const CertifiedResult& solved)
        : form(linear), result(solved)
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

    const BoundedForm& form;
    const CertifiedResult& result;
    std::vector<Rational> value;
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
        // The basis of a proof is regular, so nothing is replaced.
        (void)FactoriseBasis(m_lu, Selected(m_columns, m_head), form.columns, m_head);
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
                result.cost[m_head[k]] = BasicCost(k);
        }
        for (Index i = 0; i < m_form.rows; ++i)
        {
            if (control.IsStopped())
                return std::nullopt;
            RangeSides(i, result.rowLower[i], result.rowUpper[i]);
        }
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
    [[nodiscard]] AllowedRange BasicCost(Index position) const
    {
        std::vector<Value> row(m_form.rows, Value(0));
        row[position] = Value(1);
        m_lu.SolveBackward(row);
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
    void RangeSides(Index row, AllowedRange& lower, AllowedRange& upper) const
    {
        const Index logical = m_form.columns + row;
        const double activity = m_kind.SolutionInDouble(logical);
        lower = {-kInfinity, activity};
        upper = {activity, kInfinity};
        const bool equation = m_form.IsFixed(logical);
        if (m_status[logical] == BasisStatus::Basic || m_status[logical] == BasisStatus::Free)
        {
            if (equation)  // same bits (jp never, jp always): no side is a NaN
                lower = upper = {activity, activity};
            return;
        }
        const AllowedRange moving = ActiveSide(row);
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
    [[nodiscard]] AllowedRange ActiveSide(Index row) const
    {
        std::vector<Value> column(m_form.rows, Value(0));
        column[row] = Value(1);
        m_lu.SolveForward(column);
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
    SparseLu<typename Kind::Field> m_lu;
    std::vector<Index> m_head;
    std::vector<Value> m_reduced;
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
