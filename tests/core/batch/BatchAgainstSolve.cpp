// Batches compared with solves of the same problems one by one through the model, bit for bit:
// verdict, objective, values, the sequence of pivots, the basis; and the prices with those of the
// other ways. Every family, every instruction set, numbers that are not finite included.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "Nuv/Utils/Batch/Batch.h"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/TestAllocator.hpp"

using namespace reference;

namespace
{
constexpr NuvUint kPivotLimit = 90;

struct Labels
{
    NuvUint phase;
    NuvUint entering;
    NuvUint leaving;

    bool operator==(const Labels&) const = default;

    friend void PrintTo(const Labels& labels, std::ostream* out)
    {
        *out << labels.phase << ": " << labels.entering << " for " << labels.leaving;
    }
};

/// What is expected of a problem.
struct Expected
{
    NuvUint verdict;
    float objective;
    std::vector<float> values;
    std::vector<Labels> pivots;
    std::vector<NuvUint> basis;
};

/// The basis at the optimum, from that before the last pivot.
std::vector<NuvUint> BasisAfter(const Solution& solution, const Problem& problem)
{
    std::vector<NuvUint> basis(problem.rows);
    for (std::size_t i = 0; i != problem.rows; ++i)
        basis[i] = static_cast<NuvUint>(problem.columns + 1 + i);
    if (solution.pivots.empty())
        return basis;
    const Pivot& last = solution.pivots.back();
    // Phase I that ended with the artificial variable in the basis hands over the first basis.
    if (last.phase == 1 && last.leaving != 0)
        return basis;
    basis.assign(last.basic.begin(), last.basic.end());
    *std::find(basis.begin(), basis.end(), last.leaving) = last.entering;
    return basis;
}

struct Shape
{
    NuvUint rows;
    NuvUint columns;

    auto operator<=>(const Shape&) const = default;
};

/// Problems of one shape, in the arrays of a batch, and what is expected of them.
struct Group
{
    std::vector<float> A;
    std::vector<float> b;
    std::vector<float> c;
    std::vector<Expected> expected;

