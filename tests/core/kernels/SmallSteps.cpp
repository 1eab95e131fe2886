// The steps for few rows against the same steps on one number after the other: every instruction
// set, few and many non-zeros. Signs of zeros are left open.
#include "tests/core/kernels/KernelTest.hpp"

#include <cmath>

namespace
{
Floats WithoutSignsOfZeros(Floats x)
{
    for (float& element : x)
        element = element + 0.0F;
    return x;
}

/// The arrays of a state.
struct Arrays
{
    std::size_t m;
    std::size_t stride;
    std::size_t lengthOfA;
    Floats rows, columns, b, basicCosts, prices, values, eta, multipliers, A, costs, differences;
    Floats enteringColumn, direction, ratios;
    std::vector<NuvUint> positions;
    std::vector<NuvUint> nonzerosOfA = {};
    std::size_t stepOfColumn = 1;
    nuv::RowBits nonzeroPrices = 0;
    nuv::RowBits nonzerosOfColumn = 0;
    std::vector<NuvUint> patterns = {};
    bool hasRows = true;

    nuv::SmallState State()
    {
        return {m,
                stride,
                rows.data(),
                columns.data(),
                patterns.data(),
                hasRows,
                b.data(),
                basicCosts.data(),
                prices.data(),
                values.data(),
                eta.data(),
                multipliers.data(),
                A.data(),
                lengthOfA,
                nonzerosOfA.data(),
                costs.data(),
                positions.data(),
                differences.data(),
                direction.data(),
                ratios.data(),
                nonzeroPrices,
                enteringColumn.data(),
                stepOfColumn,
                nonzerosOfColumn};
    }

    nuv::RowBits NonzerosOf(const Floats& x, std::size_t step) const
    {
        nuv::RowBits bits = 0;
        for (std::size_t i = 0; i != m; ++i)
            bits |= nuv::RowBits{x[i * step] != 0.0F} << i;
        return bits;
    }

    nuv::RowBits PatternOf(std::size_t i) const
    {
        return patterns[i] | nuv::RowBits{patterns[stride + i]} << 32U;
    }

    void MarkEntry(std::size_t i, std::size_t k)
    {
        patterns[k / 32 * stride + i] |= NuvUint{1} << k % 32;
    }

    float& Row(std::size_t i, std::size_t k)
    {
        return rows[i * stride + k];
    }

    float& Column(std::size_t k, std::size_t i)
    {
        return columns[k * stride + i];
    }
};

class SmallSteps : public KernelTest
{
protected:
    /// Zeros in so many of a hundred places.
    float DrawSparse(std::uint32_t percent)
    {
        return random.Chance(percent) ? 0.0F : random.Symmetric(4.0F);
    }

    Floats Padded(std::size_t count, std::size_t length, std::uint32_t percent)
    {
        Floats x(length);
        for (std::size_t i = 0; i != count; ++i)
            x[i] = DrawSparse(percent);
        return x;
    }

