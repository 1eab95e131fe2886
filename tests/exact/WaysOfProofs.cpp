/// Ways of the exact stage and of what follows it, pivot by pivot and question by question: a limit
/// of pivots shows the basis that each of them leads to, a control that ends at a question what
/// stands at that time. So how often a stage asks is part of these ways.
#include "Nuv/Exact/Auxiliary.hpp"
#include "Nuv/Exact/CertifiedSession.hpp"
#include "Nuv/Exact/CertifiedStages.hpp"
#include "Nuv/Exact/Dense/DenseProof.hpp"
#include "Nuv/Exact/Dense/DenseSimplex.hpp"
#include "Nuv/Exact/Dense/SolveSmall.hpp"
#include "Nuv/Exact/Refinement.hpp"
#include "tests/exact/Certified.hpp"
#include "tests/exact/Drawing.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"

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

/// The program that refinement solves, from a basis that is drawn and from where that leads.
void Refine(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    const ScaledForm scaled(form);
    const ExactForm exact(form);
    Refinement refinement(exact, scaled);
    Basis basis = DrawBasis(random, form);
    for (int round = 0; round < 3; ++round)
    {
        std::vector<BasisStatus> status;
        std::vector<Index> head;
        for (Index v = 0; v < form.Variables(); ++v)
        {
            status.push_back(basis[v]);
            if (basis[v] == BasisStatus::Basic)
                head.push_back(v);
        }
        ExactFactors factors(exact);
        if (!factors.Factorise(head).empty())
            return;
        // Any numbers will do for the values and the duals of the basis.
        const auto draw = [&](Index count)
        {
            ExactVector vector{{}, random.Between(1, 99)};
            for (Index k = 0; k < count; ++k)
                vector.numerator.emplace_back(random.Between(-300, 300));
            return vector;
        };
        const ExactVector values = draw(form.rows);
        const ExactVector duals = draw(form.rows);
        SolveControl control(way.Watched());
        BlockedRow blocked;
        way.Add(static_cast<int>(
            refinement.Run({status, head, values, duals}, control, status, blocked)));
        way.Add(blocked.variable);
        way.Add(blocked.basis);
        SolveLimits none;
        none.seconds = 0.0;
        SolveControl stopped(none);
        way.Add(refinement.EnlargeEquation(blocked, stopped));
        way.Add(refinement.EnlargeEquation(blocked, control));
        for (Index v = 0; v < form.Variables(); ++v)
        {
            basis[v] = status[v];
            way.Add(static_cast<int>(status[v]));
        }
        FitBasis(form, basis);
    }
}

/// Some rows that are drawn, and sums of them that are off by 1e-11 or so.
BoundedForm DrawDependentRows(Random& random)
{
    constexpr std::size_t kColumns = 7;
    std::vector<DenseRow> rows(6);
    std::vector<Interval> bounds(kColumns);
    for (Interval& interval : bounds)
    {
        const double at = random.Between(0, 3);
        interval = {at, random.OneIn(3) ? at : at + random.Between(1, 9)};
    }
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        for (std::size_t j = 0; j < kColumns; ++j)
        {
            double entry = random.Between(-3, 3);
            if (i >= 3)
                entry = rows[i - 3].coefficients[j] + 2.0 * rows[i - 2].coefficients[j] +
                        (random.OneIn(2) ? entry * 0x1p-36 : 0.0);
            rows[i].coefficients.push_back(entry);
        }
        const double side = random.Between(-9, 20);
        rows[i].bounds = {side, random.OneIn(3) ? side + 4.0 : side};
    }
    return MakeForm(std::vector<double>(kColumns, 1.0), rows, bounds);
}

