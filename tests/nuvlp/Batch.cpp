// nuvlp batch, from outside.
#include "Nuv/Utils/NuvVersion.h"
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

namespace nuvlp::test
{
namespace
{

/// 3 x + 2 y is worth 16 at (4, 2).
std::string Plan()
{
    return WriteScratch("plan.lp", "max 3 x + 2 y st first: x <= 4 both: x + y <= 6 "
                                   "range: -1 <= x - y <= 9 same: x + z = 7 end");
}

Outcome Batch(const std::string& table, const std::string& options = "")
{
    return RunNuvlp("batch " + options + " " + Plan() + " -", table);
}

TEST(BatchCommand, SolvesTheModelWithTheNumbersOfEachRow)
{
    const Outcome outcome = Batch("scenario,cost:y,side:both,upper:x,lower:y\n"
                                  "as it is,,,,\n"
                                  "dear,4,,,\n"
                                  "wide,,8,5,\n"
                                  "\"much, \"\"more\"\"\",,,,7\n"
                                  ",,,-1,\n",
                                  "--exact --value x --value y");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "scenario,verdict,proved,objective,exact,x,y\n"
                           "as it is,optimal,yes,16,16,4,2\n"
                           "dear,optimal,yes,21.5,43/2,2.5,3.5\n"
                           "wide,optimal,yes,20,20,4,4\n"
                           "\"much, \"\"more\"\"\",infeasible,yes,,,,\n"
                           ",infeasible,yes,,,,\n");
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(BatchCommand, ReadsAndWritesAnObjectALine)
{
    const std::string result = Scratch("results.jsonl");
    const Outcome outcome = Batch("{\"cost:x\": 0.1}\n\n{\"scenario\": \"b\", \"side:same\": 2, "
                                  "\"row-upper:range\": \"inf\"}\n",
                                  "--format jsonl --exact --value x");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "{\"schema\":\"nuvlp/scenario/"
                           "1\",\"scenario\":\"1\",\"verdict\":\"optimal\",\"proved\":true,"
                           "\"objective\":7.25,\"exact\":\"29/4\",\"values\":{\"x\":2.5}}\n"
                           "{\"schema\":\"nuvlp/scenario/"
                           "1\",\"scenario\":\"b\",\"verdict\":\"optimal\",\"proved\":true,"
                           "\"objective\":12,\"exact\":\"12\",\"values\":{\"x\":2}}\n");
}

TEST(BatchCommand, EachLineIsAsItsSchemaSays)
{
    const std::string table = "scenario,cost:y,lower:y,upper:x\n"
                              "as it is,,,\n"
                              "none,,7,\n"
                              "\"\",2,,inf\n";
    for (const char* options :
         {"", "--exact --value x", "--float-only --value y", "--no-proof", "--max-pivots 0"})
    {
        const Outcome outcome = Batch(table, std::string("--format jsonl ") + options);
        // RunNuvlp has held each of them against the schema.
        EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 3) << options << outcome.err;
        EXPECT_TRUE(outcome.out.starts_with('{')) << outcome.out;
    }
    EXPECT_EQ(Batch(table, "--json").out, Batch(table, "--format jsonl").out);
    EXPECT_EQ(Batch(table, "--json --format csv").exitCode, 64);
}

TEST(BatchCommand, WritesErrorsAsResultsForPrograms)
{
    const Outcome wrong = Batch("cost:x\n1\nmuch\n", "--json");
    EXPECT_EQ(wrong.out,
              "{\"schema\":\"nuvlp/scenario/1\",\"version\":\"" NUV_VERSION
              "\",\"status\":\"error\",\"code\":\"table.number\",\"text\":\"'much' is not a "
              "number\",\"hint\":null,\"file\":\"<stdin>\",\"line\":3,\"column\":null,"
              "\"warnings\":[]}\n");
    EXPECT_EQ(wrong.exitCode, 65);
    EXPECT_NE(RunNuvlp("batch --json none.lp table.csv").out.find("\"code\":\"file.missing\""),
              std::string::npos);
    EXPECT_NE(Batch("cost:x\n1\n", "--json --shard 3/2").out.find("\"code\":\"usage\""),
              std::string::npos);
    EXPECT_NE(Batch("cost:x\n1\n", "--json --threads x").out.find("\"code\":\"usage\""),
              std::string::npos);
    // A file that is there says that its part is done.
    const std::string part = Scratch("part.jsonl");
    EXPECT_EQ(Batch("cost:x\nmuch\n", "--json --shard 1/2 --out " + part).out, "");
    EXPECT_FALSE(std::filesystem::exists(part));
}

