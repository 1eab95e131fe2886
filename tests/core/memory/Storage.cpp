// What a solve leaves with the allocator, to the block and to the byte, and that it gives back all
// else: each stage by itself on a model whose pivots are known, then all families of models.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "Nuv/Utils/Simplex/DenseIteration.h"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/TestAllocator.hpp"

using namespace reference;

namespace
{
constexpr std::size_t kPivotLimit = 200;

// A solve that does not end where it should runs out of memory instead.
constexpr std::size_t kRequestLimit = 20000;

/// The blocks that stay behind, added up stage by stage.
class Leftovers
{
public:
    Leftovers(std::size_t rows, std::size_t columns) : m(rows), n(columns) {}

    Leftovers& Vectors(int count)
    {
        return Add(m, count);
    }

    Leftovers& Squares(int count)
    {
        return Add(m * m, count);
    }

    /// The set-up of Phase I.
    Leftovers& PhaseI()
    {
        Add(m * (n + m + 1), 1).Squares(1).Add(m * (n + 1), 1).Vectors(1).Add(n + 1, 1).Squares(1);
        return Vectors(1).Add(n + 1, 1);
    }

    /// A pivot with its update of the inverse, in either phase.
    Leftovers& Pivots(int count)
    {
        return Vectors(4 * count).Squares(count);
    }

    /// The pivot by which the artificial variable leaves.
    Leftovers& HandOver()
    {
        return Vectors(4);
    }

    /// The optimum of Phase II.
    Leftovers& Optimum()
    {
        return Vectors(1).Squares(1);
    }

    /// The end of Phase II where no row bounds the entering column.
    Leftovers& Unbounded()
    {
        return Vectors(4).Squares(1);
    }

    const TestAllocator::Sizes& Sizes() const
    {
        return sizes;
    }

private:
    Leftovers& Add(std::size_t elements, int count)
    {
        for (int i = 0; i < count; ++i)
            sizes.insert(elements * 4);
        return *this;
    }

    std::size_t m;
    std::size_t n;
    TestAllocator::Sizes sizes;
};

/// What the table says for a solve whose pivots are known.
Leftovers ExpectedAfter(const Problem& problem, const Solution& solution)
{
    Leftovers expected(problem.rows, problem.columns);
    bool isHandedOver = false;
    for (const Pivot& pivot : solution.pivots)
    {
        const bool isHandOver = pivot.phase == 1 && pivot.leaving == 0;
        isHandedOver = isHandedOver || isHandOver;
        if (isHandOver)
            expected.HandOver();
        else
            expected.Pivots(1);
    }
    if (solution.statusOfPhaseI != Status::InvalidInput)
    {
        expected.PhaseI();
        if (solution.statusOfPhaseI == Status::Unbounded)
            return expected.Vectors(4);
        if (!isHandedOver)
            expected.Vectors(1);
        if (solution.statusOfPhaseI == Status::Infeasible)
            return expected;
    }
    return solution.status == Status::Ok ? expected.Optimum() : expected.Unbounded();
}

/// Solves, destructs the model, and answers the sizes of the blocks that are left then.
TestAllocator::Sizes LeftBySolving(const Problem& problem)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    {
        CoreModel model(problem, allocator);
        allocator.RefuseFrom(kRequestLimit);
        (void)model.Solve();
    }
    return allocator.LiveSizes();
}

/// Expects what a stage leaves, after checking that the model goes through the pivots that its test
/// names.
void ExpectLeft(const Problem& problem, std::size_t pivots, const Leftovers& expected)
{
    EXPECT_EQ(Solve(problem).pivots.size(), pivots);
    EXPECT_EQ(LeftBySolving(problem), expected.Sizes());
}

// The stages --------------------------------------------------------------------------------------

TEST(Storage, AnOptimumWithoutAPivotLeavesItsValuesAndTheInverse)
{
    const Problem problem = {3, 2, {1, 2, 3, 4, 5, 6}, {1, 2, 3}, {-1, 0}};
    ExpectLeft(problem, 0, Leftovers(3, 2).Optimum());
}

TEST(Storage, EachPivotOfPhaseIILeavesFourVectorsAndASquare)
{
    const Problem problem = {3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}};
    ExpectLeft(problem, 2, Leftovers(3, 2).Pivots(2).Optimum());
}

