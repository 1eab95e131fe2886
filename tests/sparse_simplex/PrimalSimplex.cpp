/// The primal simplex in doubles by itself: its phases, bound flips, what it does where it stalls,
/// and what it gives up.
#include "Nuv/SparseSimplex/PrimalSimplex.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

namespace nuv::test
{
namespace
{

/// A run from a basis, and what it leaves.
struct Primal
{
    explicit Primal(const BoundedForm& form, bool perturb = false)
        : Primal(form, SlackBasis(form), perturb)
    {
    }
    Primal(const BoundedForm& form, const Basis& start, bool perturb)
        : scaled(form), state(scaled, start)
    {
        PrimalSimplex primal(state, control);
        verdict = primal.Run(perturb);
        moved = primal.BoundsWereMoved();
    }
    [[nodiscard]] double Value(Index variable) const
    {
        return state.value[variable] * scaled.Scale(variable);
    }
    [[nodiscard]] double Objective(const BoundedForm& form) const
    {
        double sum = 0.0;
        for (Index j = 0; j < form.columns; ++j)
            sum += form.cost[j] * Value(j);
        return sum;
    }
    [[nodiscard]] std::uint64_t Pivots() const
    {
        return control.Pivots(Stage::Double);
    }

    ScaledForm scaled;
    SimplexState state;
    SolveControl control;
    SimplexVerdict verdict = SimplexVerdict::Stopped;
    bool moved = false;
};

TEST(PrimalSimplex, GoesFromABoundToTheOtherWithoutAPivot)
{
    const BoundedForm form = MakeForm({-1, -1}, {{{1, 1}, {-kInf, 5}}}, {{0, 1}, {0, 2}});
    const Primal run(form);
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_EQ(run.Pivots(), 2U);
    EXPECT_EQ(run.state.status[0], BasisStatus::AtUpper);
    EXPECT_EQ(run.state.status[1], BasisStatus::AtUpper);
    EXPECT_EQ(run.state.head, (std::vector<Index>{2})) << "the basis is what it was";
    EXPECT_EQ(run.Value(2), 3.0);
}

/// The step ends where the row stops it, before the other bound.
TEST(PrimalSimplex, PivotsWhereARowBlocksBeforeTheOtherBound)
{
    const BoundedForm form = MakeForm({-1}, {{{1}, {-kInf, 5}}}, {{0, 8}});
    const Primal run(form);
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_EQ(run.state.status[0], BasisStatus::Basic);
    EXPECT_EQ(run.state.status[1], BasisStatus::AtUpper);
    EXPECT_EQ(run.Value(0), 5.0);
}

TEST(PrimalSimplex, PutsColumnsOfNoRowOnTheirBetterBoundsWithoutAPivot)
{
    const BoundedForm form =
        MakeForm({-1, 2, 0, -3}, {{{0, 0, 1, 0}, {0, 1}}}, {{0, 4}, {-2, 7}, {0, 1}, {0, 9}});
    const Primal run(form);
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_EQ(run.Pivots(), 0U);
    EXPECT_EQ(run.Value(0), 4.0);
    EXPECT_EQ(run.Value(1), -2.0);
    EXPECT_EQ(run.Value(3), 9.0);
}

TEST(PrimalSimplex, FindsThatAnObjectiveHasNoEnd)
{
    const Primal run(MakeForm({-1, 0}, {{{1, -1}, {-kInf, 5}}}));
    EXPECT_EQ(run.verdict, SimplexVerdict::Unbounded);
}

TEST(PrimalSimplex, FindsThatThereIsNoPoint)
{
    const Primal run(MakeForm({0, 0}, {{{1, 1}, {3, kInf}}}, {{0, 1}, {0, 1}}));
    EXPECT_EQ(run.verdict, SimplexVerdict::Infeasible);
}

/// The first phase goes past breakpoints: x enters for three violated rows at once and is stopped
/// by the last of them, where the sum of violations begins to grow.
TEST(PrimalSimplex, WalksThroughBreakpointsWhileTheSumOfViolationsFalls)
{
    const BoundedForm form =
        MakeForm({1}, {{{1}, {1, kInf}}, {{1}, {2, kInf}}, {{1}, {4, kInf}}}, {{0, kInf}});
    const Primal run(form);
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_EQ(run.Pivots(), 1U);
    EXPECT_EQ(run.Value(0), 4.0);
}

/// x, the better of the two, would have to go to 3 / 2 to satisfy the row.
TEST(PrimalSimplex, MeetsTheOtherBoundInTheFirstPhaseToo)
{
    const BoundedForm form =
        MakeForm({0, 1}, {{{4, 1}, {6, kInf}}, {{1, 4}, {-kInf, 60}}}, {{0, 1}, {0, kInf}});
    const Primal run(form);
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_EQ(run.Pivots(), 2U);
    EXPECT_EQ(run.state.status[0], BasisStatus::AtUpper);
    EXPECT_EQ(run.Value(1), 2.0);
}

TEST(PrimalSimplex, EndsAtTheSameOptimumFromAnyBasis)
{
    int compared = 0;
    for (std::uint64_t seed = 1; seed <= 120; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form = RandomSparseForm(random, 10, 14);
        const Primal slack(form);
        Basis start = SlackBasis(form);
        for (Index j = 0; j < 8; ++j)
            start.columns[j] = BasisStatus::Basic;
        FitBasis(form, start);
        const Primal other(form, start, true);
        if (slack.verdict == SimplexVerdict::Numerical ||
            other.verdict == SimplexVerdict::Numerical)
            continue;
        ASSERT_EQ(slack.verdict, other.verdict);
        if (slack.verdict != SimplexVerdict::Optimal)
            continue;
        ++compared;
        const double objective = slack.Objective(form);
        EXPECT_NEAR(other.Objective(form), objective, 1e-4 * (1.0 + std::fabs(objective)));
    }
    EXPECT_GT(compared, 30);
}

TEST(PrimalSimplex, PushesBoundsApartWhereItStallsAndOnlyIfItMay)
{
    const BoundedForm form = DegenerateCone(60);
    const Primal strict(form, false);
    EXPECT_EQ(strict.verdict, SimplexVerdict::Optimal);
    EXPECT_FALSE(strict.moved);
    EXPECT_EQ(strict.state.lower, strict.scaled.lower);
    EXPECT_EQ(strict.state.upper, strict.scaled.upper);
    const Primal perturbed(form, true);
    EXPECT_EQ(perturbed.verdict, SimplexVerdict::Optimal);
    EXPECT_TRUE(perturbed.moved);
    // Outwards and by little, also where a bound is 0.
    int pushedFromZero = 0;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        EXPECT_LE(perturbed.state.lower[v], perturbed.scaled.lower[v] + 1e-9);
        EXPECT_GE(perturbed.state.upper[v], perturbed.scaled.upper[v] - 1e-9);
        EXPECT_GE(perturbed.state.lower[v], perturbed.scaled.lower[v] - 1e-4);
        EXPECT_LE(perturbed.state.upper[v], perturbed.scaled.upper[v] + 1e-2);
        if (perturbed.scaled.upper[v] == 0.0 && perturbed.state.upper[v] > 0.0)
            ++pushedFromZero;
    }
    EXPECT_GT(pushedFromZero, 0);
    EXPECT_NEAR(perturbed.Objective(form), strict.Objective(form), 1e-2);
}

/// Of a column whose entries are all too small to pivot the reduced cost may still be large, being
/// their sum: the column is left alone for the others, and what is not known is not called
/// infeasible.
TEST(PrimalSimplex, BansAColumnThatHasNoPivot)
{
    const Index rows = 200;
    std::vector<DenseRow> dense(rows, {{1, 0}, {1, 2}});
    dense[0].coefficients[1] = 1;
    const BoundedForm form = MakeForm({0, 0}, dense, {{0, kInf}, {0, 1}});
    ScaledForm scaled(form);
    auto matrix = std::make_shared<ScaledMatrix>(*scaled.matrix);
    const auto entry = [](Index column) { return column == 0 ? 5e-10 : 2e-8; };
    for (Index j = 0; j < form.columns; ++j)
    {
        for (std::size_t at = matrix->byVariable.start[j]; at < matrix->byVariable.start[j + 1];
             ++at)
            matrix->byVariable.value[at] = entry(j);
    }
    for (std::size_t at = 0; at < matrix->byRow.value.size(); ++at)
        matrix->byRow.value[at] = entry(matrix->byRow.index[at]);
    scaled.matrix = matrix;
    SimplexState state(scaled, SlackBasis(form));
    SolveControl control;
    PrimalSimplex primal(state, control);
    EXPECT_EQ(primal.Run(true), SimplexVerdict::Numerical);
    EXPECT_EQ(control.Pivots(Stage::Double), 1U);
    EXPECT_EQ(state.status[0], BasisStatus::AtLower);
    EXPECT_EQ(state.status[1], BasisStatus::AtUpper);
}

TEST(PrimalSimplex, StopsBeforeThePivotThatIsOneTooMany)
{
    const BoundedForm form = DegenerateCone(20);
    SolveLimits limits;
    limits.doublePivots = 5;
    SolveControl control(limits);
    const ScaledForm scaled(form);
    SimplexState state(scaled, SlackBasis(form));
    PrimalSimplex primal(state, control);
    EXPECT_EQ(primal.Run(true), SimplexVerdict::Stopped);
    EXPECT_EQ(control.Pivots(Stage::Double), 5U);
}

}  // namespace
}  // namespace nuv::test
