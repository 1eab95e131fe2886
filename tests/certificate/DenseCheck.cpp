/// The check in words says what the check in integers of any size says.
#include "Nuv/Algebra/Dense/WordQuotient.hpp"
#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Certificate/Dense/DenseCheck.hpp"
#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Exact/Dense/SolveSmall.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace nuv::test
{
namespace
{

constexpr unsigned kWidth = 2;

/// Small integers, over one denominator for point and duals, as this check takes them.
DenseOptimum InWords(const Certificate& certificate)
{
    DenseOptimum optimum;
    optimum.width = kWidth;
    const auto append = [](std::vector<Word>& words, const Integer& number)
    {
        words.push_back(static_cast<Word>(number.ToWord()));
        words.push_back(number.Sign() < 0 ? ~Word{0} : 0);
    };
    append(optimum.denominator, certificate.primal.denominator * certificate.dual.denominator);
    for (const Integer& numerator : certificate.primal.numerator)
        append(optimum.point, numerator * certificate.dual.denominator);
    for (const Integer& numerator : certificate.dual.numerator)
        append(optimum.dual, numerator * certificate.primal.denominator);
    return optimum;
}

/// With the objective that its point has: this check computes it and claims none.
std::string CheckedWithObjective(const BoundedForm& form, Certificate certificate)
{
    certificate.objective = 0;
    for (Index j = 0; j < form.columns; ++j)
        certificate.objective += form.ExactCost(j) * certificate.primal.At(j);
    return CheckCertificate(form, certificate);
}

/// A small form and what is proved of it, in which half of the time all numbers are long: entries
/// and costs are enlarged by one power of two, the point and its bounds by another, so that rows
/// have both and the multipliers stay as they are.
struct Proved
{
    BoundedForm form;
    Certificate certificate;
};

Proved DrawProved(Random& random, int fewestRows)
{
    Proved drawn;
    const auto rows = static_cast<Index>(random.Between(fewestRows, 4));
    drawn.form = RandomSmallForm(random, rows, static_cast<Index>(random.Between(1, 4)));
    SolveControl control;
    drawn.certificate = SolveCertified(drawn.form, nullptr, control).certificate;
    if (random.OneIn(2))
        return drawn;
    const int ofEntries = random.Between(0, 70);
    const int ofPoint = random.Between(0, 40);
    const auto enlarge = [](std::vector<double>& numbers, int exponent)
    {
        for (double& number : numbers)
            number = std::ldexp(number, exponent);
    };
    BoundedForm& form = drawn.form;
    SparseVectors<double> columns = form.matrix.Columns();
    enlarge(columns.value, ofEntries);
    form.matrix = SparseMatrix<double>::FromColumns(std::move(columns), form.rows);
    enlarge(form.cost, ofEntries);
    enlarge(form.columnLower, ofPoint);
    enlarge(form.columnUpper, ofPoint);
    enlarge(form.rowLower, ofEntries + ofPoint);
    enlarge(form.rowUpper, ofEntries + ofPoint);
    for (Integer& numerator : drawn.certificate.primal.numerator)
        numerator <<= static_cast<std::size_t>(ofPoint);
    return drawn;
}

/// Changes one number, mostly so that the certificate is none any more.
void ChangeOne(Certificate& certificate, Random& random)
{
    const bool isDual = random.OneIn(2);
    ExactVector& vector = isDual ? certificate.dual : certificate.primal;
    if (vector.numerator.empty() || random.OneIn(8))
        vector.denominator += 1;
    else
        vector.numerator[random.Next() % vector.numerator.size()] += random.OneIn(2) ? 1 : -1;
}

/// Integers of two words and a sign, of one word as often as of two.
WideInteger DrawWide(Random& random)
{
    WideInteger wide;
    wide.low = random.Next() >> random.Between(0, 63);
    if (random.OneIn(2))
        wide.high = random.Next() >> random.Between(2, 63);
    wide.isNegative = !wide.IsZero() && random.OneIn(2);
    return wide;
}

Integer ValueOf(const WideInteger& wide)
{
    const Integer magnitude = (Integer(wide.high) << 64) + Integer(wide.low);
    return wide.isNegative ? -magnitude : magnitude;
}

TEST(WideInteger, IsMultipliedAndCopiedAsTheNumberThatItIs)
{
    constexpr unsigned kWords = 5;
    Random random(7);
    for (int round = 0; round < ShareOf(4000); ++round)
    {
        const WideInteger x = DrawWide(random);
        const WideInteger y = DrawWide(random);
        const WideInteger z = DrawWide(random);
        EXPECT_EQ(x.BitLength(), BitLength(ValueOf(x)));
        Word factor[kWords];
        Word sum[kWords];
        CopyWords(x, factor, kWords);
        CopyWords(z, sum, kWords);
        ASSERT_EQ(ToInteger(factor, kWords), ValueOf(x));
        AddProduct(sum, factor, y, kWords);
        ASSERT_EQ(ToInteger(sum, kWords), ValueOf(z) + ValueOf(x) * ValueOf(y));
    }
}

/// Up to 126 bits, and 5^27; more is refused.
TEST(WideInteger, TakesAnExactNumberTimesPowersOfTwoAndFive)
{
    Random random(8);
    int taken = 0;
    for (int round = 0; round < ShareOf(4000); ++round)
    {
        const auto mantissa = static_cast<std::int64_t>(random.Next() >> random.Between(1, 63)) *
                              random.Between(-1, 1);
        const Scale own{random.Between(0, 60), random.Between(0, 12)};
        const Scale scale{random.Between(0, 70), random.Between(0, 17)};
        const Integer expected = Integer(mantissa) * PowerOf(own + scale);
        WideInteger wide;
        const bool fits = ToWideInteger({mantissa, own}, scale, wide);
        EXPECT_EQ(fits,
                  mantissa == 0 || (BitLength(expected) < 127 && own.five + scale.five <= 27 &&
                                    own.two + scale.two < 126));
        if (fits)
        {
            ++taken;
            ASSERT_EQ(ValueOf(wide), expected);
        }
    }
    EXPECT_GT(taken, ShareOf(4000) / 4);
}

TEST(DenseCheck, AgreesWithTheCheckInIntegersOfAnySize)
{
    Random random(1);
    DenseForm dense;
    IntegerForm integers;
    DenseCheck check;
    int held = 0;
    int failed = 0;
    for (int round = 0; round < ShareOf(4000); ++round)
    {
        const auto [form, certificate] = DrawProved(random, 0);
        if (certificate.status != Status::Optimal)
            continue;
        TakeForm(form, dense);
        ASSERT_TRUE(integers.Take(dense));
        ASSERT_TRUE(check.IsOptimal(integers, InWords(certificate)));
        for (int change = 0; change < 8; ++change)
        {
            Certificate changed = certificate;
            ChangeOne(changed, random);
            const bool holds = CheckedWithObjective(form, changed).empty();
            ASSERT_EQ(check.IsOptimal(integers, InWords(changed)), holds) << round;
            ++(holds ? held : failed);
        }
    }
    EXPECT_GT(held, ShareOf(4000) / 10);
    EXPECT_GT(failed, ShareOf(4000));
}

TEST(DenseCheck, AgreesAboutMultipliersThatContradict)
{
    Random random(2);
    DenseForm dense;
    IntegerForm integers;
    DenseCheck check;
    int held = 0;
    int failed = 0;
    for (int round = 0; round < ShareOf(4000); ++round)
    {
        const auto [form, certificate] = DrawProved(random, 1);
        if (certificate.status != Status::Infeasible || certificate.contradiction != kNoIndex)
            continue;
        TakeForm(form, dense);
        ASSERT_TRUE(integers.Take(dense));
        for (int change = 0; change < 8; ++change)
        {
            Certificate changed = certificate;
            changed.primal.numerator.clear();
            if (change > 0)
                changed.dual.numerator[random.Next() % form.rows] += random.OneIn(2) ? 1 : -1;
            const bool holds = CheckCertificate(form, changed).empty();
            ASSERT_EQ(check.IsInfeasible(integers, kWidth, InWords(changed).dual), holds) << round;
            ASSERT_TRUE(holds || change > 0);
            ++(holds ? held : failed);
        }
        ASSERT_FALSE(check.IsInfeasible(integers, kWidth, {}));
    }
    EXPECT_GT(held, ShareOf(4000) / 10);
    EXPECT_GT(failed, ShareOf(4000) / 10);
}

/// 2^100 x <= 0 and x >= 2^100, with a multiplier of 62 bits: the sum has more than any two
/// numbers.
TEST(DenseCheck, HasRoomForProductsOfThreeLongNumbers)
{
    DenseForm dense;
    TakeForm(MakeForm({0}, {{{0x1p100}, {-kInf, 0}}}, {{0x1p100, kInf}}), dense);
    IntegerForm integers;
    ASSERT_TRUE(integers.Take(dense));
    DenseCheck check;
    const Word multiplier = Word{1} << 62;
    EXPECT_TRUE(check.IsInfeasible(integers, 1, {~multiplier + 1}));
    EXPECT_FALSE(check.IsInfeasible(integers, 1, {multiplier}));
}

/// Each check takes the words that its longest sums need: of products with one number of the form,
/// or two, of as many terms as 32 bits count, and the sign.
TEST(DenseCheck, TakesTheWordsThatItsSumsNeed)
{
    DenseForm dense;
    IntegerForm integers;
    DenseCheck check;
    for (unsigned bits = 1; bits <= 125; ++bits)
    {
        TakeForm(MakeForm({0}, {{{std::ldexp(1.0, static_cast<int>(bits) - 1)}, {-kInf, kInf}}}),
                 dense);
        ASSERT_TRUE(integers.Take(dense));
        ASSERT_EQ(integers.Bits(), bits);
        const auto words = [](unsigned needed) { return needed / 64 + (needed % 64 != 0 ? 1 : 0); };
        const DenseOptimum zero{1, {1}, {0}, {0}};
        EXPECT_TRUE(check.IsOptimal(integers, zero));
        EXPECT_EQ(check.Width(), 1 + words(2 * bits + 33));
        EXPECT_FALSE(check.IsUnbounded(integers, zero, 2, {0, 0}));
        EXPECT_EQ(check.Width(), 2 + words(bits + 33));
        EXPECT_FALSE(check.IsInfeasible(integers, 3, {0, 0, 0}));
        EXPECT_EQ(check.Width(), 3 + words(2 * bits + 65));
    }
}

TEST(DenseCheck, AgreesAboutRays)
{
    Random random(3);
    DenseForm dense;
    IntegerForm integers;
    DenseCheck check;
    int held = 0;
    int failed = 0;
    for (int round = 0; round < ShareOf(4000); ++round)
    {
        const auto [form, certificate] = DrawProved(random, 0);
        if (certificate.status != Status::Unbounded)
            continue;
        TakeForm(form, dense);
        ASSERT_TRUE(integers.Take(dense));
        for (int change = 0; change < 8; ++change)
        {
            Certificate changed = certificate;
            ExactVector& vector = random.OneIn(2) ? changed.primal : changed.ray;
            if (change > 0)
                vector.numerator[random.Next() % form.columns] += random.OneIn(2) ? 1 : -1;
            Certificate ray;
            ray.primal = changed.ray;
            changed.dual.numerator.assign(form.rows, Integer(0));
            const bool holds = CheckCertificate(form, changed).empty();
            ASSERT_EQ(check.IsUnbounded(integers, InWords(changed), kWidth, InWords(ray).point),
                      holds)
                << round;
            ASSERT_TRUE(holds || change > 0);
            ++(holds ? held : failed);
        }
        ASSERT_FALSE(check.IsUnbounded(integers, InWords(certificate), kWidth, {}));
    }
    EXPECT_GT(held, ShareOf(4000) / 10);
    EXPECT_GT(failed, ShareOf(4000) / 10);
}

TEST(DenseCheck, WantsNumbersOfTheRightShape)
{
    DenseForm dense;
    TakeForm(MakeForm({1}, {{{1}, {1, kInf}}}), dense);
    IntegerForm integers;
    ASSERT_TRUE(integers.Take(dense));
    DenseCheck check;
    const DenseOptimum right{1, {1}, {1}, {1}};
    EXPECT_TRUE(check.IsOptimal(integers, right));
    EXPECT_EQ(*check.Objective(), 1u);
    EXPECT_EQ(*check.Activity(0), 1u);
    EXPECT_EQ(*check.ReducedCost(0), 0u);
    for (const DenseOptimum& wrong : {DenseOptimum{1, {}, {1}, {1}}, DenseOptimum{1, {1}, {}, {1}},
                                      DenseOptimum{1, {1}, {1}, {}}, DenseOptimum{1, {0}, {1}, {1}},
                                      DenseOptimum{1, {~Word{0}}, {1}, {1}}})
        EXPECT_FALSE(check.IsOptimal(integers, wrong));
}

TEST(IntegerForm, ScalesRowsCostsAndBoundsByThemselves)
{
    DenseForm dense;
    BoundedForm form = MakeForm({0.5, 3}, {{{0.25, -7}, {-kInf, 1}}, {{2, 0}, {-1.5, 4}}},
                                {{-0.125, 8}, {0, kInf}});
    TakeForm(form, dense);
    IntegerForm integers;
    ASSERT_TRUE(integers.Take(dense));
    EXPECT_EQ(integers.CostScale().two, 1);
    EXPECT_EQ(integers.BoundScale().two, 3);
    EXPECT_EQ(integers.BoundFactor().low, 8u);
    EXPECT_EQ(integers.RowScale(0).two, 2);
    EXPECT_EQ(integers.RowScale(1).two, 1);
    EXPECT_EQ(integers.Cost(0).low, 1u);
    EXPECT_EQ(integers.Cost(1).low, 6u);
    EXPECT_EQ(integers.Entry(0, 1).low, 28u);
    EXPECT_TRUE(integers.Entry(0, 1).isNegative);
    EXPECT_TRUE(integers.Entry(1, 1).IsZero());
    EXPECT_EQ(integers.Lower(0).low, 1u);
    EXPECT_TRUE(integers.Lower(0).isNegative);
    EXPECT_EQ(integers.Upper(0).low, 64u);
    EXPECT_TRUE(integers.Lower(2).IsZero()) << "an infinite side";
    EXPECT_EQ(integers.Upper(2).low, 4u);
    EXPECT_EQ(integers.Upper(3).low, 8u);
    EXPECT_EQ(integers.Bits(), 7u);
    TakeForm(MakeForm({0}, {}, {{-0.5, 0.25}}), dense);
    ASSERT_TRUE(integers.Take(dense));
    EXPECT_EQ(integers.BoundScale().two, 2);
    EXPECT_EQ(integers.Lower(0).low, 2u);
}

/// Every number of a form that is drawn, by the least powers that its row, the costs, or the bounds
/// of columns need.
TEST(IntegerForm, ScalesEachNumberByTheLeastThatMakesAllOfItsKindWhole)
{
    Random random(11);
    IntegerForm integers;
    for (int round = 0; round < 300; ++round)
    {
        DenseForm form;
        form.rows = static_cast<Index>(random.Between(0, 4));
        form.columns = static_cast<Index>(random.Between(1, 4));
        form.numbers = random.OneIn(2) ? CoefficientMeaning::StoredDouble
                                       : CoefficientMeaning::ShortestDecimal;
        const auto draw = [&](std::size_t count, std::vector<double>& numbers, double infinite)
        {
            for (std::size_t k = 0; k < count; ++k)
                numbers.push_back(random.OneIn(5)   ? infinite
                                  : random.OneIn(3) ? random.Between(-99, 99) / 8.0
                                  : random.OneIn(3) ? random.Between(-99, 99) / 10.0
                                                    : random.Between(-9, 9));
        };
        draw(std::size_t{form.rows} * form.columns, form.matrix, 0.0);
        draw(form.columns, form.cost, 0.0);
        draw(form.Variables(), form.lower, -kInf);
        draw(form.Variables(), form.upper, kInf);
        ASSERT_TRUE(integers.Take(form));
        unsigned bits = integers.BoundFactor().BitLength();
        const auto expectWhole =
            [&](const std::vector<std::pair<double, WideInteger>>& numbers, Scale scale)
        {
            Scale least;
            for (const auto& [number, whole] : numbers)
            {
                const ExactNumber parts =
                    std::isfinite(number) ? TakeApart(number, form.numbers) : ExactNumber{};
                least = {std::max(least.two, -parts.scale.two),
                         std::max(least.five, -parts.scale.five)};
                ASSERT_EQ(ValueOf(whole), Scaled(parts, scale));
                bits = std::max(bits, whole.BitLength());
            }
            ASSERT_EQ(scale, least);
        };
        std::vector<std::pair<double, WideInteger>> costs;
        std::vector<std::pair<double, WideInteger>> bounds;
        for (Index j = 0; j < form.columns; ++j)
        {
            costs.emplace_back(form.cost[j], integers.Cost(j));
            bounds.emplace_back(form.lower[j], integers.Lower(j));
            bounds.emplace_back(form.upper[j], integers.Upper(j));
        }
        ASSERT_NO_FATAL_FAILURE(expectWhole(costs, integers.CostScale()));
        ASSERT_NO_FATAL_FAILURE(expectWhole(bounds, integers.BoundScale()));
        ASSERT_EQ(ValueOf(integers.BoundFactor()), PowerOf(integers.BoundScale()));
        for (Index i = 0; i < form.rows; ++i)
        {
            const Index logical = form.columns + i;
            std::vector<std::pair<double, WideInteger>> row{
                {form.lower[logical], integers.Lower(logical)},
                {form.upper[logical], integers.Upper(logical)}};
            for (Index j = 0; j < form.columns; ++j)
                row.emplace_back(form.matrix[std::size_t{i} * form.columns + j],
                                 integers.Entry(i, j));
            ASSERT_NO_FATAL_FAILURE(expectWhole(row, integers.RowScale(i)));
        }
        ASSERT_EQ(integers.Bits(), bits);
    }
}

TEST(IntegerForm, TakesNumbersOfUpTo126Bits)
{
    DenseForm dense;
    IntegerForm integers;
    for (const auto& [small, large, fits] :
         {std::tuple{1.0, 0x1p125, true}, std::tuple{1.0, 0x1.8p125, true},
          std::tuple{1.0, 0x1p126, false}, std::tuple{0x1p-62, 0x1p63, true},
          std::tuple{1.0, 0x1.8p126, false}, std::tuple{1.0, 0x1.8p64, true},
          std::tuple{1.0, 0x1.8p70, true}})
    {
        TakeForm(MakeForm({0}, {{{small}, {-kInf, large}}}), dense);
        EXPECT_EQ(integers.Take(dense), fits) << small << ' ' << large;
    }
    // Of decimals, powers of five up to the 27th.
    BoundedForm form = MakeForm({0}, {{{1e-27}, {-kInf, 1}}});
    form.numbers = CoefficientMeaning::ShortestDecimal;
    TakeForm(form, dense);
    EXPECT_TRUE(integers.Take(dense));
    form = MakeForm({1e-28, 1}, {});
    form.numbers = CoefficientMeaning::ShortestDecimal;
    TakeForm(form, dense);
    EXPECT_FALSE(integers.Take(dense));
}

/// An optimum without a denominator, as the point that a ray goes from.
TEST(DenseCheck, RefusesARayFromNoPoint)
{
    DenseForm dense;
    IntegerForm integers;
    TakeForm(MakeForm({-1}, {}), dense);
    ASSERT_TRUE(integers.Take(dense));
    DenseOptimum point;
    point.width = 1;
    point.denominator = {1};
    point.point = {0};
    DenseCheck check;
    EXPECT_TRUE(check.IsUnbounded(integers, point, 1, {1}));
    EXPECT_FALSE(check.IsUnbounded(integers, point, 1, {1, 0}));
    point.denominator = {0};
    EXPECT_FALSE(check.IsUnbounded(integers, point, 1, {1}));
}

}  // namespace
}  // namespace nuv::test