/// Equations that follow from others but for a little, where their logicals are basic, and what is
/// solved with the rows that take their places.
void Enlarge(Random& random, Way& way)
{
    const BoundedForm form = DrawDependentRows(random);
    const ScaledForm scaled(form);
    const ExactForm exact(form);
    for (Index v = form.columns; v < form.Variables(); ++v)
    {
        const Basis basis = DrawBasis(random, form);
        if (basis[v] != BasisStatus::Basic)
            continue;
        Refinement refinement(exact, scaled);
        SolveControl control(way.Watched());
        way.Add(refinement.EnlargeEquation({basis, v}, control));
        std::vector<BasisStatus> status = basis.columns;
        status.insert(status.end(), basis.rows.begin(), basis.rows.end());
        std::vector<Index> head;
        for (Index u = 0; u < form.Variables(); ++u)
        {
            if (status[u] == BasisStatus::Basic)
                head.push_back(u);
        }
        const ExactVector values{std::vector<Integer>(form.rows, 7), 3};
        const ExactVector duals{std::vector<Integer>(form.rows, -2), 5};
        const std::vector<BasisStatus> before = status;
        BlockedRow blocked;
        way.Add(static_cast<int>(
            refinement.Run({before, head, values, duals}, control, status, blocked)));
        for (const BasisStatus at : status)
            way.Add(static_cast<int>(at));
        way.Add(control.Pivots(Stage::Double));
        way.Add(blocked.variable);
    }
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

/// The dense dictionary before each pivot, and what is proved of its end.
void PivotDense(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    DenseForm dense;
    TakeForm(form, dense);
    DenseSimplex simplex;
    const auto look = [&](bool isFeasible)
    {
        way.Add(isFeasible);
        AddNumbers(way, simplex.Point());
        for (const BasisStatus status : simplex.Status())
            way.Add(static_cast<int>(status));
        for (const signed char violation : simplex.Violations())
            way.Add(violation);
    };
    SolveControl control(way.Watched());
    const auto end = simplex.Run(dense, control, look);
    way.Add(static_cast<int>(end));
    look(false);
    DenseProof proof;
    way.Add(proof.ProveInfeasible(dense, simplex.Status(), simplex.Violations()));
    if (end == DenseSimplex::End::Unbounded)
        way.Add(proof.ProveUnbounded(dense, simplex.Status(), simplex.Moving(), simplex.MovesUp()));
    way.Add(proof.ProveOptimal(dense, simplex.Status()));
    const Basis drawn = DrawBasis(random, form);
    std::vector<BasisStatus> start = drawn.columns;
    start.insert(start.end(), drawn.rows.begin(), drawn.rows.end());
    way.Add(static_cast<int>(simplex.RunFrom(dense, start, control)));
    look(false);
    // Of any statuses, which may be those of no basis.
    for (BasisStatus& status : start)
        status = random.OneIn(4) ? static_cast<BasisStatus>(random.Between(0, 3)) : status;
    const Index moving = Between(random, 0, form.Variables() - 1);
    way.Add(proof.ProveUnbounded(dense, start, moving, random.OneIn(2)));
    way.Add(proof.ProveOptimal(dense, start));
    std::vector<signed char> violations;
    for (Index v = 0; v < form.Variables(); ++v)
        violations.push_back(static_cast<signed char>(random.Between(-1, 1)));
    way.Add(proof.ProveInfeasible(dense, start, violations));
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

using Take = void (*)(const BoundedForm&, Random&, Way&);

Kind OfDrawn(std::string name, int count, const Drawing& drawing, Take take)
{
    return {std::move(name), Repeated(count, [=](Random& random, Way& way)
                                      { take(Draw(random, drawing), random, way); })};
}

Kind OfSmall(std::string name, int count, Take take)
{
    return {std::move(name), Repeated(count,
                                      [=](Random& random, Way& way)
                                      {
                                          const Index rows = Between(random, 1, 5);
                                          take(RandomSmallForm(random, rows, Between(random, 1, 6)),
                                               random, way);
                                      })};
}

Kind OfDependent(std::string name, int count, Take take)
{
    return {std::move(name),
            Repeated(count,
                     [=](Random& random, Way& way)
                     {
                         const Index rows = Between(random, 2, 7);
                         take(NearlyDependentForm(random, rows, Between(random, 2, 8)), random,
                              way);
                     })};
}

}  // namespace

std::vector<Kind> KindsOfProofs()
{
    const Drawing tied{.rows = 6,
                       .columns = 8,
                       .entries = 4,
                       .boxed = 3,
                       .equations = 3,
                       .isWhole = true,
                       .isTied = true};
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
    const Drawing scaled{.rows = 5, .columns = 6, .boxed = 3, .exponents = 20};
    const Drawing farScaled{.rows = 5, .columns = 6, .boxed = 3, .exponents = 100};
    const Drawing free{.rows = 4,
                       .columns = 8,
                       .free = 2,
                       .boxed = 3,
                       .isWhole = true,
                       .isTied = true,
                       .least = 0.0};
    return {
        OfSmall("exact pivots of small", 100, PivotExactly),
        OfDrawn("exact pivots of tied", 20, tied, PivotExactly),
        OfDrawn("exact pivots of infeasible", 10, infeasible, PivotExactly),
        OfSmall("stops of small", 40, Stop),
        OfDependent("stops of nearly dependent", 4, Stop),
        OfSmall("refined small", 150, Refine),
        OfDependent("refined nearly dependent", 60, Refine),
        OfDrawn("refined dependent", 40, dependent, Refine),
        OfDrawn("ranges of whole numbers", 4, many, Ranges),
        OfDrawn("ranges of fractions", 2, fractions, Ranges),
        OfDrawn("ranges of tied", 40, tied, Ranges),
        OfSmall("ranges of small", 60, Ranges),
        OfDrawn("conflicts", 40, infeasible, Conflict),
        OfSmall("conflicts of small", 100, Conflict),
        OfSmall("dense pivots of small", 300, PivotDense),
        OfDrawn("dense pivots of tied", 60, tied, PivotDense),
        {"dense pivots of edges", Repeated(400, [](Random& random, Way& way)
                                           { PivotDense(DrawAtTolerances(random), random, way); })},
        OfDrawn("dense pivots of scaled", 60, scaled, PivotDense),
        OfDrawn("dense pivots of far scaled", 30, farScaled, PivotDense),
        OfSmall("exact edits of small", 25, EditExactly),
        OfSmall("guesses of small", 60, ProveGuess),
        OfDependent("guesses of nearly dependent", 15, ProveGuess),
        OfDrawn("guesses of dependent", 10, dependent, ProveGuess),
        OfDrawn("guesses of infeasible", 15, infeasible, ProveGuess),
        OfSmall("quotients of small", 60, ProveQuotients),
        OfDrawn("quotients of tied", 12, tied, ProveQuotients),
        OfDrawn("ranges of free", 40, free, Ranges),
        {"exact pivots in place", PivotInPlace},
        {"enlarged equations", Repeated(100, Enlarge)},
    };
}

}  // namespace nuv::test
