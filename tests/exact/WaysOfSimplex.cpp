/// Ways of the simplex in doubles with all that its state holds: before each pivot, and before each
/// look at one that is refused, the values, reduced costs, costs and bounds of all variables, where
/// they rest, who is basic where, and how much of the factors is updates. What the simplex chooses,
/// flips, shifts, perturbs, refuses and makes anew is all in there, to the last bit.
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/DualSimplex.hpp"
#include "Nuv/SparseSimplex/StartBasis.hpp"
#include "tests/exact/Drawing.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace nuv::test
{
namespace
{

void Add(Way& way, const SimplexState& state)
{
    for (const auto* numbers : {&state.value, &state.reduced, &state.cost})
        AddNumbers(way, *numbers);
    AddNumbers(way, state.lower);
    AddNumbers(way, state.upper);
    for (Index v = 0; v < state.form.Variables(); ++v)
        way.Add(8 * static_cast<int>(state.status[v]) + state.side[v]);
    for (const Index v : state.head)
        way.Add(v);
    way.Add(state.lu.Updates());
    way.Add(state.lu.UpdateEntries());
    way.Add(state.lu.FactorEntries());
}

SolveLimits Traced(const SimplexState& state, Way& way)
{
    SolveLimits limits;
    limits.doublePivots = 1500;
    limits.keepGoing = [&state, &way](const Progress& progress)
    {
        way.Add(progress.pivots);
        way.Add(progress.feasible);
        way.Add(std::isnan(progress.objective) ? 0.0 : progress.objective);
        Add(way, state);
        return true;
    };
    return limits;
}

enum class Run : int
{
    Primal,
    PrimalPerturbed,
    Dual,
    DualPerturbed,
    DualAfterPrimal,
    Whole,
};

void RunTraced(const ScaledForm& scaled, const Basis& start, Run run, Way& way)
{
    SimplexState state(scaled, start);
    SolveControl control(Traced(state, way));
    control.ReportObjectiveAs(-2.0, 0.75);
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    switch (run)
    {
    case Run::Primal:
    case Run::PrimalPerturbed:
    {
        PrimalSimplex primal(state, control);
        verdict = primal.Run(run == Run::PrimalPerturbed);
        way.Add(primal.BoundsWereMoved());
        break;
    }
    case Run::Dual:
    case Run::DualPerturbed:
    {
        DualSimplex dual(state, control);
        verdict =
            dual.Run(run == Run::Dual ? DualSimplex::Start::AsItIs : DualSimplex::Start::Perturbed);
        way.Add(dual.CostsWereShifted());
        way.Add(dual.Blocked());
        // Costs are those of the first run: the second one goes on from where that ended.
        if (verdict == SimplexVerdict::Optimal)
            way.Add(static_cast<int>(dual.Run(DualSimplex::Start::Factorised)));
        break;
    }
    case Run::DualAfterPrimal:
    {
        // With factors that were updated, and with values that were.
        SolveLimits few = Traced(state, way);
        few.doublePivots = 1 + scaled.rows / 2;
        SolveControl limited(std::move(few));
        (void)PrimalSimplex(state, limited).Run(false);
        DualSimplex dual(state, control);
        verdict = dual.Run(DualSimplex::Start::Factorised);
        way.Add(dual.Blocked());
        break;
    }
    case Run::Whole:
    {
        BlockedRow blocked;
        verdict = SolveInDoubles(state, control, &blocked);
        way.Add(blocked.variable);
        way.Add(blocked.basis);
        way.Add(IsOptimal(state));
        break;
    }
    }
    way.Add(static_cast<int>(verdict));
    Add(way, state);
    way.Add(state.SumOfViolations());
}

/// From the slack basis and from one that is drawn.
void RunAll(const BoundedForm& form, const ScaledForm& scaled, Random& random, Way& way)
{
    const Basis slack = SlackBasis(form);
    const Basis drawn = DrawBasis(random, form);
    for (const Run run : {Run::Primal, Run::PrimalPerturbed, Run::Dual, Run::DualPerturbed,
                          Run::DualAfterPrimal, Run::Whole})
    {
        RunTraced(scaled, slack, run, way);
        RunTraced(scaled, drawn, run, way);
    }
}

void RunAll(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) == kNoIndex)
        RunAll(form, ScaledForm(form), random, way);
}

