// The least change that makes a model feasible, by handle, and the model with it.
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Solve/Repair.hpp"

#include "Nuv/Solve/Solution.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <variant>

namespace nuv::test
{
namespace
{

/// x + y >= 9 with x <= 3 and y <= 4, and 3 x <= 7: two and two thirds are missing.
class Short : public testing::Test
{
protected:
    Short()
    {
        x = model.AddVariable("x", {0, 3});
        y = model.AddVariable("y", {0, 4});
        need = model.Add("need", x + y >= 9);
        cap = model.Add("cap", 3 * x <= 7);
        model.Minimize(x + y);
    }

    Model model;
    Variable x;
    Variable y;
    Row need;
    Row cap;
};

TEST_F(Short, IsRepairedByTheLeastChange)
{
    const RepairResult repair = Repair(model);
    EXPECT_EQ(repair.status, Status::Optimal);
    EXPECT_TRUE(repair.proved);
    EXPECT_EQ(repair.exactTotal, "8/3");
    EXPECT_EQ(repair.total, 8.0 / 3.0);
    EXPECT_EQ(Outcome(repair), "repaired");
    ASSERT_TRUE(repair.model.has_value());
    EXPECT_EQ(repair.model->Solve().status, Status::Optimal);
    EXPECT_EQ(model.Solve().status, Status::Infeasible) << "the model itself stays";
}

TEST_F(Short, IsRepairedWhereItIsAllowedAndCheap)
{
    RepairOptions options;
    options.weights = {{y, 3.0}, {need, Infinity}, {cap, 0.5}};
    const RepairResult repair = Repair(model, options);
    EXPECT_EQ(repair.exactTotal, "6");
    ASSERT_EQ(repair.changes.size(), 2u);
    const RepairChange& bound = repair.changes[0];
    EXPECT_TRUE(Same(std::get<Variable>(bound.of), x));
    EXPECT_TRUE(bound.upper);
    EXPECT_EQ(bound.from, 3.0);
    EXPECT_EQ(bound.to, 5.0);
    EXPECT_EQ(bound.exactAmount, "2");
    const RepairChange& side = repair.changes[1];
    EXPECT_TRUE(Same(std::get<Row>(side.of), cap));
    EXPECT_EQ(side.exactTo, "15");
    EXPECT_EQ(side.amount, 8.0);
    EXPECT_EQ(repair.model->VariableUpper()[0], 5.0);
    EXPECT_EQ(repair.model->RowUpper()[repair.model->IndexOf(cap)], 15.0);
    EXPECT_EQ(repair.model->RowLower()[repair.model->IndexOf(need)], 9.0);
}

TEST_F(Short, HasNoRepairWhereAllStays)
{
    RepairOptions options;
    options.weights = {{x, Infinity}, {y, Infinity}, {need, Infinity}, {cap, Infinity}};
    const RepairResult repair = Repair(model, options);
    EXPECT_EQ(repair.status, Status::Infeasible);
    EXPECT_TRUE(repair.proved);
    EXPECT_FALSE(repair.model.has_value());
    EXPECT_EQ(Outcome(repair), "infeasible: what has to stay excludes itself");
    options.weights.push_back({need, 1.0});
    EXPECT_EQ(Repair(model, options).exactTotal, "8/3") << "the last weight counts";
}

TEST_F(Short, RefusesWeightsThatMeanNothing)
{
    Model other;
    RepairOptions options;
    options.weights = {{other.AddVariable("x"), 2.0}};
    EXPECT_EQ(Repair(model, options).failure.code, "repair.unknown");
    options.weights = {{other.Add("need", other.VariableAt(0) <= 1), 2.0}};
    EXPECT_EQ(Repair(model, options).failure.code, "repair.unknown");
    options.weights = {{x, 0.0}};
    EXPECT_EQ(Repair(model, options).failure.code, "repair.weight");
    EXPECT_EQ(Outcome(Repair(model, options)), "invalid: a weight is not positive");
    EXPECT_EQ(Repair(model, options).status, Status::Invalid);
    (void)model.AddVariable("x");
    EXPECT_EQ(Repair(model).failure.code, "model.duplicate-variable");
}

TEST_F(Short, IsNotRepairedByASolveThatIsStopped)
{
    RepairOptions options;
    options.limits.seconds = 0.0;
    const RepairResult repair = Repair(model, options);
    EXPECT_EQ(repair.status, Status::Stopped);
    EXPECT_FALSE(repair.proved);
    EXPECT_EQ(Outcome(repair), "stopped by the time limit");
    EXPECT_TRUE(repair.changes.empty());
    EXPECT_FALSE(repair.model.has_value());
}

/// The sides miss each other by less than doubles of their size are apart.
TEST(Repair, MeasuresNumbersThatNoDoubleSays)
{
    const ReadResult reading = ReadModelFile(NUV_TEST_MODELS "/written/beyond.lp");
    ASSERT_TRUE(reading.Ok());
    const RepairResult repair = Repair(*reading.model);
    ASSERT_EQ(repair.status, Status::Optimal);
    EXPECT_EQ(repair.exactTotal, "1");
    const ReadResult crossed = ReadLp("min x st r: 2/3 <= x + y <= 1/3\nend", "crossed.lp");
    ASSERT_TRUE(crossed.Ok());
    EXPECT_EQ(Repair(*crossed.model).exactTotal, "1/3");
    const ReadResult thirds =
        ReadLp("min x st a: 1/3 x >= 1/3\n b: -1/7 <= 1/7 x <= 1/9\nend", "thirds.lp");
    ASSERT_TRUE(thirds.Ok());
    const RepairResult small = Repair(*thirds.model);
    EXPECT_EQ(small.exactTotal, "2/63");
    ASSERT_TRUE(small.model.has_value());
    EXPECT_EQ(small.model->Exact().Find({NumberPlace::Of::RowLower, 1}) != nullptr, true);
}

TEST(Repair, LeavesAFeasibleModelAsItIs)
{
    Model model;
    model.Add(model.AddVariable() <= 4);
    const RepairResult repair = Repair(model);
    EXPECT_EQ(repair.status, Status::Optimal);
    EXPECT_TRUE(repair.proved);
    EXPECT_TRUE(repair.changes.empty());
    EXPECT_EQ(repair.exactTotal, "0");
    EXPECT_EQ(Outcome(repair), "feasible as it stands");
}

/// Sides in thirds and sevenths, of which no double says one: the next wider ones are enough.
TEST(Repair, MovesSidesToDoublesThatAreWideEnough)
{
    for (int k = 1; k <= 40; ++k)
    {
        SCOPED_TRACE(k);
        Model model;
        const Variable x = model.AddVariable("x", {-Infinity, Infinity});
        const Row fixed = model.Add(21 * x == k);
        const Row below = model.Add(x <= -0.3);
        const Row above = model.Add(x >= 5.1);
        RepairOptions options;
        options.weights = {{fixed, Infinity}};
        for (const CoefficientMeaning numbers :
             {CoefficientMeaning::ShortestDecimal, CoefficientMeaning::StoredDouble})
        {
            options.numbers = numbers;
            const RepairResult repair = Repair(model, options);
            ASSERT_EQ(repair.changes.size(), 2u);
            EXPECT_TRUE(Same(std::get<Row>(repair.changes[0].of), below));
            EXPECT_TRUE(Same(std::get<Row>(repair.changes[1].of), above));
            SolveOptions solve;
            solve.numbers = numbers;
            const Solution solution = repair.model->Solve(solve);
            EXPECT_EQ(solution.status, Status::Optimal);
            EXPECT_TRUE(solution.proved);
        }
    }
}

/// x and y are kept at 1e308 at least, or -1e308 at most: a side of their sum, or a bound of a
/// variable that is their sum, moves by twice as much, beyond which no double is.
TEST(Repair, MovesASideBeyondDoublesToInfinity)
{
    for (const double sign : {1.0, -1.0})
    {
        const auto beyond = [sign](double number) {
            return sign > 0.0 ? Bounds{number, Infinity} : Bounds{-Infinity, -number};
        };
        for (const bool isRow : {true, false})
        {
            Model model;
            const Variable x = model.AddVariable("x", beyond(1e308));
            const Variable y = model.AddVariable("y", beyond(1e308));
            const Variable z = model.AddVariable("z", {-Infinity, Infinity});
            const Row sum = model.Add("sum", x + y - z == 0);
            const Bounds narrow = sign > 0.0 ? Bounds{-Infinity, 1} : Bounds{-1, Infinity};
            if (isRow)
                (void)model.Add(sign > 0.0 ? x + y <= 1 : x + y >= -1);
            else
                (void)model.SetBounds(z, narrow);
            RepairOptions options;
            options.weights = {{x, Infinity}, {y, Infinity}, {sum, Infinity}};
            const RepairResult repair = Repair(model, options);
            ASSERT_EQ(repair.status, Status::Optimal);
            ASSERT_EQ(repair.changes.size(), 1U);
            EXPECT_EQ(std::holds_alternative<Row>(repair.changes[0].of), isRow);
            EXPECT_EQ(repair.changes[0].upper, sign > 0.0);
            EXPECT_EQ(repair.changes[0].to, sign * Infinity);
            EXPECT_EQ(repair.model->Solve().status, Status::Optimal);
        }
    }
}

/// A side has to go to a number that is no zero, but next to that as doubles are: it goes to the
/// first one beyond.
TEST(Repair, MovesASideByLessThanDoublesTell)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y", {1e-200, 1e-200});
    const Row product = model.Add(x - 1e-200 * y == 0);
    (void)model.Add(x <= 0);
    RepairOptions options;
    options.weights = {{y, Infinity}, {product, Infinity}};
    const RepairResult repair = Repair(model, options);
    ASSERT_EQ(repair.status, Status::Optimal) << repair.failure.text;
    ASSERT_EQ(repair.changes.size(), 1U);
    EXPECT_EQ(repair.changes[0].to, std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(repair.model->Solve().status, Status::Optimal);
}

}  // namespace
}  // namespace nuv::test
