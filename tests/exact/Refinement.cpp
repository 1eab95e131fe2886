/// What leads from a basis that doubles take for final to one that is: the dual simplex, the look
/// through the magnifying glass, and the programs whose optima prove that there is none.
#include "tests/exact/Certified.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include "Nuv/Exact/Auxiliary.hpp"
#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/DualSimplex.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace nuv::test::refinement
{
namespace
{

CertifiedResult Solve(const BoundedForm& form)
{
    return Certified(form);
}

/// Cuts a tenth off the room above the lower bound of a basic column, which the basis then
/// violates.
BoundedForm Tightened(const BoundedForm& form, const CertifiedResult& proof)
{
    BoundedForm tight = form;
    for (Index j = 0; j < form.columns; ++j)
    {
        const double room = proof.record.value[j] - form.columnLower[j];
        if (proof.record.basis.columns[j] != BasisStatus::Basic || !std::isfinite(room) ||
            room < 1e-3)
            continue;
        tight.columnUpper[j] = proof.record.value[j] - 0.1 * room;
        break;
    }
    return tight;
}

TEST(DualSimplex, RepairsBoundsThatWereTightened)
{
    int repaired = 0;
    for (std::uint64_t seed = 1; seed <= 80; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form = RandomSparseForm(random, 12, 18);
        const CertifiedResult loose = Solve(form);
        if (loose.certificate.status != Status::Optimal)
            continue;
        const BoundedForm tight = Tightened(form, loose);
        const CertifiedResult expected = Solve(tight);
        const ScaledForm scaled(tight);
        SimplexState state(scaled, loose.record.basis);
        SolveControl control;
        DualSimplex dual(state, control);
        const SimplexVerdict verdict = dual.Run();
        if (expected.certificate.status == Status::Infeasible)
        {
            EXPECT_EQ(verdict, SimplexVerdict::Infeasible);
            continue;
        }
        ASSERT_EQ(verdict, SimplexVerdict::Optimal);
        repaired += control.Pivots(Stage::Double) > 0 ? 1 : 0;
        double objective = tight.constant;
        for (Index j = 0; j < tight.columns; ++j)
            objective += tight.cost[j] * state.value[j] * scaled.Scale(j);
        EXPECT_NEAR(objective, expected.record.objectiveValue,
                    1e-6 * (1.0 + std::fabs(expected.record.objectiveValue)));
    }
    EXPECT_GT(repaired, 10);
}

/// maximise x + (1 + 2^-50) y, x + y <= 1: in doubles both corners are as good.
TEST(Refinement, PricesADifferenceBelowTheTolerance)
{
    const BoundedForm form = MakeForm({-1.0, -1.0 - 0x1p-50}, {{{1, 1}, {-kInf, 1}}});
    Basis start = SlackBasis(form);
    start.columns[0] = BasisStatus::Basic;
    start.rows[0] = BasisStatus::AtUpper;
    const CertifiedResult proof = Certified(form, &start);
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    EXPECT_TRUE(proof.record.proved);
    EXPECT_EQ(proof.record.value[1], 1.0);
    EXPECT_EQ(proof.record.stages[Stage::Double].pivots, 1U);
    EXPECT_EQ(proof.record.stages[Stage::Exact].pivots, 0U);
}

/// x = y + 2^-50 at x = 1: y is above its bound 1 - 2^-49 by less than the tolerance. With a cost
/// of y the basis has a price on the wrong side; without one it is dual feasible, and there is
/// nothing to measure prices by.
TEST(Refinement, RepairsAViolationBelowTheTolerance)
{
    for (const double cost : {-1.0, 0.0})
    {
        SCOPED_TRACE(cost);
        const BoundedForm form = MakeForm({0, cost, 1}, {{{1, -1, -1}, {0x1p-50, 0x1p-50}}},
                                          {{1, 1}, {0, 1 - 0x1p-49}, {0, 5}});
        Basis start = SlackBasis(form);
        start.columns[1] = BasisStatus::Basic;
        start.rows[0] = BasisStatus::AtLower;
        const CertifiedResult proof = Certified(form, &start);
        ASSERT_EQ(proof.certificate.status, Status::Optimal);
        EXPECT_TRUE(proof.record.proved);
        EXPECT_EQ(proof.record.value[2], 0x1p-50);
        EXPECT_EQ(proof.record.stages[Stage::Double].pivots, 1U);
        EXPECT_EQ(proof.record.stages[Stage::Exact].pivots, 0U);
    }
}

/// x = y + z + w + 2^-50 at x = 1, and z has room but for 2^-90 of what y has to give: each look
/// sees one violation.
TEST(Refinement, RepairsAViolationThatAnotherHides)
{
    const BoundedForm form = MakeForm({0, -1, 1, 2}, {{{1, -1, -1, -1}, {0x1p-50, 0x1p-50}}},
                                      {{1, 1}, {0, 1 - 0x1p-49}, {0, 0x1p-50 - 0x1p-90}, {0, 5}});
    Basis start = SlackBasis(form);
    start.columns[1] = BasisStatus::Basic;
    start.rows[0] = BasisStatus::AtLower;
    const CertifiedResult proof = Certified(form, &start);
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    EXPECT_TRUE(proof.record.proved);
    EXPECT_EQ(proof.record.value[3], 0x1p-90);
    EXPECT_EQ(proof.record.stages[Stage::Exact].pivots, 0U);
}

/// No variable is violated as doubles see it, so that the elastic form has no column to add.
TEST(Refinement, FindsAContradictionBelowTheTolerance)
{
    const BoundedForm form =
        MakeForm({1, 0}, {{{1, 1}, {1 + 0x1p-50, kInf}}, {{1, 1}, {-kInf, 1}}}, {{0, 9}, {0, 9}});
    const CertifiedResult proof = Solve(form);
    EXPECT_EQ(proof.certificate.status, Status::Infeasible);
    EXPECT_TRUE(proof.record.proved);
}

TEST(Auxiliary, ElasticColumnsMakeTheBasisFeasible)
{
    const BoundedForm form =
        MakeForm({1, 1}, {{{1, 1}, {6, kInf}}, {{1, -1}, {-kInf, -1}}}, {{0, 2}, {0, 3}});
    ScalableForm scalable(form);
    const AuxiliaryForm elastic = ElasticForm(scalable, SlackBasis(form));
    ASSERT_EQ(elastic.form.Defect(), "");
    ASSERT_EQ(elastic.form.columns, 4U);
    SolveLimits noPivots;
    noPivots.doublePivots = 0;
    noPivots.exactPivots = 0;
    EXPECT_EQ(Certified(elastic.form, &elastic.start, noPivots).record.primalViolation, 0.0);
    const CertifiedResult start = CertifiedFrom(elastic.form, elastic.start);
    ASSERT_EQ(start.certificate.status, Status::Optimal);
    // x = 2 and y = 3 miss the first row by one.
    EXPECT_EQ(start.certificate.objective, 1);
    CertifiedResult farkas;
    farkas.certificate.status = Status::Infeasible;
    farkas.certificate.dual = start.certificate.dual;
    EXPECT_EQ(CheckCertificate(form, farkas.certificate), "");
}

/// It has an optimum for any form, and that is zero where there is a point.
TEST(Auxiliary, ElasticRowsTellWhetherThereIsAPoint)
{
    Random random(5);
    int infeasible = 0;
    for (int round = 0; round < ShareOf(400); ++round)
    {
        const BoundedForm form = RandomSmallForm(random, 4, 3);
        if (FindCrossedBounds(form) != kNoIndex)
            continue;
        const AuxiliaryForm elastic = ElasticRowsForm(form);
        ASSERT_EQ(elastic.form.Defect(), "");
        const CertifiedResult optimum = CertifiedFrom(elastic.form, elastic.start);
        ASSERT_EQ(optimum.certificate.status, Status::Optimal);
        CertifiedResult farkas;
        farkas.certificate.status = Status::Infeasible;
        farkas.certificate.dual = optimum.certificate.dual;
        const bool hasPoint = Certified(form).certificate.status != Status::Infeasible;
        ASSERT_EQ(optimum.certificate.objective == 0, hasPoint);
        ASSERT_EQ(CheckCertificate(form, farkas.certificate).empty(), !hasPoint);
        infeasible += hasPoint ? 0 : 1;
    }
    EXPECT_GT(infeasible, 0);
}

/// The scales of a form depend on its matrix and cost alone, which the form of rays shares: what
/// the proof of unboundedness takes over is what scaling that form anew would give.
TEST(Auxiliary, RaysAreScaledAsTheirOriginal)
{
    Random random(4);
    const BoundedForm form = RandomSparseForm(random, 9, 12);
    const AuxiliaryForm rays = RayForm(form, SlackBasis(form));
    ScaledForm taken(form);
    taken.SetBounds(rays.form);

    const ScaledForm anew(rays.form);
    EXPECT_EQ(taken.matrix->byVariable, anew.matrix->byVariable);
    EXPECT_EQ(taken.matrix->scale, anew.matrix->scale);
    EXPECT_EQ(taken.lower, anew.lower);
    EXPECT_EQ(taken.upper, anew.upper);
    EXPECT_EQ(taken.cost, anew.cost);
    EXPECT_EQ(taken.costScale, anew.costScale);
}

TEST(Auxiliary, RaysAreBoundedDirections)
{
    const BoundedForm form = MakeForm({1, -2}, {{{1, -1}, {-kInf, 3}}});
    const AuxiliaryForm rays = RayForm(form, SlackBasis(form));
    ASSERT_EQ(rays.form.Defect(), "");
    const CertifiedResult ray = CertifiedFrom(rays.form, rays.start);
    ASSERT_EQ(ray.certificate.status, Status::Optimal);
    EXPECT_EQ(ray.certificate.objective, -2);
}

/// The same with limits on the pivots in doubles, which run out in one step or the next on the way:
/// what the elastic program finds out by itself is taken for the model's too.
TEST(Refinement, FindsAContradictionWithWhateverPivotsAreLeft)
{
    const BoundedForm contradicting =
        MakeForm({1, 0, 0}, {{{1, 1, 0}, {1 + 0x1p-50, kInf}}, {{1, 1, 0}, {-kInf, 1}}},
                 {{0, 9}, {0, 9}, {0, kInf}});
    BoundedForm unboundedBesides = contradicting;
    unboundedBesides.cost[2] = -1;
    for (const BoundedForm& form : {contradicting, unboundedBesides})
        for (std::uint64_t pivots = 0; pivots < 12; ++pivots)
        {
            SCOPED_TRACE(pivots);
            SolveLimits limits;
            limits.doublePivots = pivots;
            const CertifiedResult proof = Certified(form, nullptr, limits);
            EXPECT_EQ(proof.certificate.status, Status::Infeasible);
            EXPECT_TRUE(proof.record.proved);
        }
}

/// Rows of tenths, the last one the sum of the others, and a point in the middle of all bounds.
/// What doubles round off the tenths makes the sum an equation of its own.
BoundedForm RowsAndTheirSum(Random& random, Index rows, Index columns)
{
    std::vector<DenseRow> dense(rows);
    std::vector<int> sum(columns);
    std::vector<double> cost(columns);
    for (double& each : cost)
        each = random.Between(-9, 9);
    for (Index i = 0; i < rows; ++i)
    {
        int side = 0;
        for (Index j = 0; j < columns; ++j)
        {
            const int tenths = random.OneIn(4) ? random.Between(1, 99) : 0;
            sum[j] += tenths;
            const int entry = i + 1 < rows ? tenths : sum[j] - tenths;
            dense[i].coefficients.push_back(entry / 10.0);
            side += entry;
        }
        dense[i].bounds = {side / 10.0, side / 10.0};
    }
    return MakeForm(cost, dense, std::vector<Interval>(columns, {-9, 11}));
}

/// For want of a pivot on what doubles take for zero, exact ones would go on from a basis far away.
TEST(Refinement, EnlargesAnEquationThatNearlyFollowsFromOthers)
{
    for (std::uint64_t seed = 1; seed <= 10; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        SolveLimits limits;
        limits.exactPivots = 20;
        const CertifiedResult proof =
            Certified(RowsAndTheirSum(random, 30, 90), nullptr, std::move(limits));
        EXPECT_EQ(proof.certificate.status, Status::Optimal);
        EXPECT_TRUE(proof.record.proved);
        EXPECT_EQ(proof.record.stages[Stage::Exact].pivots, 0U);
    }
}

/// Along x = y the objective falls by 2^-50 a step: to doubles it stands still.
TEST(Refinement, FindsADirectionBelowTheTolerance)
{
    const CertifiedResult proof = Solve(MakeForm({1, -1 - 0x1p-50}, {{{1, -1}, {0, 0}}}));
    EXPECT_EQ(proof.certificate.status, Status::Unbounded);
    EXPECT_TRUE(proof.record.proved);
}

/// x is limited by the tiny entry alone, which scaling cannot enlarge and doubles take for nothing.
TEST(Refinement, FindsALimitThatDoublesDoNotSee)
{
    std::vector<DenseRow> rows(6, {{1, 1, 1, 1, 1, -1}, {-kInf, 5}});
    rows[0] = {{1, 1, 1, 1, 1, 1e-13}, {-kInf, 1}};
    BoundedForm form = MakeForm({0, 0, 0, 0, 0, -1}, rows);
    form.numbers = CoefficientMeaning::ShortestDecimal;
    const CertifiedResult proof = Solve(form);
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    EXPECT_TRUE(proof.record.proved);
    EXPECT_EQ(ToString(proof.certificate.objective), "-10000000000000");
}

/// y is better than x by 2^-50 a unit and z better than y by 2^-90: each look sees the next step.
TEST(Refinement, LooksTwiceWhereOneStepHidesBehindAnother)
{
    const BoundedForm form =
        MakeForm({-1, -1 - 0x1p-50, -1 - 0x1p-50, -0x1p-90},
                 {{{1, 1, 1, 0}, {-kInf, 1}}, {{0, 0, 1, -1}, {0, 0}}, {{1, 1, 1, 1}, {-kInf, 9}}});
    Basis start = SlackBasis(form);
    start.columns[0] = BasisStatus::Basic;
    start.rows[0] = BasisStatus::AtUpper;
    const CertifiedResult proof = Certified(form, &start);
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    EXPECT_TRUE(proof.record.proved);
    EXPECT_EQ(proof.record.value[2], 1.0);
    EXPECT_EQ(proof.record.stages[Stage::Exact].pivots, 0U);
}

}  // namespace
}  // namespace nuv::test::refinement
