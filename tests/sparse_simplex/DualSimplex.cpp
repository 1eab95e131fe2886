/// The dual simplex in doubles by itself: reduced costs of the wrong sign, violations repaired, and
/// those that nothing repairs.
#include "Nuv/SparseSimplex/DualSimplex.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

namespace nuv::test
{
namespace
{

struct Dual
{
    explicit Dual(const BoundedForm& form, SolveLimits limits = {})
        : scaled(form), state(scaled, SlackBasis(form)), control(std::move(limits))
    {
        DualSimplex dual(state, control);
        verdict = dual.Run();
        shifted = dual.CostsWereShifted();
    }
    [[nodiscard]] double Value(Index variable) const
    {
        return state.value[variable] * scaled.Scale(variable);
    }

    ScaledForm scaled;
    SimplexState state;
    SolveControl control;
    SimplexVerdict verdict = SimplexVerdict::Stopped;
    bool shifted = false;
};

/// minimise x + 2 y with x + y >= 3: x is the cheaper way up, per unit of the row.
TEST(DualSimplex, ReachesAViolatedRowByTheLeastRatio)
{
    const Dual run(MakeForm({1, 2}, {{{1, 1}, {3, kInf}}}));
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_FALSE(run.shifted);
    EXPECT_EQ(run.control.Pivots(Stage::Double), 1U);
    EXPECT_EQ(run.Value(0), 3.0);
    EXPECT_EQ(run.Value(1), 0.0);
}

TEST(DualSimplex, RepairsAnUpperBoundToo)
{
    const Dual run(MakeForm({1, 2}, {{{-1, -1}, {-kInf, -3}}}));
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_EQ(run.Value(0), 3.0);
    EXPECT_EQ(run.state.status[2], BasisStatus::AtUpper);
}

/// Also where its factors have been updated since they were made.
TEST(DualSimplex, GoesOnFromFactorsThatStand)
{
    const BoundedForm form = MakeForm({1, 2}, {{{1, 1}, {3, kInf}}, {{1, -1}, {-kInf, 1}}});
    const ScaledForm scaled(form);
    SimplexState state(scaled, SlackBasis(form));
    SolveControl control{SolveLimits{}};
    state.Refactorise();
    DualSimplex dual(state, control);
    EXPECT_EQ(dual.Run(DualSimplex::Start::Factorised), SimplexVerdict::Optimal);
    const Dual other(form);
    EXPECT_EQ(state.value, other.state.value);
    state.lower[form.Logical(0)] = state.upper[form.Logical(1)] = 0.0;
    state.SetToBound(form.Logical(0));
    state.SetToBound(form.Logical(1));
    state.ComputeValues();
    EXPECT_EQ(dual.Run(DualSimplex::Start::Factorised), SimplexVerdict::Optimal);
    EXPECT_EQ(state.value, std::vector<double>(4, 0.0));
}

TEST(DualSimplex, FlipsABoxedVariableOfWrongReducedCost)
{
    const Dual run(MakeForm({-1, 1}, {{{1, 1}, {3, kInf}}}, {{0, 1}, {0, kInf}}));
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_FALSE(run.shifted);
    EXPECT_EQ(run.control.Pivots(Stage::Double), 1U);
    EXPECT_EQ(run.state.status[0], BasisStatus::AtUpper);
    EXPECT_EQ(run.Value(1), 2.0);
}

/// The row is satisfied once x is at its other bound, and no variable has to enter.
TEST(DualSimplex, KnowsTheValuesThatAFlipChanges)
{
    const Dual run(MakeForm({-1, 1}, {{{1, 1}, {1, kInf}}}, {{0, 1}, {0, kInf}}));
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_EQ(run.control.Pivots(Stage::Double), 0U);
    EXPECT_EQ(run.Value(2), 1.0);
}

TEST(DualSimplex, ShiftsTheCostOfAnyOtherVariable)
{
    const BoundedForm form =
        MakeForm({-1, 1}, {{{1, 1}, {3, kInf}}, {{1, 0}, {-kInf, 9}}}, {{0, kInf}, {0, kInf}});
    Dual run(form);
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal) << "for the costs as shifted";
    EXPECT_TRUE(run.shifted);
    EXPECT_NE(run.state.cost, run.scaled.cost);
    // Feasible, which is what it is for; the primal simplex goes on with the true costs.
    EXPECT_GE(run.Value(0) + run.Value(1), 3.0);
    run.state.cost = run.scaled.cost;
    PrimalSimplex primal(run.state, run.control);
    EXPECT_EQ(primal.Run(false), SimplexVerdict::Optimal);
    EXPECT_EQ(run.Value(0), 9.0);
}

TEST(DualSimplex, FindsThatNoVariableCanRepairAViolation)
{
    EXPECT_EQ(Dual(MakeForm({1, 1}, {{{1, 1}, {3, kInf}}}, {{0, 1}, {0, 1}})).verdict,
              SimplexVerdict::Infeasible);
    EXPECT_EQ(Dual(MakeForm({1}, {{{-1}, {1, kInf}}})).verdict, SimplexVerdict::Infeasible);
}

/// A fixed variable has a pivot of any size and cannot move.
TEST(DualSimplex, NeverEntersAFixedVariable)
{
    const Dual run(MakeForm({0, 5}, {{{9, 1}, {3, kInf}}}, {{0, 0}, {0, kInf}}));
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_EQ(run.Value(1), 3.0);
    EXPECT_EQ(run.state.status[0], BasisStatus::AtLower);
}

TEST(DualSimplex, AFreeVariableEntersFirst)
{
    const Dual run(MakeForm({1, 0}, {{{1, 1}, {3, 4}}}, {{0, kInf}, {-kInf, kInf}}));
    EXPECT_EQ(run.verdict, SimplexVerdict::Optimal);
    EXPECT_EQ(run.state.status[1], BasisStatus::Basic);
    EXPECT_EQ(run.Value(0), 0.0);
}

TEST(DualSimplex, StopsBeforeThePivotThatIsOneTooMany)
{
    SolveLimits limits;
    limits.doublePivots = 0;
    const Dual run(MakeForm({1, 2}, {{{1, 1}, {3, kInf}}}), limits);
    EXPECT_EQ(run.verdict, SimplexVerdict::Stopped);
    EXPECT_EQ(run.control.Reason(), StopReason::PivotLimit);
}

/// Where the primal method pushed bounds apart, they are taken back and what is violated repaired.
/// The matrix by rows says 1 where that by columns says 3: no pivot there is to be trusted, and
/// fresh factors do not help.
TEST(DualSimplex, GivesUpWhereRowAndColumnDisagree)
{
    std::vector<DenseRow> rows(8, {{1, 1}, {-kInf, 99}});
    rows[0].bounds = {3, kInf};
    const BoundedForm form = MakeForm({1, 2}, rows);
    ScaledForm scaled(form);
    auto matrix = std::make_shared<ScaledMatrix>(*scaled.matrix);
    for (double& entry : matrix->byVariable.value)
        entry *= entry > 0 ? 3.0 : 1.0;
    scaled.matrix = matrix;
    SimplexState state(scaled, SlackBasis(form));
    SolveControl control;
    DualSimplex dual(state, control);
    EXPECT_EQ(dual.Run(), SimplexVerdict::Numerical);
    EXPECT_EQ(control.Pivots(Stage::Double), 0U);
}

TEST(DoubleSimplex, TakesBackTheBoundsThatItPushed)
{
    const BoundedForm form = DegenerateCone(60);
    const ScaledForm scaled(form);
    SimplexState state(scaled, SlackBasis(form));
    SolveControl control;
    EXPECT_EQ(SolveInDoubles(state, control), SimplexVerdict::Optimal);
    EXPECT_EQ(state.lower, scaled.lower);
    EXPECT_EQ(state.upper, scaled.upper);
    EXPECT_EQ(state.cost, scaled.cost);
    for (Index v = 0; v < form.Variables(); ++v)
    {
        if (state.status[v] == BasisStatus::AtLower)
        {
            EXPECT_EQ(state.value[v], scaled.lower[v]);
        }
        EXPECT_GE(state.value[v], state.lower[v] - 1e-8);
        EXPECT_LE(state.value[v], state.upper[v] + 1e-8);
    }
}

TEST(DoubleSimplex, EndsWithinTheTrueBounds)
{
    int optima = 0;
    for (std::uint64_t seed = 1; seed <= 100; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form = RandomSparseForm(random, 25, 30);
        const ScaledForm scaled(form);
        SimplexState state(scaled, SlackBasis(form));
        SolveControl control;
        if (SolveInDoubles(state, control) != SimplexVerdict::Optimal)
            continue;
        ++optima;
        EXPECT_EQ(state.lower, scaled.lower);
        EXPECT_EQ(state.upper, scaled.upper);
        EXPECT_EQ(state.cost, scaled.cost);
        for (Index v = 0; v < form.Variables(); ++v)
        {
            EXPECT_GE(state.value[v], state.lower[v] - 1e-7);
            EXPECT_LE(state.value[v], state.upper[v] + 1e-7);
        }
    }
    EXPECT_GT(optima, 20);
}

TEST(DoubleSimplex, TellsAnOptimalBasisFromOthers)
{
    for (const double side : {3.0, -3.0})
    {
        const BoundedForm form = MakeForm({-1, -1}, {{{1, 1}, {-kInf, 4}}, {{1, 3}, {side, kInf}}});
        const ScaledForm scaled(form);
        SimplexState state(scaled, SlackBasis(form));
        state.Refactorise();
        EXPECT_FALSE(IsOptimal(state)) << (side > 0.0 ? "a side is violated" : "both improve");
        SolveControl control;
        ASSERT_EQ(SolveInDoubles(state, control), SimplexVerdict::Optimal);
        EXPECT_TRUE(IsOptimal(state));
    }
}

/// minimise -x - y with x + y <= 4, x - y >= -2, x + 3 y >= 3: no bound above keeps x and y, so the
/// slack basis is right neither way.
TEST(DualSimplex, FindsADualFeasibleBasisInAFirstPhase)
{
    const BoundedForm form =
        MakeForm({-1, -1}, {{{1, 1}, {-kInf, 4}}, {{1, -1}, {-2, kInf}}, {{1, 3}, {3, kInf}}});
    const ScaledForm scaled(form);
    SimplexState state(scaled, SlackBasis(form));
    SolveControl control;
    DualSimplex dual(state, control);
    ASSERT_EQ(dual.Run(DualSimplex::Start::Perturbed), SimplexVerdict::Optimal);
    // The perturbation is far smaller than the costs, so the basis is optimal for these too.
    double objective = 0.0;
    for (Index v = 0; v < form.columns; ++v)
        objective += form.cost[v] * state.value[v] * scaled.Scale(v);
    EXPECT_NEAR(objective, -4.0, 1e-9);
    state.cost = scaled.cost;
    PrimalSimplex primal(state, control);
    const std::uint64_t before = control.Pivots(Stage::Double);
    EXPECT_EQ(primal.Run(false), SimplexVerdict::Optimal);
    EXPECT_LE(control.Pivots(Stage::Double), before + 1);
}

/// x + y >= 5 where x and y end at 1: no variable is left to bring the row to 5.
TEST(DualSimplex, SaysWhichVariableIsBlocked)
{
    const BoundedForm form =
        MakeForm({1, 1}, {{{1, -1}, {-3, kInf}}, {{1, 1}, {5, kInf}}}, {{0, 1}, {0, 1}});
    ScalableForm scalable(form);
    SolveControl control;
    const DoubleResult result = SolveInDoubles(scalable, SlackBasis(form), control);
    EXPECT_EQ(result.verdict, SimplexVerdict::Infeasible);
    ASSERT_NE(result.blocked.variable, kNoIndex);
    EXPECT_EQ(result.blocked.basis[result.blocked.variable], BasisStatus::Basic);
    const BoundedForm feasible = MakeForm({1, 1}, {{{1, 1}, {2, kInf}}});
    ScalableForm other(feasible);
    EXPECT_EQ(SolveInDoubles(other, SlackBasis(feasible), control).blocked.variable, kNoIndex);
}

/// The costs that a perturbed run leaves behind differ from the form's, by little.
TEST(DualSimplex, PerturbsCostsByLittleAndTheSameWayEachTime)
{
    const BoundedForm form = MakeForm({1, 2, 0}, {{{1, 1, 1}, {3, kInf}}}, {{0, kInf}, {0, 5}, {}});
    const ScaledForm scaled(form);
    std::vector<std::vector<double>> costs;
    for (int run = 0; run < 2; ++run)
    {
        SimplexState state(scaled, SlackBasis(form));
        SolveLimits limits;
        limits.doublePivots = 0;
        SolveControl control(limits);
        DualSimplex dual(state, control);
        (void)dual.Run(DualSimplex::Start::Perturbed);
        EXPECT_TRUE(dual.CostsWereShifted());
        costs.push_back(state.cost);
    }
    EXPECT_EQ(costs[0], costs[1]);
    for (Index v = 0; v < 2; ++v)
    {
        EXPECT_GT(costs[0][v], scaled.cost[v]);
        EXPECT_LT(costs[0][v], scaled.cost[v] + 1e-4);
    }
}

}  // namespace
}  // namespace nuv::test
