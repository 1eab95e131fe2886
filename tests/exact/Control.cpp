/// Limits and cancelling: each alone, together, in every stage, and in what follows a verdict.
#include "tests/exact/Certified.hpp"
#include "tests/support/Forms.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace nuv::test
{
namespace
{

BoundedForm OptimalForm()
{
    return MakeForm({-3, -5, 1},
                    {{{1, 0, 1}, {-kInf, 4}}, {{0, 2, -1}, {-kInf, 12}}, {{3, 2, 0}, {1, 18}}},
                    {{0, kInf}, {0, kInf}, {-1, 7}});
}

/// Three disjoint contradictions, and a certificate that adds them up.
CertifiedResult MixedContradiction(BoundedForm& form)
{
    form = MakeForm({0, 0, 0},
                    {{{1, 0, 0}, {2, kInf}}, {{0, 1, 0}, {3, kInf}}, {{0, 0, 1}, {4, kInf}}},
                    {{0, 1}, {0, 1}, {0, 1}});
    CertifiedResult proof = Certified(form);
    proof.certificate.dual.denominator = 1;
    proof.certificate.dual.numerator = {1, 2, 3};
    return proof;
}

TEST(SolveControl, NoTimeMeansNoClaim)
{
    SolveLimits limits;
    limits.seconds = 0.0;
    const BoundedForm form = OptimalForm();
    const CertifiedResult proof = Certified(form, nullptr, limits);
    EXPECT_EQ(proof.certificate.status, Status::Stopped);
    EXPECT_FALSE(proof.record.proved);
    EXPECT_EQ(proof.record.stopReason, StopReason::TimeLimit);
    // The slack basis: feasible but for the third row, which wants at least 1 and has 0.
    EXPECT_EQ(proof.record.value.size(), 6u);
    EXPECT_DOUBLE_EQ(proof.record.primalViolation, 1.0);
    EXPECT_DOUBLE_EQ(proof.record.dualViolation, 5.0);
}

TEST(SolveControl, WithoutDoublePivotsTheExactStageDoesTheWork)
{
    SolveLimits limits;
    limits.seconds = 1e6;
    limits.doublePivots = 0;
    const CertifiedResult proof = Certified(OptimalForm(), nullptr, limits);
    EXPECT_TRUE(proof.record.proved);
    EXPECT_EQ(proof.certificate.status, Status::Optimal);
    EXPECT_EQ(proof.record.stages[Stage::Double].pivots, 0u);
    EXPECT_GT(proof.record.stages[Stage::Exact].pivots, 0u);
}

TEST(SolveControl, APivotLimitOnBothStagesStops)
{
    SolveLimits limits;
    limits.doublePivots = 0;
    limits.exactPivots = 1;
    const CertifiedResult proof = Certified(OptimalForm(), nullptr, limits);
    EXPECT_EQ(proof.certificate.status, Status::Stopped);
    EXPECT_EQ(proof.record.stopReason, StopReason::PivotLimit);
    EXPECT_EQ(proof.record.stages[Stage::Exact].pivots, 1u);
}

TEST(SolveControl, TheCallerIsAskedBeforeEachPivotAndMayStop)
{
    std::uint64_t asked = 0;
    SolveLimits limits;
    limits.keepGoing = [&asked](const Progress& progress)
    {
        EXPECT_EQ(progress.pivots, asked);
        return ++asked < 3;
    };
    Random random(3);
    const CertifiedResult proof = Certified(RandomSparseForm(random, 20, 30), nullptr, limits);
    EXPECT_EQ(proof.certificate.status, Status::Stopped);
    EXPECT_EQ(proof.record.stopReason, StopReason::Cancelled);
    EXPECT_EQ(asked, 3u);
}

TEST(SolveControl, TheObjectiveIsReportedToWhoWantsIt)
{
    for (const bool wanted : {true, false})
    {
        bool isKnown = false;
        SolveLimits limits;
        limits.reportObjective = wanted;
        limits.keepGoing = [&isKnown](const Progress& progress)
        {
            isKnown = isKnown || !std::isnan(progress.objective);
            return true;
        };
        EXPECT_TRUE(Certified(OptimalForm(), nullptr, limits).record.proved);
        EXPECT_EQ(isKnown, wanted);
    }
}

TEST(SolveControl, APivotLimitLeavesTheTimeLimitInForce)
{
    SolveLimits limits;
    limits.doublePivots = 0;
    SolveControl control(limits);
    EXPECT_FALSE(control.MayPivot(Stage::Double, true, 0.0));
    EXPECT_EQ(control.Reason(), StopReason::PivotLimit);
    EXPECT_FALSE(control.IsStopped());
    EXPECT_TRUE(control.MayPivot(Stage::Exact, true, 0.0));
    control.EndWithin(0.0);
    EXPECT_TRUE(control.IsStopped());
    EXPECT_EQ(control.Reason(), StopReason::TimeLimit);
    EXPECT_FALSE(control.MayPivot(Stage::Exact, true, 0.0));
}

TEST(SolveControl, TheClockRunsOnInTheExactStageAfterThePivotsOfDoublesAreUsedUp)
{
    SolveControl* running = nullptr;
    SolveLimits limits;
    limits.doublePivots = 0;
    limits.keepGoing = [&running](const Progress& progress)
    {
        if (progress.stage == Stage::Exact && progress.pivots == 1)
            running->EndWithin(0.0);
        return true;
    };
    SolveControl control(limits);
    running = &control;
    const CertifiedResult proof = SolveCertified(OptimalForm(), nullptr, control);
    EXPECT_EQ(proof.certificate.status, Status::Stopped);
    EXPECT_EQ(proof.record.stopReason, StopReason::TimeLimit);
    EXPECT_LE(proof.record.stages[Stage::Exact].pivots, 2U);
}

TEST(SolveControl, AStopIsFinalInWhicheverStageItComes)
{
    for (const Stage stage : {Stage::Double, Stage::Exact})
        for (std::uint64_t seed = 1; seed <= ShareOf(60U); ++seed)
        {
            SCOPED_TRACE(seed);
            Random random(seed);
            const BoundedForm form = RandomSparseForm(random, 12, 18);
            int asked = 0;
            bool stopped = false;
            SolveLimits limits;
            limits.doublePivots = stage == Stage::Exact ? 3 : SolveLimits::kNoLimit;
            limits.keepGoing = [&](const Progress& progress)
            {
                EXPECT_FALSE(stopped) << "asked again";
                stopped = progress.stage == stage && ++asked == 2;
                return !stopped;
            };
            const CertifiedResult proof = Certified(form, nullptr, limits);
            EXPECT_EQ(proof.certificate.status == Status::Stopped, stopped);
            EXPECT_EQ(proof.record.stopReason, stopped ? StopReason::Cancelled : StopReason::None);
        }
}

/// In the exact stage it may come before a pivot, between two digits of a solution, and after any
/// try to reconstruct one.
TEST(SolveControl, AStopIsFinalAtWhicheverQuestionItComes)
{
    int stops = 0;
    for (std::uint64_t seed = 1; seed <= 2; ++seed)
    {
        Random random(seed);
        const BoundedForm form = RandomSparseForm(random, 6, 9);
        int last = 1;
        for (bool isStopped = true; isStopped; ++last)
        {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", question " + std::to_string(last));
            int asked = 0;
            SolveLimits limits;
            limits.keepGoing = [&](const Progress&) { return ++asked < last; };
            SolveControl control(limits);
            const CertifiedResult proof = SolveExactly(form, SlackBasis(form), control);
            ASSERT_LE(asked, last) << "asked again";
            isStopped = asked == last;
            EXPECT_EQ(proof.certificate.status == Status::Stopped, isStopped);
            EXPECT_EQ(proof.record.proved, !isStopped);
            EXPECT_EQ(proof.record.stopReason,
                      isStopped ? StopReason::Cancelled : StopReason::None);
            stops += isStopped ? 1 : 0;
        }
    }
    EXPECT_GT(stops, 40);
}

/// No cost falls and each row wants its sum above 1: a stop may come between the digits of a row of
/// the inverse, from which a dual step is taken.
TEST(SolveControl, AStopIsFinalInADualStep)
{
    Random random(7);
    std::vector<DenseRow> rows(4, {{}, {1, kInf}});
    for (DenseRow& row : rows)
        for (int j = 0; j < 5; ++j)
            row.coefficients.push_back(random.Between(-2, 5) / 7.0);
    const BoundedForm form = MakeForm({3, 1, 4, 1, 5}, rows);
    bool isStopped = true;
    for (int last = 1; isStopped; ++last)
    {
        ASSERT_LT(last, 1000);
        int asked = 0;
        SolveLimits limits;
        limits.keepGoing = [&](const Progress&) { return ++asked < last; };
        SolveControl control(limits);
        const CertifiedResult proof = SolveExactly(form, SlackBasis(form), control);
        isStopped = asked == last;
        ASSERT_LE(asked, last) << "asked again";
        EXPECT_EQ(proof.record.proved, !isStopped);
    }
}

/// Main program, refinements, elastic program and rays together spend what one of them may.
TEST(SolveControl, PivotsAreCountedOverTheWholeSolve)
{
    int stopped = 0;
    int proved = 0;
    for (std::uint64_t seed = 1; seed <= ShareOf(400U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form =
            RandomSmallForm(random, 4, static_cast<Index>(random.Between(3, 6)));
        SolveLimits limits;
        limits.doublePivots = static_cast<std::uint64_t>(random.Between(0, 4));
        limits.exactPivots = static_cast<std::uint64_t>(random.Between(0, 3));
        std::uint64_t last[kStages] = {};
        limits.keepGoing = [&last](const Progress& progress)
        {
            std::uint64_t& before = last[static_cast<std::size_t>(progress.stage)];
            EXPECT_GE(progress.pivots, before) << "pivots ran backwards";
            before = std::max(before, progress.pivots);
            return true;
        };
        SolveControl control(limits);
        const CertifiedResult proof = SolveCertified(form, nullptr, control);
        EXPECT_LE(control.Pivots(Stage::Double), limits.doublePivots);
        EXPECT_LE(control.Pivots(Stage::Exact), limits.exactPivots);
        proved += proof.record.proved ? 1 : 0;
        stopped += proof.record.proved ? 0 : 1;
        EXPECT_EQ(proof.record.stopReason,
                  proof.record.proved ? StopReason::None : StopReason::PivotLimit);
    }
    EXPECT_GT(proved, ShareOf(60));
    EXPECT_GT(stopped, ShareOf(60));
}

/// The elastic programs on the way to these proofs have feasible bases and optima, the models none.
TEST(SolveControl, AnotherProgramThanTheModelsHasNoObjectiveToReport)
{
    int infeasible = 0;
    for (std::uint64_t seed = 1; seed <= ShareOf(400U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form =
            RandomSmallForm(random, 4, static_cast<Index>(random.Between(3, 6)));
        bool sawFeasible = false;
        SolveLimits limits;
        limits.keepGoing = [&sawFeasible](const Progress& progress)
        {
            sawFeasible = sawFeasible || progress.feasible;
            return true;
        };
        if (Certified(form, nullptr, limits).certificate.status != Status::Infeasible)
            continue;
        ++infeasible;
        EXPECT_FALSE(sawFeasible) << "no basis of the model is";
    }
    EXPECT_GT(infeasible, ShareOf(40));
}

TEST(SolveControl, EndsTheSearchOfAConflict)
{
    BoundedForm form;
    const CertifiedResult proof = MixedContradiction(form);
    ASSERT_EQ(CheckCertificate(form, proof.certificate), "");
    EXPECT_TRUE(IisOf(form, proof).minimal);
    SolveLimits cancelled;
    cancelled.keepGoing = [](const Progress&) { return false; };
    SolveLimits noPivots;
    noPivots.doublePivots = 0;
    noPivots.exactPivots = 0;
    SolveLimits noTime;
    noTime.seconds = 0.0;
    for (const SolveLimits& limits : {cancelled, noPivots, noTime})
    {
        const InfeasibleBounds iis = IisOf(form, proof, limits);
        EXPECT_FALSE(iis.minimal);
        EXPECT_EQ(iis.members.size(), 6U) << "what is left still excludes each other";
    }
}

TEST(SolveControl, EndsRanging)
{
    const BoundedForm form = OptimalForm();
    const CertifiedResult proof = Certified(form);
    SolveLimits limits;
    limits.seconds = 0.0;
    SolveControl late(limits);
    EXPECT_FALSE(AnalyseSensitivity(form, proof, late));
    int asked = 0;
    SolveLimits twice;
    twice.keepGoing = [&asked](const Progress&) { return ++asked < 2; };
    SolveControl cancelled(twice);
    EXPECT_FALSE(AnalyseSensitivity(form, proof, cancelled));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(cancelled.Reason(), StopReason::Cancelled);
}

TEST(SolveControl, EndsRangingAtAnyRow)
{
    const BoundedForm form = OptimalForm();
    const CertifiedResult proof = Certified(form);
    int asked = 0;
    int most = std::numeric_limits<int>::max();
    const auto ends = [&]
    {
        asked = 0;
        SolveLimits limits;
        limits.keepGoing = [&](const Progress&) { return ++asked < most; };
        SolveControl control(limits);
        return !AnalyseSensitivity(form, proof, control).has_value();
    };
    // Once a row for the costs, once a row for the sides, and within the exact solutions.
    EXPECT_FALSE(ends());
    const int all = asked;
    EXPECT_GT(all, 6);
    for (most = 1; most <= all + 1; ++most)
    {
        EXPECT_EQ(ends(), most <= all);
        EXPECT_EQ(asked, std::min(most, all));
    }
}

}  // namespace
}  // namespace nuv::test
