/// The stages of a certified solve one by one: what the one before says is a guess, and what the
/// check refuses is no proof.
#include "tests/exact/Certified.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include "Nuv/Exact/CertifiedSession.hpp"
#include "Nuv/Exact/CertifiedStages.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace nuv::test
{
namespace
{

struct Known
{
    BoundedForm form;
    Status status;
};

/// The last is infeasible, and the cone of its rows has a direction along which the cost falls.
std::vector<Known> KnownForms()
{
    return {
        {MakeForm({-3, -5}, {{{1, 0}, {-kInf, 4}}, {{0, 2}, {-kInf, 12}}, {{3, 2}, {-kInf, 18}}}),
         Status::Optimal},
        {MakeForm({1, 1}, {{{1, 1}, {6, kInf}}, {{1, -1}, {-kInf, -1}}}, {{0, 2}, {0, 3}}),
         Status::Infeasible},
        {MakeForm({1, -2}, {{{1, -1}, {-kInf, 3}}}), Status::Unbounded},
        {MakeForm({0, -1}, {{{1, 0}, {2, kInf}}, {{1, 0}, {-kInf, 1}}}), Status::Infeasible},
    };
}

/// What the exact stage proves from a basis that the stage before took for what the guess says.
CertifiedResult ProvedFrom(const BoundedForm& form, const Basis& basis, SimplexVerdict guess,
                           SolveControl& control, const BlockedRow* blocked = nullptr)
{
    ScalableForm scalable(form);
    ExactEvaluation evaluation(form);
    CertifiedResult result;
    result.record.basis = basis;
    FitBasis(form, result.record.basis);
    ProveBasis(scalable, evaluation, guess, kRefinements, nullptr, control, result, blocked);
    return result;
}

TEST(Stages, NoGuessIsBelieved)
{
    for (const Known& known : KnownForms())
        for (const SimplexVerdict guess :
             {SimplexVerdict::Optimal, SimplexVerdict::Infeasible, SimplexVerdict::Unbounded,
              SimplexVerdict::Stopped, SimplexVerdict::Numerical})
        {
            SCOPED_TRACE(static_cast<int>(guess));
            SolveControl control;
            const CertifiedResult result =
                ProvedFrom(known.form, SlackBasis(known.form), guess, control);
            EXPECT_EQ(result.certificate.status, known.status);
            EXPECT_TRUE(result.record.proved);
        }
}

/// And a stop at whichever question of a wrong or right guess is final.
TEST(Stages, AGuessIsFollowedUntilAStop)
{
    for (const Known& known : KnownForms())
        for (const SimplexVerdict guess :
             {SimplexVerdict::Optimal, SimplexVerdict::Infeasible, SimplexVerdict::Unbounded})
        {
            bool isStopped = true;
            for (int last = 1; isStopped; ++last)
            {
                SCOPED_TRACE(last);
                ASSERT_LT(last, 1000);
                int asked = 0;
                SolveLimits limits;
                limits.keepGoing = [&](const Progress&) { return ++asked < last; };
                SolveControl control(limits);
                const CertifiedResult result =
                    ProvedFrom(known.form, SlackBasis(known.form), guess, control);
                isStopped = asked == last;
                ASSERT_LE(asked, last) << "asked again";
                // What was proved as the stop came is proved.
                if (result.record.proved)
                    EXPECT_EQ(result.certificate.status, known.status);
                else
                    EXPECT_EQ(result.record.stopReason, StopReason::Cancelled);
                EXPECT_TRUE(isStopped || result.record.proved);
            }
        }
}

/// x + y >= 1 + 2^-50 and x + y <= 1 with x = 1 in the basis: in doubles no bound is violated, so
/// that the elastic form has no column to add and is as infeasible as the model.
TEST(Stages, AnElasticFormWithoutAColumnToAddProvesInfeasibilityItself)
{
    const BoundedForm form =
        MakeForm({1, 0}, {{{1, 1}, {1 + 0x1p-50, kInf}}, {{1, 1}, {-kInf, 1}}}, {{0, 9}, {0, 9}});
    Basis basis = SlackBasis(form);
    basis.columns[0] = BasisStatus::Basic;
    basis.rows[1] = BasisStatus::AtUpper;
    // Whether doubles may look at it through the magnifying glass or not.
    for (const std::uint64_t pivots : {std::uint64_t{0}, SolveLimits::kNoLimit})
    {
        SolveLimits limits;
        limits.doublePivots = pivots;
        SolveControl control(limits);
        const CertifiedResult result = ProvedFrom(form, basis, SimplexVerdict::Infeasible, control);
        EXPECT_EQ(result.certificate.status, Status::Infeasible);
        EXPECT_TRUE(result.record.proved);
    }
}

/// x + y >= 6, 3 x + z <= 3 and y <= 3, among rows enough for the solution of a system to take its
/// time: the row of the first one's logical is the proof, unless the time is up.
TEST(Stages, ARowProvesInfeasibilityUnlessItIsStopped)
{
    std::vector<DenseRow> rows(20, {{0, 0, 1}, {-kInf, 9}});
    rows[0] = {{1, 1, 0}, {6, kInf}};
    rows[1] = {{3, 0, 1}, {-kInf, 3}};
    const BoundedForm form = MakeForm({0, 0, 0}, rows, {{0, kInf}, {0, 3}, {0, kInf}});
    BlockedRow blocked{SlackBasis(form), form.Logical(0)};
    blocked.basis.columns[0] = BasisStatus::Basic;
    blocked.basis.columns[1] = BasisStatus::AtUpper;
    blocked.basis.rows[1] = BasisStatus::AtUpper;
    for (const double seconds : {1e6, 0.0})
    {
        SolveLimits limits;
        limits.seconds = seconds;
        SolveControl control(limits);
        const CertifiedResult result =
            ProvedFrom(form, SlackBasis(form), SimplexVerdict::Infeasible, control, &blocked);
        EXPECT_EQ(result.record.proved, seconds > 0);
        EXPECT_EQ(result.certificate.status, seconds > 0 ? Status::Infeasible : Status::Stopped);
        EXPECT_EQ(control.Pivots(Stage::Exact), 0U);
    }
}

/// The row of a basis that is none, or of one that does not prove anything, is passed over.
TEST(Stages, ARowThatProvesNothingIsPassedOver)
{
    const BoundedForm form =
        MakeForm({-1, -1, 0}, {{{1, 2, 1}, {-kInf, 4}}, {{2, 4, 1}, {-kInf, 6}}});
    BlockedRow singular{SlackBasis(form), 0};
    singular.basis.columns[0] = singular.basis.columns[1] = BasisStatus::Basic;
    singular.basis.rows[0] = singular.basis.rows[1] = BasisStatus::AtUpper;
    BlockedRow idle{SlackBasis(form), form.Logical(1)};
    for (const BlockedRow& blocked : {singular, idle})
    {
        SolveControl control;
        const CertifiedResult result =
            ProvedFrom(form, SlackBasis(form), SimplexVerdict::Infeasible, control, &blocked);
        EXPECT_EQ(result.certificate.status, Status::Optimal);
        EXPECT_TRUE(result.record.proved);
        EXPECT_EQ(result.certificate.objective, -3);
    }
}

/// What becomes of a form's slack basis before a check that knows another form.
CertifiedResult ProvedAgainst(const BoundedForm& other, const BoundedForm& form,
                              SimplexVerdict verdict)
{
    RepeatedCheck check(other);
    ScalableForm scalable(form);
    ExactEvaluation evaluation(form);
    SolveControl control;
    CertifiedResult result;
    result.record.basis = SlackBasis(form);
    ProveBasis(scalable, evaluation, verdict, kRefinements, &check, control, result);
    return result;
}

/// A check that knows other bounds refuses the optimum: nothing is claimed then.
TEST(Stages, WhatTheCheckRefusesIsNotClaimed)
{
    const BoundedForm form = KnownForms()[0].form;
    BoundedForm other = form;
    other.columnUpper[1] = 5;
    const CertifiedResult result = ProvedAgainst(other, form, SimplexVerdict::Optimal);
    EXPECT_EQ(result.certificate.status, Status::Stopped);
    EXPECT_FALSE(result.record.proved);
    EXPECT_EQ(result.record.value[1], 6.0) << "the last basis stands, as numbers without a proof";
}

/// One that knows looser sides refuses the contradiction: by how much the last basis misses its
/// bounds is said then.
TEST(Stages, AContradictionThatTheCheckRefusesIsNotClaimed)
{
    const BoundedForm form = KnownForms()[1].form;
    BoundedForm other = form;
    other.rowLower[0] = 1;
    const CertifiedResult result = ProvedAgainst(other, form, SimplexVerdict::Infeasible);
    EXPECT_EQ(result.certificate.status, Status::Stopped);
    EXPECT_FALSE(result.record.proved);
    EXPECT_GT(result.record.primalViolation, 0.0);
}

TEST(Stages, AStoredZeroIsNoEntry)
{
    BoundedForm form = MakeForm({-1, -2}, {{{0.25, 0.5}, {-kInf, 4}}, {{1, 0}, {-kInf, 3}}});
    const CertifiedResult expected = Certified(form);
    SparseVectors<double> columns;
    columns.Append(0, 0.25);
    columns.Append(1, 1.0);
    columns.Close();
    columns.Append(0, 0.5);
    columns.Append(1, 0.0);
    columns.Close();
    form.matrix = SparseMatrix<double>::FromColumns(std::move(columns), 2);
    for (const CertifiedResult& result : {Certified(form), CertifiedFrom(form, SlackBasis(form))})
    {
        EXPECT_TRUE(result.record.proved);
        EXPECT_EQ(result.certificate.objective, expected.certificate.objective);
        EXPECT_EQ(result.record.value, expected.record.value);
    }
}

/// Once the bounds move, the basis is looked at again, exactly: a stop in this look is a stop of
/// the solve.
/// x is fixed, and at whichever of its bounds a basis has it, the wrong sign of its reduced cost
/// does not matter.
TEST(CertifyBasis, TakesAFixedVariableAtEitherBound)
{
    for (const double cost : {-1.0, 1.0})
        for (const BasisStatus at : {BasisStatus::AtLower, BasisStatus::AtUpper})
        {
            const BoundedForm form = MakeForm({cost, 1}, {{{1, 1}, {0, 9}}}, {{2, 2}, {0, 5}});
            Basis basis = SlackBasis(form);
            basis.columns[0] = at;
            SolveControl control;
            const CertifiedResult result = CertifyBasis(form, basis, control);
            EXPECT_EQ(result.certificate.status, Status::Optimal);
            EXPECT_TRUE(result.record.proved);
        }
}

TEST(CertifiedSession, AStopInTheLookAtTheLastBasisIsFinal)
{
    const BoundedForm form = KnownForms()[0].form;
    int stops = 0;
    bool isStopped = true;
    for (int last = 1; isStopped; ++last)
    {
        ASSERT_LT(last, 1000);
        CertifiedSession session(form, std::nullopt);
        SolveControl unlimited;
        EXPECT_TRUE(session.Solve(unlimited)->record.proved);
        session.SetBounds(form.Logical(2), -kInf, 19);
        int asked = 0;
        SolveLimits limits;
        limits.keepGoing = [&](const Progress&) { return ++asked < last; };
        SolveControl control(limits);
        const auto result = session.Solve(control);
        isStopped = asked == last;
        EXPECT_EQ(result->record.proved, !isStopped);
        EXPECT_EQ(result->record.stopReason, isStopped ? StopReason::Cancelled : StopReason::None);
        stops += isStopped ? 1 : 0;
    }
    EXPECT_GT(stops, 0);
}

/// Costs become fractions and whole numbers again, or are said again: the proof is that of the form
/// as it is then.
TEST(CertifiedSession, TakesCostsThatNoDoubleSays)
{
    int optima = 0;
    for (std::uint64_t seed = 1; seed <= ShareOf(80U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        BoundedForm form = RandomSmallForm(random, 3, 4);
        form.numbers = CoefficientMeaning::ShortestDecimal;
        CertifiedSession session(form, std::nullopt);
        for (int edit = 0; edit < 12; ++edit)
        {
            const auto column = static_cast<Index>(random.Between(0, 3));
            FormNumber cost(random.Between(-9, 9));
            if (random.OneIn(2))
            {
                const Rational exact(3 * random.Between(-9, 9) + 1, random.OneIn(2) ? 3 : 21);
                cost.nearest = ToDouble(exact);
                cost.exact = exact;
            }
            session.SetCost(column, cost);
            if (random.OneIn(3))
                session.SetCost(column, cost);
            SolveControl control;
            const auto result = session.Solve(control);
            const CertifiedResult anew = Certified(session.Form());
            ASSERT_TRUE(result->record.proved);
            ASSERT_EQ(result->certificate.status, anew.certificate.status);
            ASSERT_EQ(result->certificate.objective, anew.certificate.objective);
            optima += anew.certificate.status == Status::Optimal ? 1 : 0;
        }
    }
    EXPECT_GT(optima, 0);
}

/// Of numbers that one double is next to each is another number, and a number said again is not.
TEST(CertifiedSession, TellsCostsApartThatOneDoubleIsNextTo)
{
    BoundedForm form = MakeForm({0}, {{{1}, {1, kInf}}});
    form.numbers = CoefficientMeaning::ShortestDecimal;
    CertifiedSession session(form, std::nullopt);
    const double third = 1.0 / 3.0;
    FormNumber exact(third);
    exact.exact = Rational(1, 3);
    FormNumber next(third);
    next.exact = Rational(1, 3) + Rational(1, Power(10, 30));
    const FormNumber plain(third);
    const std::vector<FormNumber> costs = {exact, exact, next, plain, plain, exact, plain};
    for (const FormNumber& cost : costs)
    {
        session.SetCost(0, cost);
        SolveControl control;
        EXPECT_EQ(session.Solve(control)->certificate.objective,
                  cost.exact ? *cost.exact : ToRational(third, form.numbers));
    }
}

TEST(CertifiedSession, StartsFromTheBasisThatItIsGiven)
{
    const BoundedForm form = KnownForms()[0].form;
    CertifiedSession session(form, std::nullopt);
    SolveControl first;
    const auto optimum = session.Solve(first);
    ASSERT_TRUE(optimum->record.proved);
    session.StartFrom(SlackBasis(form));
    SolveControl again;
    const auto cold = session.Solve(again);
    EXPECT_TRUE(cold->record.proved);
    EXPECT_EQ(again.Pivots(Stage::Double), first.Pivots(Stage::Double)) << "all pivots anew";
    session.StartFrom(optimum->record.basis);
    SolveControl warm;
    EXPECT_TRUE(session.Solve(warm)->record.proved);
    EXPECT_EQ(warm.Pivots(Stage::Double), 0U);
}

/// What the stages and the check say that they took is time that has passed: they begin when they
/// begin, not when the control does.
TEST(Stages, TakeNoMoreTimeThanPasses)
{
    Random random(7);
    const BoundedForm sparse = RandomSparseForm(random, 12, 18);
    const BoundedForm dense = KnownForms()[0].form;
    int lines = 0;
    const SolveControl* clock = nullptr;
    SolveLimits limits;
    limits.seconds = 600.0;
    limits.log = [&](std::string_view line)
    {
        // "<stage>: <what it came to>, <seconds> s", the seconds rounded to the third place.
        const double said = std::stod(std::string(line.substr(line.rfind(", ") + 2)));
        EXPECT_GE(said, 0.1995) << line;
        EXPECT_LE(said, clock->Seconds() + 0.0005001) << line;
        ++lines;
    };
    SolveControl control(limits);
    clock = &control;
    while (control.Seconds() < 0.2)
    {
    }
    const auto passes = [&](const auto& solve)
    {
        const double begin = control.Seconds();
        const CertifiedResult result = solve();
        const double passed = control.Seconds() - begin;
        double taken = result.record.checkSeconds;
        EXPECT_GE(result.record.checkSeconds, 0.0);
        for (const Stage stage : {Stage::SinglePrecision, Stage::Double, Stage::Exact})
        {
            const StageRecord& did = result.record.stages[stage];
            EXPECT_GE(did.seconds, 0.0);
            taken += did.seconds;
            EXPECT_TRUE(did.ran || did.seconds == 0.0);
        }
        EXPECT_LE(taken, passed + 1e-6);
        EXPECT_NE(result.record.stopReason, StopReason::TimeLimit);
    };
    passes([&] { return SolveCertified(dense, nullptr, control); });
    passes([&] { return SolveCertified(sparse, nullptr, control); });
    passes([&] { return SolveUnproved(sparse, nullptr, control); });
    passes([&] { return SolveExactly(dense, SlackBasis(dense), control); });
    passes([&] { return CertifyBasis(sparse, SlackBasis(sparse), control); });
    CertifiedSession session(dense, std::nullopt);
    passes([&] { return *session.Solve(control); });
    session.SetBounds(dense.Logical(2), -kInf, 19);
    passes([&] { return *session.Solve(control); });
    EXPECT_GT(lines, 0);
}

}  // namespace
}  // namespace nuv::test
