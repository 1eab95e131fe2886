// nuvlp plot, from outside. What the pictures show is tested where they are drawn.
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

namespace nuvlp::test
{
namespace
{

TEST(PlotCommand, DrawsAModel)
{
    const Outcome outcome = RunNuvlp("plot textbook/wyndor.lp");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out.substr(0, 5), "<svg ");
    EXPECT_EQ(outcome.out.substr(outcome.out.size() - 7), "</svg>\n");
    EXPECT_EQ(RunNuvlp("plot textbook/wyndor.lp").out, outcome.out) << "the same each time";
}

TEST(PlotCommand, WritesAFile)
{
    const std::string path = Scratch("picture.svg");
    const Outcome outcome = RunNuvlp("plot -o " + path + " -", "max x + y st a: x + y <= 3 end");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(ReadFile(path).substr(0, 5), "<svg ");
}

TEST(PlotCommand, DrawsWhateverTheVerdict)
{
    for (const char* model : {"max x + y st a: x - y <= 3 end", "max x st a: x <= 3 b: x >= 4 end",
                              "max 5 st end", "max x + y + z st a: x + y + z <= 3 end"})
    {
        const Outcome outcome = RunNuvlp("plot -", model);
        EXPECT_EQ(outcome.exitCode, 0) << model;
        EXPECT_EQ(outcome.out.substr(0, 5), "<svg ") << model;
    }
    EXPECT_EQ(RunNuvlp("plot --time-limit 0 textbook/wyndor.lp").exitCode, 4);
}

TEST(PlotCommand, SaysSoWhereANameIsOfAnotherFormat)
{
    const Outcome other = RunNuvlp("plot -o " + Scratch("a.PNG") + " textbook/wyndor.lp");
    EXPECT_EQ(other.exitCode, 0);
    EXPECT_NE(other.err.find("a.PNG is written as SVG"), std::string::npos) << other.err;
    EXPECT_EQ(RunNuvlp("plot -o " + Scratch("a.svg") + " textbook/wyndor.lp").err, "");
}

TEST(PlotCommand, HasAMessageForEveryKindOfBadInput)
{
    EXPECT_EQ(RunNuvlp("plot none.lp").exitCode, 66);
    EXPECT_EQ(RunNuvlp("plot -", "").exitCode, 65);
    EXPECT_EQ(RunNuvlp("plot --time-limit soon textbook/wyndor.lp").exitCode, 64);
    EXPECT_EQ(RunNuvlp("plot textbook/wyndor.lp >/dev/full").exitCode, 73);
}

}  // namespace
}  // namespace nuvlp::test
