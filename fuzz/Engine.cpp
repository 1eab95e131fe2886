// Bounded forms of at most 3 × 4: the verdict is that of the exact simplex from another basis and,
// where all numbers are small integers, of an enumeration of all bases; what is claimed is accepted
// by the checker, and what is not is refused. The rationals are GMP's or Boost's own, as the build
// was told.
#include "fuzz/Input.hpp"
#include "fuzz/Target.hpp"
#include "tests/support/BruteForce.hpp"
#include "tests/support/Forms.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"

#include <cmath>

namespace
{
using namespace nuv;

/// What the numbers of a form are.
enum class Kind
{
    Integers,  // from -3 to 3
    Eighths,   // from -16 to 15 7/8
    Tenths,    // from -12.8 to 12.7, meant as they are written
    Wide       // integers times powers of two
};

double NumberOf(fuzz::Input* input, Kind kind)
{
    switch (kind)
    {
    case Kind::Integers:
        return input->Below(7) - 3;
    case Kind::Eighths:
        return input->Signed() / 8.0;
    case Kind::Tenths:
        return input->Signed() / 10.0;
    default:
        return std::ldexp(input->Below(7) - 3, input->Signed() / 4);
    }
}

/// Bounds of all kinds: both, one, none, the same twice, and now and then some that cross.
test::Interval BoundsOf(fuzz::Input* input, Kind kind)
{
    const int shape = input->Below(8);
    const double first = shape == 0 ? 0.0 : NumberOf(input, kind);
    const double second = shape < 5 ? NumberOf(input, kind) : first;
    switch (shape)
    {
    case 0:
        return {0.0, test::kInf};
    case 1:
        return {-test::kInf, test::kInf};
    case 2:
        return {first, test::kInf};
    case 3:
        return {-test::kInf, second};
    case 4:
        return {first, second};  // in whichever order
    case 5:
        return {first, first};
    case 6:
        return {0.0, std::fabs(first)};
    default:
        return {-std::fabs(first), std::fabs(first)};
    }
}

BoundedForm MakeForm(fuzz::Input* input, Kind kind)
{
    const int rows = input->Below(4);
    const int columns = input->Below(5);
    std::vector<double> cost;
    std::vector<test::Interval> bounds;
    for (int j = 0; j != columns; ++j)
    {
        cost.push_back(NumberOf(input, kind));
        bounds.push_back(BoundsOf(input, kind));
    }
    std::vector<test::DenseRow> dense;
    for (int i = 0; i != rows; ++i)
    {
        test::DenseRow row;
        for (int j = 0; j != columns; ++j)
            row.coefficients.push_back(NumberOf(input, kind));
        row.bounds = BoundsOf(input, kind);
        dense.push_back(row);
    }
    BoundedForm form = test::MakeForm(cost, dense, bounds);
    form.numbers = kind == Kind::Tenths ? CoefficientMeaning::ShortestDecimal
                                        : CoefficientMeaning::StoredDouble;
    return form;
}

/// Any statuses, whether or not they make a basis.
Basis AnyBasis(fuzz::Input* input, const BoundedForm& form)
{
    Basis basis = SlackBasis(form);
    for (Index v = 0; v != form.Variables(); ++v)
        basis[v] = static_cast<BasisStatus>(input->Below(4));
    return basis;
}

void ExpectSame(const CertifiedResult& proof, const CertifiedResult& other)
{
    EXPECT_TRUE(other.record.proved);
    ASSERT_EQ(proof.certificate.status, other.certificate.status);
    EXPECT_EQ(proof.certificate.objective, other.certificate.objective);
}

void ExpectAsEnumerated(const BoundedForm& form, const CertifiedResult& proof)
{
    const test::BruteForceResult expected = test::SolveByEnumeration(form);
    switch (expected.verdict)
    {
    case test::Verdict::Optimal:
        ASSERT_EQ(proof.certificate.status, Status::Optimal);
        EXPECT_EQ(proof.certificate.objective,
                  Rational(expected.objective.numerator, expected.objective.denominator));
        break;
    case test::Verdict::Infeasible:
        EXPECT_EQ(proof.certificate.status, Status::Infeasible);
        break;
    case test::Verdict::Unbounded:
        EXPECT_EQ(proof.certificate.status, Status::Unbounded);
        break;
    }
}

/// The doubles beside the fractions are the fractions, rounded.
void ExpectValuesBesidePoint(const BoundedForm& form, const CertifiedResult& proof)
{
    if (proof.certificate.status != Status::Optimal)
        return;
    for (Index j = 0; j != form.columns; ++j)
    {
        const double exact = ToDouble(proof.certificate.primal.At(j));
        EXPECT_NEAR(proof.record.value[j], exact, 1e-12 * std::fabs(exact));
    }
}

/// Nothing that is not so passes the checker.
void ExpectRefused(const BoundedForm& form, const CertifiedResult& proof)
{
    CertifiedResult other = proof;
    other.certificate.objective += 1;
    EXPECT_EQ(CheckCertificate(form, other.certificate).empty(),
              proof.certificate.status != Status::Optimal);
    for (const Status status : {Status::Optimal, Status::Infeasible, Status::Unbounded})
    {
        other = proof;
        other.certificate.status = status;
        EXPECT_EQ(CheckCertificate(form, other.certificate).empty(),
                  status == proof.certificate.status);
    }
}
}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const auto kind = static_cast<Kind>(input.Below(4));
    const BoundedForm form = MakeForm(&input, kind);
    // Forms this small are solved in a few pivots: none may need more.
    SolveLimits limits;
    limits.doublePivots = 100000;
    limits.exactPivots = 100000;
    SolveControl control(limits);
    const CertifiedResult proof = SolveCertified(form, nullptr, control);
    EXPECT_TRUE(proof.record.proved);
    EXPECT_EQ(CheckCertificate(form, proof.certificate), "");
    ExpectSame(proof, SolveExactly(form, SlackBasis(form), control));
    ExpectSame(proof, SolveExactly(form, AnyBasis(&input, form), control));
    ExpectValuesBesidePoint(form, proof);
    ExpectRefused(form, proof);
    if (kind == Kind::Integers)
        ExpectAsEnumerated(form, proof);
    return 0;
}
