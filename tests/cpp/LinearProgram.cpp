// The owner of the C record: what its users in C++ rely on.
#include "Nuv/Utils/NuvLinearProgramming.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
nuv::LinearProgram Wyndor()
{
    nuv::LinearProgram program(2);
    program.SetConstraint(1, {{1, 1.0F}}, 4.0F);
    program.SetConstraint(2, {{2, 2.0F}}, 12.0F);
    program.SetConstraint(3, {{1, 3.0F}, {2, 2.0F}}, 18.0F);
    program.SetObjective({{1, 3.0F}, {2, 5.0F}});
    return program;
}

TEST(LinearProgram, SolvesWhatTheRecordSolves)
{
    nuv::LinearProgram program = Wyndor();
    ASSERT_TRUE(program);
    EXPECT_EQ(program.Solve(), nuv::Verdict::Ok);
    EXPECT_EQ(program.Objective(), 36.0F);
    EXPECT_EQ(program.Value(2), 6.0F);
    EXPECT_EQ(program.NumVariables(), 2U);
    EXPECT_EQ(program.NumConstraints(), 3U);
}

TEST(LinearProgram, TakesRowsAndObjectiveByName)
{
    nuv::LinearProgram program(2);
    EXPECT_TRUE(program.SetName(1, "chairs"));
    EXPECT_TRUE(program.SetName(2, std::string("tables")));
    EXPECT_FALSE(program.SetName(2, "chairs"));
    const std::vector<nuv::NamedTerm> wood = {{"chairs", 1.0F}, {"X2", 1.0F}};
    nuv::LinearProgram named(2);
    EXPECT_TRUE(named.SetName(1, "chairs"));
    EXPECT_TRUE(named.SetConstraint(7, wood, 6.0F));
    EXPECT_TRUE(named.SetObjective(wood));
    EXPECT_EQ(named.Solve(), nuv::Verdict::Ok);
    EXPECT_EQ(named.Objective(), 6.0F);
    EXPECT_EQ(named.Name(1), "chairs");
    EXPECT_EQ(named.Name(2), "X2");
    EXPECT_EQ(named.Name(3), "");
    const std::vector<nuv::NamedTerm> unknown = {{"sofas", 1.0F}};
    EXPECT_FALSE(named.SetObjective(unknown));
    EXPECT_TRUE(named.SetConstraint(8, unknown, 1.0F));
    EXPECT_EQ(named.Solve(), nuv::Verdict::InvalidInput);
    EXPECT_TRUE(named.RemoveConstraint(8));
    EXPECT_FALSE(named.RemoveConstraint(8));
    EXPECT_EQ(named.Solve(), nuv::Verdict::Ok);
}

TEST(LinearProgram, CallsBackBeforeEachPivotAndStopsWhenToldTo)
{
    nuv::LinearProgram program = Wyndor();
    NuvUint last = 99;
    NuvUint pivots = 0;
    const auto count = [&](const NuvLinearProgrammingPivot&) { return ++pivots != last; };
    EXPECT_EQ(program.Solve(count), nuv::Verdict::Ok);
    EXPECT_EQ(pivots, 2U);
    pivots = 0;
    last = 2;
    EXPECT_EQ(program.Solve(count), nuv::Verdict::Stopped);
    EXPECT_EQ(program.Objective(), 36.0F);
}

struct CountedHeap
{
    NuvAllocator allocator = {[](NuvAllocator* a, NuvSizeT size) -> void*
                              {
                                  ++*static_cast<long*>(a->userData);
                                  return std::malloc(static_cast<std::size_t>(size));
                              },
                              [](NuvAllocator* a, void* memory, NuvSizeT)
                              {
                                  --*static_cast<long*>(a->userData);
                                  std::free(memory);
                              },
                              0, &live};
    long live = 0;
};

TEST(LinearProgram, HoldsNoMoreAfterAThousandSolvesAndNothingInTheEnd)
{
    CountedHeap heap;
    {
        nuv::LinearProgram program(1, &heap.allocator);
        program.SetConstraint(1, {{1, 1.0F}}, 1.0F);
        program.SetConstraint(2, {{1, -1.0F}}, -1.0F);
        program.SetObjective({{1, 1.0F}});
        ASSERT_EQ(program.Solve(), nuv::Verdict::Ok);
        const long after = heap.live;
        for (int i = 0; i != 1000; ++i)
            ASSERT_EQ(program.Solve(), nuv::Verdict::Ok);
        EXPECT_EQ(heap.live, after);
        EXPECT_EQ(program.Value(1), 1.0F);
    }
    EXPECT_EQ(heap.live, 0);
}

