/// Ways of the exact stage and of what follows it, pivot by pivot and question by question: a limit
/// of pivots shows the basis that each of them leads to, a control that ends at a question what
/// stands at that time. So how often a stage asks is part of these ways.
#include "Nuv/Exact/Auxiliary.hpp"
#include "Nuv/Exact/CertifiedSession.hpp"
#include "Nuv/Exact/CertifiedStages.hpp"
#include "tests/exact/Certified.hpp"
#include "tests/exact/Drawing.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace nuv::test
{
namespace
{

/// From one exact pivot to the next, until it is over.
void PivotExactly(const BoundedForm& form, const Basis& start, Way& way)
{
    for (std::uint64_t most = 0; most < 60; ++most)
    {
        SolveLimits limits;
        limits.exactPivots = most;
        SolveControl control(std::move(limits));
        const CertifiedResult result = SolveExactly(form, start, control);
        way.Add(static_cast<int>(control.Reason()));
        way.AddWithStages(result);
        if (result.certificate.status != Status::Stopped)
            return;
    }
}

void PivotExactly(const BoundedForm& form, Random& random, Way& way)
{
    PivotExactly(form, SlackBasis(form), way);
    PivotExactly(form, DrawBasis(random, form), way);
}

/// Does something that ends at the first question, at the second, and so on, until it ends by
/// itself.
void StopAtEach(const std::function<void(SolveControl&)>& act, Way& way)
{
    for (int most = 0; most < 120; ++most)
    {
        int asked = 0;
        SolveLimits limits;
        limits.keepGoing = [&asked, most](const Progress&) { return ++asked <= most; };
        SolveControl control(std::move(limits));
        act(control);
        way.Add(static_cast<int>(control.Reason()));
        if (asked <= most)
            return;
    }
}

void Add(Way& way, const Sensitivity& ranges)
{
    way.Add(ranges.exact);
    for (const auto* of : {&ranges.cost, &ranges.rowLower, &ranges.rowUpper})
        for (const AllowedRange& range : *of)
        {
            way.Add(range.lower);
            way.Add(range.upper);
        }
}

void Add(Way& way, const InfeasibleBounds& conflict)
{
    way.Add(conflict.minimal);
    way.Add(conflict.work);
    for (const BoundOfVariable& member : conflict.members)
        way.Add(2 * member.variable + (member.upper ? 1 : 0));
}

void Stop(const BoundedForm& form, Random& random, Way& way)
{
    const Basis drawn = DrawBasis(random, form);
    StopAtEach([&](SolveControl& control)
               { way.AddWithStages(SolveCertified(form, &drawn, control)); },
               way);
    StopAtEach(
        [&](SolveControl& control) { way.AddWithStages(SolveExactly(form, drawn, control)); }, way);
    StopAtEach(
        [&](SolveControl& control) { way.AddWithStages(CertifyBasis(form, drawn, control)); }, way);
    StopAtEach([&](SolveControl& control)
               { way.AddWithStages(SolveUnproved(form, &drawn, control)); },
               way);
    StopAtEach(
        [&](SolveControl& control)
        {
            CertifiedSession session(form, drawn);
            way.AddWithStages(*session.Solve(control));
            session.SetCost(0, form.cost[0] + 1.0);
            way.AddWithStages(*session.Solve(control));
        },
        way);
    const CertifiedResult result = Certified(form);
    if (result.certificate.status == Status::Optimal)
        StopAtEach(
            [&](SolveControl& control)
            {
                const auto ranges = AnalyseSensitivity(form, result, control);
                way.Add(ranges.has_value());
                if (ranges)
                    Add(way, *ranges);
            },
            way);
    else if (result.certificate.status == Status::Infeasible)
        StopAtEach([&](SolveControl& control)
                   { Add(way, FindIis(form, result.certificate, control)); },
                   way);
}

void Ranges(const BoundedForm& form, Random& random, Way& way)
{
    const Basis start = DrawBasis(random, form);
    const CertifiedResult result = Certified(form, &start, way.Watched());
    way.AddWithStages(result);
    if (result.certificate.status == Status::Optimal)
        Add(way, RangesOf(form, result));
}

/// With as much work as there is, and with less.
void Conflict(const BoundedForm& form, Random&, Way& way)
{
    const CertifiedResult result = Certified(form, nullptr, way.Watched());
    if (result.certificate.status != Status::Infeasible)
        return;
    for (const std::uint64_t most : {std::uint64_t{0}, std::uint64_t{3000}, kUnlimitedWork})
    {
        SolveControl control(way.Watched());
        Add(way, FindIis(form, result.certificate, control, most));
    }
}

/// Edits with numbers that no double says, and solves that prove nothing in between.
void EditExactly(const BoundedForm& form, Random& random, Way& way)
{
    std::optional<Basis> start;
    if (random.OneIn(2))
        start = DrawBasis(random, form);
    CertifiedSession session(form, start);
    const auto number = [&](double nearest)
    {
        FormNumber drawn(nearest);
        if (random.OneIn(3))
        {
            drawn.exact = ToRational(nearest) / Rational(random.Between(1, 3));
            drawn.nearest = ToDouble(*drawn.exact);
        }
        return drawn;
    };
    for (int edit = 0; edit < 15; ++edit)
    {
        const BoundedForm& now = session.Form();
        const Index v = Between(random, 0, now.Variables() - 1);
        const int kind = random.Between(0, 5);
        if (kind < 2 && v < now.columns)
            session.SetCost(v, number(random.Between(-4, 4)));
        else if (kind == 2)
            session.SetConstant(number(random.Between(-4, 4)));
        else if (kind == 3)
            session.StartFrom(DrawBasis(random, form));
        else
        {
            const double lower = random.OneIn(4) ? now.Lower(v) : random.Between(-5, 2);
            const FormNumber first = std::isfinite(lower) ? number(lower) : FormNumber(lower);
            const double upper = random.OneIn(4) ? now.Upper(v) : random.Between(1, 9);
            session.SetBounds(v, first, std::isfinite(upper) ? number(upper) : FormNumber(upper));
        }
        SolveControl control(way.Watched());
        way.AddWithStages(random.OneIn(4) ? *session.SolveUnproved(control)
                                          : *session.Solve(control));
    }
}

/// From any basis with any guess of what it is, right or wrong.
void ProveGuess(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    for (int guess = 0; guess < 4; ++guess)
    {
        ScalableForm scalable(form);
        ExactEvaluation evaluation(form);
        CertifiedResult result;
        result.record.basis = DrawBasis(random, form);
        SolveLimits limits = way.Watched();
        limits.doublePivots = random.OneIn(3) ? std::uint64_t{6} : std::uint64_t{2000};
        limits.exactPivots = 300;
        SolveControl control(limits);
        ProveBasis(scalable, evaluation, static_cast<SimplexVerdict>(guess),
                   random.OneIn(2) ? kRefinements : 1, nullptr, control, result);
        way.AddWithStages(result);
    }
}

/// The same of forms of which every second number is a quotient, and what follows from them.
void ProveQuotients(const BoundedForm& form, Random& random, Way& way)
{
    const BoundedForm exact = WithQuotients(form, random);
    ProveGuess(exact, random, way);
    PivotExactly(exact, DrawBasis(random, exact), way);
    Ranges(exact, random, way);
    Conflict(exact, random, way);
    if (FindCrossedBounds(exact) != kNoIndex)
        return;
    ScalableForm scalable(exact);
    for (const AuxiliaryForm& help : {ElasticForm(scalable, DrawBasis(random, exact)),
                                      ElasticRowsForm(exact), RayForm(exact, SlackBasis(exact))})
        for (const auto& [place, number] : help.form.exact)
        {
            way.Add(static_cast<int>(place.of));
            way.Add(place.at);
            way.Add(place.column);
            way.Add(ToString(number));
        }
}

/// Pivots that lead nowhere, until the first that can is taken: those of the primal simplex at the
/// apex of a cone, and those of the dual one without costs.
void PivotInPlace(Random& random, Way& way)
{
    BoundedForm form = DegenerateCone(45);
    for (int kind = 0; kind < 2; ++kind)
    {
        SolveLimits limits = way.Watched();
        limits.exactPivots = 150;
        SolveControl control(limits);
        way.AddWithStages(SolveExactly(form, SlackBasis(form), control));
        Drawing drawing{.rows = 35, .columns = 40, .entries = 5, .boxed = 3, .isWhole = true};
        form = Draw(random, drawing);
        form.cost.assign(form.columns, 0.0);
    }
}

/// Of decimals, whose scales have powers of five.
void PivotDecimals(const BoundedForm& whole, Random& random, Way& way)
{
    BoundedForm form = whole;
    form.numbers = CoefficientMeaning::ShortestDecimal;
    constexpr std::array<double, 4> kUnits = {1.0, 10.0, 100.0, 100000.0};
    SparseVectors<double> columns = form.matrix.Columns();
    for (Index j = 0; j < form.columns; ++j)
    {
        const double unit = Any(random, kUnits);
        form.cost[j] /= unit;
        for (std::size_t at = columns.start[j]; at < columns.start[j + 1]; ++at)
            columns.value[at] /= unit;
    }
    form.matrix = SparseMatrix<double>::FromColumns(std::move(columns), form.rows);
    PivotExactly(form, random, way);
    Ranges(form, random, way);
}

}  // namespace

std::vector<Kind> KindsOfProofs()
{
    const Drawing infeasible{.rows = 6,
                             .columns = 7,
                             .entries = 3,
                             .boxed = 2,
                             .equations = 3,
                             .isWhole = true,
                             .isFeasible = false};
    const Drawing many{.rows = 45, .columns = 60, .fixed = 9, .boxed = 4, .isWhole = true};
    const Drawing fractions{.rows = 44, .columns = 60, .fixed = 9, .boxed = 4};
    const Drawing dependent{
        .rows = 7, .columns = 10, .entries = 8, .boxed = 3, .equations = 2, .nearness = 1e-11};
    const Drawing free{.rows = 4,
                       .columns = 8,
                       .free = 2,
                       .boxed = 3,
                       .isWhole = true,
                       .isTied = true,
                       .least = 0.0};
    return {
        OfSmall("exact pivots of small", 100, PivotExactly),
        OfDrawn("exact pivots of tied", 20, kTied, PivotExactly),
        OfDrawn("exact pivots of infeasible", 10, infeasible, PivotExactly),
        OfSmall("stops of small", 40, Stop),
        OfDependent("stops of nearly dependent", 4, Stop),
        OfDrawn("ranges of whole numbers", 4, many, Ranges),
        OfDrawn("ranges of fractions", 2, fractions, Ranges),
        OfDrawn("ranges of tied", 40, kTied, Ranges),
        OfSmall("ranges of small", 60, Ranges),
        OfDrawn("conflicts", 40, infeasible, Conflict),
        OfSmall("conflicts of small", 100, Conflict),
        OfSmall("exact edits of small", 25, EditExactly),
        OfSmall("guesses of small", 60, ProveGuess),
        OfDependent("guesses of nearly dependent", 15, ProveGuess),
        OfDrawn("guesses of dependent", 10, dependent, ProveGuess),
        OfDrawn("guesses of infeasible", 15, infeasible, ProveGuess),
        OfSmall("quotients of small", 60, ProveQuotients),
        OfDrawn("quotients of tied", 12, kTied, ProveQuotients),
        OfDrawn("ranges of free", 40, free, Ranges),
        {"exact pivots in place", PivotInPlace},
        OfDrawn("exact pivots of decimals", 20, kTied, PivotDecimals),
    };
}

}  // namespace nuv::test
