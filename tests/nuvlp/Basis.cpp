// nuvlp solve --basis-in and --basis-out, from outside.
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

namespace nuvlp::test
{
namespace
{

const std::string kFactory = NUV_TEST_MODELS "/../../examples/factory.lp";

TEST(SolveBasis, GoesOutAndComesInAgain)
{
    const std::string basis = Scratch("factory.bas");
    const std::string first = RunNuvlp("solve --basis-out " + basis + " " + kFactory).out;
    EXPECT_EQ(ReadFile(basis).substr(0, 4), "NAME");
    EXPECT_NE(ReadFile(basis).find("\nENDATA\n"), std::string::npos);
    const Outcome second = RunNuvlp("solve --basis-in " + basis + " " + kFactory);
    EXPECT_EQ(second.out, first);
    EXPECT_EQ(second.err, "");
    EXPECT_EQ(RunNuvlp("solve --max-pivots 0 --exit-status --basis-in " + basis + " " + kFactory)
                  .exitCode,
              0)
        << "an optimal basis needs no pivot";
    EXPECT_EQ(RunNuvlp("solve --max-pivots 0 " + kFactory).exitCode, 4);
}

TEST(SolveBasis, IsReadAsAModelIs)
{
    const std::string basis = WriteScratch("bad.bas", "NAME\n XU nobody a\nENDATA\n");
    const Outcome bad = RunNuvlp("solve --basis-in " + basis + " -", "max x st a: x <= 4 end");
    EXPECT_EQ(bad.exitCode, 65);
    EXPECT_EQ(bad.out, "");
    EXPECT_NE(bad.err.find("bad.bas:2:5: error: the model has no variable 'nobody'"),
              std::string::npos)
        << bad.err;
    const Outcome json =
        RunNuvlp("solve --json --basis-in " + basis + " -", "max x st a: x <= 4 end");
    EXPECT_NE(json.out.find("\"basis.unknown-variable\""), std::string::npos) << json.out;
    EXPECT_EQ(RunNuvlp("solve --basis-in nowhere.bas -", "max x st a: x <= 4 end").exitCode, 66);
}

TEST(SolveBasis, IsNotWrittenWhereThereIsNone)
{
    const std::string basis = Scratch("none.bas");
    const Outcome outcome =
        RunNuvlp("solve --basis-out " + basis + " -", "max x st a: x <= 4 bounds 3 <= x <= 2 end");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.err.find("there is no basis"), std::string::npos);
    EXPECT_EQ(ReadFile(basis), "");
    EXPECT_EQ(RunNuvlp("solve --basis-out /nowhere/x.bas " + kFactory).exitCode, 73);
}

}  // namespace
}  // namespace nuvlp::test
