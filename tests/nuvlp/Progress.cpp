// nuvlp solve --progress: a line on a terminal, and nothing anywhere else.
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

#include <cstdlib>

namespace nuvlp::test
{
namespace
{

TEST(Progress, IsSilentWithoutATerminal)
{
    const Outcome outcome = RunNuvlp("solve -q --progress textbook/wyndor.lp");
    EXPECT_EQ(outcome.out,
              "status     optimal\nobjective  36\nproof      proved as written, exactly 36\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(Progress, ShowsALineOnATerminalAndTakesItAway)
{
    if (std::system("command -v script >/dev/null") != 0)
        GTEST_SKIP() << "there is no script to make a terminal";
    const std::string out = Scratch("terminal");
    // script makes a terminal of both outputs.
    const std::string command =
        "cd '" NUV_TEST_MODELS "' && script -qec \"'" NUVLP_COMMAND
        "' solve -q --progress textbook/wyndor.lp\" /dev/null </dev/null >'" +
        out + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const std::string shown = ReadFile(out);
    EXPECT_EQ(shown.find("\rsingle precision  "), 0u) << shown;
    EXPECT_NE(shown.find(" pivots  "), std::string::npos) << shown;
    const std::size_t report = shown.find("status     optimal");
    ASSERT_NE(report, std::string::npos) << shown;
    EXPECT_EQ(shown[report - 1], '\r') << "the line is gone before the report";
    EXPECT_EQ(shown[report - 2], ' ');
}

}  // namespace
}  // namespace nuvlp::test
