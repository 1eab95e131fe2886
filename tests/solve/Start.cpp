// Starting from a basis or from values: a good start needs no pivot, a bad one does no harm.
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/SparseSimplex/StartBasis.hpp"
#include "tests/solve/SmallModels.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

namespace nuv::test
{
namespace
{

Model NetlibModel(const std::string& name)
{
    const ReadResult reading = ReadModelFile(NUV_TEST_MODELS "/netlib/" + name + ".mps");
    EXPECT_TRUE(reading.Ok()) << name;
    return reading.Ok() ? *reading.model : Model();
}

const char* const kNames[] = {"afiro",  "adlittle", "blend",   "sc50a",
                              "scagr7", "share1b",  "stocfor1"};

TEST(Start, TheBasisOfASolutionNeedsNoPivot)
{
    for (const char* const name : kNames)
    {
        SCOPED_TRACE(name);
        const Model model = NetlibModel(name);
        const Solution first = model.Solve();
        SolveOptions options;
        options.start = first.basis;
        const Solution second = model.Solve(options);
        EXPECT_TRUE(second.proved);
        EXPECT_EQ(second.exactObjective, first.exactObjective);
        EXPECT_FALSE(second.stages[Stage::SinglePrecision].ran);
        EXPECT_EQ(second.stages[Stage::Double].pivots, 0u);
        EXPECT_EQ(second.stages[Stage::Exact].pivots, 0u);
        EXPECT_EQ(second.basis, first.basis);
    }
}

TEST(Start, ValuesOfASolutionNeedFewPivots)
{
    for (const char* const name : kNames)
    {
        SCOPED_TRACE(name);
        const Model model = NetlibModel(name);
        SolveOptions cold;
        cold.useSinglePrecision = false;
        const Solution first = model.Solve(cold);
        SolveOptions options;
        options.startValues = first.values;
        const Solution second = model.Solve(options);
        EXPECT_TRUE(second.proved);
        EXPECT_EQ(second.exactObjective, first.exactObjective);
        EXPECT_FALSE(second.stages[Stage::SinglePrecision].ran);
        EXPECT_LE(second.stages[Stage::Double].pivots, first.stages[Stage::Double].pivots / 2);
    }
}

TEST(Start, AVertexThatIsNotDegenerateComesBack)
{
    Model model;
    const Variable x = model.AddVariable("x", {0, 3});
    const Variable y = model.AddVariable("y");
    const Variable z = model.AddVariable("z", {0, 5});
    const Row sum = model.Add("sum", x + y + z <= 9);
    const Row other = model.Add("other", x - y >= -2);
    model.Maximize(x + 2 * y + 3 * z);
    SolveOptions options;
    options.startValues = {1.0, 3.0, 5.0};
    options.limits.doublePivots = 0;
    options.limits.exactPivots = 0;
    const Solution solution = model.Solve(options);
    EXPECT_EQ(solution.status, Status::Optimal);
    EXPECT_EQ(solution.BasisStatusOf(x), BasisStatus::Basic);
    EXPECT_EQ(solution.BasisStatusOf(y), BasisStatus::Basic);
    EXPECT_EQ(solution.BasisStatusOf(z), BasisStatus::AtUpper);
    EXPECT_EQ(solution.BasisStatusOf(sum), BasisStatus::AtUpper);
    EXPECT_EQ(solution.BasisStatusOf(other), BasisStatus::AtLower);
    EXPECT_EQ(solution.BasisStatusOf(Variable()), std::nullopt);
    EXPECT_EQ(Solution().BasisStatusOf(x), std::nullopt);
    EXPECT_EQ(BasisNear(FormOf(model), options.startValues), solution.basis);
}

TEST(Start, AnyBasisAndAnyValuesGiveTheSameAnswer)
{
    std::mt19937 random(7);
    int optimal = 0;
    for (int round = 0; round < 1000; ++round)
    {
        SCOPED_TRACE(round);
        const Model model = SmallModel(random, 1 + random() % 8, 1 + random() % 8);
        SolveOptions options;
        options.iisWork = 0;
        options.limits.seconds = 60.0;
        const Solution cold = model.Solve(options);
        SolveOptions byBasis = options;
        byBasis.start.emplace();
        // Too short, too long, too many basic variables, resting at bounds that are not there.
        byBasis.start->columns.resize(random() % (model.VariableCount() + 3));
        byBasis.start->rows.resize(random() % (model.RowCount() + 3));
        for (auto* statuses : {&byBasis.start->columns, &byBasis.start->rows})
            for (BasisStatus& status : *statuses)
                status = static_cast<BasisStatus>(random() % 4);
        SolveOptions byValues = options;
        const std::size_t values = 1 + random() % (model.VariableCount() + 2);
        while (byValues.startValues.size() < values)
        {
            const std::size_t kind = random() % 4;
            byValues.startValues.push_back(kind == 0   ? std::numeric_limits<double>::quiet_NaN()
                                           : kind == 1 ? 0.0
                                                       : static_cast<double>(random() % 100) / 7);
        }
        for (const SolveOptions& warm : {byBasis, byValues})
        {
            const Solution solution = model.Solve(warm);
            EXPECT_EQ(solution.status, cold.status);
            EXPECT_EQ(solution.proved, cold.proved);
            EXPECT_EQ(solution.exactObjective, cold.exactObjective);
        }
        optimal += cold.status == Status::Optimal ? 1 : 0;
        if (HasFailure())
            return;
    }
    EXPECT_GT(optimal, 200);
    EXPECT_LT(optimal, 900);
}

}  // namespace
}  // namespace nuv::test
