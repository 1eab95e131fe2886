// Sessions: whatever is edited, the answer is that of a solve that knows nothing of the session.
#include "Nuv/Solve/Solver.hpp"

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "tests/solve/Edits.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

namespace nuv::test
{
namespace
{

/// Compares with a solve from nothing, and checks the certificate against a form made afresh.
void ExpectAsCold(const Solution& warm, const Model& model, const SolveOptions& options)
{
    const Solution cold = nuv::Solve(model, options);
    ASSERT_NE(cold.status, Status::Stopped);
    EXPECT_EQ(warm.status, cold.status);
    EXPECT_EQ(warm.proved, cold.proved);
    EXPECT_EQ(warm.exactObjective, cold.exactObjective);
    EXPECT_EQ(warm.values.size(), cold.values.size());
    EXPECT_EQ(warm.duals.size(), cold.duals.size());
    if (warm.status == Status::Optimal)
    {
        EXPECT_EQ(warm.objective, cold.objective);
    }
    ASSERT_NE(warm.certificate, nullptr);
    EXPECT_EQ(CheckCertificate(FormOf(model, options.numbers), *warm.certificate), "");
}

/// Numbers that no double says are those of the cold solve, also after edits that replace some.
TEST(Solver, EditsModelsWithNumbersThatNoDoubleSays)
{
    const ReadResult reading = ReadModelFile(NUV_TEST_MODELS "/written/thirds.lp");
    ASSERT_TRUE(reading.Ok());
    Solver solver(*reading.model);
    const auto expectAsCold = [&solver]
    {
        const Solution warm = solver.Solve();
        EXPECT_EQ(warm.status, Status::Optimal);
        EXPECT_EQ(warm.exactObjective, nuv::Solve(solver.GetModel()).exactObjective);
    };
    expectAsCold();
    const Variable x = *solver.GetModel().FindVariable("x");
    const Variable z = *solver.GetModel().FindVariable("z");
    const Row share = *solver.GetModel().FindRow("share");
    EXPECT_TRUE(solver.SetBounds(z, {0.0, 4.0}));
    EXPECT_EQ(solver.GetModel().Exact().Find({NumberPlace::Of::VariableLower, 2}), nullptr);
    expectAsCold();
    EXPECT_TRUE(solver.SetCost(x, 1.0));
    expectAsCold();
    EXPECT_TRUE(solver.SetCoefficient(*solver.GetModel().FindRow("range"), x, 1.0));
    expectAsCold();
    EXPECT_TRUE(solver.Remove(*solver.GetModel().FindRow("range")));
    EXPECT_NE(solver.GetModel().Exact().Find({NumberPlace::Of::RowUpper, 1}), nullptr)
        << "what is said of the last row moves up with it";
    expectAsCold();
    EXPECT_TRUE(solver.SetBounds(share, {0x1p53, 0x1p53}));
    expectAsCold();
    EXPECT_TRUE(solver.Remove(z));
    expectAsCold();
}

TEST(Solver, AnySequenceOfEditsIsAnsweredAsColdSolvesAre)
{
    constexpr unsigned kSteps = 60;
    const unsigned sequences = ShareOf(400u);
    std::array<int, 3> seen{};
    for (unsigned seed = 1; seed <= sequences; ++seed)
    {
        SCOPED_TRACE(seed);
        EditedSession session(seed);
        bool hasBasis = false;
        for (unsigned step = 0; step < kSteps; ++step)
        {
            SCOPED_TRACE(step);
            const Solution warm = session.solver.Solve();
            ExpectAsCold(warm, session.solver.GetModel(), EditedSession::QuietOptions());
            if (HasFailure())
                return;
            ++seen[static_cast<std::size_t>(warm.status)];
            EXPECT_FALSE(hasBasis && warm.stages[Stage::SinglePrecision].ran);
            hasBasis = hasBasis || !warm.basis.columns.empty();
            session.Edit();
        }
    }
    for (const int count : seen)
        EXPECT_GT(count, static_cast<int>(sequences)) << "each verdict is common";
}

/// Random changes of one number at a time of a model with many.
void EditNetlib(const std::string& name, int steps)
{
    const ReadResult reading = ReadModelFile(NUV_TEST_MODELS "/netlib/" + name + ".mps");
    ASSERT_TRUE(reading.Ok());
    SolveOptions options = EditedSession::QuietOptions();
    options.useSinglePrecision = false;
    Solver solver(*reading.model, options);
    std::mt19937 random(static_cast<unsigned>(name.size()));
    for (int step = 0; step < steps; ++step)
    {
        SCOPED_TRACE(name + ", step " + std::to_string(step));
        ExpectAsCold(solver.Solve(), solver.GetModel(), options);
        if (testing::Test::HasFailure())
            return;
        const Model& model = solver.GetModel();
        const Variable x = model.VariableAt(Pick(random, model.VariableCount()));
        const Row row = model.RowAt(Pick(random, model.RowCount()));
        const std::uint32_t j = model.IndexOf(x);
        const std::uint32_t i = model.IndexOf(row);
        const double factor = 0.5 + static_cast<double>(random() % 16) / 16;
        switch (random() % 6)
        {
        case 0:
            EXPECT_TRUE(solver.SetCost(x, model.Objective()[j] * factor));
            break;
        case 1:
            EXPECT_TRUE(solver.SetBounds(x, {model.VariableLower()[j], 100 * factor}));
            break;
        case 2:
            EXPECT_TRUE(solver.SetCoefficient(row, x, factor));
            break;
        case 3:
            EXPECT_TRUE(solver.Add(Range(-Infinity, x, 50 * factor)).Valid());
            break;
        default:
            EXPECT_TRUE(solver.SetBounds(
                row, {model.RowLower()[i] * factor, model.RowUpper()[i] * factor}));
            break;
        }
    }
}

TEST(Solver, EditsOfNetlibModels)
{
    for (const char* const name :
         {"afiro", "sc50a", "blend", "adlittle", "scagr7", "share1b", "stocfor1", "vtp.base"})
        EditNetlib(name, ShareOf(40));
    EditNetlib("e226", ShareOf(10));
    EditNetlib("bore3d", ShareOf(10));
}

class Factory : public testing::Test
{
protected:
    Factory()
    {
        model.Add("wood", 2 * chairs + 5 * tables <= 300);
        model.Add("labour", 4 * chairs + 3 * tables <= 240);
        model.Maximize(30 * chairs + 70 * tables);
    }

