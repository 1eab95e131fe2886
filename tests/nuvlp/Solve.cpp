// nuvlp solve, from outside: what it prints, where, and how it exits.
#include "Nuv/Utils/NuvVersion.h"
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <filesystem>
#include <regex>

#include <unistd.h>

namespace nuvlp::test
{
namespace
{

const std::string kExamples = NUV_TEST_MODELS "/../../examples";

TEST(SolveCommand, PrintsStatusObjectiveAndTables)
{
    const Outcome outcome = RunNuvlp("solve " + kExamples + "/factory.lp");
    EXPECT_EQ(outcome.out, "status     optimal\n"
                           "objective  4242.857142857143\n"
                           "proof      proved as written, exactly 29700/7\n"
                           "\n"
                           "variable               value\n"
                           "chairs    21.428571428571427\n"
                           "tables     51.42857142857143\n"
                           "\n"
                           "row     activity   bound  slack\n"
                           "wood         300  <= 300      0\n"
                           "labour       240  <= 240      0\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(SolveCommand, HasTheAnswersThatTheExamplesState)
{
    const std::pair<const char*, const char*> answers[] = {{"factory", "29700/7"},
                                                           {"diet", "185/2"},
                                                           {"transport", "153675"},
                                                           {"blending", "1685/6"},
                                                           {"game", "0"}};
    for (const auto& [name, exact] : answers)
    {
        const Outcome outcome = RunNuvlp("solve --quiet " + kExamples + "/" + name + ".lp");
        EXPECT_NE(outcome.out.find(std::string("exactly ") + exact + "\n"), std::string::npos)
            << name << outcome.out;
        EXPECT_EQ(outcome.err, "") << name;
    }
}

TEST(SolveCommand, ReadsStandardInput)
{
    const Outcome outcome = RunNuvlp("solve -", "min x + y st a: x + 2 y >= 3 b: 3 x + y >= 4 end");
    EXPECT_EQ(outcome.out, "status     optimal\n"
                           "objective  2\n"
                           "proof      proved as written, exactly 2\n"
                           "\n"
                           "variable  value\n"
                           "x             1\n"
                           "y             1\n"
                           "\n"
                           "row  activity  bound  slack\n"
                           "a           3   >= 3      0\n"
                           "b           4   >= 4      0\n");
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(SolveCommand, AlignsNamesOfAnyScript)
{
    const Outcome outcome = RunNuvlp("solve -", "max \u6728\u6750 + \u00e9 st a: \u6728\u6750 <= 4 "
                                                "b: \u00e9 <= 3 end");
    EXPECT_NE(
        outcome.out.find("\nvariable  value\n\u6728\u6750          4\n\u00e9             3\n"),
        std::string::npos)
        << outcome.out;
}

TEST(SolveCommand, AnswersModelsWithoutRowsOrVariables)
{
    EXPECT_EQ(RunNuvlp("solve -", "max 5 st end").out,
              "status     optimal\nobjective  5\nproof      proved as written, exactly 5\n");
    EXPECT_EQ(RunNuvlp("solve -", "max x st bounds x <= 4 end").out,
              "status     optimal\nobjective  4\n"
              "proof      proved as written, exactly 4\n\n"
              "variable  value\nx             4\n");
}

TEST(SolveCommand, SaysInfeasibleWithTheRowsThatContradict)
{
    const Outcome outcome =
        RunNuvlp("solve -", "max x st a: x + y >= 5 b: x + y <= 3 c: x <= 7 end");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "status     infeasible\n"
                           "proof      proved as written\n"
                           "\n"
                           "IIS: these exclude each other, each is needed  side\n"
                           "row a                                          >= 5\n"
                           "row b                                          <= 3\n")
        << "one list of rows, and c has no part in it";
    EXPECT_EQ(RunNuvlp("solve --exit-status -", "max x st a: x >= 5 b: x <= 3 end").exitCode, 2);
}

TEST(SolveCommand, SaysUnboundedWithTheDirection)
{
    const Outcome outcome = RunNuvlp("solve -", "max x + y st a: x - y <= 5 b: z <= 3 end");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find('\n')), "status     unbounded");
    EXPECT_NE(outcome.out.find("\ny "), std::string::npos);
    EXPECT_EQ(outcome.out.find("\nz "), std::string::npos) << "z has no part in it";
    EXPECT_EQ(RunNuvlp("solve --exit-status -", "max x st end").exitCode, 3);
}

TEST(SolveCommand, EndsOnModelsThatCycle)
{
    for (const char* name : {"beale_1955", "beale_gass", "chvatal_ch3_cycle", "kuhn"})
    {
        const std::string model = std::string("textbook/") + name + ".lp";
        const Outcome outcome = RunNuvlp("solve " + model);
        EXPECT_EQ(outcome.exitCode, 0) << name;
        EXPECT_EQ(outcome.out.substr(0, outcome.out.find('\n')), "status     optimal") << name;
        EXPECT_NE(outcome.out.find("\nproof      proved as written, exactly "), std::string::npos)
            << name;
        EXPECT_NE(outcome.out.find("\nnote       single precision stopped: basis repeated after 13 "
                                   "pivots, a cycle of 6\n"),
                  std::string::npos)
            << name;
        const Outcome alone = RunNuvlp("solve --float-only " + model);
        EXPECT_EQ(alone.out, "status     stopped: basis repeated after 13 pivots, a cycle of 6\n"
                             "proof      not proved\n")
            << name;
        EXPECT_EQ(alone.exitCode, 4) << name;
    }
    // Cycles under other rules than the core's.
    const Outcome other = RunNuvlp("solve -q --float-only textbook/marshall_suurballe.lp");
    EXPECT_EQ(other.out, "status     optimal\nobjective  2\nproof      not proved\n");
    EXPECT_EQ(other.exitCode, 0);
}

TEST(SolveCommand, SaysInJsonThatSinglePrecisionCycled)
{
    const Outcome outcome = RunNuvlp("solve --json textbook/kuhn.lp");
    EXPECT_NE(outcome.out.find("\"status\":\"optimal\""), std::string::npos);
    EXPECT_NE(outcome.out.find("\"outcome\":\"cycling\",\"period\":6}"), std::string::npos)
        << outcome.out;
}

TEST(SolveCommand, SolvesInSinglePrecisionAloneIfAsked)
{
    const Outcome outcome = RunNuvlp("solve --float-only " + kExamples + "/factory.lp");
    EXPECT_EQ(outcome.out, "status     optimal\n"
                           "objective  4242.856597900391\n"
                           "proof      not proved\n"
                           "\n"
                           "variable               value\n"
                           "chairs    21.428565979003906\n"
                           "tables    51.428565979003906\n"
                           "\n"
                           "row               activity   bound               slack\n"
                           "wood    299.99996185302734  <= 300  3.814697265625e-05\n"
                           "labour  239.99996185302734  <= 240  3.814697265625e-05\n");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(RunNuvlp("solve -q --float-only --max-pivots 1 textbook/wyndor.lp").out,
              "status     stopped by the pivot limit\nproof      not proved\n");
    EXPECT_EQ(RunNuvlp("solve -q --float-only --max-pivots 0 textbook/wyndor.lp").exitCode, 4);
    EXPECT_EQ(RunNuvlp("solve -q --float-only --time-limit 0 textbook/wyndor.lp").out,
              "status     stopped by the time limit\nproof      not proved\n");
    EXPECT_EQ(RunNuvlp("solve -q --float-only -", "max 1e39 x + y st x + y <= 4 end").out,
              "status     stopped: a number of the model is beyond single precision\n"
              "proof      not proved\n");
    EXPECT_EQ(RunNuvlp("solve --float-only textbook/wyndor_unbounded.lp --exit-status").exitCode,
              3);
    EXPECT_EQ(RunNuvlp("solve -q --float-only -", "max x st c: x <= 9 bounds 5 <= x <= 3 end").out,
              "status     infeasible\nproof      not proved\n");
}

TEST(SolveCommand, SolvesWithoutProofIfAsked)
{
    const Outcome outcome = RunNuvlp("solve --no-proof " + kExamples + "/factory.lp");
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find("violation")), "status     optimal\n"
                                                                    "objective  4242.857142857142\n"
                                                                    "proof      not proved\n");
    EXPECT_NE(outcome.out.find(" of a bound, "), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.exitCode, 0);
    const Outcome asked =
        RunNuvlp("solve -q --no-proof --certificate c.vipr " + kExamples + "/factory.lp");
    EXPECT_NE(asked.err.find("nothing is proved, so no certificate is written"), std::string::npos);
    EXPECT_EQ(RunNuvlp("solve -q --no-proof --exit-status textbook/wyndor_unbounded.lp").out,
              "status     unbounded\nproof      not proved\n");
    EXPECT_EQ(RunNuvlp("solve --no-proof --float-only a.lp").exitCode, 64);
}

