/// The independent check refuses every certificate that has been tampered with.
#include "tests/exact/Certified.hpp"
#include "tests/support/Forms.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"

#include <gtest/gtest.h>

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
BoundedForm InfeasibleForm()
{
    return MakeForm({1, 1}, {{{1, 1}, {6, kInf}}, {{1, -1}, {-kInf, 1}}, {{-1, 2}, {-kInf, 1}}},
                    {{0, kInf}, {0, 2}});
}
BoundedForm UnboundedForm()
{
    return MakeForm({-1, -2}, {{{1, -1}, {-kInf, 3}}, {{-2, 1}, {-kInf, 4}}});
}

Proof Solve(const BoundedForm& form)
{
    return Certified(form);
}

TEST(Certificate, OptimalIsRefusedOnceAnyPartIsChanged)
{
    const BoundedForm form = OptimalForm();
    const Proof proof = Solve(form);
    ASSERT_EQ(proof.status, ProofStatus::Optimal);
    ASSERT_EQ(CheckProof(form, proof), "");
    for (Index j = 0; j < form.columns; ++j)
    {
        for (const int change : {-1, 1})
        {
            Proof wrong = proof;
            wrong.primal.numerator[j] += change;
            EXPECT_NE(CheckProof(form, wrong), "") << j << " " << change;
        }
    }
    for (Index i = 0; i < form.rows; ++i)
    {
        for (const int change : {-1, 1})
        {
            Proof wrong = proof;
            wrong.dual.numerator[i] += change;
            EXPECT_NE(CheckProof(form, wrong), "") << i << " " << change;
        }
    }
    Proof wrong = proof;
    wrong.objective += Rational(1, 1000000000);
    EXPECT_EQ(CheckProof(form, wrong), "the objective is not that of the point");
}

TEST(Certificate, OnlyBoundsThatCrossContradictEachOther)
{
    BoundedForm form = InfeasibleForm();
    form.columnLower[1] = 3.0;
    Proof proof;
    proof.status = ProofStatus::Infeasible;
    proof.contradiction = 1;
    EXPECT_EQ(CheckProof(form, proof), "");
    for (const Index other : {Index{0}, Index{2}, form.Variables(), form.Variables() + 1})
    {
        proof.contradiction = other;
        EXPECT_EQ(CheckProof(form, proof), "the bounds said to contradict each other do not");
    }
    proof.contradiction = 1;
    form.columnLower[1] = 2.0;
    EXPECT_EQ(CheckProof(form, proof), "the bounds said to contradict each other do not");
}

TEST(Certificate, OptimalIsRefusedForAnotherForm)
{
    const BoundedForm form = OptimalForm();
    const Proof proof = Solve(form);
    BoundedForm other = form;
    other.cost[1] = -1.0;
    EXPECT_NE(CheckProof(other, proof), "");
    other = form;
    other.rowUpper[2] = 17.0;
    EXPECT_NE(CheckProof(other, proof), "");
    other = form;
    SparseVectors<double> entries = other.matrix.Columns();
    entries.value[0] = 2.0;
    other.matrix = SparseMatrix<double>::FromColumns(entries, other.rows);
    EXPECT_NE(CheckProof(other, proof), "");
}

TEST(Certificate, WrongShapesAreRefused)
{
    const BoundedForm form = OptimalForm();
    const Proof proof = Solve(form);
    Proof wrong = proof;
    wrong.primal.numerator.pop_back();
    EXPECT_NE(CheckProof(form, wrong), "");
    wrong = proof;
    wrong.dual.numerator.emplace_back(0);
    EXPECT_NE(CheckProof(form, wrong), "");
    wrong = proof;
    wrong.primal.denominator = 0;
    EXPECT_NE(CheckProof(form, wrong), "");
    wrong = proof;
    wrong.dual.denominator = -wrong.dual.denominator;
    EXPECT_NE(CheckProof(form, wrong), "");
    wrong = proof;
    wrong.status = ProofStatus::Stopped;
    EXPECT_EQ(CheckProof(form, wrong), "nothing is claimed");
}

TEST(Certificate, FarkasMultipliersAreRefusedOnceWeakened)
{
    const BoundedForm form = InfeasibleForm();
    const Proof proof = Solve(form);
    ASSERT_EQ(proof.status, ProofStatus::Infeasible);
    ASSERT_EQ(CheckProof(form, proof), "");
    Proof wrong = proof;
    for (Integer& multiplier : wrong.dual.numerator)
        multiplier = -multiplier;
    EXPECT_NE(CheckProof(form, wrong), "");
    wrong = proof;
    for (Integer& multiplier : wrong.dual.numerator)
        multiplier = 0;
    EXPECT_EQ(CheckProof(form, wrong), "the multipliers contradict nothing");
    // The same multipliers prove nothing once the form has a feasible point.
    BoundedForm feasible = form;
    feasible.rowLower[0] = 3.0;
    EXPECT_EQ(Solve(feasible).status, ProofStatus::Optimal);
    EXPECT_NE(CheckProof(feasible, proof), "");
    wrong = proof;
    wrong.contradiction = 0;
    EXPECT_NE(CheckProof(form, wrong), "");
}

TEST(Certificate, ARayIsRefusedOnceItBendsOrTurns)
{
    const BoundedForm form = UnboundedForm();
    const Proof proof = Solve(form);
    ASSERT_EQ(proof.status, ProofStatus::Unbounded);
    ASSERT_EQ(CheckProof(form, proof), "");
    Proof wrong = proof;
    for (Integer& entry : wrong.ray.numerator)
        entry = -entry;
    EXPECT_NE(CheckProof(form, wrong), "");
    wrong = proof;
    for (Integer& entry : wrong.ray.numerator)
        entry = 0;
    EXPECT_EQ(CheckProof(form, wrong), "the ray does not improve");
    wrong = proof;
    wrong.primal.numerator[0] = -1;
    EXPECT_NE(CheckProof(form, wrong), "");
    BoundedForm bounded = form;
    bounded.rowUpper[0] = 3.0;
    bounded.columnUpper[0] = 1e6;
    EXPECT_NE(CheckProof(bounded, proof), "");
}

/// Wrong verdicts cannot hide behind a right certificate of another kind.
TEST(Certificate, AVerdictNeedsItsOwnCertificate)
{
    for (const BoundedForm& form : {OptimalForm(), InfeasibleForm(), UnboundedForm()})
    {
        const Proof proof = Solve(form);
        ASSERT_TRUE(proof.proved);
        for (const ProofStatus status :
             {ProofStatus::Optimal, ProofStatus::Infeasible, ProofStatus::Unbounded})
        {
            Proof claim = proof;
            claim.status = status;
            EXPECT_EQ(CheckProof(form, claim).empty(), status == proof.status);
        }
    }
}

}  // namespace
}  // namespace nuv::test
