// The walk along the columns of a matrix most of whose columns are the identity's, with every
// instruction set that this machine has, compared bit by bit with the sums over the whole matrix.
#include <algorithm>
#include <vector>

#include "tests/core/kernels/KernelTest.hpp"

namespace
{
/// A square matrix of which some columns are given, by increasing number, and the others are the
/// identity's; an update of those given, and two vectors to form products with.
struct ColumnData
{
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
    ColumnData MatrixData(std::size_t m)
    {
        ColumnData data = {m, {}, {}, {}, FiniteVector(m, random.Chance(30)), {}, {}, {}, {}};
        bool isGiven = random.Chance(50);
        for (std::size_t column = 0; column != m; ++column)
        {
            isGiven = random.Chance(30) ? !isGiven : isGiven;
            if (!isGiven)
                continue;
            data.numbers.push_back(static_cast<std::uint32_t>(column));
            data.columns.push_back(FiniteVector(m, random.Chance(30)));
        }
        data.multipliers = FiniteVector(data.numbers.size(), random.Chance(50));
        data.x = FiniteVector(m, random.Chance(50));
        data.y = FiniteVector(m, random.Chance(50));
        data.sumsX = FiniteVector(m, false);
        data.sumsY = FiniteVector(m, false);
        return data;
    }
};

INSTANTIATE_TEST_SUITE_P(Sets, KernelColumnsAgainstPlainLoops, testing::ValuesIn(allSets));

struct ColumnWalkKind
{
    bool hasUpdate;
    bool hasTwo;
    std::size_t first;
    std::size_t last;
};

/// What the definition sums: all columns in order, those of the identity with their zeros and ones.
void WalkColumnsPlainly(ColumnData* data, const ColumnWalkKind& kind)
{
    for (std::size_t i = kind.first; i != std::min(kind.last, data->m); ++i)
    {
        float sumX = 0.0F;
        float sumY = 0.0F;
        std::size_t k = 0;
        for (std::size_t column = 0; column != data->m; ++column)
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

/// The arrays of a walk along columns, padded as it wants them.
class PaddedColumns
{
public:
    explicit PaddedColumns(const ColumnData& data) : source(data)
    {
        const std::size_t tiles = (data.m + Kernels::tile - 1) / Kernels::tile;
        length = tiles * Kernels::tile;
        const std::size_t count = data.numbers.size();
        const std::size_t block = nuv::StoredColumns::block;
        padded = (count + block - 1) / block * block;
        zeros.resize(length);
        multipliers = data.multipliers;
        multipliers.resize(padded);
        update = data.update;
        update.resize(length);
        below.resize(tiles + 1);
        columns = data.columns;
        for (std::size_t k = 0; k != padded; ++k)
        {
            const bool isReal = k < count;
            const std::uint32_t number = data.numbers[isReal ? k : count - 1];
            const std::uint32_t first = k == 0 ? 0 : data.numbers[std::min(k, count) - 1] + 1;
            numbers.push_back(number);
            firsts.push_back(isReal ? first : number);
            gaps.push_back(isReal ? number - first : 0);
            if (isReal)
                columns[k].resize(length);
            starts.push_back(isReal ? columns[k].data() : zeros.data());
            for (std::size_t t = number / Kernels::tile + 1; isReal && t <= tiles; ++t)
                ++below[t];
        }
    }

    void Walk(const Kernels* kernels, const ColumnWalkKind& kind, ColumnData* result)
    {
        Floats sumsX = result->sumsX;
        Floats sumsY = result->sumsY;
        sumsX.resize(length);
        sumsY.resize(length);
        const Floats factorsX = FactorsOf(source.x);
        const Floats factorsY = FactorsOf(source.y);
        const Floats unitsX = UnitsOf(source.x);
        const Floats unitsY = UnitsOf(source.y);
        const nuv::ColumnProduct none = {nullptr, nullptr, nullptr};
        const nuv::ColumnProduct other = {factorsY.data(), unitsY.data(), sumsY.data()};
        const nuv::ColumnWalk walk = {
            {starts.data(), numbers.data(), firsts.data(), gaps.data(), below.data(), padded},
            multipliers.data(),
            kind.hasUpdate ? update.data() : nullptr,
            {factorsX.data(), unitsX.data(), sumsX.data()},
            kind.hasTwo ? other : none,
            kind.first,
            kind.last};
        kernels->walkColumns(&walk);
        sumsX.resize(source.m);
        sumsY.resize(source.m);
        result->sumsX = sumsX;
        result->sumsY = sumsY;
        result->columns = columns;
        for (Floats& column : result->columns)
            column.resize(source.m);
    }

private:
    /// A factor more, so that there are some also where no column is given.
    Floats FactorsOf(const Floats& x) const
    {
        Floats factors(padded + 1);
        for (std::size_t k = 0; k != source.numbers.size(); ++k)
            factors[k] = x[source.numbers[k]];
        return factors;
    }

    Floats UnitsOf(const Floats& x) const
    {
        Floats units = x;
        units.resize(length);
        for (const std::uint32_t number : source.numbers)
            units[number] = 0.0F;
        return units;
    }

    const ColumnData& source;
    std::size_t length = 0;
    std::size_t padded = 0;
    Floats zeros;
    Floats multipliers;
    Floats update;
    std::vector<Floats> columns;
    std::vector<float*> starts;
    std::vector<std::uint32_t> numbers;
    std::vector<std::uint32_t> firsts;
    std::vector<std::uint32_t> gaps;
    std::vector<std::uint32_t> below;
};

void CompareColumnWalk(const Kernels* kernels, ColumnData expected, const ColumnWalkKind& kind)
{
    ColumnData found = expected;
    PaddedColumns(ColumnData(expected)).Walk(kernels, kind, &found);
    WalkColumnsPlainly(&expected, kind);
    for (std::size_t k = 0; k != expected.columns.size(); ++k)
        EXPECT_TRUE(IsSame(expected.columns[k], found.columns[k])) << "column " << k;
    EXPECT_TRUE(IsSame(expected.sumsX, found.sumsX));
    EXPECT_TRUE(IsSame(expected.sumsY, found.sumsY));
}

// Few rows and many, all of them or some tiles or none, each mixture of columns.
TEST_P(KernelColumnsAgainstPlainLoops, AWalkAlongColumnsSumsThemAndTheIdentitysInOrder)
{
    for (int i = 0; i != ShareOf(4000) && !HasFailure(); ++i)
    {
        const std::size_t m = 1 + random.Below(i % 2 == 0 ? 64 : 150);
        const std::size_t tiles = (m + Kernels::tile - 1) / Kernels::tile;
        const bool isWhole = random.Chance(50);
        const std::size_t first = isWhole ? 0 : random.Below(static_cast<std::uint32_t>(tiles));
        const std::size_t count =
            isWhole ? tiles : random.Below(static_cast<std::uint32_t>(tiles - first) + 1);
        const ColumnWalkKind kind = {random.Chance(50), random.Chance(50), first * Kernels::tile,
                                     (first + count) * Kernels::tile};
        SCOPED_TRACE(testing::Message()
                     << "case " << i << ": " << m << " rows, " << kind.first << " to " << kind.last
                     << (kind.hasUpdate ? ", update" : "") << (kind.hasTwo ? ", two" : ""));
        CompareColumnWalk(kernels, MatrixData(m), kind);
    }
}
}  // namespace
