/// Models whose answers are known from elsewhere: the verdict is theirs, it is proved, and the
/// exact optimum has their digits. The numbers are taken as they are written, as theirs were.
#include "tests/support/KnownModels.hpp"

#include "Nuv/Io/ModelFile.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>
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
    options.iisSeconds = 0.0;
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

TEST(KnownModels, ModelsKnownToBeInfeasibleAreProvedToBe)
{
    const std::vector<KnownModel> models = KnownInfeasibleModels(kModels + "/infeas");
    ASSERT_EQ(models.size(), 10U);
    for (const KnownModel& known : models)
        ExpectKnownAnswer(known);
}

}  // namespace
}  // namespace nuv::test
