/// The engine against answers known from elsewhere: textbooks, and enumeration of all bases.
#include "tests/support/BruteForce.hpp"
#include "tests/exact/Certified.hpp"
#include "tests/support/Forms.hpp"

#include "Nuv/Exact/CertifiedSession.hpp"
#include "Nuv/Exact/CertifiedSolve.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

namespace nuv::test
{
namespace
{

CertifiedResult Solve(const BoundedForm& form)
{
    return Certified(form);
}

void ExpectVerdict(const BoundedForm& form, const BruteForceResult& expected,
                   const CertifiedResult& proof)
{
    ASSERT_TRUE(proof.record.proved) << CheckCertificate(form, proof.certificate);
    switch (expected.verdict)
    {
    case Verdict::Optimal:
        ASSERT_EQ(proof.certificate.status, Status::Optimal);
        ASSERT_EQ(proof.certificate.objective,
                  Rational(expected.objective.numerator, expected.objective.denominator));
        break;
    case Verdict::Infeasible:
        ASSERT_EQ(proof.certificate.status, Status::Infeasible);
        break;
    case Verdict::Unbounded:
        ASSERT_EQ(proof.certificate.status, Status::Unbounded);
        break;
    }
}

/// Beale's, Kuhn's, Marshall and Suurballe's and Chvatal's examples, on which the largest
/// coefficient rule cycles, as minimisations.
std::vector<std::pair<BoundedForm, std::string>> CyclingForms()
{
    const Interval atMostZero{-kInf, 0.0};
    const Interval atMostOne{-kInf, 1.0};
    return {
        {MakeForm({-0.75, 150, -0.02, 6}, {{{0.25, -60, -0.04, 9}, atMostZero},
                                           {{0.5, -90, -0.02, 3}, atMostZero},
                                           {{0, 0, 1, 0}, atMostOne}}),
         "-1/20"},
        {MakeForm({-0.75, 20, -0.5, 6}, {{{0.25, -8, -1, 9}, atMostZero},
                                         {{0.5, -12, -0.5, 3}, atMostZero},
                                         {{0, 0, 1, 0}, atMostOne}}),
         "-5/4"},
        {MakeForm({-2, -3, 1, 12}, {{{-2, -9, 1, 9}, atMostZero},
                                    {{1, 3, -1, -6}, atMostZero},
                                    {{2, 3, -1, -12}, {-kInf, 2.0}}}),
         "-2"},
        {MakeForm({-10, 57, 9, 24}, {{{0.5, -5.5, -2.5, 9}, atMostZero},
                                     {{0.5, -1.5, -0.5, 1}, atMostZero},
                                     {{1, 0, 0, 0}, atMostOne}}),
         "-1"},
    };
}

TEST(Engine, NoRowsAndNoColumnsIsOptimalAtTheConstant)
{
    BoundedForm form = MakeForm({}, {});
    form.constant = 2.5;
    const CertifiedResult proof = Solve(form);
    EXPECT_TRUE(proof.record.proved);
    EXPECT_EQ(ToString(proof.certificate.objective), "5/2");
}

TEST(Engine, WithoutRowsEachColumnGoesToItsBetterBound)
{
    const CertifiedResult proof =
        Solve(MakeForm({1, -1, 0}, {}, {{-2, 3}, {-2, 3}, {-kInf, kInf}}));
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    EXPECT_EQ(ToString(proof.certificate.objective), "-5");
}

TEST(Engine, WithoutRowsAFreeColumnWithCostIsUnbounded)
{
    const CertifiedResult proof = Solve(MakeForm({1}, {}, {{-kInf, 4}}));
    EXPECT_EQ(proof.certificate.status, Status::Unbounded);
    EXPECT_TRUE(proof.record.proved);
}

TEST(Engine, WithoutColumnsARowThatExcludesZeroIsInfeasible)
{
    EXPECT_EQ(Solve(MakeForm({}, {{{}, {-1, 1}}})).certificate.status, Status::Optimal);
    const CertifiedResult proof = Solve(MakeForm({}, {{{}, {1, 2}}}));
    EXPECT_EQ(proof.certificate.status, Status::Infeasible);
    EXPECT_TRUE(proof.record.proved);
}

TEST(Engine, BoundsThatCrossAreTheProof)
{
    const CertifiedResult proof = Solve(MakeForm({1}, {{{1}, {5, 4}}}));
    EXPECT_EQ(proof.certificate.status, Status::Infeasible);
    EXPECT_TRUE(proof.record.proved);
    EXPECT_EQ(proof.certificate.contradiction, 1u);
}

/// What is not asked to be proved says the same and claims no proof, by itself and in a session,
/// also where the bounds tell at sight.
TEST(Engine, AnUnprovedSolveAnswersAlikeAndClaimsNoProof)
{
    Random random(11);
    int crossed = 0;
    for (int round = 0; round < ShareOf(600); ++round)
    {
        SCOPED_TRACE(round);
        const auto rows = static_cast<Index>(random.Between(0, 4));
        const BoundedForm form =
            RandomSmallForm(random, rows, static_cast<Index>(random.Between(1, 5)));
        crossed += FindCrossedBounds(form) != kNoIndex ? 1 : 0;
        const CertifiedResult proof = Solve(form);
        SolveControl control;
        const CertifiedResult result = SolveUnproved(form, nullptr, control);
        SolveControl another;
        CertifiedSession session(form, std::nullopt);
        const CertifiedResult again = *session.SolveUnproved(another);
        for (const CertifiedResult* unproved : {&result, &again})
        {
            ASSERT_EQ(unproved->certificate.status, proof.certificate.status);
            ASSERT_FALSE(unproved->record.proved);
            if (proof.certificate.status == Status::Optimal)
            {
                ASSERT_NEAR(unproved->record.objectiveValue, proof.record.objectiveValue, 1e-9);
            }
        }
    }
    EXPECT_GT(crossed, 0);
}

TEST(Engine, WrongDataAreNamedAndNotSolved)
{
    const BoundedForm form = MakeForm({1}, {{{kInf}, {0, 4}}});
    const CertifiedResult proof = Solve(form);
    EXPECT_FALSE(proof.record.proved);
    EXPECT_EQ(proof.certificate.status, Status::Invalid);
    EXPECT_EQ(proof.record.defect, "a coefficient is not finite");
}

TEST(Engine, WyndorGlassWithDualsByHand)
{
    const CertifiedResult proof = Solve(
        MakeForm({-3, -5}, {{{1, 0}, {-kInf, 4}}, {{0, 2}, {-kInf, 12}}, {{3, 2}, {-kInf, 18}}}));
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    EXPECT_EQ(ToString(proof.certificate.objective), "-36");
    EXPECT_EQ(proof.record.value, (std::vector<double>{2, 6, 2, 12, 18}));
    // Upper sides hold, so the duals of the minimisation are not positive.
    EXPECT_EQ(proof.record.reduced, (std::vector<double>{0, 0, 0, -1.5, -1}));
    EXPECT_EQ(ToString(proof.certificate.dual.At(1)), "-3/2");
}

TEST(Engine, CyclingExamplesEndAtTheirOptimum)
{
    for (auto& [form, optimum] : CyclingForms())
    {
        form.numbers = CoefficientMeaning::ShortestDecimal;
        for (const CertifiedResult& proof : {Solve(form), CertifiedFrom(form, SlackBasis(form))})
        {
            EXPECT_TRUE(proof.record.proved);
            ASSERT_EQ(proof.certificate.status, Status::Optimal);
            EXPECT_EQ(ToString(proof.certificate.objective), optimum);
        }
    }
}

TEST(Engine, ATenthIsWhatTheFormSaysItIs)
{
    BoundedForm form = MakeForm({1}, {{{1}, {0.1, kInf}}});
    EXPECT_EQ(ToString(Solve(form).certificate.objective), "3602879701896397/36028797018963968");
    form.numbers = CoefficientMeaning::ShortestDecimal;
    EXPECT_EQ(ToString(Solve(form).certificate.objective), "1/10");
}

/// 0.1 + 0.2 is 0.3 in decimals and is not in doubles, so as stored the equations exclude each
/// other.
TEST(Engine, RedundantDecimalEquationsContradictEachOtherAsStored)
{
    BoundedForm form =
        MakeForm({1, 1}, {{{0.1, 1}, {1, 1}}, {{0.2, 1}, {1, 1}}, {{0.3, 2}, {2, 2}}});
    form.columnLower[0] = 1.0;
    form.columnLower[1] = -kInf;
    form.rowLower[0] = form.rowUpper[0] = 1.1;
    form.rowLower[1] = form.rowUpper[1] = 1.2;
    form.rowLower[2] = form.rowUpper[2] = 2.3;
    const CertifiedResult stored = Solve(form);
    EXPECT_TRUE(stored.record.proved);
    EXPECT_EQ(stored.certificate.status, Status::Infeasible);
    form.numbers = CoefficientMeaning::ShortestDecimal;
    const CertifiedResult written = Solve(form);
    EXPECT_TRUE(written.record.proved);
    ASSERT_EQ(written.certificate.status, Status::Optimal);
    EXPECT_EQ(ToString(written.certificate.objective), "2");
}

TEST(Engine, NumbersOfExtremeSizeAreExact)
{
    const CertifiedResult proof = Solve(MakeForm({1e300, 1e-300}, {{{1e-308, 1e308}, {1, kInf}}}));
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    EXPECT_TRUE(proof.record.proved);
    EXPECT_NEAR(proof.record.value[1], 1e-308, 1e-320);
}

TEST(Engine, AgreesWithEnumerationOnThousandsOfSmallForms)
{
    int verdicts[3] = {0, 0, 0};
    const std::uint64_t models = ShareOf(20000U);
    for (std::uint64_t seed = 1; seed <= models; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const Index rows = static_cast<Index>(random.Between(1, 3));
        const Index columns = static_cast<Index>(random.Between(1, 7 - static_cast<int>(rows)));
        const BoundedForm form = RandomSmallForm(random, rows, columns);
        const BruteForceResult expected = SolveByEnumeration(form);
        ++verdicts[static_cast<int>(expected.verdict)];
        ExpectVerdict(form, expected, Solve(form));
        ExpectVerdict(form, expected, CertifiedFrom(form, SlackBasis(form)));
        if (HasFatalFailure())
            return;
    }
    // The generator must not have drifted into one kind.
    EXPECT_GT(static_cast<std::uint64_t>(verdicts[0]), models / 10);
    EXPECT_GT(static_cast<std::uint64_t>(verdicts[1]), models / 10);
    EXPECT_GT(static_cast<std::uint64_t>(verdicts[2]), models / 10);
}

TEST(Engine, AnyStartBasisLeadsToTheSameAnswer)
{
    for (std::uint64_t seed = 1; seed <= ShareOf(1500U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form = RandomSmallForm(random, 3, 4);
        const BruteForceResult expected = SolveByEnumeration(form);
        // Statuses at random: too many or too few basic variables, impossible bounds, singular.
        Basis start;
        start.columns.resize(static_cast<std::size_t>(random.Between(0, 6)));
        start.rows.resize(static_cast<std::size_t>(random.Between(0, 5)));
        for (BasisStatus& status : start.columns)
            status = static_cast<BasisStatus>(random.Between(0, 3));
        for (BasisStatus& status : start.rows)
            status = static_cast<BasisStatus>(random.Between(0, 3));
        ExpectVerdict(form, expected, Certified(form, &start));
        ExpectVerdict(form, expected, CertifiedFrom(form, start));
        if (HasFatalFailure())
            return;
    }
}

TEST(Engine, ProvesSparseFormsWithDecimalsInBothReadings)
{
    for (std::uint64_t seed = 1; seed <= ShareOf(30U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        BoundedForm form = RandomSparseForm(random, 25, 35);
        for (const CoefficientMeaning numbers :
             {CoefficientMeaning::StoredDouble, CoefficientMeaning::ShortestDecimal})
        {
            form.numbers = numbers;
            const CertifiedResult proof = Solve(form);
            ASSERT_TRUE(proof.record.proved);
            const CertifiedResult cold = CertifiedFrom(form, SlackBasis(form));
            ASSERT_TRUE(cold.record.proved);
            ASSERT_EQ(proof.certificate.status, cold.certificate.status);
            ASSERT_EQ(proof.certificate.objective, cold.certificate.objective);
        }
    }
}

/// Where doubles lose most of their digits the answer is that of the exact simplex alone.
TEST(Engine, ProvesFormsWhoseBasesAreNearlySingular)
{
    for (std::uint64_t seed = 1; seed <= ShareOf(400U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const auto rows = static_cast<Index>(random.Between(3, 12));
        const auto columns = static_cast<Index>(random.Between(3, 16));
        const BoundedForm form = NearlyDependentForm(random, rows, columns);
        const CertifiedResult expected = CertifiedFrom(form, SlackBasis(form));
        const CertifiedResult proof = Solve(form);
        ASSERT_TRUE(expected.record.proved);
        ASSERT_TRUE(proof.record.proved);
        EXPECT_EQ(proof.certificate.status, expected.certificate.status);
        EXPECT_EQ(proof.certificate.objective, expected.certificate.objective);
        // Without a rule against it the primal simplex goes in circles in some of them.
        EXPECT_LT(proof.record.stages[Stage::Double].pivots, 10'000U);
    }
}

TEST(Engine, ASecondRunGivesTheSameBitsAndPivots)
{
    Random random(7);
    const BoundedForm form = RandomSparseForm(random, 40, 60);
    const CertifiedResult first = Solve(form);
    const CertifiedResult second = Solve(form);
    EXPECT_EQ(first.record.stages[Stage::Double].pivots,
              second.record.stages[Stage::Double].pivots);
    EXPECT_EQ(first.record.stages[Stage::Exact].pivots, second.record.stages[Stage::Exact].pivots);
    EXPECT_EQ(first.record.basis, second.record.basis);
    EXPECT_EQ(first.record.value, second.record.value);
    EXPECT_EQ(first.record.reduced, second.record.reduced);
}

/// Primal steps from the apex of a cone have no length, and without costs no dual step has one:
/// more of them in a row than the exact simplex has patience for.
TEST(Engine, EndsWherePivotsHaveNoLength)
{
    bool feasible = true;
    SolveLimits limits;
    limits.keepGoing = [&feasible](const Progress& progress)
    {
        EXPECT_TRUE(progress.pivots == 0 || progress.feasible == feasible);
        return true;
    };
    const BoundedForm cone = DegenerateCone(60);
    SolveControl primalControl(limits);
    const CertifiedResult primal = SolveExactly(cone, SlackBasis(cone), primalControl);
    EXPECT_TRUE(primal.record.proved);
    EXPECT_EQ(primal.certificate.objective, Certified(cone).certificate.objective);
    EXPECT_GT(primal.record.stages[Stage::Exact].pivots, 100U);

    // Each row wants its sum above 1; nothing costs anything.
    Random random(7);
    std::vector<DenseRow> rows(40, {{}, {1, kInf}});
    for (DenseRow& row : rows)
        for (int j = 0; j < 40; ++j)
            row.coefficients.push_back(random.Between(-2, 3));
    const BoundedForm covering = MakeForm(std::vector<double>(40, 0.0), rows);
    feasible = false;
    SolveControl dualControl(limits);
    const CertifiedResult dual = SolveExactly(covering, SlackBasis(covering), dualControl);
    EXPECT_TRUE(dual.record.proved);
    EXPECT_EQ(dual.certificate.status, Certified(covering).certificate.status);
    EXPECT_GT(dual.record.stages[Stage::Exact].pivots, 30U);
}

}  // namespace
}  // namespace nuv::test