/// The cube of Klee and Minty in 20 dimensions, and rows that only make the matrices larger.
std::string LongWay(int rows)
{
    constexpr int kDimensions = 20;
    std::string costs;
    std::string text = " st\n";
    for (int i = 1; i <= kDimensions; ++i)
    {
        costs += " + " + std::to_string(1 << (kDimensions - i)) + " x" + std::to_string(i);
        for (int j = 1; j < i; ++j)
            text += " + " + std::to_string(1 << (i - j + 1)) + " x" + std::to_string(j);
        text += " + x" + std::to_string(i) + " <= " + std::to_string(std::pow(5.0, i)) + "\n";
    }
    for (int i = kDimensions; i < rows; ++i)
        text += " y" + std::to_string(i) + " <= 1\n";
    return "max" + costs + text + "end\n";
}

TEST(SolveCommand, SaysWhySinglePrecisionAloneCameToNoEnd)
{
    std::string large = "max x0 st\n";
    for (int i = 0; i < 8000; ++i)
        large += " x" + std::to_string(i) + " <= 1\n";
    const std::pair<std::string, const char*> models[] = {
        {"max 5 st end", "there is no row or no variable for single precision to work on"},
        {"max 1e39 x + y st x + y <= 4 end", "a number of the model is beyond single precision"},
        {large + "end", "too large for the dense matrices of single precision"},
        {LongWay(20), "no end after 2000 pivots, 50 for each row and column of the canonical form"},
        {LongWay(160),
         "the dense matrices of single precision take too much memory after 10223 pivots"},
    };
    for (const auto& [model, reason] : models)
    {
        const Outcome outcome = RunNuvlp("solve --quiet --float-only -", model);
        EXPECT_EQ(outcome.out,
                  std::string("status     stopped: ") + reason + "\nproof      not proved\n");
        EXPECT_EQ(outcome.exitCode, 4) << reason;
        EXPECT_NE(RunNuvlp("solve --quiet -", model).out.find("\nproof      proved as written"),
                  std::string::npos)
            << reason;
    }
}