    void Add(const Problem& problem)
    {
        TestAllocator allocator;
        allocator.AcceptLeftBlocks();
        CoreModel model(problem, allocator);
        const Solution solution = model.SolveMonitored(kPivotLimit);
        const Problem& ordered = model.InRowOrder();
        A.insert(A.end(), ordered.A.begin(), ordered.A.end());
        b.insert(b.end(), ordered.b.begin(), ordered.b.end());
        c.insert(c.end(), ordered.c.begin(), ordered.c.end());
        Expected found = {static_cast<NuvUint>(solution.status), solution.objective, {}, {}, {}};
        for (const Pivot& pivot : solution.pivots)
            found.pivots.push_back({pivot.phase, pivot.entering, pivot.leaving});
        found.values.assign(problem.columns, 0.0F);
        found.basis.assign(problem.rows, 0);
        if (solution.status == Status::Ok)
        {
            found.values = solution.values;
            found.basis = BasisAfter(solution, problem);
        }
        else
            found.objective = solution.status == Status::Unbounded ? FLT_MAX : 0.0F;
        expected.push_back(std::move(found));
    }
};

struct Recording
{
    nuv::BatchTrace trace;
    std::vector<std::vector<Labels>> pivots;
};

void Record(nuv::BatchTrace* trace, NuvSizeT problem, NuvUint phase, NuvUint entering,
            NuvUint leaving)
{
    // The trace is the recording's first member.
    std::vector<Labels>& pivots = reinterpret_cast<Recording*>(trace)->pivots[problem];
    if (phase == 0)
        pivots.clear();
    else
        pivots.push_back({phase, entering, leaving});
}

/// The answers of a batch.
struct Answers
{
    std::vector<NuvUint> verdicts;
    std::vector<float> objectives;
    std::vector<float> values;
    std::vector<NuvUint> pivots;
    std::vector<NuvUint> bases;
    std::vector<float> prices;
    std::vector<std::vector<Labels>> sequences;
};

Answers SolveBy(nuv::BatchWay way, const Group& group, Shape shape)
{
    const std::size_t count = group.expected.size();
    const std::size_t m = shape.rows;
    const std::size_t n = shape.columns;
    Answers x = {std::vector<NuvUint>(count, 77),
                 std::vector<float>(count, 77.0F),
                 std::vector<float>(count * n, 77.0F),
                 std::vector<NuvUint>(count, 77),
                 std::vector<NuvUint>(count * m, 77),
                 std::vector<float>(count * m, 77.0F),
                 {}};
    Recording recording = {{Record}, std::vector<std::vector<Labels>>(count)};
    way.trace = &recording.trace;
    const NuvLinearProgrammingBatch batch = {shape.columns,
                                             shape.rows,
                                             count,
                                             group.A.data(),
                                             m * n,
                                             group.b.data(),
                                             m,
                                             group.c.data(),
                                             n,
                                             kPivotLimit,
                                             x.verdicts.data(),
                                             x.objectives.data(),
                                             x.values.data(),
                                             x.pivots.data(),
                                             x.bases.data(),
                                             x.prices.data()};
    // As memory is that was used before: numbers that a way must not take for its own.
    std::vector<float> memory(nuv::WorkspaceSize(&batch, &way) / sizeof(float) + 1);
    for (std::size_t i = 0; i != memory.size(); ++i)
        memory[i] = static_cast<float>(i * i % 5) - 1.0F;
    nuv::SolveRange(&batch, &way, 0, count, memory.data());
    x.sequences = std::move(recording.pivots);
    return x;
}

template <class T>
std::vector<T> PartOf(const std::vector<T>& x, std::size_t problem, std::size_t length)
{
    const auto first = x.begin() + static_cast<std::ptrdiff_t>(problem * length);
    return {first, first + static_cast<std::ptrdiff_t>(length)};
}

void CompareProblem(const Expected& expected, const Answers& found, std::size_t problem,
                    Shape shape)
{
    EXPECT_EQ(expected.verdict, found.verdicts[problem]);
    EXPECT_TRUE(IsSame(expected.objective, found.objectives[problem]))
        << BitsOf(expected.objective) << ' ' << BitsOf(found.objectives[problem]);
    EXPECT_TRUE(IsSame(expected.values, PartOf(found.values, problem, shape.columns)));
    EXPECT_EQ(expected.pivots.size(), found.pivots[problem]);
    EXPECT_EQ(expected.basis, PartOf(found.bases, problem, shape.rows));
}

void CompareGroup(const nuv::BatchWay& way, const Group& group, Shape shape,
                  const std::vector<float>* prices)
{
    const Answers found = SolveBy(way, group, shape);
    for (std::size_t k = 0; k != group.expected.size() && !testing::Test::HasFailure(); ++k)
    {
        SCOPED_TRACE(testing::Message()
                     << (way.lanes ? static_cast<int>(way.lanes->lanes) : 0) << " lanes, "
                     << (way.hasTurns ? "in turns" : "one by one") << ", problem " << k << " of "
                     << shape.rows << " x " << shape.columns);
        CompareProblem(group.expected[k], found, k, shape);
        EXPECT_EQ(group.expected[k].pivots, found.sequences[k]);
        EXPECT_TRUE(IsSame(PartOf(*prices, k, shape.rows), PartOf(found.prices, k, shape.rows)));
    }
}

constexpr nuv::InstructionSet kAllSets[] = {nuv::InstructionSet::Plain,
                                            nuv::InstructionSet::Baseline,
                                            nuv::InstructionSet::Avx2, nuv::InstructionSet::Avx512};

/// Every way that this machine has.
std::vector<nuv::BatchWay> AllWays()
{
    std::vector<nuv::BatchWay> ways;
    for (const nuv::InstructionSet set : kAllSets)
        if (const nuv::Kernels* const kernels = nuv::KernelsOf(set))
        {
            ways.push_back({kernels, nullptr, nullptr});
            ways.push_back({kernels, nullptr, nullptr, true});
            ways.push_back({kernels, nullptr, nullptr, true, false, nuv::UnitLoopsOf(set)});
            if (const nuv::LaneLoops* const lanes = nuv::LanesOf(set))
            {
                ways.push_back({kernels, lanes, nullptr});
                ways.push_back({kernels, lanes, nullptr, true, true});
            }
        }
    return ways;
}

using Groups = std::map<Shape, Group>;

void CompareGroups(const Groups& groups)
{
    for (const auto& [shape, group] : groups)
    {
        const std::vector<float> prices =
            SolveBy({nuv::PlainKernels(), nullptr, nullptr}, group, shape).prices;
        for (const nuv::BatchWay& way : AllWays())
            CompareGroup(way, group, shape, &prices);
    }
}

/// Problems of a family, of each of some shapes as many.
void CompareFamily(Family family, std::initializer_list<Shape> shapes, std::size_t each,
                   std::uint64_t seed)
{
    Random random(seed + static_cast<std::uint64_t>(family));
    constexpr std::size_t kAtOnce = 200;
    const std::size_t count = ShareOf(each);
    for (std::size_t done = 0; done < count && !testing::Test::HasFailure(); done += kAtOnce)
    {
        Groups groups;
        for (const Shape shape : shapes)
            for (std::size_t k = done; k != std::min(done + kAtOnce, count); ++k)
            {
                const Problem problem = MakeModel(family, shape.rows, shape.columns, random.Next());
                groups[{static_cast<NuvUint>(problem.rows), static_cast<NuvUint>(problem.columns)}]
                    .Add(problem);
            }
        CompareGroups(groups);
    }
}

class BatchAgainstSolve : public testing::TestWithParam<Family>
{
};

TEST_P(BatchAgainstSolve, TinyProblemsHaveTheSameBits)
{
    CompareFamily(GetParam(), {{1, 1}, {2, 3}, {3, 2}, {4, 4}, {5, 5}}, 300, 0xBA7C);
}

TEST_P(BatchAgainstSolve, SmallProblemsHaveTheSameBits)
{
    CompareFamily(GetParam(), {{7, 9}, {10, 10}, {12, 5}, {3, 17}}, 60, 0xBA7D);
}

TEST_P(BatchAgainstSolve, MiddlingProblemsHaveTheSameBits)
{
    CompareFamily(GetParam(), {{20, 20}, {17, 33}, {33, 8}}, 6, 0xBA7E);
}

INSTANTIATE_TEST_SUITE_P(Families, BatchAgainstSolve, testing::ValuesIn(Families()),
                         [](const testing::TestParamInfo<Family>& family)
                         { return NameOf(family.param); });

/// Neighbours that cycle, overflow or end at once do not change each other.
TEST(BatchOfAllFamilies, ProblemsHaveTheSameBits)
{
    Random random(0xA11);
    for (std::size_t round = 0; round != ShareOf<std::size_t>(4); ++round)
    {
        Groups groups;
        for (int k = 0; k != 40; ++k)
            for (const Family family : Families())
            {
                const Problem problem = MakeModel(family, 4, 6, random.Next());
                groups[{static_cast<NuvUint>(problem.rows), static_cast<NuvUint>(problem.columns)}]
                    .Add(problem);
            }
        CompareGroups(groups);
    }
}

/// What a problem with unit coefficients may have that makes it another one.
void Spoil(Problem* problem, Random* random)
{
    const auto any = [random](std::vector<float>& x) -> float&
    { return x[random->Next() % x.size()]; };
    switch (random->Next() % 30)
    {
    case 0:
        any(problem->A) = 2.0F;
        break;
    case 1:
        any(problem->A) = 0.5F;
        break;
    case 2:
        any(problem->b) = -1.0F;
        break;
    case 3:
        any(problem->b) = 0x1p22F;
        break;
    case 4:
        any(problem->c) = 0x1p21F + 1.0F;
        break;
    case 5:
        any(problem->b) = SpecialValue(random);
        break;
    case 6:
        for (float& cost : problem->c)
            cost *= 0.1F;
        break;
    case 7:
        for (float& side : problem->b)
            side *= 0.1F;
        break;
    case 8:
        for (float& cost : problem->c)
            cost = static_cast<float>(random->Next() % (1U << 24U));
        break;
    default:
        break;
    }
}

/// Two units in each column, as in a network, or some in any place.
Problem MakeUnitProblem(std::size_t rows, std::size_t columns, Random* random)
{
    Problem problem = {rows, columns, std::vector<float>(rows * columns), {}, {}};
    const bool hasNegative = random->Chance(40);
    const auto unit = [&] { return hasNegative && random->Chance(40) ? -1.0F : 1.0F; };
    const std::size_t count = random->Chance(80) ? 2 : 2 + rows / 8;
    for (std::size_t j = 0; j != columns; ++j)
        for (std::size_t k = 0; k != count; ++k)
            problem.A[random->Next() % rows * columns + j] = unit();
    for (std::size_t i = 0; i != rows; ++i)
        problem.b.push_back(static_cast<float>(random->Next() % 9));
    for (std::size_t j = 0; j != columns; ++j)
        problem.c.push_back(static_cast<float>(random->Next() % 40) - 4.0F);
    return problem;
}

/// The tableau of integers, and what it is given up for: pivots other than 1, numbers that are no
/// integers or too large, Phase I.
TEST(BatchOfUnitCoefficients, ProblemsHaveTheSameBits)
{
    Random random(0x1157);
    constexpr Shape kShapes[] = {{1, 1},   {4, 6},   {10, 10}, {12, 33},
                                 {20, 20}, {32, 16}, {33, 65}, {64, 40}};
    for (std::size_t round = 0; round != ShareOf<std::size_t>(4); ++round)
    {
        Groups groups;
        for (const Shape shape : kShapes)
            for (int k = 0; k != 40; ++k)
            {
                Problem problem = MakeUnitProblem(shape.rows, shape.columns, &random);
                if (k != 0)
                    Spoil(&problem, &random);
                groups[shape].Add(problem);
            }
        CompareGroups(groups);
    }
}

/// Coefficients, right-hand sides and costs out of the list that breaks careless arithmetic.
TEST(BatchOfSpecialValues, ProblemsHaveTheSameBits)
{
    Random random(0x5BEC);
    for (std::size_t round = 0; round != ShareOf<std::size_t>(4); ++round)
    {
        Groups groups;
        for (int k = 0; k != 600; ++k)
        {
            Problem problem = MakeModel(Family::MixedSigns, 3, 4, random.Next());
            for (std::vector<float>* const part : {&problem.A, &problem.b, &problem.c})
                for (float& x : *part)
                    if (random.Chance(12))
                        x = SpecialValue(&random);
            groups[{3, 4}].Add(problem);
        }
        CompareGroups(groups);
    }
}
}  // namespace
