/// Small dense problems one after the other, against a solve of each as a form.
#include "Nuv/Exact/Dense/SolveDense.hpp"
#include "tests/exact/Certified.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace nuv::test
{
namespace
{

/// A problem with the arrays that it refers to.
struct Drawn
{
    explicit Drawn(Random& random)
    {
        problem.columns = static_cast<Index>(random.Between(1, 6));
        problem.upperRows = static_cast<Index>(random.Between(0, 5));
        problem.equalRows = static_cast<Index>(random.Between(0, 2));
        problem.numbers = random.OneIn(2) ? CoefficientMeaning::StoredDouble
                                          : CoefficientMeaning::ShortestDecimal;
        unit = random.OneIn(3) ? 100.0 : 1.0;
        const auto draw = [&](std::vector<double>& numbers, std::size_t count, int least, int most)
        {
            for (std::size_t k = 0; k < count; ++k)
                numbers.push_back(random.OneIn(4) ? 0.0 : random.Between(least, most) / unit);
            return numbers.data();
        };
        const std::size_t columns = problem.columns;
        if (!random.OneIn(9))
            problem.cost = draw(cost, columns, -90, 90);
        problem.upperMatrix = draw(upperMatrix, columns * problem.upperRows, -50, 99);
        problem.upperSides = draw(upperSides, problem.upperRows, -20, 200);
        problem.equalMatrix = draw(equalMatrix, columns * problem.equalRows, -50, 99);
        problem.equalSides = draw(equalSides, problem.equalRows, -20, 90);
        if (random.OneIn(2))
            problem.lower = draw(lower, columns, -30, 1);
        if (random.OneIn(2))
            problem.upper = draw(upper, columns, 0, 60);
        if (!upper.empty() && random.OneIn(2))
            upper[0] = kInf;
    }
    Drawn(const Drawn&) = delete;
    Drawn& operator=(const Drawn&) = delete;

    DenseProblem problem;
    double unit;
    std::vector<double> cost, upperMatrix, upperSides, equalMatrix, equalSides, lower, upper;
};

DenseAnswer AnswerTo(const DenseProblem& problem, std::uint64_t mostPivots = 1000)
{
    DenseSolver solver;
    DenseAnswer answer;
    solver.Solve(problem, mostPivots, answer);
    return answer;
}

/// All numbers are those of a certificate, each the nearest double, whichever way it came about.
void ExpectAnswerOf(const BoundedForm& form, const DenseAnswer& answer, const char* what)
{
    const CertifiedResult solved = Certified(form);
    EXPECT_EQ(answer.status, solved.certificate.status) << what;
    EXPECT_EQ(answer.proved, solved.record.proved) << what;
    if (answer.status != Status::Optimal)
        return;
    EXPECT_EQ(answer.objective, solved.record.objectiveValue) << what;
    ASSERT_EQ(answer.values.size(), form.columns) << what;
    ASSERT_EQ(answer.reducedCosts.size(), form.columns) << what;
    ASSERT_EQ(answer.duals.size(), form.rows) << what;
    std::vector<double> slack(form.rows, 0.0);
    for (Index j = 0; j < form.columns; ++j)
    {
        EXPECT_GE(answer.values[j], form.columnLower[j]) << what;
        EXPECT_LE(answer.values[j], form.columnUpper[j]) << what;
        double reduced = form.cost[j];
        for (const auto [row, entry] : form.matrix.Column(j))
        {
            reduced -= entry * answer.duals[row];
            slack[row] += entry * answer.values[j];
        }
        EXPECT_NEAR(answer.reducedCosts[j], reduced, 1e-9) << what;
        // Complementary slackness.
        EXPECT_TRUE(answer.reducedCosts[j] <= 1e-9 || answer.values[j] == form.columnLower[j]);
        EXPECT_TRUE(answer.reducedCosts[j] >= -1e-9 || answer.values[j] == form.columnUpper[j]);
    }
    for (Index i = 0; i < form.rows; ++i)
    {
        const bool isEquation = form.rowLower[i] == form.rowUpper[i];
        EXPECT_LE(slack[i], form.rowUpper[i] + 1e-9) << what;
        EXPECT_TRUE((!isEquation && answer.duals[i] == 0.0) ||
                    std::fabs(slack[i] - form.rowUpper[i]) <= 1e-9);
        EXPECT_TRUE(isEquation || answer.duals[i] <= 0.0);
    }
}

TEST(DenseSolver, AnswersAsASolveOfTheForm)
{
    Random random(1);
    DenseSolver solver;
    std::array<int, 3> counts{};
    for (int round = 0; round < ShareOf(3000) && !testing::Test::HasFailure(); ++round)
    {
        SCOPED_TRACE(round);
        const Drawn drawn(random);
        DenseAnswer answer;
        solver.Solve(drawn.problem, 1000, answer);
        ExpectAnswerOf(FormOf(drawn.problem), answer, "drawn");
        ASSERT_LT(static_cast<std::size_t>(answer.status), counts.size());
        ++counts[static_cast<std::size_t>(answer.status)];
        // What one problem leaves to the next changes nothing.
        const DenseAnswer alone = AnswerTo(drawn.problem);
        EXPECT_EQ(alone.values, answer.values);
        EXPECT_EQ(alone.duals, answer.duals);
        EXPECT_EQ(alone.reducedCosts, answer.reducedCosts);
        EXPECT_EQ(alone.pivots, answer.pivots);
    }
    for (const int count : counts)
        EXPECT_GT(count, ShareOf(3000) / 50);
}

/// One column, and one row for either kind of side: x <= 4 and x = 3.
struct One
{
    One()
    {
        problem.columns = 1;
        problem.upperRows = 1;
        problem.cost = &cost;
        problem.upperMatrix = &entry;
        problem.upperSides = &side;
        problem.lower = &lower;
        problem.upper = &upper;
    }
    One(const One&) = delete;
    One& operator=(const One&) = delete;

    DenseProblem problem;
    double cost = -1.0;
    double entry = 1.0;
    double side = 4.0;
    double lower = 0.0;
    double upper = 9.0;
};

TEST(DenseSolver, LeavesToASolveOfTheFormWhatIsNoSuchProblem)
{
    for (double One::*const number :
         {&One::cost, &One::entry, &One::side, &One::lower, &One::upper})
    {
        for (const double value : {std::nan(""), kInf, -kInf, 0x1p-200, 0x1p200, 1e300})
        {
            One one;
            one.*number = value;
            ExpectAnswerOf(FormOf(one.problem), AnswerTo(one.problem), "one number");
        }
    }
    for (const double value : {kInf, -kInf})
    {
        One one;
        one.lower = one.upper = value;
        ExpectAnswerOf(FormOf(one.problem), AnswerTo(one.problem), "no number between");
    }
    One crossed;
    crossed.lower = 10.0;
    EXPECT_EQ(AnswerTo(crossed.problem).status, Status::Infeasible);
    EXPECT_TRUE(AnswerTo(crossed.problem).proved);
}

/// What pivots in doubles end with is right, and numbers are too long for its proof in words.
TEST(DenseSolver, LeavesLongNumbersToASolveOfTheForm)
{
    for (const double sign : {1.0, -1.0})
    {
        const std::vector<double> cost(2, -1.0);
        const std::vector<double> matrix = {sign, sign * 0x1p-130};
        const double side = -sign;
        DenseProblem problem;
        problem.columns = 2;
        problem.upperRows = 1;
        problem.cost = cost.data();
        problem.upperMatrix = matrix.data();
        problem.upperSides = &side;
        ExpectAnswerOf(FormOf(problem), AnswerTo(problem), "long");
        EXPECT_EQ(AnswerTo(problem).status, sign > 0.0 ? Status::Infeasible : Status::Unbounded);
    }
}

TEST(DenseSolver, BelievesDoublesIfToldTo)
{
    // The first constraint has more digits than words hold.
    const std::vector<double> cost(2, -1.0);
    const std::vector<double> matrix = {1.0, 0x1p-130, 1.0, 1.0};
    const std::vector<double> sides = {4.0, 6.0};
    DenseProblem problem;
    problem.columns = 2;
    problem.upperRows = 2;
    problem.cost = cost.data();
    problem.upperMatrix = matrix.data();
    problem.upperSides = sides.data();
    EXPECT_TRUE(AnswerTo(problem).proved);
    DenseSolver believing(DenseSolver::Otherwise::Believe);
    DenseAnswer answer;
    believing.Solve(problem, 1000, answer);
    EXPECT_EQ(answer.status, Status::Optimal);
    EXPECT_FALSE(answer.proved);
    EXPECT_NEAR(answer.objective, -6.0, 1e-9);
    EXPECT_EQ(answer.duals.size(), 2U);
    // What words prove is proved all the same.
    believing.Solve(One().problem, 1000, answer);
    EXPECT_TRUE(answer.proved);
}

TEST(DenseSolver, HasNoMoreThanItsPivots)
{
    const One one;
    EXPECT_EQ(AnswerTo(one.problem).values, std::vector<double>{4.0});
    EXPECT_EQ(AnswerTo(one.problem).pivots, 1U);
    const DenseAnswer stopped = AnswerTo(one.problem, 0);
    EXPECT_EQ(stopped.status, Status::Stopped);
    EXPECT_FALSE(stopped.proved);
    EXPECT_EQ(stopped.pivots, 0U);
}

/// More entries than a dictionary is worth: sum x <= 60 and each x_j <= 1, by rows.
TEST(DenseSolver, SolvesWhatIsLarge)
{
    constexpr Index kSize = 55;
    std::vector<double> cost(kSize, -1.0);
    std::vector<double> matrix(std::size_t{kSize} * kSize, 0.0);
    std::vector<double> sides(kSize, 1.0);
    for (std::size_t j = 0; j < kSize; ++j)
        matrix[j * kSize + j] = 1.0;
    DenseProblem problem;
    problem.columns = kSize;
    problem.upperRows = kSize;
    problem.cost = cost.data();
    problem.upperMatrix = matrix.data();
    problem.upperSides = sides.data();
    const DenseAnswer answer = AnswerTo(problem);
    ExpectAnswerOf(FormOf(problem), answer, "large");
    EXPECT_EQ(answer.objective, -55.0);
}

}  // namespace
}  // namespace nuv::test