TEST(SolveCommand, StopsAtThePivotLimitAndTheTimeLimit)
{
    const Outcome outcome = RunNuvlp("solve --max-pivots 0 textbook/wyndor.lp");
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find('\n')),
              "status     stopped by the pivot limit");
    EXPECT_NE(outcome.out.find("not proved"), std::string::npos);
    const Outcome late = RunNuvlp("solve --time-limit 0 textbook/wyndor.lp");
    EXPECT_EQ(late.exitCode, 4);
    EXPECT_EQ(late.out.substr(0, late.out.find('\n')), "status     stopped by the time limit");
}

/// An assignment of 200 to 200, which takes long enough to be interrupted.
std::string LongModel()
{
    constexpr int kSize = 200;
    std::string costs;
    std::string rows;
    unsigned cost = 1;
    for (int i = 0; i < kSize; ++i)
    {
        std::string from;
        std::string to;
        for (int j = 0; j < kSize; ++j)
        {
            cost = (1103515245U * cost + 12345U) % 2147483648U;
            const std::string there = " + x" + std::to_string(i) + "_" + std::to_string(j);
            costs += " + " + std::to_string((cost >> 8U) % 9999U) + there.substr(2);
            from += there;
            to += " + x" + std::to_string(j) + "_" + std::to_string(i);
        }
        rows.append(from).append(" = 1\n").append(to).append(" = 1\n");
    }
    return WriteScratch("long.lp", "min" + costs + "\nst\n" + rows + "end\n");
}

