/// Presolve and postsolve: each rule by a form that it takes apart, and many drawn ones. What
/// counts is the basis that comes back: in the original form it must be optimal without a pivot.
#include "Nuv/SparseSimplex/Presolve/Presolve.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace nuv::test
{
namespace
{

struct Optimum
{
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    double objective = 0.0;
};

double ObjectiveOf(const SimplexState& state)
{
    double sum = 0.0;
    for (Index v = 0; v < state.form.columns; ++v)
        sum += state.form.cost[v] * state.value[v];
    return sum / state.form.costScale;
}

Optimum SolveDirectly(const BoundedForm& form)
{
    const ScaledForm scaled(form);
    SimplexState state(scaled, SlackBasis(form));
    SolveControl control;
    Optimum result;
    result.verdict = SolveInDoubles(state, control);
    result.objective = ObjectiveOf(state);
    return result;
}

/// By how much a basis misses being optimal: its worst violation and its worst reduced cost.
struct Miss
{
    double primal = 0.0;
    double dual = 0.0;
    double objective = 0.0;
};

/// The point that postsolve made step by step is the one that its basis has.
void ExpectPointOf(const SimplexState& state, const presolve::RestoredPoint& point)
{
    const ScaledForm& scaled = state.form;
    const auto expectNear = [](double found, double wanted)
    { EXPECT_NEAR(found, wanted, 1e-7 * (1.0 + std::fabs(wanted))); };
    for (Index v = 0; v < scaled.Variables(); ++v)
    {
        SCOPED_TRACE(v);
        const Index row = v - scaled.columns;
        const bool isColumn = v < scaled.columns;
        expectNear(isColumn ? point.value[v] : point.activity[row],
                   state.value[v] * scaled.Scale(v));
        expectNear(isColumn ? point.reduced[v] : point.dual[row],
                   state.reduced[v] / scaled.Scale(v) / scaled.costScale);
    }
}

Miss MissOf(const BoundedForm& form, const presolve::RestoredPoint& point)
{
    const Basis& basis = point.basis;
    const ScaledForm scaled(form);
    SimplexState state(scaled, basis);
    EXPECT_EQ(state.head.size(), form.rows);
    const Basis before = basis;
    state.Refactorise();
    EXPECT_EQ(state.ExportBasis(), before) << "the basis was singular";
    std::vector<double> basicCost;
    for (const Index v : state.head)
        basicCost.push_back(state.cost[v]);
    state.ComputeReducedCosts(state.cost, basicCost);
    ExpectPointOf(state, point);
    Miss miss;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        miss.primal = std::max(
            {miss.primal, state.lower[v] - state.value[v], state.value[v] - state.upper[v]});
        if (!state.IsFixed(v))
            miss.dual = std::max(miss.dual, DualInfeasibility(state.status[v], state.reduced[v]));
    }
    miss.objective = ObjectiveOf(state);
    return miss;
}

/// A form through presolve, the simplex and postsolve.
struct Presolved
{
    explicit Presolved(const BoundedForm& original) : form(original), presolve(form)
    {
        if (!presolve.Reduces())
            return;
        EXPECT_EQ(presolve.Form().Defect(), "");
        const ScaledForm scaled(presolve.Form());
        SimplexState state(scaled, SlackBasis(presolve.Form()));
        SolveControl control;
        verdict = SolveInDoubles(state, control);
        objective = ObjectiveOf(state) + presolve.Form().constant;
        point = presolve.RestorePoint(state);
        basis = point.basis;
    }
    [[nodiscard]] Index Rows() const
    {
        return presolve.Form().rows;
    }
    [[nodiscard]] Index Columns() const
    {
        return presolve.Form().columns;
    }

    BoundedForm form;
    Presolve presolve;
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    double objective = 0.0;
    presolve::RestoredPoint point;
    Basis basis;
};

void ExpectOptimal(const Presolved& solved)
{
    ASSERT_TRUE(solved.presolve.Reduces());
    ASSERT_EQ(solved.verdict, SimplexVerdict::Optimal);
    const Miss miss = MissOf(solved.form, solved.point);
    EXPECT_LE(miss.primal, 1e-9);
    EXPECT_LE(miss.dual, 1e-9);
    const Optimum direct = SolveDirectly(solved.form);
    ASSERT_EQ(direct.verdict, SimplexVerdict::Optimal);
    EXPECT_NEAR(miss.objective, direct.objective, 1e-7 * (1.0 + std::fabs(direct.objective)));
    EXPECT_NEAR(solved.objective, direct.objective, 1e-7 * (1.0 + std::fabs(direct.objective)));
}

/// Expects that the form is reduced to so many rows and columns, and that its basis comes back.
Basis ExpectReduction(const BoundedForm& form, Index rows, Index columns)
{
    const Presolved solved(form);
    ExpectOptimal(solved);
    EXPECT_EQ(solved.Rows(), rows);
    EXPECT_EQ(solved.Columns(), columns);
    return solved.basis;
}

void ExpectLeftAlone(const BoundedForm& form)
{
    const Presolve presolve(form);
    EXPECT_FALSE(presolve.Reduces());
    EXPECT_FALSE(presolve.FoundContradiction());
}

void ExpectContradiction(const BoundedForm& form)
{
    const Presolve presolve(form);
    EXPECT_TRUE(presolve.FoundContradiction());
    EXPECT_FALSE(presolve.Reduces());
    EXPECT_NE(SolveDirectly(form).verdict, SimplexVerdict::Optimal);
}

constexpr BasisStatus kBasic = BasisStatus::Basic;
constexpr BasisStatus kAtLower = BasisStatus::AtLower;
constexpr BasisStatus kAtUpper = BasisStatus::AtUpper;

/// A program that no rule takes anything from: two rows and three columns that need each other.
TEST(Presolve, LeavesAFormAloneThatHasNothingToSpare)
{
    ExpectLeftAlone(
        MakeForm({1, 2, 3}, {{{1, 2, 1}, {4, 9}}, {{2, 1, 3}, {5, 11}}}, {{0, 5}, {0, 5}, {0, 5}}));
}

TEST(Presolve, DropsRowsThatRestrictNothing)
{
    // An empty row, a free one, one that the bounds satisfy, and one of which they satisfy a side.
    const Basis basis = ExpectReduction(MakeForm({1, 2, 3},
                                                 {{{0, 0, 0}, {-1, 1}},
                                                  {{1, 1, 1}, {-kInf, kInf}},
                                                  {{1, 1, 1}, {0, 15}},
                                                  {{1, 2, 1}, {4, 90}},
                                                  {{2, 1, 3}, {5, 11}}},
                                                 {{0, 5}, {0, 5}, {0, 5}}),
                                        2, 3);
    for (Index i = 0; i < 3; ++i)
        EXPECT_EQ(basis.rows[i], kBasic);
    ExpectContradiction(MakeForm({1, 1}, {{{1, 1}, {3, kInf}}}, {{0, 1}, {0, 1}}));
    ExpectContradiction(MakeForm({1, 1}, {{{1, 1}, {-kInf, -1}}}));
    ExpectContradiction(MakeForm({1, 1}, {{{0, 0}, {1, 2}}}));
}

/// minimise cost x with L <= a x <= U: all ends of all kinds of rows.
TEST(Presolve, MakesARowOfOneEntryABound)
{
    for (const double entry : {2.0, -2.0})
    {
        for (const double cost : {1.0, -1.0})
        {
            for (const Interval row : {Interval{-6, 4}, Interval{-30, 30}, Interval{4, 4}})
            {
                SCOPED_TRACE(std::to_string(entry) + ' ' + std::to_string(cost) + ' ' +
                             std::to_string(row.lower));
                const Basis basis =
                    ExpectReduction(MakeForm({cost}, {{{entry}, row}}, {{-5, 5}}), 0, 0);
                const bool atRow = row.upper < 10.0;
                EXPECT_EQ(basis.columns[0] == kBasic, atRow);
                EXPECT_EQ(basis.rows[0] == kBasic, !atRow);
            }
        }
    }
    // Only one of two bounds is the row's.
    EXPECT_EQ(ExpectReduction(MakeForm({1}, {{{1}, {1, 9}}}, {{0, 5}}), 0, 0).columns[0], kBasic);
    EXPECT_EQ(ExpectReduction(MakeForm({-1}, {{{1}, {1, 9}}}, {{0, 5}}), 0, 0).columns[0],
              kAtUpper);
    EXPECT_EQ(ExpectReduction(MakeForm({-1}, {{{1}, {-9, 1}}}, {{0, 5}}), 0, 0).columns[0], kBasic);
    ExpectContradiction(MakeForm({1}, {{{1}, {6, 9}}}, {{0, 5}}));
}

/// 0.1 + 0.2 is not 0.3, but a column that has to be both is no contradiction.
TEST(Presolve, LetsBoundsMeetThatDifferByRounding)
{
    const BoundedForm above = MakeForm({1}, {{{1}, {0.1 + 0.2, 9}}}, {{0, 0.3}});
    const BoundedForm below = MakeForm({1}, {{{1}, {-9, 0.3}}}, {{0.1 + 0.2, 9}});
    ExpectReduction(above, 0, 0);
    ExpectReduction(below, 0, 0);
    // They meet at the column's own.
    EXPECT_EQ(Presolve(above).Form().constant, 0.3);
    EXPECT_EQ(Presolve(below).Form().constant, 0.1 + 0.2);
    ExpectReduction(
        MakeForm({1, 1}, {{{1, 1}, {1, 1}}, {{1, 2}, {0, 9}}}, {{0.1 + 0.2, 9}, {0.7, 5}}), 0, 0);
    ExpectReduction(
        MakeForm({1, 1}, {{{1, -1}, {0, 0}}, {{1, 2}, {0, 9}}}, {{0, 0.3}, {0.1 + 0.2, 9}}), 0, 0);
}

TEST(Presolve, FixesTheColumnsOfARowThatTheyJustReach)
{
    for (const double sign : {1.0, -1.0})
    {
        for (const double cost : {-9.0, 1.0, 9.0})
        {
            SCOPED_TRACE(std::to_string(sign) + ' ' + std::to_string(cost));
            // 2 x - 3 y + z is at least 2 - 9 + 0, and at most that, with y or not with it.
            const Interval side = sign > 0.0 ? Interval{-kInf, -7} : Interval{7, kInf};
            const BoundedForm form =
                MakeForm({cost, -cost, cost, 1},
                         {{{2 * sign, -3 * sign, sign, 0}, side}, {{1, 1, 1, 1}, {5, 90}}},
                         {{1, 5}, {0, 3}, {0, 4}, {0, 20}});
            const Basis basis = ExpectReduction(form, 0, 0);
            EXPECT_EQ(basis.rows[0] == kBasic, cost > 0.0);
        }
    }
}

/// z is fixed: its reduced cost says nothing about the row's dual.
TEST(Presolve, AFixedColumnHasNoSayInAForcedRow)
{
    ExpectReduction(MakeForm({1, 1, -9}, {{{1, 1, 1}, {-kInf, 2}}, {{1, 3, 1}, {1, 4}}},
                             {{0, 5}, {0, 5}, {2, 2}}),
                    0, 0);
    // A row of one entry fixes z when the forced row is next.
    ExpectReduction(MakeForm({1, 1, -9},
                             {{{0, 0, 1}, {2, 2}}, {{1, 1, 1}, {-kInf, 2}}, {{1, 3, 1}, {1, 4}}},
                             {{0, 5}, {0, 5}, {2, 7}}),
                    0, 0);
}

TEST(Presolve, FixesColumnsThatNoRowUses)
{
    const Basis basis = ExpectReduction(
        MakeForm({1, -1, 0, 0, 0}, {}, {{-2, 3}, {-2, 3}, {4, kInf}, {-kInf, 4}, {-kInf, kInf}}), 0,
        0);
    EXPECT_EQ(basis.columns, (std::vector<BasisStatus>{kAtLower, kAtUpper, kAtLower, kAtUpper,
                                                       BasisStatus::Free}));
    ExpectContradiction(MakeForm({-1}, {}, {{0, kInf}}));
    ExpectContradiction(MakeForm({1}, {}, {{-kInf, 0}}));
}

/// With duals of one sign, a cost decides where a column goes.
TEST(Presolve, FixesColumnsWhoseReducedCostHasOneSign)
{
    const std::vector<DenseRow> rows = {{{1, 2, 1}, {-kInf, 9}}, {{2, 1, -3}, {-kInf, 11}}};
    Basis basis = ExpectReduction(MakeForm({1, 0, -1}, rows, {{0, 5}, {0, 5}, {0, 4}}), 0, 0);
    EXPECT_EQ(basis.columns[0], kAtLower);
    EXPECT_EQ(basis.columns[1], kAtLower) << "which costs nothing and helps no row";
    // Nothing minds if it grows.
    basis = ExpectReduction(
        MakeForm({-1, 0}, {{{1, -1}, {-kInf, 9}}, {{2, -1}, {-kInf, 1}}}, {{0, 50}, {0, 50}}), 0,
        0);
    EXPECT_EQ(basis.columns[1], kAtUpper);
    // s costs 1, so the first row's dual is at most 1, and x is not worth its 5.
    for (const double sign : {1.0, -1.0})
    {
        const Presolved solved(
            MakeForm({5 * sign, 1, 1}, {{{2 * sign, 1, 1}, {3, kInf}}, {{sign, 0, 1}, {-kInf, 1}}},
                     {sign > 0.0 ? Interval{0, kInf} : Interval{-kInf, 0}, {}, {}}));
        ExpectOptimal(solved);
        EXPECT_EQ(solved.basis.columns[0], sign > 0.0 ? kAtLower : kAtUpper);
    }
    // The same with what s takes from a row that has an upper side.
    for (const double sign : {1.0, -1.0})
    {
        const Presolved solved(MakeForm(
            {-5 * sign, -1, -1}, {{{2 * sign, 1, 1}, {-kInf, 3}}, {{sign, 0, 1}, {1, kInf}}},
            {sign > 0.0 ? Interval{-9, 5} : Interval{-5, 9}, {-kInf, 20}, {-kInf, 9}}));
        ExpectOptimal(solved);
        EXPECT_EQ(solved.basis.columns[0], sign > 0.0 ? kAtUpper : kAtLower);
    }
    ExpectContradiction(
        MakeForm({1, 0}, {{{1, 1}, {-kInf, 9}}, {{2, 1}, {-kInf, 9}}}, {{-kInf, 5}, {0, 5}}));
}

/// s is in the first row alone and costs nothing: the row's sides move by its bounds. Each of the
/// forms leaves the row and s at another place.
TEST(Presolve, TurnsAColumnOfOneRowIntoRoomForTheRow)
{
    for (const double entry : {2.0, -2.0})
    {
        for (const double cost : {1.0, -1.0, 0.0})
        {
            for (const Interval row : {Interval{3, 4}, Interval{3, 3}, Interval{-90, 3.5}})
            {
                for (const Interval slack :
                     {Interval{-1, 1}, Interval{0, 1}, Interval{-1, 0}, Interval{-kInf, 1},
                      Interval{-1, kInf}, Interval{-kInf, kInf}})
                {
                    SCOPED_TRACE(std::to_string(entry) + ' ' + std::to_string(cost) + ' ' +
                                 std::to_string(row.lower) + ' ' + std::to_string(slack.lower) +
                                 ' ' + std::to_string(slack.upper));
                    ExpectOptimal(Presolved(
                        MakeForm({cost, 2 * cost, 0},
                                 {{{1, 3, entry}, row}, {{2, 1, 0}, {1, 7}}, {{1, -1, 0}, {-3, 3}}},
                                 {{0, 5}, {0, 5}, slack})));
                }
            }
        }
    }
}

/// In an equation s may cost something, which then falls to the others.
TEST(Presolve, PassesTheCostOfAColumnOfOneRowOn)
{
    for (const double entry : {2.0, -2.0})
    {
        for (const double cost : {3.0, -3.0})
        {
            for (const Interval row : {Interval{6, 6}, Interval{6, 9}, Interval{-kInf, 9}})
            {
                SCOPED_TRACE(std::to_string(entry) + ' ' + std::to_string(cost) + ' ' +
                             std::to_string(row.lower));
                const BoundedForm form =
                    MakeForm({1, 2, cost},
                             {{{1, 3, entry}, row}, {{2, 1, 0}, {1, 7}}, {{1, -1, 0}, {-3, 3}}},
                             {{0, 5}, {0, 5}, {-kInf, kInf}});
                if (std::isinf(row.lower) && cost / entry > 0.0)
                    ExpectContradiction(form);
                else
                    ExpectOptimal(Presolved(form));
            }
        }
    }
    // Where s is held by its bounds, an inequality must not become an equation.
    ExpectLeftAlone(MakeForm({1, 2, 3},
                             {{{1, 3, 2}, {6, 19}}, {{2, 1, 0}, {3, 7}}, {{1, -1, 0}, {-3, 3}}},
                             {{0, 5}, {0, 5}, {0, 1}}));
}

/// x and y are one: whichever has bounds, the other gets them, and the one whose bound it was
/// rests.
TEST(Presolve, SubstitutesByARowOfTwo)
{
    const std::vector<Interval> some = {{0, 3}, {1, 9}, {-kInf, 2}, {-4, kInf}, {-kInf, kInf}};
    for (const double entry : {2.0, -2.0})
    {
        for (const double cost : {1.0, -1.0})
        {
            for (const Interval& first : some)
            {
                for (const Interval& second : some)
                {
                    const BoundedForm form = MakeForm({cost, 3 * cost, 1, 1},
                                                      {{{entry, 1, 0, 0}, {4, 4}},
                                                       {{1, 2, 1, 1}, {-20, 20}},
                                                       {{1, -1, 1, 3}, {-20, 30}},
                                                       {{2, 1, -1, 1}, {-20, 20}}},
                                                      {first, second, {0, 9}, {0, 9}});
                    SCOPED_TRACE(std::to_string(entry) + ' ' + std::to_string(cost) + ' ' +
                                 std::to_string(first.lower) + ' ' + std::to_string(second.lower));
                    const Presolved solved(form);
                    if (solved.presolve.FoundContradiction())
                        ExpectContradiction(form);
                    else
                        ExpectOptimal(solved);
                }
            }
        }
    }
}

/// An entry that is small in its column is no pivot; the other one of the row is, or none.
TEST(Presolve, SubstitutesByStablePivotsOnly)
{
    const auto form = [](double small, double other)
    {
        return MakeForm({1, 2, 1},
                        {{{small, other, 0}, {1, 1}},
                         {{100, 100, 1}, {5, 900}},
                         {{90, 120, 2}, {6, 900}},
                         {{80, -110, 1}, {-900, 900}},
                         {{0, 70, 1}, {-900, 300}}},
                        {{0, 9}, {0, 9}, {0, 9}});
    };
    EXPECT_LT(Presolved(form(0.5, 30)).Columns(), 3U);
    ExpectOptimal(Presolved(form(0.5, 30)));
    ExpectLeftAlone(form(0.5, 0.25));
}

/// x + y = z with z without bounds, or with bounds that those of x and y imply.
TEST(Presolve, SubstitutesColumnsThatTheRowsHold)
{
    for (const Interval& free : {Interval{-kInf, kInf}, Interval{0, kInf}, Interval{-1, 11}})
    {
        SCOPED_TRACE(free.lower);
        const Presolved solved(MakeForm(
            {1, 2, -1}, {{{1, 1, -1}, {0, 0}}, {{1, 3, 2}, {4, 30}}, {{2, 1, -1}, {-3, 7}}},
            {{0, 5}, {0, 5}, free}));
        ExpectOptimal(solved);
        EXPECT_EQ(solved.basis.columns[2], kBasic);
    }
    // Its own bounds hold z.
    ExpectLeftAlone(MakeForm({1, 2, -1},
                             {{{1, 1, -1}, {0, 0}}, {{1, 3, 2}, {4, 19}}, {{2, 1, -1}, {-3, 7}}},
                             {{0, 5}, {0, 5}, {0, 4}}));
    // No equation says what z is.
    ExpectLeftAlone(MakeForm({1, 2, -1},
                             {{{1, 1, -1}, {0, 1}}, {{1, 3, 2}, {4, 30}}, {{2, 1, -1}, {-3, 7}}},
                             {{0, 5}, {0, 5}, {-kInf, kInf}}));
}

TEST(Presolve, TakesEntriesOutThatCancel)
{
    BoundedForm form = MakeForm({1, 2, -1, 1},
                                {{{1, 1, -1, 0}, {0, 0}},
                                 {{-1, 3, 1, 1}, {-9, 30}},
                                 {{2, 1, -1, 1}, {-3, 7}},
                                 {{1, 2, 0, 1}, {3, 9}}},
                                {{0, 5}, {0, 5}, {-kInf, kInf}, {0, 3}});
    const Presolved solved(form);
    ExpectOptimal(solved);
    EXPECT_LT(solved.presolve.Form().matrix.EntryCount(), 9U);
}

/// A zero that is stored is no entry.
TEST(Presolve, OverlooksStoredZeros)
{
    BoundedForm form =
        MakeForm({1, 2, 3}, {{{1, 7, 0}, {4, 9}}, {{2, 1, 3}, {5, 11}}}, {{0, 5}, {0, 5}, {0, 5}});
    SparseVectors<double> columns = form.matrix.Columns();
    std::ranges::replace(columns.value, 7.0, 0.0);
    form.matrix = SparseMatrix<double>::FromColumns(columns, 2);
    const Presolved solved(form);
    ExpectOptimal(solved);
    EXPECT_LT(solved.Rows(), 2U) << "the first row has one entry";
}

struct Tally
{
    int optima = 0;
    int others = 0;
    int untouched = 0;
};

/// What a form comes to with presolve is what it comes to without, and no basis misses.
void ExpectTheSameOf(const BoundedForm& form, Tally& tally)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    const Presolved solved(form);
    const Optimum direct = SolveDirectly(form);
    if (direct.verdict == SimplexVerdict::Optimal)
    {
        EXPECT_FALSE(solved.presolve.FoundContradiction());
        ++(solved.presolve.Reduces() ? tally.optima : tally.untouched);
        if (solved.presolve.Reduces())
            ExpectOptimal(solved);
    }
    else
    {
        ++tally.others;
        EXPECT_NE(solved.verdict, SimplexVerdict::Optimal);
    }
}

TEST(Presolve, BringsBackOptimalBasesOfSmallForms)
{
    Tally tally;
    for (std::uint64_t seed = 1; seed <= 2000; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const Index rows = static_cast<Index>(random.Between(1, 6));
        const Index columns = static_cast<Index>(random.Between(1, 7));
        ExpectTheSameOf(RandomSmallForm(random, rows, columns), tally);
    }
    EXPECT_GT(tally.optima, 300);
    EXPECT_GT(tally.others, 300);
}

TEST(Presolve, BringsBackOptimalBasesOfSparseForms)
{
    Tally tally;
    for (std::uint64_t seed = 1; seed <= 200; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        ExpectTheSameOf(RandomSparseForm(random, 30, 35), tally);
    }
    EXPECT_GT(tally.optima, 50);
}

}  // namespace
}  // namespace nuv::test