/// Bases so nearly singular that a pivot is not the same by row and by column.
void RunInDisagreement(Random&, Way& way)
{
    struct Found
    {
        std::uint64_t seed;
        Drawing drawing;
    };
    const std::array<Found, 3> found = {
        {{31, {.rows = 9, .columns = 13, .entries = 9, .boxed = 3, .nearness = 1e-9}},
         {15, {.rows = 5, .columns = 7, .entries = 5, .boxed = 3, .nearness = 1e-10}},
         {18, {.rows = 15, .columns = 22, .entries = 15, .boxed = 3, .nearness = 1e-8}}}};
    for (const auto& [seed, drawing] : found)
    {
        Random random(seed);
        const BoundedForm form = Draw(random, drawing);
        RunTraced(ScaledForm(form), DrawBasis(random, form), Run::PrimalPerturbed, way);
    }
}

/// The form as it stands, with all scales one: the tolerances then mean its numbers.
ScaledForm Unscaled(const BoundedForm& form)
{
    ScaledForm scaled(form);
    auto matrix = std::make_shared<ScaledMatrix>(*scaled.matrix);
    matrix->byVariable =
        ColumnsWithLogicals<double>(form, [](Index, Index, double entry) { return entry; });
    matrix->byRow =
        Mapped<double>(form.matrix.Rows(), [](Index, Index, double entry) { return entry; });
    matrix->scale.assign(form.Variables(), 1.0);
    scaled.matrix = std::move(matrix);
    scaled.SetBounds(form);
    scaled.cost.assign(form.Variables(), 0.0);
    for (Index j = 0; j < form.columns; ++j)
        scaled.cost[j] = form.cost[j];
    scaled.costScale = 1.0;
    return scaled;
}

void RunUnscaled(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) == kNoIndex)
        RunAll(form, Unscaled(form), random, way);
}

/// The dual ratio test by itself, on rows and reduced costs that meet its tolerances.
void TestDualRatios(Random& random, Way& way)
{
    const Index columns = Between(random, 1, 9);
    std::vector<Interval> bounds(columns);
    for (Interval& interval : bounds)
        interval = DrawEdges(random);
    const BoundedForm form = MakeForm(std::vector<double>(columns, 0.0),
                                      {{std::vector<double>(columns, 1.0), {}}}, bounds);
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    const ScaledForm scaled = Unscaled(form);
    SimplexState state(scaled, SlackBasis(form));
    state.Refactorise();
    WorkVector row;
    row.Reset(form.Variables());
    for (Index j = 0; j < columns; ++j)
    {
        const double pivot = DrawPivot(random);
        const double distance = std::fabs(DrawEdge(random));
        state.reduced[j] = distance * (random.OneIn(2) ? pivot : 1.0);
        if (!random.OneIn(5))
            row.Set(j, random.OneIn(2) ? pivot : -pivot);
        // What is no number, or beyond all of them, is passed over.
        if (random.OneIn(30))
            state.reduced[j] = random.OneIn(2) ? kInf : std::nan("");
        if (random.OneIn(30))
            row.Set(j, kInf);
    }
    DualRatioTest test(state);
    double violation = std::fabs(DrawEdge(random));
    violation *= random.OneIn(2) ? 3.0 : 1.0;
    way.Add(test.Choose(row, random.OneIn(2) ? 1.0 : -1.0, violation));
    for (const Index v : test.Flips())
        way.Add(v);
}

