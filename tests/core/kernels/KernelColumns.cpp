// The update of some columns and the products with them, with every instruction set that this
// machine has, compared bit by bit with the sums over the whole matrix.
#include <algorithm>
#include <vector>

#include "tests/core/kernels/KernelTest.hpp"

namespace
{
/// A matrix of m rows of which some columns are given, by increasing number; the others are the
/// identity's where it is square, and it has none where it is not. An update of those given, and
/// two vectors to form products with, by number of the column.
struct ColumnData
{
    bool isSquare;
    std::size_t m;
    std::vector<std::uint32_t> numbers;
    std::vector<Floats> columns;
    Floats multipliers;
    Floats update;
    Floats x;
    Floats y;
    Floats sumsX;
    Floats sumsY;
};

class KernelColumnsAgainstPlainLoops : public KernelTest
{
protected:
    /// Finite numbers, most of them zero where there are `zeros`.
    Floats FiniteVector(std::size_t length, bool hasZeros)
    {
        Floats x(length);
        for (float& element : x)
            if (!hasZeros || random.Chance(10))
                element = random.Chance(50) ? random.Symmetric(4.0F) : Draw(false);
        return x;
    }

    /// Runs of given columns and of the identity's.
    ColumnData SquareData(std::size_t m)
    {
        std::vector<std::uint32_t> numbers;
        bool isGiven = random.Chance(50);
        for (std::size_t column = 0; column != m; ++column)
        {
            isGiven = random.Chance(30) ? !isGiven : isGiven;
            if (isGiven)
                numbers.push_back(static_cast<std::uint32_t>(column));
        }
        return Data(true, m, m, numbers);
    }

