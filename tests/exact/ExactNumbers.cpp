/// Forms with numbers that no double says: the same program is stated twice, once in small integers
/// and once with rows, columns and cost multiplied by fractions and long decimals, and every part
/// of the engine has to say of the second what it says of the first. Each is wrong if the double
/// counts.
#include "tests/exact/Certified.hpp"
#include "tests/support/BruteForce.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace nuv::test
{
namespace
{

/// Says a number of a form by its nearest double, and what is left to say in the table.
void State(BoundedForm& form, const FormPlace& place, const Rational& number, double& at)
{
    at = ToDouble(number);
    if (number != ToRational(at, form.numbers))
        form.exact.Set(place, number);
}

struct Factors
{
    std::vector<Rational> row;
    std::vector<Rational> column;
    Rational cost;
};

/// Positive: thirds, sevenths, one and a little more than one, and beyond 2^53 and 2^124.
Rational RandomFactor(Random& random)
{
    const Rational factors[] = {
        Rational(1),
        Rational(1, 3),
        Rational(5, 7),
        Rational(Integer("10000000000000000000000000000000000000001"), Power(10, 40)),
        Rational(Integer("9007199254740993")),
        Rational(Integer("1234567890123456789"), Integer("9876543210987654321987")),
        // Of three words, the middle one zero.
        Rational(Power(2, 124) + 1),
    };
    return factors[random.Between(0, 6)];
}

Factors RandomFactors(Random& random, const BoundedForm& form)
{
    Factors factors;
    for (Index i = 0; i < form.rows; ++i)
        factors.row.push_back(RandomFactor(random));
    for (Index j = 0; j < form.columns; ++j)
        factors.column.push_back(RandomFactor(random));
    factors.cost = RandomFactor(random);
    return factors;
}

void StateBounds(BoundedForm& form, Index variable, const Rational& factor)
{
    const bool isRow = form.IsLogical(variable);
    const Index at = isRow ? form.RowOf(variable) : variable;
    double& lower = isRow ? form.rowLower[at] : form.columnLower[at];
    double& upper = isRow ? form.rowUpper[at] : form.columnUpper[at];
    if (std::isfinite(lower))
        State(form, {isRow ? FormPlace::Of::RowLower : FormPlace::Of::ColumnLower, at},
              ToRational(lower) * factor, lower);
    if (std::isfinite(upper))
        State(form, {isRow ? FormPlace::Of::RowUpper : FormPlace::Of::ColumnUpper, at},
              ToRational(upper) * factor, upper);
}

/// Row i times factors.row[i], variable j in units of factors.column[j], cost times factors.cost.
BoundedForm Multiplied(const BoundedForm& form, const Factors& factors)
{
    BoundedForm result = form;
    result.numbers = CoefficientMeaning::ShortestDecimal;
    SparseVectors<double> columns = form.matrix.Columns();
    for (Index j = 0; j < form.columns; ++j)
    {
        for (std::size_t at = columns.start[j]; at < columns.start[j + 1]; ++at)
        {
            const Index row = columns.index[at];
            State(result, {FormPlace::Of::Entry, row, j},
                  ToRational(columns.value[at]) * factors.row[row] * factors.column[j],
                  columns.value[at]);
        }
        State(result, {FormPlace::Of::Cost, j},
              ToRational(form.cost[j]) * factors.column[j] * factors.cost, result.cost[j]);
        StateBounds(result, j, Rational(1) / factors.column[j]);
    }
    for (Index i = 0; i < form.rows; ++i)
        StateBounds(result, form.Logical(i), factors.row[i]);
    State(result, {FormPlace::Of::Constant}, ToRational(form.constant) * factors.cost,
          result.constant);
    result.matrix = SparseMatrix<double>::FromColumns(std::move(columns), form.rows);
    return result;
}

void ExpectSame(const BoundedForm& form, const BruteForceResult& expected, const Rational& factor,
                const CertifiedResult& proof)
{
    ASSERT_TRUE(proof.record.proved) << CheckCertificate(form, proof.certificate);
    if (expected.verdict == Verdict::Optimal)
    {
        ASSERT_EQ(proof.certificate.status, Status::Optimal);
        ASSERT_EQ(proof.certificate.objective,
                  factor * Rational(expected.objective.numerator, expected.objective.denominator));
    }
    else
        ASSERT_EQ(proof.certificate.status,
                  expected.verdict == Verdict::Infeasible ? Status::Infeasible : Status::Unbounded);
}

TEST(ExactNumbers, AreWhatVerdictsAreAbout)
{
    std::uint64_t wrongByDoubles = 0;
    const std::uint64_t models = ShareOf(4000U);
    for (std::uint64_t seed = 1; seed <= models; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const Index rows = static_cast<Index>(random.Between(1, 3));
        const BoundedForm plain =
            RandomSmallForm(random, rows, static_cast<Index>(random.Between(1, 4)));
        const BruteForceResult expected = SolveByEnumeration(plain);
        const Factors factors = RandomFactors(random, plain);
        BoundedForm form = Multiplied(plain, factors);
        const CertifiedResult proof = Certified(form);
        ExpectSame(form, expected, factors.cost, proof);
        ExpectSame(form, expected, factors.cost, CertifiedFrom(form, SlackBasis(form)));
        if (HasFatalFailure())
            return;
        form.exact = {};
        wrongByDoubles += CheckCertificate(form, proof.certificate).empty() ? 0U : 1U;
    }
    EXPECT_GT(wrongByDoubles, models / 3);
}

TEST(ExactNumbers, AreWhatAConflictIsAbout)
{
    std::uint64_t infeasible = 0;
    const std::uint64_t models = ShareOf(2000U);
    for (std::uint64_t seed = 1; seed <= models; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm plain =
            RandomSmallForm(random, 3, static_cast<Index>(random.Between(1, 4)));
        const BoundedForm form = Multiplied(plain, RandomFactors(random, plain));
        const CertifiedResult proof = Certified(form);
        ASSERT_TRUE(proof.record.proved);
        if (proof.certificate.status != Status::Infeasible)
            continue;
        ++infeasible;
        const InfeasibleBounds iis = IisOf(form, proof);
        ASSERT_TRUE(iis.minimal);
        ASSERT_EQ(SolveByEnumeration(RestrictedTo(plain, iis.members)).verdict,
                  Verdict::Infeasible);
        for (std::size_t left = 0; left < iis.members.size(); ++left)
        {
            std::vector<BoundOfVariable> others = iis.members;
            others.erase(others.begin() + static_cast<std::ptrdiff_t>(left));
            ASSERT_NE(SolveByEnumeration(RestrictedTo(plain, others)).verdict, Verdict::Infeasible);
        }
        const CertifiedResult restricted = Certified(RestrictedTo(form, iis.members));
        ASSERT_EQ(restricted.certificate.status, Status::Infeasible);
        ASSERT_TRUE(restricted.record.proved);
    }
    EXPECT_GT(infeasible, models / 10);
}

/// Two numbers next to one double are two numbers.
TEST(ExactNumbers, TellBoundsApartThatOneDoubleIsNextTo)
{
    BoundedForm form = MakeForm({-1}, {}, {{0x1p53, 0x1p53}});
    form.numbers = CoefficientMeaning::ShortestDecimal;
    const Rational more(Integer("9007199254740993"));
    form.exact.Set({FormPlace::Of::ColumnUpper, 0}, more);
    EXPECT_FALSE(form.IsFixed(0));
    EXPECT_EQ(Certified(form).certificate.objective, -more);
    EXPECT_EQ(FindCrossedBounds(form), kNoIndex);

    form.exact = {};
    form.exact.Set({FormPlace::Of::ColumnLower, 0}, more);
    EXPECT_EQ(FindCrossedBounds(form), 0U);
    const CertifiedResult crossed = Certified(form);
    EXPECT_EQ(crossed.certificate.status, Status::Infeasible);
    EXPECT_TRUE(crossed.record.proved);
    form.exact = {};
    EXPECT_EQ(CheckCertificate(form, crossed.certificate),
              "the bounds said to contradict each other do not");
}

/// max x under x <= 1 and 3 x / 7 <= c: the ranges of the cost and of the side that holds.
TEST(ExactNumbers, AreWhatRangesAreAbout)
{
    BoundedForm form = MakeForm({-1, -1}, {{{1, 1}, {-kInf, 1}}});
    form.numbers = CoefficientMeaning::ShortestDecimal;
    // The second column's cost is -1 + 2^-60, its entry exactly one less than that much.
    const Rational small(1, Power(2, 60));
    form.exact.Set({FormPlace::Of::Cost, 1}, small - 1);
    const CertifiedResult proof = Certified(form);
    ASSERT_EQ(proof.certificate.status, Status::Optimal);
    EXPECT_EQ(proof.certificate.objective, Rational(-1));
    ASSERT_EQ(proof.record.basis.columns[0], BasisStatus::Basic);
    const Sensitivity ranges = RangesOf(form, proof);
    // Down to -infinity the basis stays; up to the other's cost, which rounds to -1.
    EXPECT_EQ(ranges.cost[0].upper, -1.0);
    form.exact.Set({FormPlace::Of::Cost, 1}, Rational(-1, 3));
    form.cost[1] = -1.0 / 3.0;
    EXPECT_EQ(RangesOf(form, Certified(form)).cost[0].upper, -1.0 / 3.0);
    form.exact.Set({FormPlace::Of::Entry, 0, 1}, Rational(1, 3));
    // Now both are as good; a tie is the end of the range.
    EXPECT_EQ(RangesOf(form, Certified(form)).cost[0].upper, -1.0);
}

}  // namespace
}  // namespace nuv::test
