/// The points that are optimal with x* are those that keep every variable with a reduced cost where
/// x* has it (complementary slackness). They are a polyhedron, so there is another one exactly if
/// one of the directions that it leaves open at x* is not zero: A δ - r = 0, with δ at 0 where x*
/// is kept, not negative at a lower bound, not positive at an upper one. The basic variables are
/// functions of the others, so δ is zero if all nonbasic ones are. The same of the duals: with x*
/// is optimal what prices at zero every variable strictly between its bounds and has the right sign
/// at a bound, and a change of duals is zero if it changes no reduced cost of a basic variable.
///
/// Both ask of a cone whether certain variables, each of one sign or of both, are 0 in it. Those of
/// one sign are capped at 1 and their sum maximised; each of the others by itself, in both
/// directions.
#include "Nuv/Solve/Uniqueness.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Exact/ExactForm.hpp"

#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace nuv
{
namespace
{

enum class Freedom : std::uint8_t
{
    None,
    Up,
    Down,
    Both,
};

/// A form of directions from 0, and what each variable of it may do.
class Cone
{
public:
    Cone(BoundedForm form, const std::vector<Freedom>& freedom) : m_form(std::move(form))
    {
        m_form.exact.EraseObjective();
        m_form.exact.EraseBounds();
        m_form.constant = 0.0;
        for (Index v = 0; v < m_form.Variables(); ++v)
            Bound(v, freedom[v], kInfinity);
    }

    /// Whether all of these variables, each of which may move, are 0 everywhere in the cone;
    /// nothing if that was stopped.
    [[nodiscard]] std::optional<bool> HasOnlyZero(const std::vector<Index>& candidates,
                                                  const std::vector<Freedom>& freedom,
                                                  const Basis* start, SolveControl& control)
    {
        std::vector<std::pair<Index, int>> oneSigned;
        std::vector<Index> others;
        for (const Index v : candidates)
        {
            if (freedom[v] == Freedom::Both)
                others.push_back(v);
            else
                oneSigned.emplace_back(v, freedom[v] == Freedom::Up ? 1 : -1);
            Bound(v, freedom[v], 1.0);
        }
        std::optional<bool> onlyZero = true;
        if (!oneSigned.empty())
            onlyZero = IsSumZero(oneSigned, start, control);
        for (const Index v : others)
        {
            for (const int sign : {1, -1})
            {
                if (onlyZero == true)
                    onlyZero = IsSumZero({{v, sign}}, start, control);
            }
        }
        return onlyZero;
    }

private:
    void Bound(Index v, Freedom freedom, double most)
    {
        const bool isRow = m_form.IsLogical(v);
        const Index at = isRow ? m_form.RowOf(v) : v;
        (isRow ? m_form.rowLower : m_form.columnLower)[at] =
            freedom == Freedom::Down || freedom == Freedom::Both ? -most : 0.0;
        (isRow ? m_form.rowUpper : m_form.columnUpper)[at] =
            freedom == Freedom::Up || freedom == Freedom::Both ? most : 0.0;
    }

    /// Maximises the sum of these variables with their signs.
    [[nodiscard]] std::optional<bool> IsSumZero(const std::vector<std::pair<Index, int>>& terms,
                                                const Basis* start, SolveControl& control)
    {
        std::vector<Rational> cost(m_form.columns);
        for (const auto& [v, sign] : terms)
        {
            if (!m_form.IsLogical(v))
                cost[v] -= sign;
            else
                for (const auto [column, entry] : m_form.matrix.Row(m_form.RowOf(v)))
                    cost[column] -= m_form.ExactEntry(m_form.RowOf(v), column, entry) * sign;
        }
        m_form.exact.EraseObjective();
        for (Index j = 0; j < m_form.columns; ++j)
        {
            m_form.cost[j] = ToDouble(cost[j]);
            if (cost[j] != ToRational(m_form.cost[j], m_form.numbers))
                m_form.exact.Set({FormPlace::Of::Cost, j}, cost[j]);
        }
        const SolveControl::Aside aside(control);
        const CertifiedResult result = SolveCertified(m_form, start, control);
        if (!result.record.proved)
            return std::nullopt;
        return result.certificate.objective == 0;
    }

    BoundedForm m_form;
};

/// Where x* has its variables, and the signs of their reduced costs.
class Optimum
{
public:
    Optimum(const BoundedForm& form, const Certificate& certificate)
        : m_form(form), m_point(certificate.primal), m_activities(form.rows)
    {
        const ExactForm exact(form);
        for (Index v = 0; v < form.Variables(); ++v)
            m_reducedSign.push_back(exact.ReducedCost(v, certificate.dual, true).Sign());
        for (Index j = 0; j < form.columns; ++j)
        {
            if (m_point.numerator[j] == 0)
                continue;
            for (const auto [row, entry] : form.matrix.Column(j))
                m_activities[row] +=
                    form.ExactEntry(row, j, entry) * Rational(m_point.numerator[j]);
        }
        for (Rational& activity : m_activities)
            activity /= Rational(m_point.denominator);
    }

    [[nodiscard]] int ReducedSign(Index v) const
    {
        return m_reducedSign[v];
    }
    [[nodiscard]] bool IsAtLower(Index v) const
    {
        return std::isfinite(m_form.Lower(v)) && Value(v) == m_form.ExactLower(v);
    }
    [[nodiscard]] bool IsAtUpper(Index v) const
    {
        return std::isfinite(m_form.Upper(v)) && Value(v) == m_form.ExactUpper(v);
    }

private:
    [[nodiscard]] Rational Value(Index v) const
    {
        return m_form.IsLogical(v) ? m_activities[m_form.RowOf(v)] : m_point.At(v);
    }

    const BoundedForm& m_form;
    const ExactVector& m_point;
    std::vector<Rational> m_activities;
    std::vector<int> m_reducedSign;
};

Uniqueness WordFor(std::optional<bool> isUnique)
{
    return !isUnique ? Uniqueness::Unknown : *isUnique ? Uniqueness::Unique : Uniqueness::NotUnique;
}

/// Candidates are the nonbasic variables that may move at no cost.
Uniqueness OfPoint(const BoundedForm& form, const Optimum& optimum, const Basis& basis,
                   SolveControl& control)
{
    std::vector<Freedom> freedom;
    std::vector<Index> candidates;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const bool atLower = optimum.IsAtLower(v);
        const bool atUpper = optimum.IsAtUpper(v);
        const bool isKept = optimum.ReducedSign(v) != 0 || (atLower && atUpper);
        freedom.push_back(isKept    ? Freedom::None
                          : atLower ? Freedom::Up
                          : atUpper ? Freedom::Down
                                    : Freedom::Both);
        if (!isKept && basis[v] != BasisStatus::Basic)
            candidates.push_back(v);
    }
    if (candidates.empty())
        return Uniqueness::Unique;
    return WordFor(Cone(form, freedom).HasOnlyZero(candidates, freedom, &basis, control));
}

/// Changes of duals by row are its columns, A' times them its rows, which are minus the changes of
/// reduced costs. A row of the form, whose dual is the reduced cost of its logical, is a column.
BoundedForm DualDirections(const BoundedForm& form)
{
    BoundedForm dual;
    dual.numbers = form.numbers;
    dual.rows = form.columns;
    dual.columns = form.rows;
    dual.cost.resize(dual.columns);
    dual.columnLower.resize(dual.columns);
    dual.columnUpper.resize(dual.columns);
    dual.rowLower.resize(dual.rows);
    dual.rowUpper.resize(dual.rows);
    SparseVectors<double> columns;
    for (Index i = 0; i < form.rows; ++i)
    {
        for (const auto [column, entry] : form.matrix.Row(i))
            columns.Append(column, entry);
        columns.Close();
    }
    dual.matrix = SparseMatrix<double>::FromColumns(std::move(columns), dual.rows);
    for (const auto& [place, number] : form.exact)
        if (place.of == FormPlace::Of::Entry)
            dual.exact.Set({FormPlace::Of::Entry, place.column, place.at}, number);
    return dual;
}

/// Candidates are the basic variables at a bound: only their reduced costs may leave zero.
Uniqueness OfDuals(const BoundedForm& form, const Optimum& optimum, const Basis& basis,
                   SolveControl& control)
{
    std::vector<Freedom> freedom(form.Variables());
    std::vector<Index> candidates;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const bool isColumn = !form.IsLogical(v);
        const bool atLower = optimum.IsAtLower(v);
        const bool atUpper = optimum.IsAtUpper(v);
        // Of the reduced cost itself: any sign where it is at both bounds, or where it is not zero
        // and so may change a little.
        Freedom of = Freedom::None;
        if ((atLower && atUpper) || optimum.ReducedSign(v) != 0)
            of = Freedom::Both;
        else if (atLower)
            of = isColumn ? Freedom::Down : Freedom::Up;
        else if (atUpper)
            of = isColumn ? Freedom::Up : Freedom::Down;
        const Index inDual = isColumn ? form.rows + v : form.RowOf(v);
        freedom[inDual] = of;
        if (of != Freedom::None && basis[v] == BasisStatus::Basic)
            candidates.push_back(inDual);
    }
    if (candidates.empty())
        return Uniqueness::Unique;
    return WordFor(
        Cone(DualDirections(form), freedom).HasOnlyZero(candidates, freedom, nullptr, control));
}

}  // namespace

UniqueOptimum FindUniqueness(const BoundedForm& form, const CertifiedResult& optimum,
                             SolveControl& control)
{
    if (!optimum.record.proved || optimum.certificate.status != Status::Optimal)
        return {};
    const Optimum at(form, optimum.certificate);
    return {OfPoint(form, at, optimum.record.basis, control),
            OfDuals(form, at, optimum.record.basis, control)};
}

}  // namespace nuv
