/// Models whose answers are known from elsewhere: the verdict is theirs, it is proved, and the
/// exact optimum has their digits. The numbers are taken as they are written, as theirs were.
#include "tests/support/KnownModels.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/Repair.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/Presolve/Presolve.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace nuv::test
{
namespace
{

const std::string kModels = NUV_TEST_MODELS;

Solution SolveAsWritten(const KnownModel& known)
{
    const ReadResult reading = ReadModelFile(known.path);
    if (!reading.Ok())
    {
        ADD_FAILURE() << reading.GetError().text;
        return {};
    }
    SolveOptions options;
    options.numbers = CoefficientMeaning::ShortestDecimal;
    options.iisWork = 0;
    return reading.model->Solve(options);
}

void ExpectKnownAnswer(const KnownModel& known)
{
    SCOPED_TRACE(known.name);
    const Solution solution = SolveAsWritten(known);
    EXPECT_EQ(solution.status, known.status);
    EXPECT_TRUE(solution.proved);
    if (known.status != Status::Optimal)
        return;
    const std::optional<Rational> optimum = ParseRational(solution.exactObjective);
    ASSERT_TRUE(optimum.has_value());
    EXPECT_LE(RelativeDistance(*optimum, known.optimum), known.error) << solution.exactObjective;
}

TEST(KnownModels, TextbooksAreAnsweredAsPublished)
{
    const std::vector<KnownModel> models = KnownTextbookModels(kModels + "/textbook");
    ASSERT_EQ(models.size(), 53U);
    for (const KnownModel& known : models)
        ExpectKnownAnswer(known);
}

TEST(KnownModels, NetlibOptimaAgreeToAllDigitsKnown)
{
    const std::vector<KnownModel> models = KnownNetlibModels(kModels + "/netlib");
    ASSERT_EQ(models.size(), 30U);
    for (const KnownModel& known : models)
        ExpectKnownAnswer(known);
}

/// The basis that postsolve hands over is proved optimal as it is.
TEST(KnownModels, NetlibBasesComeBackFromPresolveOptimal)
{
    std::uint64_t pivots = 0;
    int reduced = 0;
    for (const KnownModel& known : KnownNetlibModels(kModels + "/netlib"))
    {
        SCOPED_TRACE(known.name);
        const ReadResult reading = ReadModelFile(known.path);
        const BoundedForm form = FormOf(*reading.model, CoefficientMeaning::ShortestDecimal);
        const Presolve presolve(form);
        EXPECT_FALSE(presolve.FoundContradiction());
        if (!presolve.Reduces())
            continue;
        ++reduced;
        SolveControl control;
        const ScaledForm scaled(presolve.Form());
        SimplexState state(scaled, SlackBasis(presolve.Form()));
        EXPECT_EQ(SolveInDoubles(state, control), SimplexVerdict::Optimal);
        const CertifiedResult result = SolveExactly(form, presolve.Restore(state), control);
        EXPECT_TRUE(result.record.proved);
        EXPECT_EQ(result.certificate.status, Status::Optimal);
        pivots += control.Pivots(Stage::Exact);
    }
    EXPECT_EQ(reduced, 30);
    EXPECT_LE(pivots, 3U) << "that is, next to none";
}

TEST(KnownModels, ModelsKnownToBeInfeasibleAreProvedToBe)
{
    const std::vector<KnownModel> models = KnownInfeasibleModels(kModels + "/infeas");
    ASSERT_EQ(models.size(), 10U);
    for (const KnownModel& known : models)
        ExpectKnownAnswer(known);
}

TEST(KnownModels, ModelsKnownToBeInfeasibleAreFeasibleWithTheirRepair)
{
    for (const KnownModel& known : KnownInfeasibleModels(kModels + "/infeas"))
    {
        SCOPED_TRACE(known.name);
        const ReadResult reading = ReadModelFile(known.path);
        const RepairResult repair = Repair(*reading.model);
        EXPECT_TRUE(repair.proved);
        EXPECT_FALSE(repair.changes.empty());
        ASSERT_TRUE(repair.model.has_value());
        const Solution solution = repair.model->Solve();
        EXPECT_TRUE(solution.proved);
        EXPECT_TRUE(solution.status == Status::Optimal || solution.status == Status::Unbounded);
        // Half of the change is not enough.
        Model half = *reading.model;
        for (const RepairChange& change : repair.changes)
        {
            const double amount = 0.5 * change.amount;
            const auto shrink =
                [&](std::span<const double> lower, std::span<const double> upper, auto handle)
            {
                const std::uint32_t at = half.IndexOf(handle);
                half.SetBounds(handle, change.upper ? Bounds{lower[at], upper[at] + amount}
                                                    : Bounds{lower[at] - amount, upper[at]});
            };
            if (const Row* row = std::get_if<Row>(&change.of))
                shrink(half.RowLower(), half.RowUpper(), *row);
            else
                shrink(half.VariableLower(), half.VariableUpper(), std::get<Variable>(change.of));
        }
        SolveOptions options;
        options.iisWork = 0;
        EXPECT_EQ(half.Solve(options).status, Status::Infeasible);
    }
}

}  // namespace
}  // namespace nuv::test
