// Fixed or free: how a file is told apart, and what forcing one of them does.
#include "Nuv/Io/ModelFile.hpp"
#include "tests/io/mps/MpsText.hpp"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace nuv;
using namespace nuv::test;

ReadResult ReadAs(std::string_view text, MpsForm form)
{
    ReadOptions options;
    options.mpsForm = form;
    return ReadMpsText(text, options);
}

const std::string kAligned = "NAME          both\n"
                             "ROWS\n"
                             " N  cost\n"
                             " L  lim\n"
                             "COLUMNS\n"
                             "    x         cost                 1   lim                2\n"
                             "RHS\n"
                             "    RHS       lim                4\n"
                             "ENDATA\n";

const std::string kBlanks = "NAME          blanks\n"
                            "ROWS\n"
                            " N  the cost\n"
                            " L  lim 1\n"
                            "COLUMNS\n"
                            "    x 1       the cost             1   lim 1              2\n"
                            "RHS\n"
                            "    MY RHS    lim 1              4\n"
                            "BOUNDS\n"
                            " UP           x 1                3\n"
                            "ENDATA\n";

const std::string kWords = "NAME words\n"
                           "ROWS\n"
                           " N a_rather_long_cost\n"
                           " L lim\n"
                           "COLUMNS\n"
                           " x a_rather_long_cost 1 lim 2.00000000000001\n"
                           "RHS\n"
                           " RHS lim 4\n"
                           "ENDATA\n";

TEST(MpsForms, AFileInColumnsReadsTheSameBothWays)
{
    EXPECT_EQ(FormOf(ReadMpsText(kAligned)), "both");
    const std::string model = ModelIn(kAligned);
    EXPECT_EQ(model, "min 0 + 1 x; lim: -inf <= 2 x <= 4; 0 <= x <= inf");
    for (const MpsForm form : {MpsForm::Fixed, MpsForm::Free})
        EXPECT_EQ(Written(*ReadAs(kAligned, form).model), model);
}

TEST(MpsForms, NamesWithBlanksMakeAFileFixed)
{
    const ReadResult reading = ReadMpsText(kBlanks);
    EXPECT_EQ(FormOf(reading), "fixed");
    ASSERT_TRUE(reading.Ok()) << Said(reading);
    EXPECT_EQ(Written(*reading.model), "min 0 + 1 x 1; lim 1: -inf <= 2 x 1 <= 4; 0 <= x 1 <= 3");
    EXPECT_EQ(SaidOf(ReadAs(kBlanks, MpsForm::Free)), "error mps.surplus-word 3:9");
}

TEST(MpsForms, FieldsOutOfTheirColumnsMakeAFileFree)
{
    const ReadResult reading = ReadMpsText(kWords);
    EXPECT_EQ(FormOf(reading), "free");
    ASSERT_TRUE(reading.Ok()) << Said(reading);
    EXPECT_EQ(Written(*reading.model),
              "min 0 + 1 x; lim: -inf <= 2.00000000000001 x <= 4; 0 <= x <= inf");
    EXPECT_EQ(SaidOf(ReadAs(kWords, MpsForm::Fixed)), "error mps.stray-column 3:4");
}

TEST(MpsForms, ATabMakesAFileFree)
{
    std::string text = kAligned;
    text.replace(text.find("    x"), 4, "\t   ");
    EXPECT_EQ(FormOf(ReadMpsText(text)), "free");
    EXPECT_EQ(ModelIn(text), ModelIn(kAligned));
    EXPECT_EQ(SaidOf(ReadAs(text, MpsForm::Fixed)), "error mps.stray-column 6:1");
}

TEST(MpsForms, SequenceNumbersInTheLastColumnsMakeAFileFixed)
{
    std::string text = kAligned;
    const std::string record = "    RHS       lim                4";
    text.replace(text.find(record), record.size(),
                 record + std::string(72 - record.size(), ' ') + "CARD0008");
    EXPECT_EQ(FormOf(ReadMpsText(text)), "fixed");
    EXPECT_EQ(ModelIn(text), ModelIn(kAligned));
}