    /// All columns are given.
    ColumnData WholeData(std::size_t m, std::size_t count)
    {
        std::vector<std::uint32_t> numbers;
        for (std::size_t column = 0; column != count; ++column)
            numbers.push_back(static_cast<std::uint32_t>(column));
        return Data(false, m, count, numbers);
    }

private:
    ColumnData Data(bool isSquare, std::size_t m, std::size_t numColumns,
                    const std::vector<std::uint32_t>& numbers)
    {
        ColumnData data = {isSquare, m,  numbers, {}, {}, FiniteVector(m, random.Chance(30)),
                           {},       {}, {},      {}};
        for (std::size_t k = 0; k != numbers.size(); ++k)
            data.columns.push_back(FiniteVector(m, random.Chance(30)));
        data.multipliers = FiniteVector(numbers.size(), random.Chance(50));
        data.x = FiniteVector(numColumns, random.Chance(50));
        data.y = FiniteVector(numColumns, random.Chance(50));
        data.sumsX = FiniteVector(m, false);
        data.sumsY = FiniteVector(m, false);
        return data;
    }
};

INSTANTIATE_TEST_SUITE_P(Sets, KernelColumnsAgainstPlainLoops, testing::ValuesIn(kAllSets));

struct ProductKind
{
    bool hasUpdate;
    bool hasTwo;
};

/// What the definition sums: all columns in order, those of the identity with their zeros and ones.
void MultiplyPlainly(ColumnData* data, const ProductKind& kind)
{
    for (std::size_t i = 0; i != data->m; ++i)
    {
        float sumX = 0.0F;
        float sumY = 0.0F;
        std::size_t k = 0;
        for (std::size_t column = 0; column != data->x.size(); ++column)
        {
            float element = column == i ? 1.0F : 0.0F;
            if (k != data->numbers.size() && data->numbers[k] == column)
            {
                if (kind.hasUpdate)
                    data->columns[k][i] =
                        data->columns[k][i] + data->multipliers[k] * data->update[i];
                element = data->columns[k++][i];
            }
            sumX = sumX + data->x[column] * element;
            sumY = sumY + data->y[column] * element;
        }
        data->sumsX[i] = sumX;
        if (kind.hasTwo)
            data->sumsY[i] = sumY;
    }
}

/// The elements of a vector that belong to given columns.
Floats FactorsOf(const ColumnData& data, const Floats& x)
{
    Floats factors;
    for (const std::uint32_t number : data.numbers)
        factors.push_back(x[number]);
    // Not null where no column is given.
    factors.push_back(0.0F);
    return factors;
}

/// The others, with zeros in the place of those.
Floats UnitsOf(const ColumnData& data, Floats x, std::size_t length)
{
    x.resize(length);
    for (const std::uint32_t number : data.numbers)
        x[number] = 0.0F;
    return x;
}

void MultiplyBy(const Kernels* kernels, const ProductKind& kind, ColumnData* data)
{
    const std::size_t length = (data->m + Kernels::kTile - 1) / Kernels::kTile * Kernels::kTile;
    std::vector<float*> starts;
    for (Floats& column : data->columns)
    {
        column.resize(length);
        starts.push_back(column.data());
    }
    for (Floats* const x : {&data->update, &data->sumsX, &data->sumsY})
        x->resize(length);
    const Floats factorsX = FactorsOf(*data, data->x);
    const Floats factorsY = FactorsOf(*data, data->y);
    const Floats unitsX = data->isSquare ? UnitsOf(*data, data->x, length) : Floats();
    const Floats unitsY = data->isSquare ? UnitsOf(*data, data->y, length) : Floats();
    const nuv::ColumnProduct other = {factorsY.data(), unitsY.data(), data->sumsY.data()};
    const nuv::FusedProduct product = {starts.data(),
                                       data->isSquare ? data->numbers.data() : nullptr,
                                       starts.size(),
                                       kind.hasUpdate ? data->multipliers.data() : nullptr,
                                       kind.hasUpdate ? data->update.data() : nullptr,
                                       {factorsX.data(), unitsX.data(), data->sumsX.data()},
                                       kind.hasTwo ? other : nuv::ColumnProduct(),
                                       length};
    kernels->updateAndMultiply(&product);
    for (Floats& column : data->columns)
        column.resize(data->m);
    data->sumsX.resize(data->m);
    data->sumsY.resize(data->m);
}

void CompareProducts(const Kernels* kernels, ColumnData expected, const ProductKind& kind)
{
    SCOPED_TRACE(testing::Message()
                 << expected.m << " rows, " << expected.numbers.size() << " columns given"
                 << (kind.hasUpdate ? ", update" : "") << (kind.hasTwo ? ", two" : ""));
    ColumnData found = expected;
    MultiplyBy(kernels, kind, &found);
    MultiplyPlainly(&expected, kind);
    for (std::size_t k = 0; k != expected.columns.size(); ++k)
        EXPECT_TRUE(IsSame(expected.columns[k], found.columns[k])) << "column " << k;
    EXPECT_TRUE(IsSame(expected.sumsX, found.sumsX));
    EXPECT_TRUE(IsSame(expected.sumsY, found.sumsY));
}

// Few rows and many, each mixture of columns.
TEST_P(KernelColumnsAgainstPlainLoops, AProductSumsTheColumnsAndTheIdentitysInOrder)
{
    for (int i = 0; i != ShareOf(4000) && !HasFailure(); ++i)
    {
        const std::size_t m = 1 + random.Below(i % 2 == 0 ? 64 : 150);
        const ProductKind kind = {random.Chance(50), random.Chance(50)};
        CompareProducts(kernels, SquareData(m), kind);
    }
}

// Every number of columns that decides how they are taken.
TEST_P(KernelColumnsAgainstPlainLoops, AProductWithGivenColumnsAloneSumsThemInOrder)
{
    for (std::size_t count = 0; count != 20 && !HasFailure(); ++count)
        for (std::size_t m = 1; m < 130; m += 1 + random.Below(30))
            for (const bool hasUpdate : {false, true})
                CompareProducts(kernels, WholeData(m, count), {hasUpdate, random.Chance(30)});
}

// The solver looks at the sums alone to learn that an update has overflowed.
TEST_P(KernelColumnsAgainstPlainLoops, AnOverflowOfTheUpdateShowsInTheSumWhateverTheFactor)
{
    for (std::size_t count = 1; count != 20; ++count)
        for (std::size_t where = 0; where != count; ++where)
        {
            ColumnData data = WholeData(20, count);
            for (Floats& column : data.columns)
                column.assign(20, 3e38F);
            data.multipliers.assign(count, 0.0F);
            data.multipliers[where] = 3e38F;
            data.update.assign(20, 0.0F);
            data.update[7] = 1.0F;
            data.x.assign(count, 0.0F);
            MultiplyBy(kernels, {true, false}, &data);
            EXPECT_NE(data.sumsX[7] - data.sumsX[7], 0.0F) << where << " of " << count;
            EXPECT_EQ(data.sumsX[6], 0.0F);
        }
}
}  // namespace