TEST(BatchCommand, SinglePrecisionProvesNothing)
{
    const Outcome outcome = Batch("cost:y\n2\n", "--float-only");
    EXPECT_EQ(outcome.out, "scenario,verdict,proved,objective\n1,optimal,no,16\n");
    const Outcome wrong = Batch("cost:y\n2\n", "--float-only --exact");
    EXPECT_EQ(wrong.err.substr(0, wrong.err.find('\n')),
              "nuvlp: --exact excludes --float-only: the exact objective comes with the proof");
    EXPECT_EQ(wrong.exitCode, 64);
}

TEST(BatchCommand, DoublePrecisionProvesNothing)
{
    // What single precision cannot tell apart, doubles can.
    const std::string table = "cost:y,upper:x\n2,\n2,3.00000000001\n";
    const Outcome outcome = Batch(table, "--no-proof --value x");
    EXPECT_EQ(outcome.out, "scenario,verdict,proved,objective,x\n"
                           "1,optimal,no,16,4\n"
                           "2,optimal,no,15.00000000001,3.00000000001\n");
    EXPECT_EQ(Batch(table, "--no-proof --float-only").exitCode, 64);
    EXPECT_EQ(Batch(table, "--no-proof --exact").exitCode, 64);
}

TEST(BatchCommand, ThreadsAndPartsGiveTheSameBytes)
{
    std::string table = "cost:x,cost:y,side:first\n";
    for (int k = 0; k != 300; ++k)
        table += std::to_string(k % 13 - 3) + "," + std::to_string(k % 7) + "," +
                 std::to_string(k % 5) + ".5\n";
    for (const std::string options :
         {"--exact --value x --value y --value z ", "--no-proof --value x --value y ",
          "--float-only --value x --value y "})
    {
        const Outcome one = Batch(table, options + "--threads 1");
        EXPECT_EQ(one.err, "");
        EXPECT_EQ(Batch(table, options + "--threads 5").out, one.out);
        EXPECT_EQ(Batch(table, options + "--threads 4000000000").out, one.out);
        std::string parts;
        for (const char* part : {"1/3", "2/3", "3/3"})
            parts += Batch(table, options + "--shard " + part).out;
        EXPECT_EQ(parts, one.out);
    }
}

TEST(BatchCommand, PartThatIsThereAlreadyIsLeftAlone)
{
    const std::string result = WriteScratch("part.csv", "done");
    const Outcome outcome = Batch("cost:y\n2\n", "--shard 1/2 --out " + result);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(ReadFile(result), "done");
    EXPECT_NE(outcome.err.find("is there already"), std::string::npos);
    EXPECT_EQ(Batch("cost:y\n2\n", "--out " + result).exitCode, 0);
    EXPECT_EQ(ReadFile(result), "scenario,verdict,proved,objective\n1,optimal,yes,16\n");
}

