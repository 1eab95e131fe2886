/// Boxes that rows imply: where they are found, where they are not, and that no point and no
/// verdict of the simplex rests on one.
#include "Nuv/SparseSimplex/Presolve/ImpliedBounds.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace nuv::test
{
namespace
{

struct Boxed
{
    explicit Boxed(const BoundedForm& form) : scaled(form), lower(scaled.lower), upper(scaled.upper)
    {
        BoxImplied(scaled, lower, upper);
    }
    [[nodiscard]] double Lower(Index variable) const
    {
        return lower[variable] * scaled.Scale(variable);
    }
    [[nodiscard]] double Upper(Index variable) const
    {
        return upper[variable] * scaled.Scale(variable);
    }

    ScaledForm scaled;
    std::vector<double> lower;
    std::vector<double> upper;
};

void ExpectUnchanged(const BoundedForm& form)
{
    const Boxed boxed(form);
    EXPECT_EQ(boxed.lower, boxed.scaled.lower);
    EXPECT_EQ(boxed.upper, boxed.scaled.upper);
}

/// x + y <= 4 with both at least 0.
TEST(ImpliedBounds, OfARowWhoseOtherColumnsHaveBounds)
{
    const Boxed boxed(MakeForm({0, 0}, {{{1, 1}, {-kInf, 4}}}));
    for (const Index column : {0U, 1U})
    {
        EXPECT_EQ(boxed.Lower(column), 0.0);
        EXPECT_GT(boxed.Upper(column), 4.0);
        EXPECT_LT(boxed.Upper(column), 4.2);
    }
}

/// y - x >= -3 holds x once z <= 5 and y <= z hold y; the last row comes first.
TEST(ImpliedBounds, OfOneRowGiveThoseOfOthers)
{
    const Boxed boxed(MakeForm(
        {0, 0, 0}, {{{-1, 1, 0}, {-3, kInf}}, {{0, 1, -1}, {-kInf, 0}}, {{0, 1, 1}, {-kInf, 5}}},
        {{-kInf, 1}, {-kInf, kInf}, {2, kInf}}));
    // Nothing holds x and y from below, and z only by y.
    EXPECT_EQ(boxed.Lower(0), -kInf);
    EXPECT_EQ(boxed.Upper(1), kInf);
    const Boxed held(MakeForm(
        {0, 0, 0}, {{{-1, 1, 0}, {-3, kInf}}, {{0, 1, -1}, {-kInf, 0}}, {{0, 1, 1}, {-kInf, 5}}}));
    EXPECT_GT(held.Upper(0), 8.0);
    EXPECT_LT(held.Upper(0), 8.5);
    EXPECT_GT(held.Upper(1), 5.0);
    EXPECT_GT(held.Upper(2), 5.0);
}

/// The rows bound a free column from above alone, or bound what has bounds.
TEST(ImpliedBounds, AreNoneWhereOneSideStaysOpen)
{
    ExpectUnchanged(MakeForm({0, 0}, {{{1, 1}, {-kInf, 4}}}, {{-kInf, kInf}, {0, 1}}));
    ExpectUnchanged(MakeForm({0, 0}, {{{1, 1}, {-kInf, 4}}}, {{0, 9}, {0, 1}}));
    ExpectUnchanged(MakeForm({0, 0}, {{{1, -1}, {-kInf, 4}}}));
}

TEST(ImpliedBounds, AreNoneWhereTheyWouldBeTooLarge)
{
    ExpectUnchanged(MakeForm({0, 0}, {{{1, 1}, {-kInf, 4e7}}}));
}

/// Optimal points of many costs, each a vertex: none may rest on a bound that was added.
TEST(ImpliedBounds, AreBeyondEveryPoint)
{
    Random random(5);
    int added = 0;
    for (int trial = 0; trial < 200; ++trial)
    {
        const BoundedForm form = RandomSparseForm(random, 6, 8);
        const Boxed boxed(form);
        SimplexState state(boxed.scaled, SlackBasis(form));
        SolveControl control;
        if (SolveInDoubles(state, control) != SimplexVerdict::Optimal)
            continue;
        for (Index j = 0; j < form.columns; ++j)
        {
            const bool hasNewLower = boxed.lower[j] != boxed.scaled.lower[j];
            const bool hasNewUpper = boxed.upper[j] != boxed.scaled.upper[j];
            EXPECT_GT(state.value[j], hasNewLower ? boxed.lower[j] + 1e-3 : -kInf);
            EXPECT_LT(state.value[j], hasNewUpper ? boxed.upper[j] - 1e-3 : kInf);
            added += hasNewUpper ? 1 : 0;
        }
    }
    EXPECT_GT(added, 100);
}

/// Whether a nonbasic variable could bring the blocked one nearer to the bound that it misses, by
/// the bounds of the form alone.
bool IsBlocked(const BoundedForm& form, const BlockedRow& blocked)
{
    const ScaledForm scaled(form);
    SimplexState state(scaled, blocked.basis);
    state.Refactorise();
    for (Index k = 0; k < form.rows; ++k)
    {
        const Index leaving = state.head[k];
        if (leaving != blocked.variable)
            continue;
        const double sign = state.value[leaving] < state.lower[leaving] ? -1.0 : 1.0;
        WorkVector row;
        WorkVector priced;
        state.SolveUnitRow(k, row);
        state.PriceRow(row, priced);
        for (const Index v : priced.touched)
        {
            const double entry = sign * priced.value[v];
            if (state.side[v] != 0 &&
                (state.side[v] == 2 ? std::fabs(entry) : state.side[v] * entry) > 1e-9)
                return false;
        }
        return true;
    }
    return false;
}

TEST(DoubleSimplex, SaysOfTheFormItselfWhichVariableIsBlocked)
{
    Random random(6);
    int infeasible = 0;
    for (int trial = 0; trial < 400; ++trial)
    {
        BoundedForm form = RandomSmallForm(random, 6, 4);
        for (Index j = 0; j < form.columns; ++j)
            form.cost[j] = -1.0;
        ScalableForm scalable(form);
        SolveControl control;
        const DoubleResult result = SolveInDoubles(scalable, SlackBasis(form), control);
        if (result.blocked.variable == kNoIndex)
            continue;
        ++infeasible;
        EXPECT_TRUE(IsBlocked(form, result.blocked)) << trial;
    }
    EXPECT_GT(infeasible, 20);
}

}  // namespace
}  // namespace nuv::test