TEST(Storage, AnUnboundedEndOfPhaseIILeavesFourVectorsAndTheInverse)
{
    const Problem atOnce = {2, 1, {-1, 0}, {1, 1}, {1}};
    ExpectLeft(atOnce, 0, Leftovers(2, 1).Unbounded());
    const Problem afterAPivot = {1, 2, {1, -1}, {1}, {2, 1}};
    ExpectLeft(afterAPivot, 1, Leftovers(1, 2).Pivots(1).Unbounded());
}

TEST(Storage, PhaseILeavesItsSetUpItsPivotsAndTheHandOver)
{
    // −x ≤ −2, x ≤ 5: the artificial variable comes in, x drives it out; x then rises to 5.
    const Problem problem = {2, 1, {-1, 1}, {-2, 5}, {1}};
    const Solution solution = Solve(problem);
    ASSERT_EQ(solution.pivots.size(), 3U);
    EXPECT_EQ(solution.pivots[1].leaving, 0U);
    EXPECT_EQ(solution.pivots[2].phase, 2U);
    ExpectLeft(problem, 3, Leftovers(2, 1).PhaseI().Pivots(1).HandOver().Pivots(1).Optimum());
}

TEST(Storage, PhaseIWhoseArtificialVariableStaysLeavesOneVectorBesides)
{
    // x ≥ 2 and x ≤ 1.
    const Problem problem = {2, 1, {-1, 1}, {-2, 1}, {1}};
    EXPECT_EQ(Solve(problem).status, Status::Infeasible);
    ExpectLeft(problem, 2, Leftovers(2, 1).PhaseI().Pivots(2).Vectors(1));
}

/// −x ≤ −2⁻¹⁴⁹ and x ≤ 0: half of 2⁻¹⁴⁹ rounds to 0, so that Phase I ends at an objective of 0 with
/// the artificial variable still basic, and Phase II starts from the slack basis.
Problem ArtificialAtZero()
{
    const float smallest = 0x1p-149F;
    return {2, 1, {-1, 1}, {-smallest, 0}, {-1}};
}

TEST(Storage, PhaseIThatEndsAtZeroWithTheArtificialVariableBasicGoesOnFromTheSlackBasis)
{
    const Solution solution = Solve(ArtificialAtZero());
    EXPECT_EQ(solution.statusOfPhaseI, Status::Ok);
    EXPECT_EQ(solution.status, Status::Ok);
    ExpectLeft(ArtificialAtZero(), 2, Leftovers(2, 1).PhaseI().Pivots(2).Vectors(1).Optimum());
}

TEST(Storage, AnUnboundedEndOfPhaseILeavesFourVectorsBesidesItsSetUp)
{
    // −x ≤ −∞: every ratio is infinite.
    const Problem problem = {1, 1, {-1}, {-std::numeric_limits<float>::infinity()}, {1}};
    EXPECT_EQ(Solve(problem).statusOfPhaseI, Status::Unbounded);
    ExpectLeft(problem, 1, Leftovers(1, 1).PhaseI().Pivots(1).Vectors(4));
}

TEST(Storage, AnInverseOfAMatrixThatIsNotSquareLeavesItsCopy)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    NuvMatrix_NuvFloat32 x;
    NuvMatrix_NuvFloat32 result;
    NuvMatrix_NuvFloat32Construct(&x, 3, 5, allocator);
    NuvMatrix_NuvFloat32Reset(&x);
    NuvMatrix_NuvFloat32ConstructDefault(&result, allocator);
    NuvMatrix_NuvFloat32Inverse(&x, &result);
    NuvMatrix_NuvFloat32Destruct(&x);
    EXPECT_EQ(allocator.LiveSizes(), TestAllocator::Sizes{60});
}

TEST(Storage, ABasisUpdateLeavesOneSquare)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    NuvMatrix_NuvFloat32 A;
    NuvMatrix_NuvFloat32 inverse;
    NuvMatrix_NuvFloat32 result;
    NuvMatrix_NuvFloat32ConstructIdentity(&A, 3, allocator);
    NuvMatrix_NuvFloat32ConstructIdentity(&inverse, 3, allocator);
    NuvMatrix_NuvFloat32ConstructDefault(&result, allocator);
    NuvRevisedSimplexAlogirthmBasisUpdate(&A, &inverse, 1, 1, 0, &result);
    for (NuvMatrix_NuvFloat32* const x : {&A, &inverse, &result})
        NuvMatrix_NuvFloat32Destruct(x);
    EXPECT_EQ(allocator.LiveSizes(), TestAllocator::Sizes{36});
}

// The phases by themselves ------------------------------------------------------------------------

