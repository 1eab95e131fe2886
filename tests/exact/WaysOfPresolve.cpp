/// What presolve makes of a form, rule by rule: after each the form that is left and what is noted
/// for the way back, and where that leads from a point that is drawn.
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/Presolve/ImpliedBounds.hpp"
#include "Nuv/SparseSimplex/Presolve/Presolve.hpp"
#include "Nuv/SparseSimplex/Presolve/Rules.hpp"
#include "tests/exact/Drawing.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace nuv::test
{
namespace
{

using presolve::ReducibleForm;

void Add(Way& way, ReducibleForm& form)
{
    for (const auto* numbers :
         {&form.cost, &form.lower, &form.upper, &form.rowLower, &form.rowUpper})
        AddNumbers(way, *numbers);
    way.Add(form.constant);
    way.Add(form.contradiction);
    way.Add(form.IsTired());
    way.Add(form.rowsNoted.Empty());
    way.Add(form.columnsNoted.Empty());
    for (Index i = 0; i < form.rows; ++i)
    {
        way.Add(form.HasRow(i) ? form.rowCount[i] : kNoIndex);
        if (!form.HasRow(i))
            continue;
        const presolve::ActivityRange& range = form.ActivityOf(i);
        way.Add(range.Least());
        way.Add(range.Largest());
    }
    for (Index j = 0; j < form.columns; ++j)
    {
        way.Add(form.HasColumn(j) ? form.columnCount[j] : kNoIndex);
        if (form.HasColumn(j))
            form.VisitColumn(j,
                             [&](Index row, double entry)
                             {
                                 way.Add(row);
                                 way.Add(entry);
                             });
    }
    way.Add(form.Removals().size());
}

void Add(Way& way, const presolve::Removal& removal)
{
    for (const Index at : {removal.row, removal.column, removal.other, removal.kept})
        way.Add(at);
    way.Add(static_cast<int>(removal.side));
    AddNumbers(way, {removal.number.begin(), removal.number.end()});
}

void Add(Way& way, const presolve::RestoredPoint& point)
{
    for (const auto* numbers : {&point.value, &point.reduced, &point.activity, &point.dual})
        AddNumbers(way, *numbers);
    way.Add(point.basis);
}

/// One rule, of a row or a column that is there.
bool Apply(ReducibleForm& form, Random& random)
{
    const int rule = random.Between(0, 8);
    const bool isOfRow = rule < 4;
    const Index count = isOfRow ? form.rows : form.columns;
    const Index at = count == 0 ? 0 : Between(random, 0, count - 1);
    if (count == 0 || !(isOfRow ? form.HasRow(at) : form.HasColumn(at)))
        return false;
    constexpr std::array<double, 5> kDuals = {-kInf, -1.0, 0.0, 0.0, kInf};
    std::vector<double> least(form.rows);
    std::vector<double> largest(form.rows);
    for (Index i = 0; i < form.rows; ++i)
    {
        least[i] = Any(random, kDuals);
        largest[i] = random.OneIn(2) ? kInf : std::max(least[i], 1.0);
    }
    switch (rule)
    {
    case 0:
        return presolve::DropRow(form, at);
    case 1:
        return presolve::TurnIntoBound(form, at);
    case 2:
        return presolve::ForceRow(form, at);
    case 3:
        return presolve::SubstituteByPair(form, at);
    case 4:
        return presolve::FixColumn(form, at);
    case 5:
        return presolve::FixDominated(form, at, least, largest);
    case 6:
        return presolve::AbsorbSlack(form, at);
    case 7:
        return presolve::SubstituteFree(form, at);
    default:
        return presolve::IsImpliedFree(form, at);
    }
}

presolve::RestoredPoint DrawPoint(Random& random, const BoundedForm& form)
{
    presolve::RestoredPoint point;
    const auto draw = [&](std::size_t count, std::vector<double>& numbers)
    {
        for (std::size_t k = 0; k < count; ++k)
            numbers.push_back(random.OneIn(4) ? DrawShare(random) : random.Between(-3, 3));
    };
    draw(form.columns, point.value);
    draw(form.columns, point.reduced);
    draw(form.rows, point.activity);
    draw(form.rows, point.dual);
    point.basis = SlackBasis(form);
    for (Index v = 0; v < form.Variables(); ++v)
        point.basis[v] = static_cast<BasisStatus>(random.Between(0, 3));
    return point;
}

void ApplyRules(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    ReducibleForm reducible(form);
    for (int round = 0; round < 40 && !reducible.contradiction; ++round)
    {
        const bool applied = Apply(reducible, random);
        way.Add(applied);
        if (applied)
            Add(way, reducible);
        if (random.OneIn(10))
            for (auto* list : {&reducible.rowsNoted, &reducible.columnsNoted})
                for (const Index at : list->Take())
                    way.Add(at);
    }
    presolve::RestoredPoint point = DrawPoint(random, form);
    const std::vector<presolve::Removal>& removals = reducible.Removals();
    for (std::size_t k = removals.size(); k-- > 0;)
    {
        Add(way, removals[k]);
        removals[k].restore(removals[k], reducible.Kept(), point);
        Add(way, point);
    }
}

/// The boxes that rows imply, and what presolve makes of the form and of the point of its optimum.
void Shrink(const BoundedForm& form, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    const ScaledForm scaled(form);
    std::vector<double> lower = scaled.lower;
    std::vector<double> upper = scaled.upper;
    BoxImplied(scaled, lower, upper);
    AddNumbers(way, lower);
    AddNumbers(way, upper);
    const Presolve presolve(form);
    way.Add(presolve.FoundContradiction());
    way.Add(presolve.Reduces());
    if (!presolve.Reduces())
        return;
    const BoundedForm& reduced = presolve.Form();
    for (const auto* numbers :
         {&reduced.cost, &reduced.columnLower, &reduced.columnUpper, &reduced.rowLower,
          &reduced.rowUpper, &reduced.matrix.Columns().value})
        AddNumbers(way, *numbers);
    for (const Index at : reduced.matrix.Columns().index)
        way.Add(at);
    way.Add(reduced.constant);
    const ScaledForm scaledReduced(reduced);
    SimplexState state(scaledReduced, SlackBasis(reduced));
    SolveControl control(way.Watched());
    way.Add(static_cast<int>(SolveInDoubles(state, control)));
    Add(way, presolve.RestorePoint(state));
}

/// One or two columns and rows, all of whose numbers are whole or next to it by a margin of
/// presolve, so that sums meet margins exactly.
BoundedForm DrawAtMargins(Random& random)
{
    constexpr std::array<double, 10> kNumbers = {
        0.0, 0.0, 1.0, 2.0, 1e-9, 2e-9, 1.0 + 2e-9, 1.0 - 2e-9, 2.0 + 3e-9, 2.0 - 3e-9};
    constexpr std::array<double, 6> kEntries = {1.0, 1.0, -1.0, 2.0, -0.5, 0.0};
    const auto draw = [&]
    {
        const double number = Any(random, kNumbers);
        return random.OneIn(3) ? -number : number;
    };
    const auto bounds = [&]
    {
        const double lower = random.OneIn(5) ? -kInf : draw();
        const double upper = random.OneIn(5) ? kInf : draw();
        return Interval{lower, std::max(lower, upper)};
    };
    std::vector<double> cost(Between(random, 1, 3));
    std::vector<Interval> intervals;
    for (double& entry : cost)
    {
        entry = random.OneIn(2) ? 0.0 : draw();
        intervals.push_back(bounds());
    }
    std::vector<DenseRow> rows(Between(random, 1, 2));
    for (DenseRow& row : rows)
    {
        for (std::size_t j = 0; j < cost.size(); ++j)
            row.coefficients.push_back(Any(random, kEntries));
        row.bounds = bounds();
    }
    return MakeForm(cost, rows, intervals);
}

/// Each column is known by the one before and two rows, so that each pass of presolve finds one.
BoundedForm ChainOfColumns(Index size)
{
    std::vector<Interval> bounds(size, {0.0, 10.0});
    bounds[0] = {1.0, 1.0};
    std::vector<DenseRow> rows(2 * (std::size_t{size} - 1));
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        rows[i].coefficients.assign(size, 0.0);
        rows[i].coefficients[i / 2] = 1.0;
        rows[i].coefficients[i / 2 + 1] = -2.0;
        rows[i].bounds = i % 2 == 0 ? Interval{-kInf, -1.0} : Interval{-1.0, kInf};
    }
    return MakeForm(std::vector<double>(size, 1.0), rows, bounds);
}

/// Only the last column is bounded, and each row bounds a column by the next: each walk over the
/// rows finds one bound.
BoundedForm ChainOfBounds(Index size)
{
    std::vector<Interval> bounds(size);
    bounds.back().upper = 1.0;
    std::vector<DenseRow> rows(std::size_t{size} - 1);
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        rows[i].coefficients.assign(size, 0.0);
        rows[i].coefficients[i] = 1.0;
        rows[i].coefficients[i + 1] = -1.0;
        rows[i].bounds = {-kInf, 0.0};
    }
    return MakeForm(std::vector<double>(size, -1.0), rows, bounds);
}

