// What the MPS reader refuses, and where: every refusal has one error, its place, a caret and a
// hint.
#include "tests/io/mps/MpsText.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace
{

using namespace nuv;
using namespace nuv::test;

const std::string kHead = "NAME          small\n"
                          "ROWS\n"
                          " N  cost\n"
                          " L  lim\n"
                          " G  dem\n"
                          "COLUMNS\n"
                          "    x         cost                 1   lim                1\n";

/// What is said of the head above with these lines behind it, the first of which is line 8.
std::string Said8(std::string_view rest, const ReadOptions& options = {})
{
    return SaidAbout(kHead + std::string(rest), options);
}

/// The text of the error.
std::string Complaint8(std::string_view rest)
{
    const ReadResult reading = ReadMpsText(kHead + std::string(rest));
    return reading.Ok() ? "" : reading.GetError().text;
}

TEST(MpsRefuses, AColumnInTwoPieces)
{
    const std::string rest =
        "    y         dem                1\n    x         dem                1\n";
    EXPECT_EQ(Said8(rest), "error mps.split-column 9:5");
    EXPECT_EQ(Complaint8(rest), "column 'x' comes a second time; it began in line 7");
}

TEST(MpsRefuses, ACoefficientTwice)
{
    const std::string rest =
        "    x         dem                1\n    x         lim                2\n";
    EXPECT_EQ(Said8(rest), "error mps.repeated-entry 9:15");
    EXPECT_EQ(Complaint8(rest),
              "column 'x' has a second coefficient in row 'lim'; the first is in line 7");
    EXPECT_EQ(Said8("    y         dem  1  dem  2\n"), "error mps.repeated-entry 8:23");
    EXPECT_EQ(Said8("    x         cost 1\n"), "error mps.repeated-entry 8:15");
}

TEST(MpsRefuses, ARightHandSideOrRangeTwice)
{
    const std::string rhs = "RHS\n    RHS       lim  4  dem  5\n    RHS       lim  6\n";
    EXPECT_EQ(Said8(rhs), "error mps.repeated-entry 10:15");
    EXPECT_EQ(Complaint8(rhs), "row 'lim' has a second right-hand side; the first is in line 9");
    const std::string range = "RANGES\n    RNG       lim  4  lim  5\n";
    EXPECT_EQ(Said8(range), "error mps.repeated-entry 9:23");
    EXPECT_EQ(Complaint8(range), "row 'lim' has a second range; the first is in line 9");
}

TEST(MpsRefuses, UnknownRowsAndColumns)
{
    EXPECT_EQ(Said8("    x         what  1\n"), "error mps.unknown-row 8:15");
    EXPECT_EQ(Complaint8("    x         what  1\n"),
              "there is no row called 'what' in ROWS, line 2");
    EXPECT_EQ(Said8("RHS\n    RHS       LIM  1\n"), "error mps.unknown-row 9:15");
    EXPECT_EQ(Said8("RANGES\n    RNG       x  1\n"), "error mps.unknown-row 9:15");
    EXPECT_EQ(Said8("BOUNDS\n UP BND       z  1\n"), "error mps.unknown-column 9:15");
    EXPECT_EQ(Complaint8("BOUNDS\n UP BND       z  1\n"),
              "there is no column called 'z' in COLUMNS, line 6");
}

TEST(MpsRefuses, WrongTypesOfRowsAndBounds)
{
    EXPECT_EQ(SaidAbout("ROWS\n N  c\n X  r\n"), "error mps.unknown-row-type 3:2");
    EXPECT_EQ(ReadMpsText("ROWS\n N  c\n X  r\n").GetError().text,
              "'X' is no type of a row, in ROWS of line 1");
    EXPECT_EQ(SaidAbout("ROWS\n NL r\n"), "error mps.unknown-row-type 2:2");
    EXPECT_EQ(Said8("BOUNDS\n XX BND       x  1\n"), "error mps.unknown-bound-type 9:2");
}

TEST(MpsRefuses, DuplicateRows)
{
    EXPECT_EQ(SaidAbout("ROWS\n N  c\n L  r\n G  r\n"), "error mps.duplicate-row 4:5");
    EXPECT_EQ(ReadMpsText("ROWS\n N  c\n L  r\n G  r\n").GetError().text,
              "a second row called 'r'; the first is in line 3");
    EXPECT_EQ(SaidAbout("ROWS\n N  c\n N  c\n"), "error mps.duplicate-row 3:5");
}

TEST(MpsRefuses, MissingPiecesOfRecords)
{
    EXPECT_EQ(SaidAbout("ROWS\n N\n"), "error mps.row-name 2:3");
    EXPECT_EQ(Said8("    y\n"), "error mps.missing-row 8:6");
    EXPECT_EQ(Said8("    y         lim\n"), "error mps.missing-number 8:18");
    EXPECT_EQ(Said8("    y         lim  1  dem\n"), "error mps.missing-number 8:26");
    EXPECT_EQ(Said8("RHS\n    RHS\n"), "error mps.missing-row 9:8");
    EXPECT_EQ(Said8("RHS\n    RHS       lim\n"), "error mps.missing-number 9:18");
    EXPECT_EQ(Said8("BOUNDS\n UP\n"), "error mps.missing-column 9:4");
    EXPECT_EQ(Said8("BOUNDS\n UP BND       x\n"), "error mps.missing-number 9:16");
    EXPECT_EQ(Said8("BOUNDS\n FR\n"), "error mps.missing-column 9:4");
}

TEST(MpsRefuses, WordsTooMany)
{
    EXPECT_EQ(SaidAbout("ROWS\n N  c\n L  a_long_name b\n"), "error mps.surplus-word 3:17");
    EXPECT_EQ(Said8("    y         lim  1  dem  2  3\n"), "error mps.surplus-word 8:31");
    EXPECT_EQ(Said8("BOUNDS\n UP BND  x  1  2\n"), "error mps.surplus-word 9:16");
    EXPECT_EQ(Said8("RHS       r1  1\n"), "error mps.text-after-section 8:11");
}

TEST(MpsRefuses, NumbersThatAreNone)
{
    const auto number = [](std::string_view text)
    { return Said8("    y         lim  " + std::string(text) + "\n"); };
    for (const std::string_view text :
         {"one", "1,5", "1.2.3", "--1", "+-1", "1e", "1d", "d5", "0x10", "1/2", "."})
        EXPECT_EQ(number(text), "error mps.not-a-number 8:20") << text;
    EXPECT_EQ(number("nan"), "error mps.not-finite 8:20");
    EXPECT_EQ(number("-NaN"), "error mps.not-finite 8:20");
    EXPECT_EQ(number("inf"), "error mps.not-finite 8:20");
    EXPECT_EQ(number("1e400"), "error mps.number-too-large 8:20");
    EXPECT_EQ(number("-1d309"), "error mps.number-too-large 8:20");
    EXPECT_EQ(number("1e-400"), "error mps.number-too-small 8:20");
    EXPECT_EQ(number("0." + std::string(400, '0') + "1"), "error mps.number-too-small 8:20");
    EXPECT_EQ(number(std::string(400, '9')), "error mps.number-too-large 8:20");
    EXPECT_EQ(Said8("RHS\n    RHS       lim  nan\n"), "error mps.not-finite 9:20");
    EXPECT_EQ(Said8("RHS\n    RHS       cost  inf\n"), "error mps.not-finite 9:21");
    EXPECT_EQ(Said8("BOUNDS\n UP BND       x  nan\n"), "error mps.not-finite 9:18");
}

TEST(MpsRefuses, LimitsThatNoNumberKeeps)
{
    EXPECT_EQ(Said8("RHS\n    RHS       dem  inf\n"), "error mps.impossible-bound 9:20");
    EXPECT_EQ(Said8("RHS\n    RHS       lim  -inf\n"), "error mps.impossible-bound 9:20");
    EXPECT_EQ(Said8("BOUNDS\n LO BND       x  1e30\n"), "error mps.impossible-bound 9:18");
    EXPECT_EQ(Said8("BOUNDS\n UP BND       x  -inf\n"), "error mps.impossible-bound 9:18");
    EXPECT_EQ(Said8("BOUNDS\n FX BND       x  inf\n"), "error mps.impossible-bound 9:18");
    EXPECT_EQ(Said8("RHS\n    RHS  lim  -1e308\nRANGES\n    RNG  lim  1e308\nENDATA\n"),
              "error mps.number-too-large 11:15");
}

TEST(MpsRefuses, SectionsOfOtherModels)
{
    for (const std::string_view section :
         {"QUADOBJ", "QMATRIX", "QSECTION", "QCMATRIX  lim", "SOS", "SOS1", "SOS2", "SETS",
          "INDICATORS", "CSECTION      c  0.0  QUAD", "GENCONS", "PWLOBJ", "LAZYCONS", "USERCUTS",
          "quadobj"})
    {
        EXPECT_EQ(Said8(std::string(section) + "\n    x  x  1\nENDATA\n"),
                  "error mps.refused-section 8:1")
            << section;
    }
    EXPECT_EQ(Complaint8("QUADOBJ\n"), "section QUADOBJ is no part of a linear program");
    EXPECT_EQ(Said8("RSH\n"), "error mps.unknown-section 8:1");
}

TEST(MpsRefuses, SectionsOutOfPlace)
{
    EXPECT_EQ(Said8("ROWS\n"), "error mps.repeated-section 8:1");
    EXPECT_EQ(Complaint8("ROWS\n"), "a second section ROWS; the first is in line 2");
    EXPECT_EQ(SaidAbout("NAME\nCOLUMNS\n"), "error mps.section-order 2:1");
    EXPECT_EQ(SaidAbout("ROWS\n N  c\nBOUNDS\n"), "error mps.section-order 3:1");
    EXPECT_EQ(SaidAbout("NAME  x\n    y  c  1\n"), "error mps.stray-record 2:5");
}

TEST(MpsRefuses, ObjectivesThatAreNone)
{
    EXPECT_EQ(SaidAbout("OBJNAME\nROWS\n"), "error mps.objective-name 1:1");
    EXPECT_EQ(SaidAbout("OBJNAME a\n    b\nROWS\n"), "error mps.repeated-objective-name 2:5");
    EXPECT_EQ(Said8("OBJNAME\n    cost\n"), "error mps.section-order 8:1");
    for (const std::string_view name : {"lim", "cots"})
        EXPECT_EQ(SaidAbout("OBJNAME\n    " + std::string(name) + "\n" + kHead + "ENDATA\n"),
                  "note mps.free-row 5:5\nerror mps.objective-name 2:5")
            << name;
    EXPECT_EQ(SaidAbout("OBJECT\n"), "error mps.no-model 1:1");
    const ReadResult reading = ReadMpsText("NAME\nOBJECT MAX\n");
    EXPECT_EQ(SaidOf(reading), "error mps.unknown-section 2:1");
    EXPECT_NE(reading.GetError().hint.find("OBJSENSE"), std::string::npos);
}

TEST(MpsRefuses, SensesThatAreNone)
{
    EXPECT_EQ(SaidAbout("OBJSENSE\n    MINIMAX\nROWS\n"), "error mps.unknown-sense 2:5");
    EXPECT_EQ(SaidAbout("OBJSENSE BEST\nROWS\n"), "error mps.unknown-sense 1:10");
    EXPECT_EQ(SaidAbout("OBJSENSE\nROWS\n"), "error mps.unknown-sense 1:1");
    EXPECT_EQ(SaidAbout("OBJSENSE MAX\n    MIN\nROWS\n"), "error mps.repeated-sense 2:5");
}

TEST(MpsRefuses, IntegersAndWhatIsLikeThem)
{
    EXPECT_EQ(Said8("    M  'MARKER'  'INTORG'\n"), "error mps.integer 8:18");
    for (const std::string_view type : {"BV", "LI", "UI"})
    {
        EXPECT_EQ(Said8("BOUNDS\n " + std::string(type) + " BND       x  1\n"),
                  "error mps.integer 9:2")
            << type;
    }
    for (const std::string_view type : {"SC", "SI"})
    {
        EXPECT_EQ(Said8("BOUNDS\n " + std::string(type) + " BND       x  1\n", Relaxed()),
                  "error mps.semi-continuous 9:2")
            << type;
    }
    EXPECT_EQ(Said8("    M  'MARKER'  'SOSORG'\n"), "error mps.marker 8:18");
    EXPECT_EQ(Said8("    M  'MARKER'  'INTEND'\n", Relaxed()), "error mps.marker 8:18");
}

TEST(MpsRefuses, IntegersWhereverTheMarkerStands)
{
    // Names with blanks, so that only the fixed form can be meant; markers in columns 15 and 28.
    const std::string head = "ROWS\n N  COST\n L  ROW ONE\nCOLUMNS\n";
    const std::string column = "    COL ONE   COST               1.0   ROW ONE            1.0\n";
    for (const std::string_view marker :
         {"    MARKER    'MARKER'                 ", "    MARKER                 'MARKER'       "})
    {
        const std::string opens = std::string(marker) + "'INTORG'\n";
        const std::string text = head + opens + column + std::string(marker) + "'INTEND'\nENDATA\n";
        const ReadResult reading = ReadMpsText(text);
        EXPECT_EQ(SaidOf(reading),
                  "error mps.integer 5:" + std::to_string(opens.find("'INTORG'") + 1));
        EXPECT_EQ(reading.GetError().hint,
                  "--relax takes them for continuous ones within their bounds");
        EXPECT_EQ(ModelIn(text, Relaxed()),
                  "min 0 + 1 COL ONE; ROW ONE: -inf <= 1 COL ONE <= 0; 0 <= COL ONE <= 1");
        EXPECT_EQ(FormOf(ReadMpsText(text, Relaxed())), "fixed");
    }
}

TEST(MpsRefuses, WhatIsNoModel)
{
    EXPECT_EQ(SaidAbout(""), "error mps.no-model 1:1");
    EXPECT_EQ(SaidAbout("\n\n"), "error mps.no-model 1:1");
    EXPECT_EQ(SaidAbout("hello world\n"), "error mps.no-model 1:1");
    EXPECT_EQ(SaidAbout("\n   hello\n"), "error mps.no-model 2:4");
    EXPECT_EQ(SaidAbout("max: 3 x;\nc1: x <= 4;\n"), "error mps.no-model 1:1");
    EXPECT_EQ(SaidAbout(std::string("\0\1\2\3", 4)), "error mps.no-model 1:1");
    EXPECT_EQ(SaidAbout("NAME  x\nENDATA\n"), "error mps.no-rows 3:1");
    EXPECT_EQ(SaidAbout("NAME  x\nROWS\n N  c\n L  r\n"), "error mps.no-columns 5:1");
    EXPECT_EQ(SaidAbout("ROWS\n N  a\1b\nCOLUMNS\nENDATA\n"), "error mps.binary 2:6");
}

TEST(MpsRefuses, TheFirstErrorOfTheFileAndNoOther)
{
    // The first line's row is looked up when the second line has been seen to be broken.
    const std::string rest = "    y         what  1\n    y         dem  1 2 3 4 5\n";
    EXPECT_EQ(Said8(rest), "error mps.unknown-row 8:15");
    EXPECT_EQ(Said8("    y         dem  one  what  2\n"), "error mps.not-a-number 8:20");
    EXPECT_EQ(Said8("    y         what  1\nROWS\n"), "error mps.unknown-row 8:15");
    EXPECT_EQ(Said8("    y         what  1\n"), "error mps.unknown-row 8:15");
}

TEST(MpsRefuses, AFileThatIsCutOffWithThatHint)
{
    for (const std::string_view cut : {"    y  ", "    y  de", "    y  dem  ", "    y  dem  1  li"})
        EXPECT_EQ(ReadMpsText(kHead + std::string(cut)).GetError().hint,
                  "the file ends here: check that it is complete")
            << cut;
    EXPECT_NE(ReadMpsText(kHead + "    y  dem\nENDATA\n").GetError().hint,
              "the file ends here: check that it is complete");
}

TEST(MpsRefuses, WithACaretAndAHint)
{
    const ReadResult reading = ReadMpsText(kHead + "    x         dem               1x\n");
    ASSERT_FALSE(reading.Ok());
    EXPECT_EQ(Render(reading.diagnostics.back()),
              "model.mps:8:33: error: '1x' is no number, where 'dem' needs one "
              "[mps.not-a-number]\n"
              "      x         dem               1x\n"
              "                                  ^\n"
              "  hint: each name is followed by its number\n");
    // Every refusal of this file has a hint.
    for (const std::string_view rest :
         {"RSH\n", "ROWS\n", "    y\n", "    x what 1\n", "BOUNDS\n XX B x 1\n", "    x dem nan\n"})
        EXPECT_FALSE(ReadMpsText(kHead + std::string(rest)).GetError().hint.empty()) << rest;
}

}  // namespace