TEST(SolveCommand, WritesWhatIsKnownWhenASignalEndsIt)
{
    if (!std::filesystem::exists("/proc/self/status"))
        GTEST_SKIP() << "there is no /proc";
    const std::string model = LongModel();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    {
        const Outcome outcome = InterruptNuvlp("solve --quiet " + model, signal);
        EXPECT_EQ(outcome.exitCode, 4) << signal;
        EXPECT_EQ(outcome.out.substr(0, outcome.out.find('\n')),
                  "status     stopped by an interrupt")
            << signal;
    }
}

TEST(SolveCommand, ShowsWarningsOnStandardErrorUnlessQuiet)
{
    const std::string model = "max x\nst\n x <= 4\nbounds\n x <= -3\nend";
    const Outcome outcome = RunNuvlp("solve -", model);
    EXPECT_EQ(
        outcome.err,
        "<stdin>:5:7: warning: 'x' <= -3 while its lower bound stays 0: the model is infeasible "
        "[lp.negative-upper-bound]\n"
        "   x <= -3\n"
        "        ^\n"
        "  hint: write -inf <= x <= -3 if it may be negative, as some programs read it\n");
    EXPECT_EQ(RunNuvlp("solve --quiet -", model).err, "");
}

TEST(SolveCommand, ShowsTheErrorAndNothingElse)
{
    const std::string path =
        WriteScratch("bad.lp", "max x\nst\n c1: 2 x + 3 y <= 4\n c1: x <= 5\nend\n");
    const Outcome outcome = RunNuvlp("solve " + path);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(
        outcome.err,
        path + ":4:2: error: a second row called 'c1'; the first is in line 3 [lp.duplicate-row]\n"
               "   c1: x <= 5\n"
               "   ^\n"
               "  hint: give each row a name of its own\n");
    EXPECT_EQ(outcome.exitCode, 65);
}

TEST(SolveCommand, RefusesIntegersUnlessRelaxed)
{
    const Outcome refused = RunNuvlp("solve lpformat/scip_simple.lp");
    EXPECT_EQ(refused.exitCode, 65);
    EXPECT_NE(refused.err.find("lpformat/scip_simple.lp:10:1: error: "), std::string::npos);
    EXPECT_NE(refused.err.find("--relax"), std::string::npos);
    const Outcome relaxed = RunNuvlp("solve --relax lpformat/scip_simple.lp");
    EXPECT_EQ(relaxed.exitCode, 0);
    EXPECT_NE(relaxed.err.find("[lp.relaxed]"), std::string::npos);
    EXPECT_NE(relaxed.out.find("objective  125."), std::string::npos) << relaxed.out;
}

