// The library's solve compared with the naive evaluation, bit for bit: status, objective, values,
// and every pivot's labels and basic values, over all families of models. NaNs compare as NaNs.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/TestAllocator.hpp"

using namespace reference;

namespace
{
constexpr std::size_t kPivotLimit = 300;

// A solve that does not end where it should runs out of memory instead.
constexpr std::size_t kRequestLimit = 20000;

/// The models of a run: how many, how large, and the pivots after which both sides stop.
struct Run
{
    int models;
    std::size_t rows;
    std::size_t columns;
    std::size_t maxPivots;
    std::uint64_t seed;
};

std::size_t SizeUpTo(std::size_t limit, Random* random)
{
    return 1 + random->Below(static_cast<std::uint32_t>(limit));
}

/// A solve without a monitor must give the bits of one with a monitor, and leave the same storage.
void CompareWithUnmonitored(const Problem& problem, const Solution& expected,
                            const TestAllocator& monitored)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model(problem, allocator);
    allocator.RefuseFrom(kRequestLimit);
    EXPECT_EQ(DifferenceOfResults(expected, model.Solve()), "");
    EXPECT_EQ(allocator.LiveSizes(), monitored.LiveSizes());
}

void CompareModel(const Problem& problem, std::size_t maxPivots)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model(problem, allocator);
    const Solution expected = Solve(model.InRowOrder(), maxPivots);
    const std::string difference = Difference(expected, model.SolveMonitored(maxPivots));
    EXPECT_EQ(difference, "");
    // Without a monitor nothing ends a solve that has gone astray.
    if (difference.empty() && expected.status != Status::Stopped)
        CompareWithUnmonitored(problem, expected, allocator);
}

void CompareFamily(Family family, const Run& run)
{
    Random random(run.seed + static_cast<std::uint64_t>(family));
    const int models = ShareOf(run.models);
    for (int i = 0; i < models && !testing::Test::HasFailure(); ++i)
    {
        const std::size_t rows = SizeUpTo(run.rows, &random);
        const std::size_t columns = SizeUpTo(run.columns, &random);
        const std::uint64_t seed = random.Next();
        SCOPED_TRACE(testing::Message()
                     << NameOf(family) << ' ' << rows << " x " << columns << ", seed " << seed);
        CompareModel(MakeModel(family, rows, columns, seed), run.maxPivots);
    }
}

class SolveAgainstNaive : public testing::TestWithParam<Family>
{
};

TEST_P(SolveAgainstNaive, TinyModelsHaveTheSameBits)
{
    CompareFamily(GetParam(), {1500, 4, 4, kPivotLimit, 0x71A1});
}

TEST_P(SolveAgainstNaive, SmallModelsHaveTheSameBits)
{
    CompareFamily(GetParam(), {500, 15, 15, kPivotLimit, 0x5A11});
}

TEST_P(SolveAgainstNaive, MiddlingModelsHaveTheSameBits)
{
    CompareFamily(GetParam(), {40, 48, 40, kPivotLimit, 0x3D1E});
}

TEST_P(SolveAgainstNaive, FlatAndTallModelsHaveTheSameBits)
{
    CompareFamily(GetParam(), {40, 3, 60, 60, 0xF1A7});
    CompareFamily(GetParam(), {40, 60, 3, 60, 0x7A11});
}

INSTANTIATE_TEST_SUITE_P(Families, SolveAgainstNaive, testing::ValuesIn(Families()),
                         [](const testing::TestParamInfo<Family>& family)
                         { return NameOf(family.param); });

/// Matrices in which zeros are the rule, large enough to be treated as such.
TEST(SolveAgainstNaiveSparse, ModelsHaveTheSameBits)
{
    for (const Family family : {Family::VerySparse, Family::SprinkledSparse, Family::Sparse})
        CompareFamily(family, {60, 70, 90, 60, 0x5BA});
}

/// Data on which infinities and NaNs arise on the way: the same bits before the first and after.
TEST(SolveAgainstNaiveWild, ModelsHaveTheSameBits)
{
    for (const Family family : Families())
        if (!IsTame(family))
        {
            CompareFamily(family, {2000, 12, 12, kPivotLimit, 0x1FF});
            CompareFamily(family, {300, 40, 25, kPivotLimit, 0x2FF});
        }
}

/// So many rows that columns of the inverse are stored as they are needed: few pivots, and data on
/// which infinities arise.
TEST(SolveAgainstNaiveTall, ModelsHaveTheSameBits)
{
    constexpr std::size_t kRows = 140;
    for (const Family family : Families())
        CompareModel(MakeModel(family, kRows, 5, 0x7A13), 6);
    for (const Family family : {Family::Overflowing, Family::ExtremeExponents})
        for (std::uint64_t seed = 0; seed != 5; ++seed)
            CompareModel(MakeModel(family, kRows, 30, seed), 10);
}

/// A model of exactly that size, its first pivots compared.
void CompareLarge(Family family, std::size_t rows, std::size_t columns, std::size_t maxPivots)
{
    const std::uint64_t seed = rows * 1000 + columns;
    SCOPED_TRACE(testing::Message() << NameOf(family) << ' ' << rows << " x " << columns);
    const Problem problem = MakeModel(family, rows, columns, seed);
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model(problem, allocator);
    const Solution expected = Solve(model.InRowOrder(), maxPivots);
    EXPECT_GT(expected.pivots.size(), 2U) << "a model that says little";
    EXPECT_EQ(Difference(expected, model.SolveMonitored(maxPivots)), "");
}

TEST(SolveAgainstNaiveLarge, FirstPivotsHaveTheSameBits)
{
    CompareLarge(Family::ProductionMix, 200, 200, 6);
    CompareLarge(Family::NeedsPhaseI, 150, 200, 12);
    CompareLarge(Family::MixedSigns, 200, 90, 8);
    CompareLarge(Family::DegenerateTies, 129, 65, 12);
    CompareLarge(Family::Sprinkled, 96, 128, 12);
    CompareLarge(Family::ExtremeExponents, 100, 100, 12);
    CompareLarge(Family::VerySparse, 180, 220, 20);
    CompareLarge(Family::Transport, 16, 64, 60);
    // Lengths that are padded by one more tile.
    CompareLarge(Family::ProductionMix, 3, 250, 6);
    CompareLarge(Family::NeedsPhaseI, 250, 6, 4);
}
}  // namespace
