// nuvlp convert and what all verbs do with their output files: there in full or not at all.
#include "Nuv/Utils/NuvVersion.h"
#include "tests/nuvlp/Run.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

namespace nuvlp::test
{
namespace
{

const std::string kModel = "max obj: 3 x + 5 y\nst\n a: x <= 4\n b: 2 y <= 12\nend\n";

TEST(ConvertCommand, WritesTheFormatAskedFor)
{
    const Outcome lp = RunNuvlp("convert --to lp -", kModel);
    EXPECT_EQ(lp.out, "Maximize\n"
                      " obj: 3 x + 5 y\n"
                      "Subject To\n"
                      " a: x <= 4\n"
                      " b: 2 y <= 12\n"
                      "End\n");
    EXPECT_EQ(lp.err, "");
    EXPECT_EQ(lp.exitCode, 0);
    const Outcome mps = RunNuvlp("convert --to mps-free -", kModel);
    EXPECT_NE(mps.out.find("OBJSENSE"), std::string::npos) << mps.out;
    EXPECT_EQ(mps.out.substr(mps.out.size() - 7), "ENDATA\n");
    EXPECT_EQ(RunNuvlp("convert --to lp -", mps.out).out, lp.out) << "there and back";
}

TEST(ConvertCommand, TakesTheFormatFromTheNameOfTheOutput)
{
    const std::string path = Scratch("model.mps");
    const Outcome outcome = RunNuvlp("convert -o " + path + " -", kModel);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(ReadFile(path), RunNuvlp("convert --to mps -", kModel).out);
}

TEST(ConvertCommand, WritesSmtLibByTheNameOfTheOutput)
{
    const std::string path = Scratch("model.smt2");
    EXPECT_EQ(RunNuvlp("convert -o " + path + " -", "max x st r: 0.1 x <= 1 end").exitCode, 0);
    EXPECT_EQ(ReadFile(path), "(set-logic QF_LRA)\n"
                              "(declare-fun |x| () Real)\n"
                              "(assert (>= |x| 0.0))\n"
                              "(assert (<= (* (/ 1.0 10.0) |x|) 1.0))\n"
                              "(define-fun %objective () Real (* 1.0 |x|))\n"
                              "(check-sat)\n");
}

TEST(ConvertCommand, AsksForAFormatThatItCannotKnow)
{
    const Outcome outcome = RunNuvlp("convert -", kModel);
    EXPECT_EQ(outcome.exitCode, 64);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "nuvlp: say which format to write: --to lp, mps, mps-fixed, mps-free or smt2\n");
    EXPECT_EQ(RunNuvlp("convert --to xls -", kModel).exitCode, 64);
    EXPECT_EQ(RunNuvlp("convert -o " + Scratch("model.txt") + " -", kModel).err, outcome.err);
    const Outcome packed = RunNuvlp("convert -o " + Scratch("model.lp.gz") + " -", kModel);
    EXPECT_EQ(packed.err,
              "nuvlp: what is written is not compressed: leave out .gz, and run gzip on it\n");
    EXPECT_EQ(packed.exitCode, 64);
    EXPECT_EQ(RunNuvlp("convert -o " + Scratch("MODEL.MPS") + " -", kModel).exitCode, 0);
}

TEST(ConvertCommand, ReportsAsJson)
{
    const std::string file = Scratch("reported.mps");
    const Outcome outcome = RunNuvlp("convert --json -o " + file + " -",
                                     "max x\nst\n c: x <= 4\nbounds\n x <= -3\nend\n");
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find(",\"text\"")),
              "{\"schema\":\"nuvlp/conversion/1\",\"version\":\"" NUV_VERSION "\","
              "\"model\":{\"name\":null,\"sense\":\"maximise\",\"rows\":1,\"variables\":1,"
              "\"nonzeros\":1},\"format\":\"mps\",\"warnings\":[{\"severity\":\"warning\","
              "\"code\":\"lp.negative-upper-bound\"");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(ReadFile(file), "");
    for (const auto& [arguments, code, exitCode] :
         {std::tuple("-o " + file + " none.lp", "file.missing", 66),
          std::tuple(std::string("--to lp textbook/wyndor.lp"), "usage", 64),
          std::tuple(std::string("-o no/such/place.lp textbook/wyndor.lp"), "file.unwritable", 73),
          std::tuple("-o " + file + " --too lp a.lp", "usage", 64)})
    {
        const Outcome bad = RunNuvlp("convert --json " + arguments);
        EXPECT_NE(bad.out.find(std::string("\"status\":\"error\",\"code\":\"") + code + "\""),
                  std::string::npos)
            << arguments << bad.out;
        EXPECT_EQ(bad.exitCode, exitCode) << arguments;
    }
}