TEST(SolveCommand, HasAMessageForEveryKindOfBadInput)
{
    const Outcome missing = RunNuvlp("solve none.lp");
    EXPECT_EQ(missing.err,
              "none.lp: error: there is no such file [file.missing]\n  hint: check the path\n");
    EXPECT_EQ(missing.exitCode, 66);
    const Outcome directory = RunNuvlp("solve .");
    EXPECT_EQ(directory.err,
              ".: error: this is a directory [file.directory]\n  hint: name a file in it\n");
    EXPECT_EQ(directory.exitCode, 66);
    EXPECT_EQ(RunNuvlp("solve -", "").exitCode, 65);
    const Outcome binary =
        RunNuvlp("solve " + WriteScratch("binary.lp", std::string("\x7F"
                                                                  "ELF\x02\x01\0\0",
                                                                  8)));
    EXPECT_EQ(binary.exitCode, 65);
    EXPECT_NE(binary.err.find("byte 0x7F is not text"), std::string::npos);
    // What is quoted of a file cannot steer a terminal, nor end the message.
    const Outcome steering =
        RunNuvlp("prove textbook/wyndor.lp -", std::string("x1 \x1B[2J\0\xC2\x9Bm", 11));
    EXPECT_NE(steering.err.find("'\xEF\xBF\xBD[2J\xEF\xBF\xBD\xEF\xBF\xBDm' is no finite number"),
              std::string::npos)
        << steering.err;
    EXPECT_NE(steering.err.find("\n  hint: write a decimal"), std::string::npos);
    for (const std::string& wide : {std::string("\xFF\xFEN\0A\0M\0E\0", 10),
                                    std::string("N\0A\0M\0E\0", 8), std::string("\0N\0A", 4)})
    {
        const std::string file = WriteScratch("wide.mps", wide);
        for (const std::string& call : {"solve " + file, "prove textbook/wyndor.lp " + file,
                                        "batch textbook/wyndor.lp " + file})
        {
            const Outcome outcome = RunNuvlp(call);
            EXPECT_EQ(outcome.err, file + ": error: this is UTF-16 text [file.utf-16]\n"
                                          "  hint: save the file as UTF-8\n");
            EXPECT_EQ(outcome.exitCode, 65);
        }
    }
    for (const char* text : {"max x\nst\nfoo\n x <= 3\nend", "max x\nst\n x <= nan\nend",
                             "max x\nst\n x <= 1e400\nend"})
        EXPECT_EQ(RunNuvlp("solve -", text).exitCode, 65) << text;
}

TEST(SolveCommand, WritesErrorsAsResultsForPrograms)
{
    const std::string path = WriteScratch("bad.lp", "max x\nst\n c1: x <= 4\n c1: x <= 5\nend\n");
    const Outcome bad = RunNuvlp("solve --json " + path);
    EXPECT_EQ(bad.out, "{\"schema\":\"nuvlp/result/1\",\"version\":\"" NUV_VERSION
                       "\",\"status\":\"error\","
                       "\"code\":\"lp.duplicate-row\","
                       "\"text\":\"a second row called 'c1'; the first is in line 3\","
                       "\"hint\":\"give each row a name of its own\",\"file\":\"" +
                           path + "\",\"line\":4,\"column\":2,\"warnings\":[]}\n");
    EXPECT_EQ(bad.exitCode, 65);
    EXPECT_NE(bad.err, "") << "people are told as well";
    const Outcome missing = RunNuvlp("solve --json none.lp");
    EXPECT_EQ(missing.out,
              "{\"schema\":\"nuvlp/result/1\",\"version\":\"" NUV_VERSION
              "\",\"status\":\"error\",\"code\":\"file.missing\","
              "\"text\":\"there is no such file\",\"hint\":\"check the path\",\"file\":\"none.lp\","
              "\"line\":null,\"column\":null,\"warnings\":[]}\n");
    EXPECT_EQ(missing.exitCode, 66);
    const std::string result = Scratch("error.json");
    EXPECT_EQ(RunNuvlp("solve --json -o " + result + " none.lp").out, "");
    EXPECT_EQ(ReadFile(result), missing.out) << "no older result is taken for this one's";
    const Outcome usage = RunNuvlp("solve --json --max-pivot 3 a.lp");
    EXPECT_NE(
        usage.out.find("\"status\":\"error\",\"code\":\"usage\",\"text\":\"solve has no option "
                       "--max-pivot; did you mean --max-pivots?\""),
        std::string::npos)
        << usage.out;
    EXPECT_EQ(usage.exitCode, 64);
}

TEST(SolveCommand, TakesNumbersThatSinglePrecisionCannotHold)
{
    const Outcome outcome = RunNuvlp("solve -q -", "max 1e25 x st 1e15 x <= 1e29 end");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find("\nproof")),
              "status     optimal\nobjective  1e+39");
}