/// Grants so many requests, and then none.
struct ShortHeap
{
    NuvAllocator allocator = {[](NuvAllocator* a, NuvSizeT size) -> void*
                              {
                                  int* const remaining = static_cast<int*>(a->userData);
                                  if (*remaining == 0)
                                      return nullptr;
                                  --*remaining;
                                  return std::malloc(static_cast<std::size_t>(size));
                              },
                              [](NuvAllocator*, void* memory, NuvSizeT) { std::free(memory); }, 0,
                              &left};
    int left = 0;
};

TEST(LinearProgram, IsFalseWhenAnyPartIsRefused)
{
    for (int granted = 0;; ++granted)
    {
        ShortHeap heap;
        heap.left = granted;
        const nuv::LinearProgram program(3, &heap.allocator);
        if (program && heap.left > 0)
            break;
        EXPECT_EQ(program.NumVariables(), program ? 3U : 0U);
        ASSERT_LT(granted, 100);
    }
}

TEST(LinearProgram, EditsWithoutMemoryAnswerFalse)
{
    ShortHeap heap;
    heap.left = 1000;
    nuv::LinearProgram program(2, &heap.allocator);
    ASSERT_TRUE(program);
    heap.left = 0;
    EXPECT_FALSE(program.SetConstraint(1, {{1, 1.0F}}, 1.0F));
    const std::vector<nuv::NamedTerm> named = {{"X1", 1.0F}};
    EXPECT_FALSE(program.SetConstraint(1, named, 1.0F));
    EXPECT_FALSE(program.SetObjective(named));
    EXPECT_FALSE(program.SetName(1, "a name for which there is no room"));
    EXPECT_EQ(program.Solve(), nuv::Verdict::InvalidInput);
}

TEST(LinearProgram, AnswersFalseAndZeroForWhatDoesNotExist)
{
    nuv::LinearProgram program(2);
    ASSERT_NE(program.Record(), nullptr);
    EXPECT_EQ(program.Record()->numVars, 2U);
    EXPECT_FALSE(program.SetConstraint(0, {{1, 1.0F}}, 1.0F));
    EXPECT_FALSE(program.SetName(3, "a"));
    EXPECT_EQ(program.Value(0), 0.0F);
    EXPECT_EQ(program.Value(3), 0.0F);
    EXPECT_EQ(program.Name(0), "");
}

TEST(LinearProgram, IsFalseWithoutMemoryAndAfterAMove)
{
    NuvAllocator none = {[](NuvAllocator*, NuvSizeT) -> void* { return nullptr; },
                         [](NuvAllocator*, void*, NuvSizeT) {}, 0, nullptr};
    nuv::LinearProgram refused(3, &none);
    EXPECT_FALSE(refused);
    EXPECT_FALSE(refused.SetConstraint(1, {{1, 1.0F}}, 1.0F));
    EXPECT_FALSE(refused.SetName(1, "a"));
    EXPECT_FALSE(refused.SetObjective({{1, 1.0F}}));
    EXPECT_EQ(refused.Solve(), nuv::Verdict::InvalidInput);
    EXPECT_EQ(refused.Objective(), 0.0F);
    EXPECT_EQ(refused.Record(), nullptr);
    EXPECT_EQ(refused.NumVariables(), 0U);
    EXPECT_EQ(refused.NumConstraints(), 0U);
    EXPECT_EQ(refused.Value(1), 0.0F);
    EXPECT_EQ(refused.Name(1), "");
    EXPECT_FALSE(refused.RemoveConstraint(1));
    const std::vector<nuv::NamedTerm> named = {{"X1", 1.0F}};
    EXPECT_FALSE(refused.SetConstraint(1, named, 1.0F));
    EXPECT_FALSE(refused.SetObjective(named));

    nuv::LinearProgram first = Wyndor();
    nuv::LinearProgram second(std::move(first));
    EXPECT_EQ(second.Solve(), nuv::Verdict::Ok);
    refused = std::move(second);
    EXPECT_EQ(refused.Objective(), 36.0F);
}

/// Goes round in six pivots (Chvátal, Linear Programming, chapter 3).
TEST(LinearProgram, StopsWhereItWouldNotEnd)
{
    nuv::LinearProgram program(4);
    program.SetConstraint(1, {{1, 0.5F}, {2, -5.5F}, {3, -2.5F}, {4, 9.0F}}, 0.0F);
    program.SetConstraint(2, {{1, 0.5F}, {2, -1.5F}, {3, -0.5F}, {4, 1.0F}}, 0.0F);
    program.SetObjective({{1, 10.0F}, {2, -57.0F}, {3, -9.0F}, {4, -24.0F}});
    EXPECT_EQ(program.Solve(), nuv::Verdict::Stopped);
}

TEST(LinearProgram, StopsAtTheLimitThatIsGiven)
{
    nuv::LinearProgram program = Wyndor();
    EXPECT_EQ(program.SolveWithin(1), nuv::Verdict::Stopped);
    EXPECT_EQ(program.SolveWithin(2), nuv::Verdict::Ok);
}
}  // namespace
