// The corpus of the self-test: the same models everywhere, solved as the definition says, and
// hashes that notice every bit.
#include "Nuv/Corpus/Families.hpp"
#include "Nuv/Corpus/Hash.hpp"
#include "Nuv/Corpus/RandomModels.hpp"
#include "Nuv/SelfTest/Solving.hpp"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/TestAllocator.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

namespace nuv::selftest
{
using namespace corpus;

namespace
{
/// The hash of the self-test, over what the yardstick found.
uint64_t HashOf(const reference::Solution& solution)
{
    Hash hash;
    for (const reference::Pivot& pivot : solution.pivots)
    {
        hash.Add(pivot.phase);
        hash.Add(pivot.entering);
        hash.Add(pivot.leaving);
        for (const float value : pivot.values)
            hash.AddFloat(value);
    }
    hash.Add(static_cast<uint32_t>(solution.status));
    if (solution.status == reference::Status::Ok)
    {
        hash.AddFloat(solution.objective);
        for (const float value : solution.values)
            hash.AddFloat(value);
    }
    return hash.Value();
}

TEST(SelfTestNumbers, HaveTheBitsOfTheirValue)
{
    EXPECT_EQ(Dyadic(0, 5), 0.0F);
    EXPECT_EQ(Dyadic(3, -1), 1.5F);
    EXPECT_EQ(Dyadic(-5, 3), -40.0F);
    EXPECT_EQ(Dyadic((1 << 24) - 1, 0), 16777215.0F);
    EXPECT_EQ(Dyadic((int64_t{1} << 24) + 1, 0), 16777216.0F) << "cut off";
    EXPECT_EQ(Dyadic((int64_t{3} << 60), -60), 3.0F);
    EXPECT_EQ(Dyadic(1, -126), std::numeric_limits<float>::min());
    EXPECT_EQ(Dyadic(3, -149), 3 * std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(Dyadic(1, -149), std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(Dyadic(1, -150), 0.0F);
    EXPECT_EQ(Dyadic(1, -1000), 0.0F);
    EXPECT_EQ(Dyadic((1 << 24) - 1, 104), std::numeric_limits<float>::max());
    EXPECT_EQ(Dyadic(-1, 128), -std::numeric_limits<float>::infinity());
}

TEST(SelfTestCorpus, HasTenThousandModelsOfEveryVerdict)
{
    uint32_t models = 0;
    std::set<uint32_t> verdicts;
    Model model;
    for (uint32_t family = 0; family < FamilyCount(); ++family)
    {
        models += FamilyAt(family).models;
        MakeModel(family, 1, &model);
        verdicts.insert(Solve(model.View(), Loops::OfThisMachine).status);
        MakeModel(family, 9, &model);
        verdicts.insert(Solve(model.View(), Loops::OfThisMachine).status);
    }
    EXPECT_GE(models, 10000U);
    EXPECT_EQ(verdicts, (std::set<uint32_t>{0, 2, 3, 4}));
    EXPECT_LE(FamilyAt(0).models, FixedModelCount());
}

TEST(SelfTestCorpus, StaysWithinItsModels)
{
    Model model;
    for (uint32_t family = 0; family < FamilyCount(); ++family)
        for (uint32_t number = 0; number < FamilyAt(family).models; ++number)
        {
            MakeModel(family, number, &model);
            ASSERT_LE(model.rows * model.columns, Model::kMaxCoefficients);
            ASSERT_TRUE(model.rows >= 1 && model.rows <= Model::kMaxRows && model.columns >= 1 &&
                        model.columns <= Model::kMaxColumns)
                << FamilyAt(family).name << ' ' << number;
        }
}

TEST(SelfTestCorpus, IsSolvedAsTheYardstickSolvesIt)
{
    Model model;
    TestAllocator allocator;
    for (uint32_t family = 0; family < FamilyCount(); ++family)
        for (uint32_t number = 0; number < FamilyAt(family).models; number += 17)
        {
            MakeModel(family, number, &model);
            reference::CoreModel entered(reference::ProblemOf(model.View()), allocator);
            EXPECT_EQ(HashOf(reference::Solve(entered.InRowOrder(), kPivotLimit)),
                      Solve(model.View(), Loops::OfThisMachine).hash)
                << FamilyAt(family).name << ' ' << number;
        }
}

TEST(SelfTestCorpus, HashesChangeWithOneBit)
{
    Model model;
    MakeModel(1, 0, &model);
    const uint64_t hash = Solve(model.View(), Loops::OfThisMachine).hash;
    EXPECT_EQ(Solve(model.View(), Loops::OfThisMachine).hash, hash);
    for (uint32_t i = 0; i < model.rows; ++i)
    {
        Model other = model;
        other.b[i] = FloatOfBits(BitsOf(other.b[i]) + 1);
        EXPECT_NE(Solve(other.View(), Loops::OfThisMachine).hash, hash) << i;
    }
}

TEST(SelfTestHash, TakesEveryNotANumberForTheSame)
{
    Hash quiet;
    quiet.AddFloat(FloatOfBits(0x7FC00000U));
    Hash other;
    other.AddFloat(FloatOfBits(0xFF812345U));
    Hash infinite;
    infinite.AddFloat(FloatOfBits(0x7F800000U));
    EXPECT_EQ(quiet.Value(), other.Value());
    EXPECT_NE(quiet.Value(), infinite.Value());
}

}  // namespace
}  // namespace nuv::selftest