    Model model;
    Variable chairs = model.AddVariable("chairs");
    Variable tables = model.AddVariable("tables", {0, 40});
};

TEST_F(Factory, AChangeThatConcernsNothingBasicNeedsNoPivot)
{
    Solver solver(model);
    EXPECT_EQ(solver.Solve().exactObjective, "3700");
    const Row wood = *solver.GetModel().FindRow("wood");
    EXPECT_TRUE(solver.SetBounds(wood, {-Infinity, 340}));
    const Solution second = solver.Solve();
    EXPECT_EQ(second.exactObjective, "3700");
    EXPECT_EQ(second.stages[Stage::Double].pivots, 0u);
    EXPECT_EQ(second.stages[Stage::Exact].pivots, 0u);
    EXPECT_FALSE(second.stages[Stage::Double].ran);
    EXPECT_FALSE(second.stages[Stage::SinglePrecision].ran);
    EXPECT_EQ(second.Slack(wood), 80.0);
    EXPECT_TRUE(second.proved);
}

TEST_F(Factory, AChangeToANumberThatNoDoubleSaysKeepsTheBasis)
{
    Solver solver(model);
    EXPECT_EQ(solver.Solve().exactObjective, "3700");
    const auto expectWithoutPivots = [&solver](const char* objective, bool runs = false)
    {
        const Solution again = solver.Solve();
        EXPECT_EQ(again.exactObjective, objective);
        EXPECT_TRUE(again.proved);
        EXPECT_EQ(again.stages[Stage::Double].ran, runs);
        EXPECT_EQ(again.stages[Stage::Double].pivots, 0U);
        EXPECT_FALSE(again.stages[Stage::SinglePrecision].ran);
    };
    EXPECT_TRUE(solver.SetExactUpper(*solver.GetModel().FindRow("wood"), "1000/3"));
    expectWithoutPivots("3700");
    EXPECT_TRUE(solver.SetExactUpper(tables, "119/3"));
    expectWithoutPivots("22105/6");
    EXPECT_TRUE(solver.SetExactCost(chairs, "91/3"));
    expectWithoutPivots("14777/4", true);  // a divisor of the column is one of its factors too
    EXPECT_TRUE(solver.SetExactConstant("1/3"));
    expectWithoutPivots("44335/12");
    EXPECT_TRUE(solver.SetCost(chairs, 91.0 / 3.0));
    EXPECT_NE(solver.Solve().exactObjective, "44335/12") << "a double says another number";
    EXPECT_TRUE(solver.SetCost(chairs, 30));
    EXPECT_TRUE(solver.SetBounds(tables, {0, 40}));
    expectWithoutPivots("11101/3");
    // What is no number is refused, and remembered as an error of the model.
    EXPECT_FALSE(solver.SetExactConstant("a third"));
    EXPECT_FALSE(solver.SetExactCoefficient(*solver.GetModel().FindRow("wood"), tables, "a third"));
}

TEST_F(Factory, MovesAndGivesItsModelBack)
{
    Solver solver(std::move(model));
    EXPECT_EQ(solver.Solve().exactObjective, "3700");
    Solver moved = std::move(solver);
    EXPECT_TRUE(moved.SetCost(chairs, 31));
    EXPECT_EQ(moved.Solve().exactObjective, "3730");
    Solver other{Model()};
    other = std::move(moved);
    EXPECT_TRUE(other.Remove(tables));
    const Solution last = other.Solve();
    EXPECT_EQ(last.exactObjective, "1860");
    EXPECT_EQ(last.Value(chairs), 60.0);
    EXPECT_TRUE(std::isnan(last.Value(tables)));
    const Model taken = other.Take();
    EXPECT_EQ(taken.VariableCount(), 1u);
    EXPECT_EQ(other.GetModel().VariableCount(), 0u);
    EXPECT_EQ(other.Solve().exactObjective, "0");
}

TEST_F(Factory, ARefusedEditIsAFailureOfTheModel)
{
    Solver solver(model);
    EXPECT_FALSE(solver.SetCost(Variable(), 1));
    EXPECT_FALSE(solver.Remove(Row()));
    EXPECT_FALSE(solver.AddVariable("chairs").Valid());
    const Solution solution = solver.Solve();
    EXPECT_EQ(solution.status, Status::Invalid);
    EXPECT_EQ(solution.failure.code, "model.unknown-variable");
}

TEST_F(Factory, ALimitEndsOneSolveAndTheNextGoesOn)
{
    SolveOptions options;
    options.useSinglePrecision = false;
    options.limits.doublePivots = 1;
    options.limits.exactPivots = 0;
    Solver solver(model, options);
    const Solution first = solver.Solve();
    EXPECT_EQ(first.status, Status::Stopped);
    EXPECT_EQ(first.stopReason, StopReason::PivotLimit);
    solver.SetOptions({});
    const Solution second = solver.Solve();
    EXPECT_EQ(second.exactObjective, "3700");
    EXPECT_TRUE(second.proved);
}

TEST_F(Factory, StartsWhereItIsTold)
{
    Solver solver(model);
    const Solution first = solver.Solve();
    SolveOptions options;
    options.start.emplace();  // everything at its lower bound
    options.start->columns.assign(2, BasisStatus::AtLower);
    options.start->rows.assign(2, BasisStatus::Basic);
    solver.SetOptions(options);
    const Solution again = solver.Solve();
    EXPECT_GT(again.stages[Stage::Double].pivots, 0u);
    EXPECT_EQ(again.exactObjective, first.exactObjective);
    EXPECT_EQ(solver.Solve().stages[Stage::Double].pivots, 0u) << "the start was for one solve";
}

TEST_F(Factory, StartsFromValuesWithoutASolveBefore)
{
    SolveOptions options;
    options.startValues = {30, 40};
    Solver solver(model, options);
    EXPECT_EQ(solver.Options().startValues.size(), 2U);
    const Solution solution = solver.Solve();
    EXPECT_EQ(solution.exactObjective, "3700");
    EXPECT_EQ(solution.stages[Stage::Double].pivots, 0U);
    EXPECT_TRUE(solver.Options().startValues.empty()) << "the start was for one solve";
    options.startValues = {0, 0};
    solver.SetOptions(options);
    EXPECT_GT(solver.Solve().stages[Stage::Double].pivots, 0U);
}

TEST_F(Factory, IsBelievedInDoublesBetweenProofs)
{
    SolveOptions believed;
    believed.doublePrecisionOnly = true;
    Solver solver(model, believed);
    const Row wood = *solver.GetModel().FindRow("wood");
    EXPECT_EQ(solver.Solve().objective, 3700.0);
    EXPECT_TRUE(solver.SetBounds(wood, {-Infinity, 250}));
    const Solution second = solver.Solve();
    EXPECT_NEAR(second.objective, 3564.285714285714, 1e-9);
    EXPECT_FALSE(second.proved);
    EXPECT_FALSE(second.stages[Stage::Exact].ran);
    solver.SetOptions({});
    const Solution third = solver.Solve();
    EXPECT_EQ(third.exactObjective, nuv::Solve(solver.GetModel()).exactObjective);
    EXPECT_TRUE(third.proved);
    EXPECT_EQ(third.stages[Stage::Double].pivots, 0U) << "the believed basis is the optimal one";
    EXPECT_TRUE(solver.SetBounds(wood, {260, 250}));
    solver.SetOptions(believed);
    EXPECT_EQ(solver.Solve().status, Status::Infeasible);
    EXPECT_TRUE(solver.SetBounds(wood, {-Infinity, 300}));
    EXPECT_EQ(solver.Solve().objective, 3700.0);
}

TEST_F(Factory, InSinglePrecisionAloneKeepsNothing)
{
    SolveOptions options;
    options.singlePrecisionOnly = true;
    Solver solver(model, options);
    const Solution solution = solver.Solve();
    EXPECT_EQ(solution.objective, 3700.0);
    EXPECT_FALSE(solution.proved);
}

/// Before the first solve there is no basis to keep in step.
TEST_F(Factory, GrowsBeforeAndAfterTheFirstSolve)
{
    Solver solver(model);
    const Variable stools = solver.AddVariable(Bounds{0, 5});
    EXPECT_TRUE(stools.Valid());
    EXPECT_TRUE(solver.Add("stools", stools <= 3).Valid());
    EXPECT_TRUE(solver.SetCost(stools, 10));
    EXPECT_EQ(solver.Solve().exactObjective, "3730");
    const Variable shelves = solver.AddVariable(Bounds{0, 2});
    EXPECT_TRUE(solver.SetCost(shelves, 1));
    EXPECT_TRUE(solver.Add(shelves + stools <= 4).Valid());
    EXPECT_EQ(solver.Solve().exactObjective, "3731");
}

/// Each refused edit leaves the solver as it was, and is the model's failure from then on.
TEST_F(Factory, RefusesWhatIsOfAnotherModel)
{
    Model other;
    Variable stranger;
    for (int k = 0; k < 9; ++k)
        stranger = other.AddVariable();
    const Row foreign = other.Add(stranger <= 1);
    const auto refuses = [&](auto edit)
    {
        Solver solver(model);
        EXPECT_EQ(solver.Solve().exactObjective, "3700");
        EXPECT_FALSE(edit(solver));
        EXPECT_EQ(solver.Solve().status, Status::Invalid);
    };
    refuses([&](Solver& s) { return s.SetBounds(stranger, {0, 1}); });
    refuses([&](Solver& s) { return s.SetBounds(foreign, {0, 1}); });
    refuses([&](Solver& s) { return s.SetCoefficient(foreign, chairs, 1); });
    refuses([&](Solver& s) { return s.SetCoefficient(s.GetModel().RowAt(0), stranger, 1); });
    refuses([&](Solver& s) { return s.Remove(stranger); });
    refuses([&](Solver& s) { return s.Remove(foreign); });
    refuses([&](Solver& s) { return s.Add("stranger", stranger <= 1).Valid(); });
    refuses([&](Solver& s) { return s.Add(stranger <= 1).Valid(); });
}

TEST_F(Factory, OtherNumbersAreAnotherProblem)
{
    Solver solver(model);
    EXPECT_TRUE(solver.SetCost(chairs, 0.1));
    EXPECT_EQ(solver.Solve().exactObjective, "2803");
    SolveOptions options;
    options.numbers = CoefficientMeaning::StoredDouble;
    solver.SetOptions(options);
    const Solution stored = solver.Solve();
    ExpectAsCold(stored, solver.GetModel(), options);
    EXPECT_NE(stored.exactObjective, "2803");
}

TEST_F(Factory, InfeasibleAndUnboundedAndBack)
{
    Solver solver(model);
    const Row labour = *solver.GetModel().FindRow("labour");
    const Row wood = *solver.GetModel().FindRow("wood");
    EXPECT_EQ(solver.Solve().exactObjective, "3700");
    EXPECT_TRUE(solver.SetBounds(wood, {270, Infinity}));
    const Solution none = solver.Solve();
    EXPECT_EQ(none.status, Status::Infeasible);
    EXPECT_TRUE(none.proved);
    EXPECT_TRUE(none.iis.minimal);
    EXPECT_TRUE(solver.SetBounds(wood, {271, Infinity}));
    const Solution still = solver.Solve();
    EXPECT_EQ(still.status, Status::Infeasible);
    EXPECT_FALSE(still.stages[Stage::Double].ran) << "the same multipliers prove it";
    EXPECT_TRUE(solver.SetBounds(labour, {-Infinity, Infinity}));
    EXPECT_EQ(solver.Solve().status, Status::Unbounded);
    EXPECT_TRUE(solver.SetCost(tables, 71));
    const Solution up = solver.Solve();
    EXPECT_EQ(up.status, Status::Unbounded);
    EXPECT_FALSE(up.stages[Stage::Double].ran) << "the same ray proves it";
    EXPECT_TRUE(solver.SetBounds(wood, {-Infinity, 300}));
    EXPECT_TRUE(solver.SetBounds(labour, {-Infinity, 240}));
    EXPECT_EQ(solver.Solve().exactObjective, "3740");
}

/// Whatever is said exactly in between, a session answers as a solve from nothing does.
TEST(Solver, TakesExactNumbersInBetween)
{
    Model model;
    const Variable x = model.AddVariable("x", {0, 4});
    const Variable y = model.AddVariable("y", {0, 4});
    const Row row = model.Add("row", x + y <= 5);
    model.Maximize(2 * x + y);
    Solver solver(std::move(model));
    const auto expectAsFromNothing = [&]
    {
        const Solution warm = solver.Solve();
        EXPECT_TRUE(warm.proved);
        EXPECT_EQ(warm.exactObjective, nuv::Solve(solver.GetModel()).exactObjective);
        return warm.exactObjective;
    };
    EXPECT_EQ(expectAsFromNothing(), "9");
    EXPECT_TRUE(solver.SetExactUpper(row, "13/3"));
    EXPECT_EQ(expectAsFromNothing(), "25/3");
    EXPECT_TRUE(solver.SetExactCost(y, "1/7"));
    EXPECT_EQ(expectAsFromNothing(), "169/21");
    EXPECT_TRUE(solver.SetExactUpper(x, "11/3"));
    EXPECT_TRUE(solver.SetExactLower(x, "1/9"));
    EXPECT_TRUE(solver.SetExactLower(row, "-1/9"));
    EXPECT_TRUE(solver.SetExactConstant("1/11"));
    EXPECT_TRUE(solver.SetExactCoefficient(row, x, "10/9"));
    EXPECT_EQ(expectAsFromNothing(), nuv::Solve(solver.GetModel()).exactObjective);
    // Doubles take the place of exact numbers while others stay, also where the double is the same.
    EXPECT_TRUE(solver.SetBounds(row, {-Infinity, 13.0 / 3.0}));
    (void)expectAsFromNothing();
    EXPECT_TRUE(solver.SetCost(y, 1.0 / 7.0));
    (void)expectAsFromNothing();
    EXPECT_TRUE(solver.SetBounds(x, {0, 11.0 / 3.0}));
    (void)expectAsFromNothing();
    EXPECT_FALSE(solver.SetExactCost(x, "two"));
    EXPECT_EQ(solver.GetModel().Failure()->code, "model.not-a-number");
}

/// The sums of an objective may be numbers that no double says.
TEST(Solver, TakesObjectivesThatNoDoubleSays)
{
    Model model;
    const Variable x = model.AddVariable("x", {0, 1});
    model.Maximize(x);
    Solver solver(std::move(model));
    EXPECT_EQ(solver.Solve().exactObjective, "1");
    solver.Maximize(1e16 * x + 0.1 * x);
    EXPECT_EQ(solver.Solve().exactObjective, "100000000000000001/10");
    solver.Maximize(3 * x);
    EXPECT_EQ(solver.Solve().exactObjective, "3");
}

TEST(Solver, AddsColumnsWithoutNames)
{
    Model model;
    const Row row = model.Add("row", Range(-Infinity, Expression(), 3));
    model.Maximize(Expression());
    Solver solver(std::move(model));
    EXPECT_EQ(solver.Solve().Outcome(), "optimal");
    const Variable x = solver.AddColumn(2.0, {}, {{row, 1}});
    EXPECT_TRUE(solver.GetModel().Owns(x));
    const Solution solution = solver.Solve();
    EXPECT_EQ(solution.exactObjective, "6") << solution.Outcome();
}

}  // namespace
}  // namespace nuv::test
