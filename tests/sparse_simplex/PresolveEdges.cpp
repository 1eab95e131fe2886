/// Where presolve ends: numbers that agree but for rounding, and work that does not pay.
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/Presolve/Presolve.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace nuv::test
{
namespace
{

/// The objective that the simplex comes to behind presolve, without the constant.
double OptimumOf(const BoundedForm& form)
{
    ScalableForm scalable(form);
    SolveControl control;
    const DoubleResult result = SolveInDoubles(scalable, control);
    EXPECT_EQ(result.verdict, SimplexVerdict::Optimal);
    SimplexState state(scalable.Scaled(), result.basis);
    state.Refactorise();
    double sum = 0.0;
    for (Index j = 0; j < form.columns; ++j)
        sum += form.cost[j] * state.value[j] * scalable.Scaled().Scale(j);
    return sum;
}

/// Sides that exclude zero by less than what counts.
TEST(Presolve, TakesAnEmptyRowWhoseSidesAreZeroButForRounding)
{
    for (const Interval& sides : {Interval{1e-10, 2e-10}, Interval{-2e-10, -1e-10}})
    {
        const Presolve presolve(
            MakeForm({1, 1}, {{{1, 1}, {2, 9}}, {{0, 0}, sides}, {{1, -1}, {-3, 3}}}));
        EXPECT_FALSE(presolve.FoundContradiction());
        EXPECT_TRUE(presolve.Reduces());
        EXPECT_LE(presolve.Form().rows, 2U);
    }
    EXPECT_TRUE(
        Presolve(MakeForm({1, 1}, {{{1, 1}, {2, 9}}, {{0, 0}, {1, 2}}})).FoundContradiction());
}

/// A free column whose cost is next to nothing, in a row that lets it fall for ever.
TEST(Presolve, SeesAColumnOfOneRowThatNothingHolds)
{
    for (const double sign : {1.0, -1.0})
    {
        const Presolve presolve(
            MakeForm({1, 2, sign * 1e-10},
                     {{{1, 3, 1}, sign > 0.0 ? Interval{-kInf, 9} : Interval{-9, kInf}},
                      {{2, 1, 0}, {1, 7}},
                      {{1, -1, 0}, {-3, 3}}},
                     {{0, 5}, {0, 5}, {-kInf, kInf}}));
        EXPECT_TRUE(presolve.FoundContradiction());
        EXPECT_FALSE(presolve.Reduces());
    }
}

/// x is fixed where it is a little too small for the row of two, which is more than y may miss.
TEST(Presolve, SeesBoundsThatCrossBehindARowOfTwo)
{
    const double fixed = 1e6 - 1.0 - 1e-5;
    const auto form = [](double x)
    {
        return MakeForm({0, 0, 1, 1},
                        {{{1, 0, 0, 0}, {x, x}},
                         {{1, 1, 0, 0}, {1e6, 1e6}},
                         {{1, 1, 1, 0}, {5, 2e6}},
                         {{1, 2, 0, 1}, {6, 2e6}},
                         {{0, 1, 1, 3}, {1, 19}},
                         {{0, 1, 2, 1}, {1, 19}}},
                        {{0, 2e6}, {0, 1}, {0, 9}, {0, 9}});
    };
    EXPECT_TRUE(Presolve(form(fixed)).FoundContradiction());
    EXPECT_FALSE(Presolve(form(1e6 - 0.5)).FoundContradiction());
}

/// Row k says what x_k is once x_(k+1) is known, and the last row is the only one of one entry; so
/// each pass takes one column. A row with large entries of all keeps pairs from being pivots.
BoundedForm Chain(Index length)
{
    std::vector<double> cost(length, 0.0);
    std::vector<DenseRow> rows(std::size_t{length} + 1, {std::vector<double>(length, 0.0), {1, 1}});
    for (Index k = 0; k < length; ++k)
    {
        rows[k].coefficients[k] = 1.0;
        if (k + 1 < length)
            rows[k].coefficients[k + 1] = -1.0;
        rows[k].bounds = k + 1 < length ? Interval{0, 0} : Interval{3, 3};
        rows[length].coefficients[k] = k % 2 == 0 ? 1000.0 : -900.0;
    }
    rows[length].bounds = {-1e7, 1e7};
    cost[0] = 1.0;
    return MakeForm(cost, rows, std::vector<Interval>(length, {-500, 500}));
}

TEST(Presolve, EndsAfterSoManyPasses)
{
    const BoundedForm shorter = Chain(8);
    EXPECT_EQ(Presolve(shorter).Form().columns, 0U);
    const BoundedForm longer = Chain(60);
    const Presolve presolve(longer);
    EXPECT_TRUE(presolve.Reduces());
    EXPECT_GT(presolve.Form().columns, 0U);
    EXPECT_NEAR(OptimumOf(longer), 3.0, 1e-9);
}

/// All columns of one row are slacks of it: each that goes has the whole row looked at. What that
/// leaves is not looked at again, although it would go.
TEST(Presolve, EndsWhenWorkDoesNotPay)
{
    constexpr Index kSlacks = 400;
    const BoundedForm chain = Chain(8);
    EXPECT_EQ(Presolve(chain).Form().columns, 0U);
    std::vector<double> cost(chain.columns + kSlacks, 0.0);
    cost[0] = 1.0;
    std::vector<Interval> bounds(chain.columns + kSlacks, {0, 1});
    std::fill_n(bounds.begin(), chain.columns, Interval{-500, 500});
    std::vector<DenseRow> rows(std::size_t{chain.rows} + 1,
                               {std::vector<double>(chain.columns + kSlacks, 0.0), {}});
    for (Index i = 0; i < chain.rows; ++i)
    {
        for (const auto [column, entry] : chain.matrix.Row(i))
            rows[i].coefficients[column] = entry;
        rows[i].bounds = {chain.rowLower[i], chain.rowUpper[i]};
    }
    std::fill_n(rows.back().coefficients.begin() + chain.columns, kSlacks, 1.0);
    rows.back().bounds = {100, 110};
    const BoundedForm form = MakeForm(cost, rows, bounds);
    const Presolve presolve(form);
    EXPECT_TRUE(presolve.Reduces());
    EXPECT_GT(presolve.Form().columns, 0U);
    EXPECT_NEAR(OptimumOf(form), 3.0, 1e-9);
}

/// The reduced form has no more pivots than the original.
TEST(Presolve, IsFollowedByNothingAfterAStop)
{
    Random random(1);
    BoundedForm form = RandomSparseForm(random, 40, 50);
    while (!Presolve(form).Reduces())
        form = RandomSparseForm(random, 40, 50);
    SolveLimits limits;
    limits.doublePivots = 1;
    SolveControl control(limits);
    ScalableForm scalable(form);
    const DoubleResult result = SolveInDoubles(scalable, control);
    EXPECT_EQ(result.verdict, SimplexVerdict::Stopped);
    EXPECT_EQ(control.Pivots(Stage::Double), 1U);
    Basis fitted = result.basis;
    FitBasis(form, fitted);
    EXPECT_EQ(fitted, result.basis);
}

}  // namespace
}  // namespace nuv::test
