// Models of at most 6 × 6: every bit of a solve is the yardstick's and, where no operation was
// rounded, what the solve claims is true.
//
// The second check needs no tolerance. The processor keeps a flag that any rounded operation sets.
// If it is clear after a solve of integers, each number that the solve compared was the exact one:
// then the verdict, the objective and the point must be those of the same model solved in integers.
// A rounded solve claims no more than its own arithmetic, and is held to the yardstick alone.
#include "fuzz/ExactOptimum.hpp"
#include "fuzz/Input.hpp"
#include "fuzz/Target.hpp"
#include "tests/reference/CoreSolve.hpp"
#include "tests/support/TestAllocator.hpp"

#include <cfenv>
#include <cmath>

namespace
{
using namespace reference;

/// Cycling models exist, and their pivots are exact: these are more than 6 × 6 needs.
constexpr std::size_t kMostPivots = 150;

/// What the numbers of a model are.
enum class Numbers
{
    Signs,     // -1, 0, 1: most pivots are ±1
    Integers,  // from -4 to 4
    Eighths,   // from -16 to 15 7/8
    Bits       // any floats, NaN and infinities among them
};

float NumberOf(fuzz::Input* input, Numbers numbers)
{
    switch (numbers)
    {
    case Numbers::Signs:
        return static_cast<float>(input->Below(3) - 1);
    case Numbers::Integers:
        return static_cast<float>(input->Below(9) - 4);
    case Numbers::Eighths:
        return static_cast<float>(input->Signed()) / 8.0F;
    default:
        return input->Float();
    }
}

bool IsInteger(Numbers numbers)
{
    return numbers == Numbers::Signs || numbers == Numbers::Integers;
}

Problem MakeProblem(fuzz::Input* input, Numbers numbers)
{
    Problem problem;
    problem.rows = static_cast<std::size_t>(1 + input->Below(6));
    problem.columns = static_cast<std::size_t>(1 + input->Below(6));
    for (std::size_t j = 0; j != problem.columns; ++j)
        problem.c.push_back(IsInteger(numbers) ? static_cast<float>(input->Signed() / 8)
                                               : NumberOf(input, numbers));
    for (std::size_t i = 0; i != problem.rows; ++i)
    {
        problem.b.push_back(IsInteger(numbers) ? static_cast<float>(input->Signed() / 8)
                                               : NumberOf(input, numbers));
        for (std::size_t j = 0; j != problem.columns; ++j)
            problem.A.push_back(NumberOf(input, numbers));
    }
    return problem;
}

/// A float as a multiple of 2^-20. The denominators of a basis with integers of at most 4 are at
/// most (4 · √6)^6 < 2^20 and, if nothing was rounded, powers of two.
std::int64_t InUnits(float value)
{
    const double units = std::ldexp(static_cast<double>(value), 20);
    EXPECT_LT(std::fabs(units), 0x1p52);
    EXPECT_EQ(units, std::nearbyint(units));
    return static_cast<std::int64_t>(units);
}

/// Whether the point keeps every row, and is worth what the solve says.
void ExpectFeasible(const Problem& problem, const Solution& solution)
{
    std::int64_t objective = 0;
    std::vector<std::int64_t> activity(problem.rows);
    for (std::size_t j = 0; j != problem.columns; ++j)
    {
        const std::int64_t value = InUnits(solution.values[j]);
        EXPECT_GE(value, 0);
        objective += static_cast<std::int64_t>(problem.c[j]) * value;
        for (std::size_t i = 0; i != problem.rows; ++i)
            activity[i] += static_cast<std::int64_t>(problem.A[i * problem.columns + j]) * value;
    }
    EXPECT_EQ(objective, InUnits(solution.objective));
    for (std::size_t i = 0; i != problem.rows; ++i)
        EXPECT_LE(activity[i], InUnits(problem.b[i]));
}

void ExpectTrue(const Problem& problem, const Solution& solution)
{
    const fuzz::ExactOptimum truth = fuzz::SolveExactly(problem);
    ASSERT_EQ(truth.status, solution.status);
    if (solution.status != Status::Ok)
        return;
    ExpectFeasible(problem, solution);
    __extension__ typedef __int128 Wide;
    EXPECT_TRUE(Wide(InUnits(solution.objective)) * truth.denominator ==
                Wide(truth.numerator) * (1 << 20));
}

/// A solve that the allocator ends says so, and the next one is as if it had not been.
void ExpectSecondTry(const Problem& problem, const Solution& expected, std::size_t refused)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model(problem, allocator);
    allocator.RefuseOnly(refused);
    const Solution first = model.SolveMonitored(kMostPivots);
    allocator.RefuseNothing();
    if (first.status != Status::InvalidInput)
    {
        EXPECT_EQ(Difference(expected, first), "");
    }
    EXPECT_EQ(Difference(expected, CoreModel(problem, allocator).SolveMonitored(kMostPivots)), "");
    const Solution second = model.SolveMonitored(kMostPivots);
    EXPECT_EQ(Difference(expected, second), "");
}
}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const int choice = input.Byte();
    const auto numbers = static_cast<Numbers>(choice % 4);
    const Problem problem = MakeProblem(&input, numbers);
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model(problem, allocator);
    std::feclearexcept(FE_ALL_EXCEPT);
    const Solution found = model.SolveMonitored(kMostPivots);
    const bool isRounded = std::fetestexcept(FE_INEXACT) != 0;
    const Solution expected = Solve(model.InRowOrder(), kMostPivots);
    EXPECT_EQ(Difference(expected, found), "");
    if (!isRounded && IsInteger(numbers) && found.status != Status::Stopped)
        ExpectTrue(problem, found);
    if (choice >= 128)
        ExpectSecondTry(problem, expected, static_cast<std::size_t>(1 + choice % 64));
    return 0;
}
