// nuvlp selftest, from outside.
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

namespace nuvlp::test
{
namespace
{

TEST(SelftestCommand, ReportsThePromisedBits)
{
    const Outcome outcome = RunNuvlp("selftest --instruction-set machine");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find('\n')), "instruction set: machine");
    EXPECT_NE(outcome.out.find("the promised bits\n"), std::string::npos);
    EXPECT_EQ(outcome.out.find("DIFFERENT"), std::string::npos);
}

TEST(SelftestCommand, RefusesInstructionSetsThatItDoesNotKnow)
{
    const Outcome outcome = RunNuvlp("selftest --instruction-set sse9");
    EXPECT_EQ(outcome.exitCode, 64);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find("--instruction-set"), std::string::npos);
}

TEST(SelftestCommand, SaysWhenItsReportDoesNotArrive)
{
    EXPECT_EQ(RunNuvlp("selftest --instruction-set plain >/dev/full").exitCode, 73);
}

}  // namespace
}  // namespace nuvlp::test
