/// Ways of the simplex in doubles with all that its state holds: before each pivot, and before each
/// look at one that is refused, the values, reduced costs, costs and bounds of all variables, where
/// they rest, who is basic where, and how much of the factors is updates. What the simplex chooses,
/// flips, shifts, perturbs, refuses and makes anew is all in there, to the last bit.
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/DualSimplex.hpp"
#include "Nuv/SparseSimplex/Presolve/ImpliedBounds.hpp"
#include "Nuv/SparseSimplex/Presolve/Presolve.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace nuv::test
{
namespace
{

Index Between(Random& random, Index least, Index most)
{
    return static_cast<Index>(random.Between(static_cast<int>(least), static_cast<int>(most)));
}

double Any(Random& random, std::span<const double> numbers)
{
    return numbers[static_cast<std::size_t>(
        random.Between(0, static_cast<int>(numbers.size()) - 1))];
}

/// In [-1, 1), with all the bits that a double has.
double DrawShare(Random& random)
{
    return std::ldexp(static_cast<double>(random.Next() >> 11) - 0x1p52, -52);
}

void Add(Way& way, const std::vector<double>& numbers)
{
    for (const double number : numbers)
        way.Add(std::isnan(number) ? 0.0 : number);  // there are many numbers that are none
}

void Add(Way& way, const SimplexState& state)
{
    for (const auto* numbers : {&state.value, &state.reduced, &state.cost})
        Add(way, *numbers);
    Add(way, state.lower);
    Add(way, state.upper);
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
    Whole,
};

void RunTraced(const ScaledForm& scaled, const Basis& start, Run run, Way& way)
{
    SimplexState state(scaled, start);
    SolveControl control(Traced(state, way));
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

Basis DrawBasis(Random& random, const BoundedForm& form)
{
    Basis basis = SlackBasis(form);
    for (Index v = 0; v < form.Variables(); ++v)
        basis[v] = static_cast<BasisStatus>(random.Between(0, 3));
    FitBasis(form, basis);
    return basis;
}

/// From the slack basis and from one that is drawn.
void RunAll(const BoundedForm& form, const ScaledForm& scaled, Random& random, Way& way)
{
    const Basis slack = SlackBasis(form);
    const Basis drawn = DrawBasis(random, form);
    for (const Run run :
         {Run::Primal, Run::PrimalPerturbed, Run::Dual, Run::DualPerturbed, Run::Whole})
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

/// Of which the kinds of forms below are drawn.
struct Drawing
{
    Index rows = 10;
    Index columns = 15;
    Index entries = 4;       ///< of a row
    int fixed = 0;           ///< one column of so many, of none if 0
    int free = 0;            ///< has no bound
    int boxed = 0;           ///< has two
    int falling = 0;         ///< has an upper one alone
    int equations = 4;       ///< one row of so many
    int ranges = 5;          ///< has two sides
    bool isWhole = false;    ///< small integers, else all bits of a double
    bool isTied = false;     ///< costs and sides of few values, most rows tight at one point
    int exponents = 0;       ///< of the factors of rows and columns, from its negative on
    bool isFeasible = true;  ///< rows are drawn around a point
    double cost = 1.0;       ///< the largest
    double least = 0.0;      ///< lowest cost
    double nearness = 0.0;   ///< not 0: half of the columns are the one before but for this share
};

bool Chance(Random& random, int chances)
{
    return chances > 0 && random.OneIn(chances);
}

Interval DrawBounds(Random& random, const Drawing& drawing, double at)
{
    if (Chance(random, drawing.fixed))
        return {at, at};
    if (Chance(random, drawing.free))
        return {-kInf, kInf};
    const double room = drawing.isWhole ? random.Between(0, 3) : 1.0 + DrawShare(random);
    if (Chance(random, drawing.boxed))
        return {at - room, at + (random.OneIn(3) ? 0.0 : 1.0 + room)};
    if (Chance(random, drawing.falling))
        return {-kInf, at};
    return {random.OneIn(2) ? at : at - 1.0, kInf};
}

BoundedForm Draw(Random& random, const Drawing& drawing)
{
    const auto number = [&]
    {
        if (drawing.isWhole)
            return static_cast<double>(random.Between(-3, 5));
        return DrawShare(random);
    };
    std::vector<double> cost(drawing.columns);
    std::vector<double> point(drawing.columns);
    std::vector<double> factor(drawing.columns, 1.0);
    std::vector<Interval> bounds(drawing.columns);
    for (Index j = 0; j < drawing.columns; ++j)
    {
        const double share = drawing.isTied ? random.Between(-1, 2) : number();
        cost[j] = std::fmax(share * drawing.cost, drawing.least);
        point[j] = random.OneIn(2) ? 0.0 : random.Between(0, 6);
        bounds[j] = DrawBounds(random, drawing, point[j]);
        factor[j] = std::ldexp(drawing.exponents > 0 ? 1.0 + 0.3 * random.Between(0, 3) : 1.0,
                               random.Between(-drawing.exponents, drawing.exponents));
        cost[j] *= factor[j];
        bounds[j] = {bounds[j].lower / factor[j], bounds[j].upper / factor[j]};
        point[j] /= factor[j];
    }
    std::vector<DenseRow> rows(drawing.rows);
    for (DenseRow& row : rows)
    {
        row.coefficients.assign(drawing.columns, 0.0);
        for (Index entry = 0; entry < drawing.entries; ++entry)
            row.coefficients[Between(random, 0, drawing.columns - 1)] = number();
        for (Index j = 1; drawing.nearness != 0.0 && j < drawing.columns; j += 2)
            row.coefficients[j] =
                row.coefficients[j - 1] + drawing.nearness * row.coefficients[j] * number();
        const double scale = std::ldexp(1.0, random.Between(-drawing.exponents, drawing.exponents));
        double activity = 0.0;
        for (Index j = 0; j < drawing.columns; ++j)
        {
            row.coefficients[j] *= factor[j] * scale;
            activity += row.coefficients[j] * point[j];
        }
        if (!drawing.isFeasible)
            activity += scale * random.Between(-9, 9);
        const double room = drawing.isTied ? 0.0 : scale * (random.OneIn(3) ? 0.0 : 1.0 + number());
        row.bounds = {-kInf, activity + std::fabs(room)};
        if (random.OneIn(2))
            row.bounds = {activity - std::fabs(room), kInf};
        if (Chance(random, drawing.equations))
            row.bounds = {activity, activity};
        else if (Chance(random, drawing.ranges))
            row.bounds = {activity - std::fabs(room), activity + scale * random.Between(0, 2)};
    }
    return MakeForm(cost, rows, bounds);
}

/// Many rows of few columns each, of which all are tight where the slack basis is.
BoundedForm DrawAssignment(Random& random, Index size)
{
    std::vector<double> cost;
    std::vector<DenseRow> rows(2 * std::size_t{size},
                               {std::vector<double>(std::size_t{size} * size, 0.0), {1, 1}});
    for (std::size_t i = 0; i < size; ++i)
        for (std::size_t j = 0; j < size; ++j)
        {
            cost.push_back(random.Between(1, 20));
            rows[i].coefficients[i * size + j] = 1.0;
            rows[size + j].coefficients[i * size + j] = 1.0;
        }
    return MakeForm(cost, rows);
}

/// What decides at a tolerance is drawn from the tolerances themselves and their neighbours.
constexpr double kEdge = 1e-9;
const std::array<double, 16> kNumbers = {0.0,
                                         1.0,
                                         1.0,
                                         2.0,
                                         0.5,
                                         kEdge,
                                         2.0 * kEdge,
                                         0.5 * kEdge,
                                         std::nextafter(kEdge, 0.0),
                                         std::nextafter(kEdge, 1.0),
                                         1.0 + kEdge,
                                         1.0 - kEdge,
                                         1e-5,
                                         std::nextafter(1e-5, 0.0),
                                         1e-7,
                                         1e-12};
const std::array<double, 12> kPivots = {1.0,  0.5,   2.0,  0.1,  1e-5, std::nextafter(1e-5, 0.0),
                                        1e-3, kEdge, 0.01, 10.0, 4.0,  std::nextafter(kEdge, 1.0)};

double DrawEdge(Random& random)
{
    const double number = Any(random, kNumbers);
    return random.OneIn(2) ? number : -number;
}

Interval DrawEdges(Random& random)
{
    const double lower = DrawEdge(random);
    const double room = std::fabs(DrawEdge(random));
    switch (random.Between(0, 4))
    {
    case 0:
        return {lower, kInf};
    case 1:
        return {-kInf, lower};
    case 2:
        return {-kInf, kInf};
    default:
        return {lower, lower + room};
    }
}

BoundedForm DrawAtTolerances(Random& random)
{
    const Index columns = Between(random, 1, 6);
    std::vector<double> cost(columns);
    std::vector<Interval> bounds(columns);
    for (Index j = 0; j < columns; ++j)
    {
        cost[j] = DrawEdge(random);
        if (random.OneIn(9))
            cost[j] = random.OneIn(2) ? 100.0 : 101.0;
        bounds[j] = DrawEdges(random);
    }
    std::vector<DenseRow> rows(Between(random, 1, 5));
    for (DenseRow& row : rows)
    {
        row.coefficients.assign(columns, 0.0);
        for (double& entry : row.coefficients)
        {
            if (!random.OneIn(3))
                entry = Any(random, kPivots) * (random.OneIn(2) ? 1.0 : -1.0);
        }
        row.bounds = DrawEdges(random);
    }
    return MakeForm(cost, rows, bounds);
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

void RunAtTolerances(Random& random, Way& way)
{
    const BoundedForm form = DrawAtTolerances(random);
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
        const double pivot = Any(random, kPivots);
        state.reduced[j] = std::fabs(DrawEdge(random)) * (random.OneIn(2) ? pivot : 1.0);
        if (!random.OneIn(5))
            row.Set(j, random.OneIn(2) ? pivot : -pivot);
    }
    DualRatioTest test(state);
    const double violation = std::fabs(DrawEdge(random)) * (random.OneIn(2) ? 3.0 : 1.0);
    way.Add(test.Choose(row, random.OneIn(2) ? 1.0 : -1.0, violation));
    for (const Index v : test.Flips())
        way.Add(v);
}

/// Powers of two around numbers as small and large as doubles have.
void Scale(Random& random, Way& way)
{
    Drawing drawing;
    drawing.rows = Between(random, 1, 6);
    drawing.columns = Between(random, 1, 8);
    drawing.isWhole = random.OneIn(2);
    drawing.exponents = random.OneIn(3) ? 240 : random.Between(0, 30);
    const BoundedForm form = Draw(random, drawing);
    const ScaledForm scaled(form);
    Add(way, scaled.matrix->scale);
    Add(way, scaled.lower);
    Add(way, scaled.upper);
    Add(way, scaled.cost);
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

/// The boxes that rows imply, and what presolve makes of the form and of the point of its optimum.
void Shrink(const BoundedForm& form, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    const ScaledForm scaled(form);
    std::vector<double> lower = scaled.lower;
    std::vector<double> upper = scaled.upper;
    BoxImplied(scaled, lower, upper);
    Add(way, lower);
    Add(way, upper);
    const Presolve presolve(form);
    way.Add(presolve.FoundContradiction());
    way.Add(presolve.Reduces());
    if (!presolve.Reduces())
        return;
    const BoundedForm& reduced = presolve.Form();
    for (const auto* numbers :
         {&reduced.cost, &reduced.columnLower, &reduced.columnUpper, &reduced.rowLower,
          &reduced.rowUpper, &reduced.matrix.Columns().value})
        Add(way, *numbers);
    for (const Index at : reduced.matrix.Columns().index)
        way.Add(at);
    way.Add(reduced.constant);
    const ScaledForm scaledReduced(reduced);
    SimplexState state(scaledReduced, SlackBasis(reduced));
    SolveControl control(Traced(state, way));
    way.Add(static_cast<int>(SolveInDoubles(state, control)));
    const presolve::RestoredPoint point = presolve.RestorePoint(state);
    for (const auto* numbers : {&point.value, &point.reduced, &point.activity, &point.dual})
        Add(way, *numbers);
    way.Add(point.basis);
}

Kind Runs(std::string name, int count, const Drawing& drawing)
{
    return {std::move(name), Repeated(count, [=](Random& random, Way& way)
                                      { RunAll(Draw(random, drawing), random, way); })};
}

Kind Shrinks(std::string name, int count, const Drawing& drawing)
{
    return {std::move(name),
            Repeated(count, [=](Random& random, Way& way) { Shrink(Draw(random, drawing), way); })};
}

}  // namespace

std::vector<Kind> KindsOfSimplex()
{
    std::vector<Kind> kinds = {
        {"runs at tolerances", Repeated(300, RunAtTolerances)},
        {"dual ratios", Repeated(3000, TestDualRatios)},
        {"scales", Repeated(150, Scale)},
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
        Runs("runs of dear", 4, {.rows = 9, .columns = 14, .free = 9, .cost = 1e6}),
        Shrinks("whole shrunk", 150,
                {.rows = 9,
                 .columns = 12,
                 .entries = 3,
                 .fixed = 7,
                 .free = 5,
                 .boxed = 4,
                 .falling = 6,
                 .equations = 2,
                 .isWhole = true}),
        Shrinks("fractions shrunk", 60,
                {.rows = 12,
                 .columns = 16,
                 .entries = 2,
                 .fixed = 9,
                 .free = 4,
                 .boxed = 3,
                 .falling = 6,
                 .equations = 2}),
        Shrinks("contradictions shrunk", 60,
                {.rows = 8,
                 .columns = 9,
                 .entries = 2,
                 .boxed = 2,
                 .equations = 2,
                 .isWhole = true,
                 .isFeasible = false}),
        {"edges shrunk",
         Repeated(400, [](Random& random, Way& way) { Shrink(DrawAtTolerances(random), way); })},
    };
    return kinds;
}

}  // namespace nuv::test