/// A form with presolve, with as many pivots as it takes and with few.
void SolveReduced(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    for (const std::uint64_t most : {std::uint64_t{500}, std::uint64_t{random.Next() % 20}})
    {
        SolveLimits limits = way.Watched();
        limits.doublePivots = most;
        SolveControl control(limits);
        ScalableForm scalable(form);
        const DoubleResult result = SolveInDoubles(scalable, control);
        way.Add(static_cast<int>(result.verdict));
        way.Add(result.basis);
        way.Add(result.blocked.variable);
        way.Add(result.blocked.basis);
        way.Add(control.Pivots(Stage::Double));
    }
}

/// What a part of a point, near its bounds or away from them, says of a basis.
void StartNear(Random& random, Way& way)
{
    const Index rows = Between(random, 1, 8);
    const BoundedForm form = RandomSmallForm(random, rows, Between(random, 1, 9));
    std::vector<double> point;
    for (Index j = Between(random, 0, form.columns); j > 0; --j)
    {
        const Index at = static_cast<Index>(point.size());
        double value = random.Between(-4, 4);
        if (random.OneIn(2))
            value = random.OneIn(2) ? form.Lower(at) : form.Upper(at);
        value += random.OneIn(3) ? random.Between(-2, 2) * 1e-7 : 0.0;
        if (random.OneIn(12))
            value = random.OneIn(2) ? 1.7e308 : -1.7e308;
        point.push_back(random.OneIn(6) ? std::nan("") : value);
    }
    way.Add(BasisNear(form, point));
}

/// Powers of two around numbers as small and large as doubles have.
void Scale(Random& random, Way& way)
{
    Drawing drawing;
    drawing.rows = Between(random, 1, 6);
    drawing.columns = Between(random, 1, 8);
    drawing.isWhole = random.OneIn(2);
    drawing.exponents = random.OneIn(3) ? 240 : random.Between(0, 30);
    const BoundedForm form = WithZeros(Draw(random, drawing), random);
    const ScaledForm scaled(form);
    AddNumbers(way, scaled.matrix->scale);
    AddNumbers(way, scaled.lower);
    AddNumbers(way, scaled.upper);
    AddNumbers(way, scaled.cost);
    way.Add(scaled.costScale);
    for (Index v = 0; v < form.Variables(); ++v)
        for (const auto [row, entry] : scaled.Column(v))
        {
            way.Add(row);
            way.Add(entry);
        }
    for (Index i = 0; i < form.rows; ++i)
        for (const auto [column, entry] : scaled.Row(i))
        {
            way.Add(column);
            way.Add(entry);
        }
}

Kind Runs(std::string name, int count, const Drawing& drawing)
{
    return OfDrawn(std::move(name), count, drawing,
                   [](const BoundedForm& form, Random& random, Way& way)
                   { RunAll(form, random, way); });
}

}  // namespace