TEST(SolveCommand, TakesALineOfManyMegabytes)
{
    std::string text = "max x\nst\n c: x";
    constexpr std::size_t kLength = 100'000'000;
    text.reserve(kLength + 100);
    while (text.size() < kLength)
        text.append(1000, ' ').append("+ 0.5 some_name_of_a_variable");
    const std::string path = WriteScratch("long.lp", text + " y <= 4\nend");
    const Outcome refused = RunNuvlp("solve " + path);
    EXPECT_EQ(refused.exitCode, 65);
    EXPECT_LT(refused.err.size(), 600u) << "the line is not shown whole";
    EXPECT_NE(refused.err.find("[lp.missing-sign]"), std::string::npos);
    std::filesystem::remove(path);
}

TEST(SolveCommand, SaysWhenItCannotWrite)
{
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "there is no /dev/full";
    const Outcome outcome = RunNuvlp("solve textbook/wyndor.lp >/dev/full");
    EXPECT_EQ(outcome.exitCode, 73);
    EXPECT_NE(outcome.err.find("cannot write the result"), std::string::npos);
}

TEST(SolveCommand, DoesNotDependOnTheLocale)
{
    const Outcome outcome = RunNuvlp("solve -q -", "max 1.5 x st x <= 2.5 end");
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find("\nproof")),
              "status     optimal\nobjective  3.75");
}

TEST(Command, ExplainsItselfAndItsUsage)
{
    const Outcome help = RunNuvlp("--help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_NE(help.out.find("solve"), std::string::npos);
    EXPECT_TRUE(std::regex_match(RunNuvlp("--version").out,
                                 std::regex("nuvlp [0-9]+\\.[0-9]+\\.[0-9]+\n")));
    for (const char* wrong :
         {"", "solve", "solve --max-pivots x a.lp", "solve --max-pivots -1 a.lp",
          "solve --unknown a.lp", "unknown", "solve a.lp b.lp", "solve --time-limit -1 a.lp"})
    {
        const Outcome outcome = RunNuvlp(wrong);
        EXPECT_EQ(outcome.exitCode, 64) << wrong;
        EXPECT_EQ(outcome.out, "") << wrong;
        EXPECT_NE(outcome.err, "") << wrong;
    }
}

TEST(Command, HelpIsAVerbToo)
{
    EXPECT_EQ(RunNuvlp("help").out, RunNuvlp("--help").out);
    EXPECT_EQ(RunNuvlp("help batch").out, RunNuvlp("batch --help").out);
    EXPECT_EQ(RunNuvlp("help help").exitCode, 0);
    EXPECT_EQ(RunNuvlp("help batsh").err.substr(0, 12), "nuvlp: VERB ");
    EXPECT_NE(RunNuvlp("help batsh").err.find("did you mean batch?"), std::string::npos);
    EXPECT_EQ(RunNuvlp("help solve batch").exitCode, 64);
    EXPECT_NE(RunNuvlp("version").err.find("did you mean --version?"), std::string::npos);
}

TEST(Command, TakesWhatFollowsTwoDashesForNoOption)
{
    const std::string path = WriteScratch("-q", "max x st c: x <= 4 end");
    EXPECT_EQ(RunNuvlp("solve -q -- " + path).out, RunNuvlp("solve -q " + path).out);
    EXPECT_EQ(RunNuvlp("solve -- -q --").err, "nuvlp: '--' is one argument too many\n"
                                              "nuvlp solve --help says more.\n");
    EXPECT_EQ(RunNuvlp("solve -- a.lp --json").out, "");
    // A file that is called like an option.
    for (const char* verb : {"solve", "check", "convert --to lp", "plot"})
        EXPECT_NE(
            RunNuvlp(verb + std::string(" -- -q")).err.find("-q: error: there is no such file"),
            std::string::npos)
            << verb;
    EXPECT_NE(RunNuvlp("prove -- -q -x").err.find("-q: error: there is no such file"),
              std::string::npos);
    EXPECT_EQ(RunNuvlp("solve -q " + path + " --").out, RunNuvlp("solve -q " + path).out);
    EXPECT_EQ(RunNuvlp("solve --").err.find("FILE is required"), 7u);
}

}  // namespace
}  // namespace nuvlp::test
