// nuvlp prove, from outside: files in, a verdict and an exit code out.
#include "Nuv/Utils/NuvVersion.h"
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

#include <filesystem>

namespace nuvlp::test
{
namespace
{

const std::string kFactory = NUV_TEST_MODELS "/../../examples/factory.lp";

TEST(ProveCommand, ConfirmsWhatSolveWrote)
{
    const std::string result = Scratch("factory.json");
    EXPECT_EQ(RunNuvlp("solve --json -o " + result + " " + kFactory).exitCode, 0);
    const Outcome outcome = RunNuvlp("prove " + kFactory + " " + result);
    EXPECT_EQ(outcome.out, "claim      optimal\n"
                           "values     row 'wood' is beyond its bound by 4e-15, "
                           "nothing by more\n"
                           "objective  4242.857142857143\n"
                           "optimum    4242.857142857143, exactly 29700/7\n"
                           "numbers    as written\n"
                           "proof      from the basis in the file, 0 pivots\n"
                           "verdict    confirmed\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.exitCode, 0);
}

/// All models of a few folders, in both meanings of their numbers.
TEST(ProveCommand, ConfirmsToTheLastDigitWhatSolveWroteExactly)
{
    const std::string folders[] = {"/../../examples", "/textbook", "/written", "/infeas"};
    std::size_t models = 0;
    const std::string result = Scratch("exact.json");
    for (const std::string& folder : folders)
    {
        for (const auto& entry : std::filesystem::directory_iterator(NUV_TEST_MODELS + folder))
        {
            const std::string path = entry.path().string();
            if (!path.ends_with(".lp") && !path.ends_with(".mps"))
                continue;
            SCOPED_TRACE(path);
            const std::string numbers = models++ % 2 == 0 ? "written " : "stored ";
            EXPECT_EQ(RunNuvlp("solve --exact --quiet --json -o " + result + " --numbers " +
                               numbers + path)
                          .exitCode,
                      0);
            const Outcome outcome = RunNuvlp("prove --tolerance 0 " + path + " " + result);
            EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
        }
    }
    EXPECT_GT(models, 60U);
    // Doubles are not as good as that.
    EXPECT_EQ(RunNuvlp("solve --json -o " + result + " " + kFactory).exitCode, 0);
    EXPECT_EQ(RunNuvlp("prove --tolerance 0 " + kFactory + " " + result).exitCode, 5);
}

TEST(SolveCommand, ShowsFractionsIfAskedTo)
{
    EXPECT_EQ(RunNuvlp("solve --exact " + kFactory).out,
              "status     optimal\nobjective  29700/7\nproof      proved as written\n"
              "unique     no other point is optimal, the duals are the only ones\n\n"
              "variable  value  reduced cost\n"
              "chairs    150/7             0\n"
              "tables    360/7             0\n\n"
              "row     activity  slack  dual\n"
              "wood         300      0  95/7\n"
              "labour       240      0   5/7\n");
    EXPECT_EQ(RunNuvlp("solve --exact -", "max x st r: x - 1/3 y <= 1/3 end").out,
              "status     unbounded\nproof      proved as written\n\n"
              "the objective improves for ever along  direction\n"
              "x                                            1/3\n"
              "y                                              1\n");
    EXPECT_EQ(RunNuvlp("solve --quiet --exact --max-pivots 0 -", "max 1/3 x st r: 3 x <= 1 end")
                  .out.find("by the pivot limit\nobjective  0\nproof      not proved\n"),
              19u)
        << "what is not proved has no exact numbers";
}

TEST(SolveCommand, SaysWhetherTheOptimumIsUnique)
{
    const std::string face = "max x + y st r: x + y <= 4 end";
    EXPECT_EQ(RunNuvlp("solve --uniqueness --quiet -", face).out,
              "status     optimal\nobjective  4\nproof      proved as written, exactly 4\n"
              "unique     other points are optimal too, the duals are the only ones\n");
    const std::string corner = "max x st r: x <= 4\n s: x + y <= 4\nend";
    EXPECT_EQ(RunNuvlp("solve --uniqueness --quiet -", corner).out,
              "status     optimal\nobjective  4\nproof      proved as written, exactly 4\n"
              "unique     no other point is optimal, there are other duals\n");
    EXPECT_NE(RunNuvlp("solve --uniqueness --json -", corner)
                  .out.find("\"unique_point\":true,\"unique_duals\":false"),
              std::string::npos);
    EXPECT_EQ(RunNuvlp("solve --json -", corner).out.find("unique"), std::string::npos);
}

/// A whole number in quotes is that number, also where the model's numbers are doubles.
TEST(ProveCommand, TakesTextsForTheNumbersThatTheySay)
{
    const std::string model = "max x st r: x <= 0.1 end";
    const std::string result = Scratch("texts.json");
    EXPECT_EQ(RunNuvlp("solve --exact --json --numbers stored -o " + result + " -", model).exitCode,
              0);
    const Outcome outcome = RunNuvlp("prove --tolerance 0 - " + result, model);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
}

TEST(ProveCommand, RefutesByName)
{
    const Outcome outcome = RunNuvlp("prove " + kFactory + " -", "chairs 30\ntables 50\n");
    EXPECT_EQ(outcome.out, "claim      optimal\n"
                           "values     row 'labour' is beyond its bound by 30, nothing by more\n"
                           "objective  4400\n"
                           "optimum    4242.857142857143, exactly 29700/7\n"
                           "numbers    as written\n"
                           "proof      by a solve, 2 pivots\n"
                           "verdict    refuted\n"
                           "\n"
                           "row 'wood' is above 300 by 10\n"
                           "row 'labour' is above 240 by 30\n");
    EXPECT_EQ(outcome.exitCode, 5);
}

TEST(ProveCommand, ReportsAsJson)
{
    const Outcome outcome =
        RunNuvlp("prove --json --claim feasible " + kFactory + " -", "chairs 1/2\n");
    EXPECT_EQ(WithoutTimes(outcome.out),
              "{\"schema\":\"nuvlp/proof/1\",\"version\":\"" NUV_VERSION
              "\",\"model\":{\"name\":null,"
              "\"sense\":\"maximise\",\"rows\":2,\"variables\":2,\"nonzeros\":4},\"claim\":"
              "\"feasible\",\"verdict\":\"confirmed\","
              "\"numbers\":\"written\",\"truth\":\"unknown\",\"proof\":{\"by\":\"values\","
              "\"pivots\":0},\"objective\":15,"
              "\"unnamed\":1,\"violation\":0,\"violated\":\"\",\"seconds\":0,\"disagreements\":[],"
              "\"disagreement_count\":0}\n");
    EXPECT_EQ(outcome.exitCode, 0);
}

/// 0.7 + 0.2 + 0.1 is 1, the sum of the doubles next to them is less.
TEST(ProveCommand, ProvesOfTheNumbersThatItIsAskedAbout)
{
    const std::string shares = WriteScratch(
        "shares.lp", "min a st whole: a + b + c = 1 bounds a = 0.7 b = 0.2 c = 0.1 end");
    const std::string written = Scratch("written.json");
    const std::string stored = Scratch("stored.json");
    EXPECT_EQ(RunNuvlp("solve --exit-status --json -o " + written + " " + shares).exitCode, 0);
    EXPECT_EQ(RunNuvlp("solve --exit-status --numbers stored --json -o " + stored + " " + shares)
                  .exitCode,
              2);
    // The file says which numbers it is about; the option says it louder.
    const std::string prove = "prove --tolerance 0 " + shares + " ";
    EXPECT_EQ(RunNuvlp(prove + written).exitCode, 0);
    EXPECT_EQ(RunNuvlp(prove + stored).exitCode, 0);
    EXPECT_EQ(RunNuvlp(prove + written + " --numbers stored").exitCode, 5);
    EXPECT_EQ(RunNuvlp(prove + stored + " --numbers written").exitCode, 5);
    const std::string point = "a 0.7\nb 0.2\nc 0.1\n";
    EXPECT_EQ(RunNuvlp(prove + "- --claim feasible", point).exitCode, 0);
    EXPECT_EQ(RunNuvlp(prove + "- --claim infeasible", point).exitCode, 5);
    const Outcome feasible = RunNuvlp(prove + "- --claim feasible --numbers stored", point);
    EXPECT_EQ(feasible.exitCode, 5);
    EXPECT_NE(feasible.out.find("\nnumbers    as stored\n"), std::string::npos);
    EXPECT_EQ(RunNuvlp(prove + "- --claim infeasible --numbers stored", point).exitCode, 0);
    EXPECT_EQ(RunNuvlp(prove + "- --numbers rounded", point).exitCode, 64);
}

TEST(ProveCommand, SaysWhenTimeRanOut)
{
    const Outcome outcome =
        RunNuvlp("prove --time-limit 0 " + kFactory + " -", "chairs 150/7\ntables 360/7\n");
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.out.find("\nverdict    undecided\n"), std::string::npos);
}

TEST(ProveCommand, WritesErrorsAsResultsForPrograms)
{
    const Outcome unknown = RunNuvlp("prove --json " + kFactory + " -", "chair 3\n");
    EXPECT_EQ(unknown.out,
              "{\"schema\":\"nuvlp/proof/1\",\"version\":\"" NUV_VERSION "\",\"status\":\"error\","
              "\"code\":\"claim.unknown-variable\",\"text\":\"the model has no variable 'chair'\","
              "\"hint\":\"is this the solution of another model?\",\"file\":\"<stdin>\","
              "\"line\":1,\"column\":1,\"warnings\":[]}\n");
    EXPECT_EQ(unknown.exitCode, 65);
    for (const auto& [arguments, code] :
         {std::pair("none.lp -", "file.missing"), std::pair("- -", "usage"),
          std::pair("textbook/wyndor.lp none.json", "file.missing"),
          std::pair("--toleranse 0 a b", "usage")})
        EXPECT_NE(RunNuvlp(std::string("prove --json ") + arguments)
                      .out.find(std::string("\"status\":\"error\",\"code\":\"") + code + "\""),
                  std::string::npos)
            << arguments;
}

TEST(ProveCommand, HasAMessageForEveryKindOfBadInput)
{
    const Outcome unknown = RunNuvlp("prove " + kFactory + " -", "chair 3\n");
    EXPECT_EQ(unknown.err,
              "<stdin>:1:1: error: the model has no variable 'chair' [claim.unknown-variable]\n"
              "  chair 3\n"
              "  ^\n"
              "  hint: is this the solution of another model?\n");
    EXPECT_EQ(unknown.out, "");
    EXPECT_EQ(unknown.exitCode, 65);
    EXPECT_EQ(RunNuvlp("prove " + kFactory + " none.json").exitCode, 66);
    EXPECT_EQ(RunNuvlp("prove none.lp -", "").exitCode, 66);
    EXPECT_EQ(RunNuvlp("prove - -", "").exitCode, 64);
    EXPECT_EQ(RunNuvlp("prove " + kFactory).exitCode, 64);
    EXPECT_EQ(RunNuvlp("prove --claim nice " + kFactory + " -").exitCode, 64);
}

}  // namespace
}  // namespace nuvlp::test
