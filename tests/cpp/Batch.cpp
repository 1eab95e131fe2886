// A batch over spans: what is shared, what is asked for, and threads that change nothing.
#include <gtest/gtest.h>

#include <vector>

#define NUV_USE_TBB
#include "Nuv/Utils/NuvLinearProgrammingBatch.hpp"

namespace
{
constexpr NuvSizeT kCount = 3000;

/// max x + c(k) y with x + 2y ≤ 4 and 3x + y ≤ side(k).
struct Programs
{
    std::vector<float> A = {1, 2, 3, 1};
    std::vector<float> b;
    std::vector<float> c;

    Programs()
    {
        for (NuvSizeT k = 0; k != kCount; ++k)
        {
            b.insert(b.end(), {4.0F, static_cast<float>(1 + k % 11)});
            c.insert(c.end(), {1.0F, static_cast<float>(k % 7) - 2.0F});
        }
    }

    nuv::BatchData Data() const
    {
        return {2, 2, kCount, A, b, c};
    }
};

TEST(SolveBatch, SolvesAllAndAnswersWhatIsAskedFor)
{
    const Programs programs;
    std::vector<float> objectives(kCount);
    std::vector<float> values(2 * kCount);
    ASSERT_TRUE(nuv::SolveBatch(programs.Data(), {.objectives = objectives, .values = values}));
    // x ≤ 1/3 alone, and (0.4, 1.8) where both rows are tight.
    EXPECT_NEAR(objectives[0], 1.0F / 3.0F, 1e-6F);
    EXPECT_NEAR(objectives[2], 1.0F, 1e-6F);
    EXPECT_NEAR(values[2 * 3 + 1] + values[2 * 3], objectives[3], 1e-5F);
}

TEST(SolveBatch, ThreadsChangeNothing)
{
    const Programs programs;
    std::vector<float> one(2 * kCount);
    std::vector<float> many(2 * kCount);
    std::vector<NuvUint> bases(2 * kCount);
    std::vector<NuvUint> basesOfMany(2 * kCount);
    ASSERT_TRUE(nuv::SolveBatch(programs.Data(), {.values = one, .bases = bases}));
    ASSERT_TRUE(nuv::SolveBatchInParallel(programs.Data(), {.values = many, .bases = basesOfMany}));
    EXPECT_EQ(one, many);
    EXPECT_EQ(bases, basesOfMany);
}

TEST(SolveBatch, SpanOfAnotherSizeIsRefused)
{
    const Programs programs;
    std::vector<float> objectives(kCount);
    nuv::BatchData data = programs.Data();
    data.b = data.b.first(3);
    EXPECT_FALSE(nuv::SolveBatch(data, {.objectives = objectives}));
    data = programs.Data();
    EXPECT_FALSE(nuv::SolveBatch(data, {.values = objectives}));
    data.numConstraints = 0;
    EXPECT_FALSE(nuv::SolveBatch(data, {}));
}
}  // namespace