std::vector<Kind> KindsOfSimplex()
{
    const Drawing whole{.rows = 22,
                        .columns = 35,
                        .entries = 8,
                        .fixed = 9,
                        .free = 6,
                        .boxed = 3,
                        .equations = 3,
                        .isWhole = true,
                        .least = -1.0};
    const Drawing fractions{.rows = 25,
                            .columns = 40,
                            .entries = 6,
                            .fixed = 9,
                            .boxed = 3,
                            .falling = 9,
                            .least = -0.2};
    const Drawing contradictory{
        .rows = 20, .columns = 22, .entries = 9, .boxed = 2, .isWhole = true, .isFeasible = false};
    std::vector<Kind> kinds = {
        {"runs at tolerances", Repeated(400, [](Random& random, Way& way)
                                        { RunUnscaled(DrawAtTolerances(random), random, way); })},
        {"runs of many rows at tolerances",
         Repeated(40, [](Random& random, Way& way)
                  { RunUnscaled(DrawSparselyAtTolerances(random), random, way); })},
        {"runs of chains",
         Repeated(4, [](Random& random, Way& way) { RunAll(DrawChain(random, 40), random, way); })},
        {"runs without an end",
         [](Random& random, Way& way)
         {
             RunAll(DrawEndless(8), random, way);
             for (const Index columns : {20u, 24u})
             {
                 const BoundedForm form = DrawEndless(columns);
                 RunTraced(ScaledForm(form), SlackBasis(form), Run::DualPerturbed, way);
             }
         }},
        {"few entries",
         [](Random& random, Way& way)
         {
             for (const Index count : {99u, 100u, 101u})
                 SolveReduced(SingletonRows(count), random, way);
         }},
        {"runs in disagreement", RunInDisagreement},
        {"runs of large cones",
         [](Random&, Way& way)
         {
             const BoundedForm form = DegenerateCone(70);
             for (const Run run : {Run::Primal, Run::PrimalPerturbed})
                 RunTraced(ScaledForm(form), SlackBasis(form), run, way);
         }},
        {"dual ratios", Repeated(3000, TestDualRatios)},
        {"scales", Repeated(150, Scale)},
        {"starts near", Repeated(400, StartNear)},
        OfDrawn("reduced whole numbers", 30, whole, SolveReduced),
        OfDrawn("reduced fractions", 20, fractions, SolveReduced),
        OfDrawn("reduced contradictions", 20, contradictory, SolveReduced),
        {"runs of small", Repeated(100,
                                   [](Random& random, Way& way)
                                   {
                                       const Index rows = Between(random, 0, 6);
                                       RunAll(RandomSmallForm(random, rows, Between(random, 1, 8)),
                                              random, way);
                                   })},
        {"runs of assignments", Repeated(2, [](Random& random, Way& way)
                                         { RunAll(DrawAssignment(random, 7), random, way); })},
        {"runs of cones",
         [](Random& random, Way& way) { RunAll(DegenerateCone(24), random, way); }},
        {"runs of larger",
         [](Random& random, Way& way)
         {
             const BoundedForm form = RandomSparseForm(random, 130, 170);
             for (const Run run : {Run::PrimalPerturbed, Run::Whole})
                 RunTraced(ScaledForm(form), SlackBasis(form), run, way);
         }},
        Runs("runs of sparse", 3, {.rows = 25, .columns = 40, .fixed = 9, .free = 9, .falling = 9}),
        Runs("runs of cheap sparse", 3, {.rows = 25, .columns = 40, .fixed = 9, .least = 0.0}),
        Runs("runs of boxed", 6, {.rows = 12, .columns = 40, .entries = 9, .boxed = 1}),
        Runs("runs of free", 4, {.rows = 14, .columns = 20, .free = 2, .falling = 5}),
        Runs("runs of scaled", 5, {.rows = 12, .columns = 18, .boxed = 3, .exponents = 12}),
        Runs("runs of wide", 3,
             {.rows = 8, .columns = 60, .entries = 20, .boxed = 4, .least = 0.0}),
        Runs(
            "runs of tied", 6,
            {.rows = 14, .columns = 20, .entries = 5, .boxed = 3, .isWhole = true, .isTied = true}),
        Runs("runs of infeasible", 6,
             {.rows = 12, .columns = 14, .boxed = 2, .isWhole = true, .isFeasible = false}),
        Runs("runs of nearly singular", 8,
             {.rows = 9, .columns = 14, .entries = 9, .boxed = 3, .nearness = 1e-6}),
        Runs("runs of more nearly singular", 8,
             {.rows = 9, .columns = 14, .entries = 9, .boxed = 3, .nearness = 1e-10}),
        Runs("runs of hardly regular", 8,
             {.rows = 12, .columns = 16, .entries = 12, .boxed = 2, .nearness = 1e-13}),
        Runs("runs of huge", 8, {.rows = 4, .columns = 7, .boxed = 2, .size = 3e12}),
        Runs("runs of dear", 4, {.rows = 9, .columns = 14, .free = 9, .cost = 1e6}),
    };
    return kinds;
}

}  // namespace nuv::test
