// nuvlp repair, from outside.
#include "Nuv/Utils/NuvVersion.h"
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

namespace nuvlp::test
{
namespace
{

const std::string kShort =
    "min x + y st need: 2 x + 2 y >= 18 cap: 3 x <= 7 bounds x <= 3 y <= 4 end";

TEST(RepairCommand, TellsTheLeastChangeByName)
{
    const Outcome outcome = RunNuvlp("repair -", kShort);
    EXPECT_EQ(outcome.out, "status     repaired\nchange     2.6666666666666665\n"
                           "proof      proved as written, exactly 8/3\n\n"
                           "what has to move  from                    to   by\n"
                           "variable y        <= 4  <= 6.666666666666667  8/3\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(RepairCommand, WeighsKeepsAndWritesTheRepairedModel)
{
    const std::string repaired = Scratch("repaired.lp");
    const Outcome outcome = RunNuvlp("repair --json --weight y=3 --keep need --weight cap=0.5 "
                                     "--write " +
                                         repaired + " -",
                                     kShort);
    EXPECT_EQ(
        outcome.out,
        "{\"schema\":\"nuvlp/repair/1\",\"version\":\"" NUV_VERSION
        "\",\"model\":{\"name\":null,\"sense\":\"minimise\",\"rows\":2,\"variables\":2,"
        "\"nonzeros\":3},\"status\":\"repaired\",\"stop_reason\":null,\"numbers\":\"written\","
        "\"proof\":{\"outcome\":\"proved\"},\"total\":6,\"exact_total\":\"6\",\"changes\":["
        "{\"variable\":\"x\",\"side\":\"upper\",\"from\":3,\"to\":5,\"exact_to\":\"5\","
        "\"amount\":2,\"exact_amount\":\"2\"},"
        "{\"row\":\"cap\",\"side\":\"upper\",\"from\":7,\"to\":15,\"exact_to\":\"15\","
        "\"amount\":8,\"exact_amount\":\"8\"}],\"warnings\":[]}\n");
    EXPECT_EQ(RunNuvlp("repair " + repaired).out,
              "status     feasible as it stands\nproof      proved as written\n");
}

TEST(RepairCommand, WritesAProofThatVerifyConfirms)
{
    const std::string elastic = Scratch("elastic.lp");
    const std::string proof = Scratch("repair.vipr");
    const std::string files = "--elastic " + elastic + " --certificate " + proof;
    for (const std::string numbers : {"written", "stored"})
    {
        const std::string meaning = " --numbers " + numbers + " ";
        EXPECT_EQ(RunNuvlp("repair --weight y=0.7 " + files + meaning + "-", kShort).exitCode, 0);
        const Outcome verified = RunNuvlp("verify" + meaning + elastic + " " + proof);
        EXPECT_EQ(verified.out.find("status     optimal\n"), 0u) << verified.out << verified.err;
        EXPECT_NE(RunNuvlp("verify" + meaning + "- " + proof, kShort).exitCode, 0)
            << "the proof is about the elastic model";
    }
    EXPECT_EQ(RunNuvlp("repair --keep need --keep x --keep y --keep cap " + files + " -", kShort)
                  .exitCode,
              0);
    EXPECT_EQ(RunNuvlp("verify " + elastic + " " + proof).out,
              "status     infeasible\nproof      verified as written\n");
    const Outcome stopped = RunNuvlp("repair --time-limit 0 --certificate " + proof + " -", kShort);
    EXPECT_EQ(stopped.err, "nuvlp: nothing is proved, so no certificate is written\n");
    EXPECT_EQ(RunNuvlp("repair --certificate /nowhere/a.vipr -", kShort).exitCode, 73);
    EXPECT_EQ(RunNuvlp("repair --elastic /nowhere/a.lp -", kShort).exitCode, 73);
}

TEST(RepairCommand, WritesSidesThatNoDoubleSays)
{
    const std::string repaired = Scratch("thirds.lp");
    (void)RunNuvlp("repair --keep need --keep x --keep cap --write " + repaired + " -", kShort);
    EXPECT_NE(ReadFile(repaired).find("20/3"), std::string::npos) << ReadFile(repaired);
    EXPECT_EQ(RunNuvlp("repair " + repaired).out,
              "status     feasible as it stands\nproof      proved as written\n");
}

TEST(RepairCommand, EndsAsOtherVerbsDo)
{
    const Outcome none =
        RunNuvlp("repair --exit-status --keep need --keep x --keep y --keep cap --json -", kShort);
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_NE(none.out.find("\"status\":\"infeasible\""), std::string::npos) << none.out;
    const Outcome stopped = RunNuvlp("repair --time-limit 0 --json -", kShort);
    EXPECT_EQ(stopped.exitCode, 4);
    EXPECT_NE(stopped.out.find("\"stop_reason\":\"time-limit\""), std::string::npos) << stopped.out;
    EXPECT_EQ(RunNuvlp("repair -", "nonsense").exitCode, 65);
    EXPECT_EQ(RunNuvlp("repair /nowhere/at all.lp").exitCode, 64) << "two files";
    EXPECT_EQ(RunNuvlp("repair /nowhere.lp").exitCode, 66);
    EXPECT_EQ(RunNuvlp("repair --write /nowhere/a.lp -", kShort).exitCode, 73);
}

TEST(RepairCommand, RefusesWeightsAndNamesThatMeanNothing)
{
    const Outcome unknown = RunNuvlp("repair --keep q -", kShort);
    EXPECT_EQ(unknown.exitCode, 64);
    EXPECT_EQ(unknown.err, "nuvlp: the model has no row and no variable 'q'\n"
                           "names count in their letter case\n");
    for (const std::string weight : {"y", "y=", "y=0", "y=-1", "y=inf", "y=nan", "y=2z", "=2"})
        EXPECT_EQ(RunNuvlp("repair --weight " + weight + " -", kShort).exitCode, 64) << weight;
    const Outcome json = RunNuvlp("repair --json --weight y=0 -", kShort);
    EXPECT_EQ(json.out.find("{\"schema\":\"nuvlp/repair/1\""), 0u) << json.out;
    EXPECT_NE(json.out.find("\"code\":\"usage\""), std::string::npos) << json.out;
}

}  // namespace
}  // namespace nuvlp::test