    Arrays Make()
    {
        const std::uint32_t zeros = 10 + 43 * random.Below(3);
        const std::size_t m = 1 + random.Below(64);
        const std::size_t n = 1 + random.Below(70);
        const std::size_t stride = nuv::PaddedLength(m);
        const std::size_t length = nuv::InTiles(n);
        Arrays x = {m,
                    stride,
                    length,
                    Floats(m * stride),
                    Floats(m * stride),
                    Padded(m, stride, 5),
                    Padded(m, stride, zeros),
                    Floats(stride, 7.0F),
                    Floats(stride, 7.0F),
                    Padded(m, stride, zeros),
                    Floats(stride, 7.0F),
                    Floats(m * length),
                    Floats(length + stride, -HUGE_VALF),
                    Floats(length + stride, 7.0F),
                    Padded(m, stride, zeros),
                    Floats(stride, 7.0F),
                    Floats(stride, 7.0F),
                    {},
                    std::vector<NuvUint>(2 * length, 7)};
        for (std::size_t i = 0; i != m; ++i)
            for (std::size_t k = 0; k != m; ++k)
                x.Row(i, k) = x.Column(k, i) = DrawSparse(zeros);
        // Patterns may have more than what is not 0.
        x.patterns.resize(2 * stride);
        for (std::size_t i = 0; i != m; ++i)
            for (std::size_t k = 0; k != m; ++k)
                if (x.Row(i, k) != 0.0F || random.Chance(2))
                    x.MarkEntry(i, k);
        for (float& element : x.A)
            element = static_cast<float>(random.Between(-2, 2));
        for (std::size_t j = 0; j != n; ++j)
            x.costs[j] = static_cast<float>(random.Between(-3, 3));
        for (std::size_t i = 0; i != m; ++i)
            x.costs[length + i] = static_cast<float>(random.Between(-3, 3));
        for (std::size_t j = 0; j != length + stride; ++j)
            x.positions.push_back(random.Below(1000));
        x.nonzerosOfColumn = x.NonzerosOf(x.enteringColumn, 1);
        return x;
    }
};

using SmallStepsAgainstPlainLoops = SmallSteps;
INSTANTIATE_TEST_SUITE_P(Sets, SmallStepsAgainstPlainLoops, testing::ValuesIn(kAllSets));

void SumByHand(Arrays* x)
{
    for (std::size_t k = 0; k != x->stride; ++k)
    {
        x->prices[k] = x->values[k] = 0.0F;
        for (std::size_t l = 0; l != x->m; ++l)
        {
            const float price = x->basicCosts[l] * x->Row(l, k);
            const float value = x->b[l] * x->Column(l, k);
            x->prices[k] += price;
            x->values[k] += value;
        }
    }
}

void UpdateByHand(Arrays* x, std::size_t row)
{
    for (std::size_t k = 0; k != x->stride; ++k)
        x->multipliers[k] = x->Row(row, k);
    for (std::size_t i = 0; i != x->m; ++i)
        for (std::size_t k = 0; k != x->m; ++k)
        {
            const float product = x->eta[i] * x->multipliers[k];
            const float entry = (i == row ? 0.0F : x->Row(i, k)) + product;
            x->Row(i, k) = x->Column(k, i) = entry;
        }
}

TEST_P(SmallStepsAgainstPlainLoops, AIsCopiedAndItsNonzerosAreMarked)
{
    for (int i = 0; i != ShareOf(400) && !HasFailure(); ++i)
    {
        Arrays x = Make();
        // The rows of A may be as long as they like, but for what is beyond the last one.
        const std::size_t rowLength = x.lengthOfA - random.Below(16) + random.Below(2) * x.m;
        Floats A(x.m * rowLength);
        for (float& element : A)
            element = random.Chance(50) ? 0.0F : -random.Symmetric(4.0F);
        nuv::SmallState state = x.State();
        const nuv::SmallStart start = {A.data(), rowLength, nullptr, 1, 0};
        EXPECT_TRUE(kernels->startSmall(&state, &start));
        for (std::size_t j = 0; j != std::min(x.lengthOfA, rowLength); ++j)
        {
            const Floats column(A.begin() + static_cast<std::ptrdiff_t>(j), A.end());
            for (std::size_t r = 0; r != x.m; ++r)
                EXPECT_TRUE(IsSame(x.A[r * x.lengthOfA + j], A[r * rowLength + j]));
            const nuv::RowBits found =
                x.nonzerosOfA[j] | nuv::RowBits{x.nonzerosOfA[x.lengthOfA + j]} << 32U;
            EXPECT_EQ(found, x.NonzerosOf(column, rowLength));
        }
        const std::size_t wrong = random.Below(static_cast<std::uint32_t>(A.size()));
        if (wrong % rowLength >= x.lengthOfA)
            continue;
        A[wrong] = random.Chance(50) ? HUGE_VALF : NAN;
        EXPECT_FALSE(kernels->startSmall(&state, &start)) << x.m << ' ' << wrong;
    }
}

TEST_P(SmallStepsAgainstPlainLoops, TheFirstBasisIsThatOfTheSlacks)
{
    for (int i = 0; i != ShareOf(400) && !HasFailure(); ++i)
    {
        Arrays x = Make();
        x.hasRows = random.Chance(50);
        x.nonzeroPrices = 7;
        const Floats rows = x.rows;
        const NuvUint n = static_cast<NuvUint>(x.lengthOfA) - random.Below(16);
        const Floats c = Padded(n, n, 30);
        const nuv::SmallStart start = {x.A.data(), x.lengthOfA,
                                       random.Chance(30) ? nullptr : c.data(), n, random.Below(2)};
        nuv::SmallState state = x.State();
        (void)kernels->startSmall(&state, &start);
        for (std::size_t r = 0; r != x.m && !x.hasRows; ++r)
            EXPECT_EQ(x.PatternOf(r), nuv::RowBits{1} << r);
        for (std::size_t k = 0; k != x.m * x.stride; ++k)
            EXPECT_EQ(x.columns[k], k / x.stride == k % x.stride ? 1.0F : 0.0F);
        EXPECT_TRUE(IsSame(x.hasRows ? x.columns : rows, x.rows));
        for (NuvUint j = 0; j != x.costs.size(); ++j)
        {
            const float cost = start.c && j < n ? c[j] : 0.0F;
            EXPECT_EQ(x.costs[j], j < n ? cost : -HUGE_VALF);
            EXPECT_EQ(x.positions[j], j < n ? start.firstPosition + j : UINT32_MAX);
        }
        EXPECT_TRUE(IsSame(WithoutSignsOfZeros(x.b), x.values));
        EXPECT_EQ(state.nonzeroPrices, 0U);
    }
}

TEST_P(SmallStepsAgainstPlainLoops, TheInverseIsUpdatedAndSummed)
{
    for (int i = 0; i != ShareOf(800) && !HasFailure(); ++i)
    {
        Arrays x = Make();
        const bool hasUpdate = i % 4 != 0;
        const std::size_t row = hasUpdate ? random.Below(static_cast<std::uint32_t>(x.m)) : x.m;
        if (hasUpdate)
        {
            // Those of before, when another variable was basic in the row.
            SumByHand(&x);
            x.nonzeroPrices = x.NonzerosOf(x.prices, 1);
            x.basicCosts[row] = DrawSparse(50);
        }
        Arrays expected = x;
        if (hasUpdate)
            UpdateByHand(&expected, row);
        SumByHand(&expected);
        x.hasRows = random.Chance(50);
        if (!x.hasRows)
            x.rows.assign(x.rows.size(), 7.0F);
        nuv::SmallState state = x.State();
        EXPECT_TRUE(kernels->updateSmall(&state, static_cast<NuvUint>(row)));
        EXPECT_EQ(state.nonzeroPrices, expected.NonzerosOf(expected.prices, 1));
        EXPECT_TRUE(state.hasRows || !x.hasRows);
        for (const auto array : {&Arrays::columns, &Arrays::prices, &Arrays::values, &Arrays::rows})
        {
            const bool isKept = state.hasRows || array != &Arrays::rows;
            const Floats& wanted = isKept ? expected.*array : x.*array;
            EXPECT_TRUE(IsSame(WithoutSignsOfZeros(wanted), WithoutSignsOfZeros(x.*array)))
                << x.m << ' ' << i;
        }
        for (std::size_t r = 0; r != x.m && !state.hasRows; ++r)
            for (std::size_t k = 0; k != x.m; ++k)
                EXPECT_TRUE(x.Column(k, r) == 0.0F || (x.PatternOf(r) >> k & 1U) != 0);
    }
}

TEST_P(SmallStepsAgainstPlainLoops, ANumberThatIsNotFiniteIsTold)
{
    for (int i = 0; i != ShareOf(400) && !HasFailure(); ++i)
    {
        Arrays x = Make();
        const std::uint32_t row = random.Below(static_cast<std::uint32_t>(x.m));
        x.b.assign(x.m, 1.0F);
        x.b.resize(x.stride);
        // The entry (at, k) overflows.
        const std::uint32_t at = random.Below(static_cast<std::uint32_t>(x.m));
        const std::uint32_t k = random.Below(static_cast<std::uint32_t>(x.m));
        x.eta[at] = 3e38F;
        x.Row(row, k) = x.Column(k, row) = 3e38F;
        x.MarkEntry(row, k);
        x.hasRows = random.Chance(50);
        SumByHand(&x);
        nuv::SmallState state = x.State();
        EXPECT_FALSE(kernels->updateSmall(&state, row)) << x.m << ' ' << i;
    }
}

TEST_P(SmallStepsAgainstPlainLoops, TheLargestReducedCostIsTheLastOfEqualOnes)
{
    for (int i = 0; i != ShareOf(600) && !HasFailure(); ++i)
    {
        Arrays x = Make();
        x.prices.assign(x.stride, 0.0F);
        for (std::size_t r = 0; r != x.m; ++r)
            x.prices[r] = static_cast<float>(random.Between(-1, 1));
        x.nonzeroPrices = x.NonzerosOf(x.prices, 1);
        Arrays expected = x;
        nuv::Choice largest = {0.0F, 0};
        for (std::size_t j = 0; j != x.costs.size(); ++j)
        {
            float sum = 0.0F;
            for (std::size_t r = 0; r != x.m; ++r)
            {
                const float a = j < x.lengthOfA ? x.A[r * x.lengthOfA + j]
                                                : static_cast<float>(j - x.lengthOfA == r);
                sum += x.prices[r] * a;
            }
            expected.differences[j] = x.costs[j] - sum;
            const float difference = expected.differences[j];
            if (difference > largest.value)
                largest = {difference, x.positions[j]};
            else if (difference == largest.value && difference > 0.0F)
                largest.number = std::max(largest.number, x.positions[j]);
        }
        const nuv::SmallState state = x.State();
        const nuv::Choice found = kernels->priceSmall(&state);
        EXPECT_EQ(found.value, largest.value);
        EXPECT_EQ(found.number, largest.number);
        EXPECT_TRUE(
            IsSame(WithoutSignsOfZeros(expected.differences), WithoutSignsOfZeros(x.differences)));
    }
}

TEST_P(SmallStepsAgainstPlainLoops, TheSmallestRatioIsTheFirstOfEqualOnesAndEtaIsItsPivots)
{
    for (int i = 0; i != ShareOf(600) && !HasFailure(); ++i)
    {
        Arrays x = Make();
        // A column of a matrix.
        x.stepOfColumn = 1 + random.Below(3);
        Floats column(x.m * x.stepOfColumn, 7.0F);
        for (std::size_t k = 0; k != x.m; ++k)
            column[k * x.stepOfColumn] = x.enteringColumn[k];
        x.values.assign(x.stride, 0.0F);
        for (std::size_t r = 0; r != x.m; ++r)
            x.values[r] = static_cast<float>(random.Between(0, 2));
        Arrays expected = x;
        nuv::Choice smallest = {FLT_MAX, 0};
        for (std::size_t r = 0; r != x.stride; ++r)
        {
            float sum = 0.0F;
            for (std::size_t k = 0; k != x.m; ++k)
            {
                const float product = column[k * x.stepOfColumn] * x.Column(k, r);
                sum += product;
            }
            expected.direction[r] = sum;
            expected.ratios[r] = sum > 0.0F ? x.values[r] / sum : FLT_MAX;
            if (expected.ratios[r] < smallest.value)
                smallest = {expected.ratios[r], static_cast<NuvUint>(r)};
        }
        x.enteringColumn = column;
        const nuv::SmallState state = x.State();
        const nuv::Choice found = kernels->testSmall(&state);
        EXPECT_EQ(found.value, smallest.value);
        EXPECT_EQ(found.number, smallest.number);
        EXPECT_TRUE(
            IsSame(WithoutSignsOfZeros(expected.direction), WithoutSignsOfZeros(x.direction)));
        if (smallest.value == FLT_MAX)
            continue;
        const float pivot = expected.direction[smallest.number];
        const float reciprocal = 1.0F / pivot;
        bool isFinite = true;
        for (std::size_t r = 0; r != x.stride; ++r)
        {
            const float product = expected.direction[r] * reciprocal;
            const float inRow = (pivot - 1.0F) * reciprocal;
            isFinite = isFinite && std::isfinite(product);
            expected.eta[r] = r == smallest.number ? 1.0F - inRow : 0.0F - product;
        }
        EXPECT_EQ(kernels->formEta(x.direction.data(), smallest.number, x.eta.data(), x.stride),
                  isFinite);
        EXPECT_TRUE(IsSame(WithoutSignsOfZeros(expected.eta), WithoutSignsOfZeros(x.eta)));
    }
}
}  // namespace
