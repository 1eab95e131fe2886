// nuvlp check, from outside: what is odd about a file, without solving it.
#include "Nuv/Utils/NuvVersion.h"
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

namespace nuvlp::test
{
namespace
{

TEST(CheckCommand, PrintsSizesMagnitudesAndRounding)
{
    const Outcome outcome = RunNuvlp(
        "check -", "min 3 x + 0.1 y st a: x + 2000 y >= 3 b: x - y <= 7 bounds x <= 4 end");
    EXPECT_EQ(outcome.out,
              "rows         2\n"
              "variables    2\n"
              "nonzeros     4\n"
              "sense        minimise\n"
              "\n"
              "magnitudes\n"
              "  objective     0.1 .. 3\n"
              "  coefficients  1 .. 2000\n"
              "  row sides     3 .. 7\n"
              "  bounds        4 .. 4\n"
              "\n"
              "in single precision\n"
              "  canonical form   3 rows, 2 columns\n"
              "  not exact        1 of 10 numbers, by at most 1.4901161138336505e-08 of "
              "their size\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(CheckCommand, ReportsAsJson)
{
    const Outcome outcome =
        RunNuvlp("check --json -", "max 3 x + x\nst\n a: x + 1e40 y <= 3\n b: x - y <= 7\nend\n");
    EXPECT_EQ(WithoutTimes(outcome.out.substr(0, outcome.out.find("\"remarks\""))),
              "{\"schema\":\"nuvlp/check/1\",\"version\":\"" NUV_VERSION "\","
              "\"model\":{\"name\":null,\"sense\":\"maximise\",\"rows\":2,\"variables\":2,"
              "\"nonzeros\":4},\"magnitudes\":{\"objective\":[4,4],\"coefficients\":[1,1e+40],"
              "\"row_sides\":[3,7],\"bounds\":null},\"single_precision\":{\"rows\":2,\"columns\":2,"
              "\"numbers\":7,\"inexact\":1,\"largest_relative_change\":0,\"overflowing\":1,"
              "\"first_overflow\":{\"row\":\"a\",\"variable\":\"y\"}},\"seconds\":0,");
    EXPECT_NE(outcome.out.find("{\"severity\":\"note\",\"code\":\"lp.repeated-variable\","),
              std::string::npos)
        << outcome.out;
    EXPECT_EQ(outcome.exitCode, 0);
    const Outcome bad = RunNuvlp("check --json -", "x");
    EXPECT_NE(bad.out.find("\"status\":\"error\",\"code\":\"lp.no-objective\""), std::string::npos)
        << bad.out;
    EXPECT_EQ(bad.exitCode, 65);
}

TEST(CheckCommand, ShowsNotesToo)
{
    const Outcome outcome = RunNuvlp("check -", "max x + 2 x\nst\n c: x <= 1e30\nend\n");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.err.find(": note: "), std::string::npos) << outcome.err;
}

TEST(CheckCommand, NamesTheFirstNumberBeyondSinglePrecision)
{
    const Outcome outcome = RunNuvlp("check -", "max x st big: 1e40 x + y <= 3 end");
    EXPECT_NE(outcome.out.find(
                  "\n  too large        1 numbers, the first in row 'big' at variable 'x'\n"),
              std::string::npos)
        << outcome.out;
}

TEST(CheckCommand, HasAMessageForEveryKindOfBadInput)
{
    EXPECT_EQ(RunNuvlp("check none.lp").exitCode, 66);
    EXPECT_EQ(RunNuvlp("check .").exitCode, 66);
    const Outcome empty = RunNuvlp("check -", "");
    EXPECT_EQ(empty.exitCode, 65);
    EXPECT_NE(empty.err.find("<stdin>:1:1: error: "), std::string::npos) << empty.err;
    EXPECT_EQ(RunNuvlp("check -", "all work and no play").exitCode, 65);
    EXPECT_EQ(RunNuvlp("check").exitCode, 64);
    EXPECT_EQ(RunNuvlp("check textbook/wyndor.lp >/dev/full").exitCode, 73);
}

}  // namespace
}  // namespace nuvlp::test