TEST(Storage, ThePhasesCalledDirectlyLeaveWhatTheyLeaveInASolve)
{
    const Problem problem = {2, 1, {-1, 1}, {-2, 5}, {1}};
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    {
        CoreModel model(problem, allocator);
        ASSERT_TRUE(NuvLinearProgrammingPrepareInputs_(&model.lp));
        ASSERT_EQ(NuvRevisedSimplexSolvePhaseI(&model.lp), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
        ASSERT_EQ(NuvRevisedSimplexSolvePhaseII(&model.lp), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    }
    EXPECT_EQ(allocator.LiveSizes(),
              Leftovers(2, 1).PhaseI().Pivots(1).HandOver().Pivots(1).Optimum().Sizes());
}

TEST(Storage, TheStandardFormLeavesNothing)
{
    TestAllocator allocator;
    CoreModel model({2, 1, {-1, 1}, {-2, 5}, {1}}, allocator);
    EXPECT_TRUE(NuvLinearProgrammingPrepareInputs_(&model.lp));
    EXPECT_FALSE(NuvRevisedSimplexIsPhaseIRequired(&model.lp) == NUV_FALSE);
}

TEST(Storage, ASolveWithoutAStandardFormLeavesNothing)
{
    TestAllocator allocator;
    CoreModel empty({0, 2, {}, {}, {1, 1}}, allocator);
    EXPECT_EQ(empty.Solve().status, Status::InvalidInput);
    CoreModel outside({1, 2, {1, 1}, {3}, {1, 1}}, allocator);
    ASSERT_TRUE(NuvLinearProgrammingSetNumVars(&outside.lp, 1));
    EXPECT_EQ(outside.Solve().status, Status::InvalidInput);
}

TEST(Storage, AStoppedSolveLeavesWhatItsPivotsLeft)
{
    const Problem problem = {3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}};
    for (std::size_t limit = 0; limit != 2; ++limit)
    {
        TestAllocator allocator;
        allocator.AcceptLeftBlocks();
        {
            CoreModel model(problem, allocator);
            EXPECT_EQ(model.SolveMonitored(limit).status, Status::Stopped);
        }
        EXPECT_EQ(allocator.LiveSizes(), Leftovers(3, 2).Pivots(static_cast<int>(limit)).Sizes());
    }
}

TEST(Storage, ASecondSolveOfTheSameModelLeavesAsMuchAgain)
{
    const Problem problem = {3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}};
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    {
        CoreModel model(problem, allocator);
        (void)model.Solve();
        (void)model.Solve();
    }
    EXPECT_EQ(allocator.LiveSizes(),
              Leftovers(3, 2).Pivots(2).Optimum().Pivots(2).Optimum().Sizes());
}

// All families ------------------------------------------------------------------------------------

/// Calls visit(problem) for so many small models of a family.
template <class Visit>
void ForEachModel(Family family, std::uint64_t firstSeed, int count, Visit visit)
{
    Random random(firstSeed + static_cast<std::uint64_t>(family));
    for (int i = 0; i < ShareOf(count) && !testing::Test::HasFailure(); ++i)
    {
        const std::size_t rows = 1 + random.Below(9);
        const std::size_t columns = 1 + random.Below(9);
        const std::uint64_t seed = random.Next();
        SCOPED_TRACE(testing::Message() << rows << " x " << columns << ", seed " << seed);
        visit(MakeModel(family, rows, columns, seed));
    }
}

/// What a solve leaves behind must be what its pivots say.
void CompareLeftovers(const Problem& problem)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    Solution solution;
    {
        CoreModel model(problem, allocator);
        solution = reference::Solve(model.InRowOrder(), kPivotLimit);
        if (solution.status == Status::Stopped)
            return;
        allocator.RefuseFrom(kRequestLimit);
        (void)model.Solve();
    }
    EXPECT_EQ(allocator.LiveSizes(), ExpectedAfter(problem, solution).Sizes());
}

class StorageOfFamilies : public testing::TestWithParam<Family>
{
};

TEST_P(StorageOfFamilies, ASolveLeavesWhatItsPivotsSay)
{
    ForEachModel(GetParam(), 0x570A6E, 200, CompareLeftovers);
}

std::string NameOfFamily(const testing::TestParamInfo<Family>& family)
{
    return NameOf(family.param);
}

INSTANTIATE_TEST_SUITE_P(Families, StorageOfFamilies, testing::ValuesIn(Families()), NameOfFamily);
}  // namespace