/// How often a row can be looked at before that is too much.
void Tire(const BoundedForm& form, Way& way)
{
    ReducibleForm reducible(form);
    int looks = 0;
    for (; looks < 100000 && !reducible.IsTired(); ++looks)
        (void)reducible.OnlyEntryOfRow(0);
    way.Add(looks);
}

}  // namespace

std::vector<Kind> KindsOfPresolve()
{
    const auto shrink = [](const BoundedForm& form, Random& random, Way& way)
    { Shrink(random.OneIn(4) ? WithZeros(form, random) : form, way); };
    const auto applyRules = [](const BoundedForm& form, Random& random, Way& way)
    { ApplyRules(random.OneIn(4) ? WithZeros(form, random) : form, random, way); };
    const Drawing whole{.rows = 9,
                        .columns = 12,
                        .entries = 3,
                        .fixed = 7,
                        .free = 5,
                        .boxed = 4,
                        .falling = 6,
                        .equations = 2,
                        .isWhole = true};
    const Drawing fractions{.rows = 12,
                            .columns = 16,
                            .entries = 2,
                            .fixed = 9,
                            .free = 4,
                            .boxed = 3,
                            .falling = 6,
                            .equations = 2};
    const Drawing contradictory{.rows = 8,
                                .columns = 9,
                                .entries = 2,
                                .boxed = 2,
                                .equations = 2,
                                .isWhole = true,
                                .isFeasible = false};
    const Drawing longRows{.rows = 6,
                           .columns = 14,
                           .entries = 10,
                           .free = 2,
                           .falling = 4,
                           .equations = 2,
                           .isWhole = true};
    Drawing scaled = fractions;
    scaled.exponents = 6;
    return {
        OfDrawn("rules for whole numbers", 400, whole, applyRules),
        OfDrawn("rules for fractions", 200, fractions, applyRules),
        OfDrawn("rules for contradictions", 100, contradictory, applyRules),
        {"rules for small",
         Repeated(400,
                  [](Random& random, Way& way)
                  {
                      const Index rows = Between(random, 1, 4);
                      ApplyRules(RandomSmallForm(random, rows, Between(random, 1, 6)), random, way);
                  })},
        {"rules for edges", Repeated(400, [](Random& random, Way& way)
                                     { ApplyRules(DrawAtTolerances(random), random, way); })},
        {"chains shrunk",
         [](Random&, Way& way)
         {
             for (const Index size : {10u, 19u, 20u, 21u, 22u, 40u})
             {
                 Shrink(ChainOfColumns(size), way);
                 Tire(ChainOfColumns(size), way);
             }
             Shrink(ChainOfBounds(12), way);
         }},
        OfDrawn("rules for long rows", 200, longRows, applyRules),
        OfDrawn("rules for scaled", 200, scaled, applyRules),
        OfDrawn("scaled shrunk", 60, scaled, shrink),
        {"rules at margins", Repeated(4000, [](Random& random, Way& way)
                                      { ApplyRules(DrawAtMargins(random), random, way); })},
        {"margins shrunk",
         Repeated(2000, [](Random& random, Way& way) { Shrink(DrawAtMargins(random), way); })},
        OfDrawn("whole shrunk", 150, whole, shrink),
        OfDrawn("fractions shrunk", 60, fractions, shrink),
        OfDrawn("contradictions shrunk", 60, contradictory, shrink),
        {"edges shrunk",
         Repeated(400, [](Random& random, Way& way) { Shrink(DrawAtTolerances(random), way); })},
    };
}

}  // namespace nuv::test
