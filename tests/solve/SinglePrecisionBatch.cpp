// Models believed in single precision, side by side against one by one.
#include "Nuv/Solve/Batch/SinglePrecisionBatch.hpp"
#include "tests/model/Generator.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <tuple>

namespace nuv
{
namespace
{

std::vector<std::uint64_t> BitsOf(const std::vector<double>& numbers)
{
    std::vector<std::uint64_t> bits;
    for (const double number : numbers)
        bits.push_back(std::bit_cast<std::uint64_t>(number));
    return bits;
}

/// Variables and rows with bounds of every kind, some that cross.
Model Draw(test::Generator& random)
{
    const auto number = [&random](std::size_t most)
    { return static_cast<double>(random.Below(2 * most + 1)) - static_cast<double>(most); };
    Model model;
    const std::vector<Variable> x = model.AddVariables(1 + random.Below(5));
    Expression objective;
    for (const Variable& variable : x)
    {
        objective += number(9) * variable;
        const double lower = random.Below(2) == 0 ? -Infinity : number(5);
        const double upper = random.Below(2) == 0 ? Infinity : number(9);
        if (random.Below(3) == 0)
            (void)model.SetBounds(variable, {lower, upper});
    }
    if (random.Below(2) == 0)
        model.Maximize(objective);
    else
        model.Minimize(objective);
    for (std::size_t rows = random.Below(6); rows != 0; --rows)
    {
        Expression row;
        for (const Variable& variable : x)
            row += number(60) / 7.0 * variable;
        const double side = number(20);
        switch (random.Below(8))
        {
        case 0:
            (void)model.Add(row == side);
            break;
        case 1:
            (void)model.Add(row >= side);
            break;
        case 2:
            // Beyond binary32.
            (void)model.Add(row <= (random.Below(10) == 0 ? 1e300 : side));
            break;
        default:
            (void)model.Add(row <= 20.0 + side);
        }
    }
    return model;
}

/// @return how many verdicts were those of the core.
int CompareWithSolves(const std::vector<Model>& models, const SolveOptions& options)
{
    SinglePrecisionBatch batch(options);
    for (const Model& model : models)
        batch.Take(model);
    const std::vector<Solution> found = batch.Solve();
    EXPECT_EQ(found.size(), models.size());
    int verdicts = 0;
    for (std::size_t k = 0; k != models.size(); ++k)
    {
        const Solution expected = Solve(models[k], options);
        // The core goes on where the watch for bases that come back ends a solve.
        if (expected.singlePrecision.stop == SinglePrecisionStop::Cycling)
            continue;
        EXPECT_EQ(found[k].status, expected.status) << k;
        EXPECT_EQ(found[k].stopReason, expected.stopReason) << k;
        EXPECT_FALSE(found[k].proved);
        EXPECT_EQ(BitsOf({found[k].objective}), BitsOf({expected.objective})) << k;
        EXPECT_EQ(BitsOf(found[k].values), BitsOf(expected.values)) << k;
        verdicts += expected.status != Status::Stopped ? 1 : 0;
    }
    return verdicts;
}

TEST(SinglePrecisionBatch, AnswersHaveTheBitsOfSolvesOneByOne)
{
    SolveOptions options;
    options.singlePrecisionOnly = true;
    test::Generator random(2121);
    for (int round = 0; round != ShareOf(8) && !testing::Test::HasFailure(); ++round)
    {
        std::vector<Model> models;
        for (int k = 0; k != 250; ++k)
            models.push_back(Draw(random));
        EXPECT_GT(CompareWithSolves(models, options), 200);
    }
}

TEST(SinglePrecisionBatch, LimitsOfPivotsAreThoseOfASolve)
{
    test::Generator random(77);
    std::vector<Model> models;
    for (int k = 0; k != 300; ++k)
        models.push_back(Draw(random));
    SolveOptions options;
    options.singlePrecisionOnly = true;
    for (const std::uint64_t most : {0U, 1U, 2U})
    {
        options.limits.singlePrecisionPivots = most;
        EXPECT_LT(CompareWithSolves(models, options), 290);
    }
}

/// What the lanes have no room for is solved as ever: no rows or no columns, many of them, numbers
/// beyond binary32, a model that is none.
TEST(SinglePrecisionBatch, TakesModelsThatTheLanesDoNot)
{
    std::vector<Model> models(8);
    models[0].Minimize(models[0].AddVariable("x", {2.0, Infinity}));
    (void)models[1].Add(Expression(1.0) <= 4.0);
    for (const auto& [rows, columns, model] :
         {std::tuple{70, std::size_t{2}, std::size_t{2}}, {2, std::size_t{270}, std::size_t{3}}})
    {
        const std::vector<Variable> x = models[model].AddVariables(columns);
        Expression sum;
        for (const Variable& variable : x)
            sum += variable;
        for (int i = 0; i < rows; ++i)
            (void)models[model].Add(sum + i * x[0] <= 9.0 + i);
        models[model].Maximize(sum);
    }
    for (std::size_t k = 4; k != models.size(); ++k)
    {
        const Variable x = models[k].AddVariable("x", {0.0, 8.0});
        (void)models[k].Add((k == 4 ? 1e300 : 1.0) * x <= (k == 5 ? 1e300 : 4.0));
        models[k].Maximize((k == 6 ? 1e300 : k == 7 ? std::nan("") : 1.0) * x);
    }
    SolveOptions options;
    options.singlePrecisionOnly = true;
    EXPECT_GT(CompareWithSolves(models, options), 2);
}

TEST(SinglePrecisionBatch, IsEmptyAfterASolveAndTakesModelsAnew)
{
    SinglePrecisionBatch batch({});
    EXPECT_TRUE(batch.Solve().empty());
    Model model;
    const Variable x = model.AddVariable("x", {0.0, 4.0});
    model.Maximize(3 * x);
    for (int round = 0; round != 2; ++round)
    {
        batch.Take(model);
        const std::vector<Solution> found = batch.Solve();
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found[0].objective, 12.0);
        EXPECT_EQ(found[0].Value(x), 4.0);
    }
}

}  // namespace
}  // namespace nuv