/// An assignment that takes milliseconds, and a table that asks for it many times.
std::string LongBatch()
{
    constexpr int kSize = 30;
    std::string costs;
    std::string rows;
    for (int i = 0; i < kSize; ++i)
    {
        std::string from;
        std::string to;
        for (int j = 0; j < kSize; ++j)
        {
            const std::string there = std::to_string(i) + "_" + std::to_string(j);
            costs += " + " + std::to_string(1 + (i * 37 + j * 101) * (j + 7) % 997) + " x" + there;
            from += " + x" + there;
            to += " + x" + std::to_string(j) + "_" + std::to_string(i);
        }
        rows.append(from).append(" = 1\n").append(to).append(" = 1\n");
    }
    std::string table = "cost:x0_0\n";
    for (int k = 0; k < 100'000; ++k)
        table += std::to_string(k % 1000) + "\n";
    return WriteScratch("assignment.lp", "min" + costs + "\nst\n" + rows + "end\n") + " " +
           WriteScratch("costs.csv", table);
}

TEST(BatchCommand, KeepsWhatIsDoneWhenASignalEndsIt)
{
    if (!std::filesystem::exists("/proc/self/status"))
        GTEST_SKIP() << "there is no /proc";
    const std::string result = Scratch("some.csv");
    const std::string batch = LongBatch() + " --threads 2 --out " + result;
    constexpr unsigned kLongest = 20'000;
    for (unsigned wait = 100; wait < kLongest && !std::filesystem::exists(result); wait *= 2)
    {
        const Outcome outcome = InterruptNuvlp("batch " + batch, SIGINT, wait);
        ASSERT_EQ(outcome.exitCode, 4) << outcome.err;
        const auto lines = std::ranges::count(ReadFile(result), '\n');
        EXPECT_EQ(outcome.err, lines == 0 ? "nuvlp: interrupted; nothing is written\n"
                                          : "nuvlp: interrupted; " + std::to_string(lines - 1) +
                                                " of 100000 scenarios are done and written\n");
    }
    const std::string text = ReadFile(result);
    EXPECT_TRUE(text.starts_with("scenario,verdict,proved,objective\n1,optimal,yes,")) << text;
    EXPECT_TRUE(text.ends_with("\n")) << text;
    // A part is there in full or not at all.
    const std::string part = Scratch("some-part.csv");
    const Outcome outcome = InterruptNuvlp("batch --shard 1/2 " + LongBatch() + " --out " + part,
                                           SIGTERM, kLongest / 100);
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_EQ(outcome.err, "nuvlp: interrupted; nothing is written\n");
    EXPECT_FALSE(std::filesystem::exists(part));
}

TEST(BatchCommand, SaysWhatIsWrongWithATable)
{
    const auto fault = [](const std::string& table)
    {
        const Outcome outcome = Batch(table);
        EXPECT_EQ(outcome.exitCode, 65) << table;
        EXPECT_EQ(outcome.out, "");
        return outcome.err;
    };
    EXPECT_NE(fault("cost:q\n1\n").find("<stdin>:1: error: the model has no variable 'q'"),
              std::string::npos);
    EXPECT_NE(fault("price:x\n1\n").find("'price:x' is not known"), std::string::npos);
    EXPECT_NE(fault("side:range\n1\n").find("row 'range' has not one side"), std::string::npos);
    EXPECT_NE(fault("cost:x\n1\none\n").find("<stdin>:3: error: 'one' is not a number"),
              std::string::npos);
    EXPECT_NE(fault("cost:x\n1,2\n").find("<stdin>:2: error: 2 cells instead of 1"),
              std::string::npos);
    EXPECT_NE(fault("cost:x\n\"1\n").find("a quote is not closed"), std::string::npos);
    EXPECT_NE(fault("{\"cost:x\": [1]}\n").find("'cost:x' has an array"), std::string::npos);
    EXPECT_NE(fault("{\"cost:x\": 1}\n7\n").find("<stdin>:2: error: this is no JSON object"),
              std::string::npos);
    EXPECT_NE(fault("cost:x\n1e400\n").find("'1e400' is beyond the largest double"),
              std::string::npos);
    EXPECT_NE(fault("cost:x,cost:x\n1,2\n").find("a second column 'cost:x'"), std::string::npos);
    EXPECT_NE(fault("cost:x;cost:y\n1;2\n").find("cells are separated by commas"),
              std::string::npos);
    // An infinity that the model has no place for would spoil the scenarios behind it too.
    for (const char* const wrong :
         {"cost:x\ninf\n", "lower:x\ninf\n", "upper:x\n-inf\n", "side:same\ninf\n",
          "side:first\n-inf\n", "row-lower:range\ninf\n", "row-upper:range\n-inf\n"})
        EXPECT_NE(fault(wrong).find("<stdin>:2: error: '"), std::string::npos) << wrong;
    EXPECT_EQ(Batch("side:first,lower:x\ninf,-inf\n", "--value x").out,
              "scenario,verdict,proved,objective,x\n1,optimal,yes,18,6\n");
    EXPECT_EQ(RunNuvlp("batch - -").err,
              "nuvlp: only one of model and table can come from standard input\n");
    EXPECT_NE(fault("\n").find("<stdin>: error: there is no table in this file"),
              std::string::npos);
    EXPECT_EQ(Batch("cost:x\n1\n", "--shard 3/2").exitCode, 64);
    EXPECT_EQ(Batch("cost:x\n1\n", "--value q").exitCode, 64);
}

}  // namespace
}  // namespace nuvlp::test