TEST(ConvertCommand, HasAMessageForEveryKindOfBadInput)
{
    EXPECT_EQ(RunNuvlp("convert --to lp none.lp").exitCode, 66);
    EXPECT_EQ(RunNuvlp("convert --to lp .").exitCode, 66);
    EXPECT_EQ(RunNuvlp("convert --to lp -", "").exitCode, 65);
    EXPECT_EQ(RunNuvlp("convert --to lp -", std::string("\0\1\2", 3)).exitCode, 65);
    EXPECT_EQ(RunNuvlp("convert --to lp - >/dev/full", kModel).exitCode, 73);
}

TEST(OutputFile, ReplacesAnOldOneOnlyByAWholeOne)
{
    const std::string path = WriteScratch("kept.lp", "the old one");
    EXPECT_EQ(RunNuvlp("convert -o " + path + " -", "max nonsense everywhere").exitCode, 65);
    EXPECT_EQ(ReadFile(path), "the old one");
    EXPECT_EQ(RunNuvlp("convert -o " + path + " -", kModel).exitCode, 0);
    EXPECT_EQ(ReadFile(path).substr(0, 8), "Maximize");
    EXPECT_FALSE(std::filesystem::exists(path + ".nuvlp-new"));
}

TEST(OutputFile, SaysWhyItCannotBeWritten)
{
    const Outcome nowhere = RunNuvlp("solve -o no/such/place.txt textbook/wyndor.lp");
    EXPECT_EQ(nowhere.exitCode, 73);
    EXPECT_EQ(nowhere.out, "");
    EXPECT_EQ(nowhere.err, "nuvlp: cannot write no/such/place.txt: No such file or directory\n");
    const std::string folder = Scratch("folder");
    std::filesystem::create_directory(folder);
    const Outcome directory = RunNuvlp("plot -o " + folder + " textbook/wyndor.lp");
    EXPECT_EQ(directory.exitCode, 73);
    EXPECT_EQ(directory.err, "nuvlp: cannot write " + folder + ": Is a directory\n");
    EXPECT_EQ(RunNuvlp("solve -o /dev/full textbook/wyndor.lp").exitCode, 73);
}

TEST(OutputFile, IsReplacedBehindASymbolicLink)
{
    const std::string file = WriteScratch("linked.lp", "the old one");
    const std::string link = Scratch("link.lp");
    std::filesystem::create_symlink(file, link);
    EXPECT_EQ(RunNuvlp("convert -o " + link + " -", kModel).exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(ReadFile(file).substr(0, 8), "Maximize");
    const std::string lost = Scratch("lost.lp");
    std::filesystem::create_symlink(Scratch("nowhere"), lost);
    EXPECT_EQ(RunNuvlp("convert -o " + lost + " -", kModel).exitCode, 73);
}

TEST(OutputFile, MayBeADevice)
{
    EXPECT_EQ(RunNuvlp("solve -q -o /dev/null textbook/wyndor.lp").exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    const Outcome outcome = RunNuvlp("solve -q -o /dev/fd/1 textbook/wyndor.lp");
    EXPECT_EQ(outcome.out,
              "status     optimal\nobjective  36\nproof      proved as written, exactly 36\n");
}

}  // namespace
}  // namespace nuvlp::test
