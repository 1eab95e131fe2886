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

CertifiedResult Solve(const BoundedForm& form)
{
    return Certified(form);
}

TEST(Certificate, OptimalIsRefusedOnceAnyPartIsChanged)
{
    const BoundedForm form = OptimalForm();
    const CertifiedResult proof = Solve(form);
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    ASSERT_EQ(CheckCertificate(form, proof.certificate), "");
    for (Index j = 0; j < form.columns; ++j)
    {
        for (const int change : {-1, 1})
        {
            CertifiedResult wrong = proof;
            wrong.certificate.primal.numerator[j] += change;
            EXPECT_NE(CheckCertificate(form, wrong.certificate), "") << j << " " << change;
        }
    }
    for (Index i = 0; i < form.rows; ++i)
    {
        for (const int change : {-1, 1})
        {
            CertifiedResult wrong = proof;
            wrong.certificate.dual.numerator[i] += change;
            EXPECT_NE(CheckCertificate(form, wrong.certificate), "") << i << " " << change;
        }
    }
    CertifiedResult wrong = proof;
    wrong.certificate.objective += Rational(1, 1000000000);
    EXPECT_EQ(CheckCertificate(form, wrong.certificate), "the objective is not that of the point");
}

TEST(Certificate, OnlyBoundsThatCrossContradictEachOther)
{
    BoundedForm form = InfeasibleForm();
    form.columnLower[1] = 3.0;
    Certificate certificate;
    certificate.status = Status::Infeasible;
    certificate.contradiction = 1;
    EXPECT_EQ(CheckCertificate(form, certificate), "");
    for (const Index other : {Index{0}, Index{2}, form.Variables(), form.Variables() + 1})
    {
        certificate.contradiction = other;
        EXPECT_EQ(CheckCertificate(form, certificate),
                  "the bounds said to contradict each other do not");
    }
    certificate.contradiction = 1;
    form.columnLower[1] = 2.0;
    EXPECT_EQ(CheckCertificate(form, certificate),
              "the bounds said to contradict each other do not");
}

TEST(Certificate, OptimalIsRefusedForAnotherForm)
{
    const BoundedForm form = OptimalForm();
    const CertifiedResult proof = Solve(form);
    BoundedForm other = form;
    other.cost[1] = -1.0;
    EXPECT_NE(CheckCertificate(other, proof.certificate), "");
    other = form;
    other.rowUpper[2] = 17.0;
    EXPECT_NE(CheckCertificate(other, proof.certificate), "");
    other = form;
    SparseVectors<double> entries = other.matrix.Columns();
    entries.value[0] = 2.0;
    other.matrix = SparseMatrix<double>::FromColumns(entries, other.rows);
    EXPECT_NE(CheckCertificate(other, proof.certificate), "");
}

TEST(Certificate, WrongShapesAreRefused)
{
    const BoundedForm form = OptimalForm();
    const CertifiedResult proof = Solve(form);
    CertifiedResult wrong = proof;
    wrong.certificate.primal.numerator.pop_back();
    EXPECT_NE(CheckCertificate(form, wrong.certificate), "");
    wrong = proof;
    wrong.certificate.dual.numerator.emplace_back(0);
    EXPECT_NE(CheckCertificate(form, wrong.certificate), "");
    wrong = proof;
    wrong.certificate.primal.denominator = 0;
    EXPECT_NE(CheckCertificate(form, wrong.certificate), "");
    wrong = proof;
    wrong.certificate.dual.denominator = -wrong.certificate.dual.denominator;
    EXPECT_NE(CheckCertificate(form, wrong.certificate), "");
    wrong = proof;
    wrong.certificate.status = Status::Stopped;
    EXPECT_EQ(CheckCertificate(form, wrong.certificate), "nothing is claimed");
}

TEST(Certificate, FarkasMultipliersAreRefusedOnceWeakened)
{
    const BoundedForm form = InfeasibleForm();
    const CertifiedResult proof = Solve(form);
    ASSERT_EQ(proof.certificate.status, Status::Infeasible);
    ASSERT_EQ(CheckCertificate(form, proof.certificate), "");
    CertifiedResult wrong = proof;
    for (Integer& multiplier : wrong.certificate.dual.numerator)
        multiplier = -multiplier;
    EXPECT_NE(CheckCertificate(form, wrong.certificate), "");
    wrong = proof;
    for (Integer& multiplier : wrong.certificate.dual.numerator)
        multiplier = 0;
    EXPECT_EQ(CheckCertificate(form, wrong.certificate), "the multipliers contradict nothing");
    // The same multipliers prove nothing once the form has a feasible point.
    BoundedForm feasible = form;
    feasible.rowLower[0] = 3.0;
    EXPECT_EQ(Solve(feasible).certificate.status, Status::Optimal);
    EXPECT_NE(CheckCertificate(feasible, proof.certificate), "");
    wrong = proof;
    wrong.certificate.contradiction = 0;
    EXPECT_NE(CheckCertificate(form, wrong.certificate), "");
}

TEST(Certificate, ARayIsRefusedOnceItBendsOrTurns)
{
    const BoundedForm form = UnboundedForm();
    const CertifiedResult proof = Solve(form);
    ASSERT_EQ(proof.certificate.status, Status::Unbounded);
    ASSERT_EQ(CheckCertificate(form, proof.certificate), "");
    CertifiedResult wrong = proof;
    for (Integer& entry : wrong.certificate.ray.numerator)
        entry = -entry;
    EXPECT_NE(CheckCertificate(form, wrong.certificate), "");
    wrong = proof;
    for (Integer& entry : wrong.certificate.ray.numerator)
        entry = 0;
    EXPECT_EQ(CheckCertificate(form, wrong.certificate), "the ray does not improve");
    wrong = proof;
    wrong.certificate.primal.numerator[0] = -1;
    EXPECT_NE(CheckCertificate(form, wrong.certificate), "");
    BoundedForm bounded = form;
    bounded.rowUpper[0] = 3.0;
    bounded.columnUpper[0] = 1e6;
    EXPECT_NE(CheckCertificate(bounded, proof.certificate), "");
}

/// Wrong verdicts cannot hide behind a right certificate of another kind.
TEST(Certificate, AVerdictNeedsItsOwnCertificate)
{
    for (const BoundedForm& form : {OptimalForm(), InfeasibleForm(), UnboundedForm()})
    {
        const CertifiedResult proof = Solve(form);
        ASSERT_TRUE(proof.record.proved);
        for (const Status status : {Status::Optimal, Status::Infeasible, Status::Unbounded})
        {
            CertifiedResult claim = proof;
            claim.certificate.status = status;
            EXPECT_EQ(CheckCertificate(form, claim.certificate).empty(),
                      status == proof.certificate.status);
        }
    }
}

}  // namespace
}  // namespace nuv::test