TEST(MpsForms, AFileThatIsBothAndDiffersIsReadAsFixedWithAWarning)
{
    // By columns a column 'a b 1' in row 'c'; by words a column a in rows b and c.
    const std::string text = "ROWS\n N  c\n L  b\nCOLUMNS\n"
                             "    a b 1     c                  2\n"
                             "ENDATA\n";
    const ReadResult reading = ReadMpsText(text);
    EXPECT_EQ(FormOf(reading), "fixed");
    EXPECT_EQ(SaidOf(reading), "warning mps.two-forms 0:0");
    EXPECT_EQ(Written(*reading.model),
              "min 0 + 2 a b 1; b: -inf <= nothing <= 0; 0 <= a b 1 <= inf");
    EXPECT_EQ(Written(*ReadAs(text, MpsForm::Free).model),
              "min 0 + 2 a; b: -inf <= 1 a <= 0; 0 <= a <= inf");
}

TEST(MpsForms, OfTwoRefusalsTheLaterOneIsGiven)
{
    std::string fixed = kBlanks;
    fixed.replace(fixed.find("    MY RHS    lim 1"), 19, "    MY RHS    lim 2");
    EXPECT_EQ(SaidAbout(fixed), "error mps.unknown-row 8:15");
    EXPECT_EQ(FormOf(ReadMpsText(fixed)), "fixed");
    std::string free = kWords;
    free.replace(free.find("RHS lim"), 7, "RHS rim");
    EXPECT_EQ(SaidAbout(free), "error mps.unknown-row 8:6");
    EXPECT_EQ(FormOf(ReadMpsText(free)), "free");
    std::string both = kAligned;
    both.replace(both.find("RHS       lim"), 13, "RHS       rim");
    EXPECT_EQ(SaidAbout(both), "error mps.unknown-row 8:15");
    EXPECT_EQ(FormOf(ReadMpsText(both)), "both");
}

TEST(MpsForms, TextBetweenTheFieldsIsNoFixedMps)
{
    std::string text = kBlanks;
    text.replace(text.find("lim 1              4"), 20, "lim 1   7          4");
    EXPECT_EQ(SaidAbout(text), "error mps.stray-column 8:23");
    EXPECT_EQ(FormOf(ReadMpsText(text)), "fixed");
}

TEST(ModelFormats, ComeFromTheTextBeforeTheName)
{
    EXPECT_EQ(FormatOf(kAligned, "a.lp"), ModelFormat::Mps);
    EXPECT_EQ(FormatOf("\n* comment\nROWS\n", "a"), ModelFormat::Mps);
    EXPECT_EQ(FormatOf("\xEF\xBB\xBFrows\n", "-"), ModelFormat::Mps);
    EXPECT_EQ(FormatOf("OBJSENSE\n MAX\n", "a.txt"), ModelFormat::Mps);
    EXPECT_EQ(FormatOf("Maximize\n x\n", "a.mps"), ModelFormat::Lp);
    EXPECT_EQ(FormatOf("\\ comment\nmin x\n", "a.mps"), ModelFormat::Lp);
    EXPECT_EQ(FormatOf("min: 3 x;\n", "a.lp"), ModelFormat::Lp);
    EXPECT_EQ(FormatOf("garbage", "a.mps"), ModelFormat::Mps);
    EXPECT_EQ(FormatOf("garbage", "a.MPS.GZ"), ModelFormat::Mps);
    EXPECT_EQ(FormatOf("garbage", "a.sif"), ModelFormat::Mps);
    EXPECT_EQ(FormatOf("garbage", "a.xyz"), ModelFormat::Lp);
    EXPECT_EQ(FormatOf("", ""), ModelFormat::Lp);
}

}  // namespace
