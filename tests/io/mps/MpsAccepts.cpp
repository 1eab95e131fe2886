// What the MPS reader takes, and what it says about it: one test for each thing that programs
// disagree about.
#include "Nuv/Model/WrittenNumber.hpp"
#include "Nuv/Io/NumberText.hpp"
#include "tests/io/mps/MpsText.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace
{

using namespace nuv;
using namespace nuv::test;

/// min x + 2 y, one L row and one G row, and what follows COLUMNS.
std::string Small(std::string_view rest)
{
    return "NAME          small\n"
           "ROWS\n"
           " N  cost\n"
           " L  lim\n"
           " G  dem\n"
           "COLUMNS\n"
           "    x         cost                 1   lim                1\n"
           "    x         dem                1\n"
           "    y         cost                 2   dem                3\n" +
           std::string(rest);
}

/// The normal form of Small with these limits of its rows and bounds of its variables.
std::string SmallIs(std::string_view constant, std::string_view lim, std::string_view dem,
                    std::string_view x, std::string_view y)
{
    const auto between = [](std::string_view limits, std::string_view what)
    {
        const std::size_t comma = limits.find(',');
        return std::string(limits.substr(0, comma)) + " <= " + std::string(what) +
               " <= " + std::string(limits.substr(comma + 1));
    };
    return "min " + std::string(constant) + " + 1 x + 2 y; lim: " + between(lim, "1 x") +
           "; dem: " + between(dem, "1 x + 3 y") + "; " + between(x, "x") + "; " + between(y, "y");
}

TEST(MpsAccepts, RowsAndColumnsWithoutAnyOtherSection)
{
    EXPECT_EQ(ModelIn(Small("ENDATA\n")), SmallIs("0", "-inf,0", "0,inf", "0,inf", "0,inf"));
    EXPECT_EQ(SaidAbout(Small("ENDATA\n")), "");
}

TEST(MpsAccepts, TheNegativeOfTheObjectivesRightHandSideAsItsConstant)
{
    const std::string text =
        Small("RHS\n    RHS       lim                  4   cost             2.5\n"
              "ENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("-2.5", "-inf,4", "0,inf", "0,inf", "0,inf"));
    EXPECT_EQ(SaidAbout(text), "note mps.objective-constant 11:40");
    ReadOptions plus;
    plus.mpsConstantPlus = true;
    EXPECT_EQ(ModelIn(text, plus), SmallIs("2.5", "-inf,4", "0,inf", "0,inf", "0,inf"));
    EXPECT_EQ(SaidAbout(text, plus), "note mps.objective-constant 11:40");
}

TEST(MpsAccepts, AZeroInTheObjectivesRightHandSideWithoutAWord)
{
    const std::string text = Small("RHS\n    RHS       cost               0\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,0", "0,inf", "0,inf", "0,inf"));
    EXPECT_EQ(SaidAbout(text), "");
}

TEST(MpsAccepts, ANegativeUpperBoundAloneWithAnInfiniteLowerOne)
{
    const std::string text = Small("BOUNDS\n UP BND       x                 -3\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,0", "0,inf", "-inf,-3", "0,inf"));
    EXPECT_EQ(SaidAbout(text), "warning mps.negative-upper-bound 11:2");
}

TEST(MpsAccepts, ANegativeUpperBoundUnderALowerOneInAnyOrder)
{
    const std::string after = Small("BOUNDS\n UP BND       x                 -3\n"
                                    " LO BND       x                 -5\nENDATA\n");
    EXPECT_EQ(ModelIn(after), SmallIs("0", "-inf,0", "0,inf", "-5,-3", "0,inf"));
    EXPECT_EQ(SaidAbout(after), "");
    const std::string contradiction = Small("BOUNDS\n LO BND       x                  0\n"
                                            " UP BND       x                 -3\nENDATA\n");
    EXPECT_EQ(ModelIn(contradiction), SmallIs("0", "-inf,0", "0,inf", "0,-3", "0,inf"));
    EXPECT_EQ(SaidAbout(contradiction), "warning mps.contradictory-bounds 12:2");
}

TEST(MpsAccepts, AZeroUpperBoundAloneAsAFixedVariable)
{
    const std::string text = Small("BOUNDS\n UP BND       y                  0\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,0", "0,inf", "0,inf", "0,0"));
    EXPECT_EQ(SaidAbout(text), "warning mps.zero-upper-bound 11:2");
}

TEST(MpsAccepts, EveryTypeOfBound)
{
    const std::string text = Small("BOUNDS\n LO BND       x                -1.5\n"
                                   " UP BND       x                2.5\n"
                                   " FX BND       y                  7\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,0", "0,inf", "-1.5,2.5", "7,7"));
    EXPECT_EQ(SaidAbout(text), "");
    const std::string infinite = Small("BOUNDS\n FR BND       x\n MI BND       y\n"
                                       " UP BND       y                  4\nENDATA\n");
    EXPECT_EQ(ModelIn(infinite), SmallIs("0", "-inf,0", "0,inf", "-inf,inf", "-inf,4"));
    EXPECT_EQ(SaidAbout(infinite), "");
    const std::string plus = Small("BOUNDS\n PL BND       x\n UP BND       y              1e30\n"
                                   " LO BND       y             -inf\nENDATA\n");
    EXPECT_EQ(ModelIn(plus), SmallIs("0", "-inf,0", "0,inf", "0,inf", "-inf,inf"));
    EXPECT_EQ(SaidAbout(plus), "");
}

TEST(MpsAccepts, AnInfiniteLowerBoundAloneAsAFreeVariable)
{
    const std::string text = Small("BOUNDS\n MI BND       x\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,0", "0,inf", "-inf,inf", "0,inf"));
    EXPECT_EQ(SaidAbout(text), "warning mps.no-upper-bound 11:2");
}

TEST(MpsAccepts, TheLastOfTwoBoundsOnOneSide)
{
    const std::string text = Small("BOUNDS\n UP BND       x                  3\n"
                                   " UP BND       x                  4\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,0", "0,inf", "0,4", "0,inf"));
    EXPECT_EQ(SaidAbout(text), "warning mps.bound-redefined 12:2");
    EXPECT_EQ(TextOf(ReadMpsText(text), "mps.bound-redefined"),
              "a bound of 'x' is set a second time, after line 11; this one holds");
}

TEST(MpsAccepts, ManyRepeatedBoundsInTimeAndWithAShortReport)
{
    std::string text = "ROWS\n N  c\nCOLUMNS\n";
    std::string bounds = "BOUNDS\n";
    for (int i = 0; i < 50000; ++i)
    {
        const std::string name = "x" + std::to_string(i);
        text += "    " + name + "  c  1\n";
        bounds += " UP BND " + name + " 1\n UP BND " + name + " 2\n";
    }
    const ReadResult reading = ReadMpsText(text + bounds + "ENDATA\n");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(reading.diagnostics.size(), 12u);
    EXPECT_EQ(reading.diagnostics.back().error.text, "49990 more like these");
}

TEST(MpsAccepts, ABoundThatIsInfiniteForOthers)
{
    const std::string text = Small("BOUNDS\n UP BND       x               1e25\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,0", "0,inf", "0,1e+25", "0,inf"));
    EXPECT_EQ(SaidAbout(text), "warning mps.large-bound 11:31");
}

TEST(MpsAccepts, OnlyTheFirstFreeRow)
{
    const std::string text = "ROWS\n N  cost\n N  other\n L  lim\n N  third\nCOLUMNS\n"
                             "    x         cost                 1   other              2\n"
                             "    x         third                3   lim                4\n"
                             "RHS\n    RHS       other              5\nENDATA\n";
    EXPECT_EQ(ModelIn(text), "min 0 + 1 x; lim: -inf <= 4 x <= 0; 0 <= x <= inf");
    EXPECT_EQ(SaidAbout(text), "note mps.free-row 3:5\nnote mps.free-row 5:5");
}

TEST(MpsAccepts, TheFreeRowThatObjnameNames)
{
    const std::string rest = "ROWS\n N  cost\n N  other\n L  lim\n N  third\nCOLUMNS\n"
                             "    x         cost                 1   other              2\n"
                             "    x         third                3   lim                4\n"
                             "RHS\n    RHS       other              5\nENDATA\n";
    for (const std::string_view named :
         {"OBJNAME\n    other\n", "objname other\n", "OBJNAME\n* that one\n  * yes\n other\n",
          "NAME x\nOBJSENSE\n    MIN\nOBJNAME\n    other\n"})
    {
        EXPECT_EQ(ModelIn(std::string(named) + rest),
                  "min -5 + 2 x; lim: -inf <= 4 x <= 0; 0 <= x <= inf")
            << named;
    }
    EXPECT_EQ(SaidAbout("OBJNAME\n    other\n" + rest),
              "note mps.free-row 4:5\nnote mps.free-row 7:5\nnote mps.objective-constant 12:15");
}

TEST(MpsAccepts, AModelWithoutAnObjective)
{
    const std::string text = "ROWS\n L  lim\nCOLUMNS\n    x         lim                1\nENDATA\n";
    EXPECT_EQ(ModelIn(text), "min 0; lim: -inf <= 1 x <= 0; 0 <= x <= inf");
    EXPECT_EQ(SaidAbout(text), "note mps.no-objective 1:1");
}

/// Rows l, g, e, f of types L, G, E, E with the right-hand side 10 and these ranges.
std::string WithRanges(std::string_view ranges)
{
    return "ROWS\n N  c\n L  l\n G  g\n E  e\n E  f\nCOLUMNS\n"
           "    x         l                    1   g                  1\n"
           "    x         e                    1   f                  1\n"
           "RHS\n"
           "    RHS       l                   10   g                 10\n"
           "    RHS       e                   10   f                 10\n" +
           std::string(ranges) + "ENDATA\n";
}

TEST(MpsAccepts, RangesByTheTypeOfTheirRow)
{
    const std::string text =
        WithRanges("RANGES\n"
                   "    RNG       l                    4   g                  4\n"
                   "    RNG       e                    4   f                 -4\n");
    EXPECT_EQ(ModelIn(text), "min 0; l: 6 <= 1 x <= 10; g: 10 <= 1 x <= 14; e: 10 <= 1 x <= 14; "
                             "f: 6 <= 1 x <= 10; 0 <= x <= inf");
    EXPECT_EQ(SaidAbout(text), "");
}

TEST(MpsAccepts, NegativeRangesOfInequalitiesByTheirSize)
{
    const std::string text =
        WithRanges("RANGES\n"
                   "    RNG       l                   -4   g                 -4\n"
                   "    RNG       e                  0\n");
    EXPECT_EQ(ModelIn(text), "min 0; l: 6 <= 1 x <= 10; g: 10 <= 1 x <= 14; e: 10 <= 1 x <= 10; "
                             "f: 10 <= 1 x <= 10; 0 <= x <= inf");
}

TEST(MpsAccepts, RangesBeforeRightHandSides)
{
    const std::string text = Small("RANGES\n    RNG       lim                4\n"
                                   "RHS\n    RHS       lim               10\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "6,10", "0,inf", "0,inf", "0,inf"));
}

/// What -0.1 and a range of 0.3 end at: at 0.2, although the sum of the doubles is less.
TEST(MpsAccepts, AllDigitsOfARangeThatHasMoreThanADouble)
{
    const auto end = [](const std::string& range)
    {
        const ReadResult reading = ReadMpsText("ROWS\n N  c\n G  g\nCOLUMNS\n    x  g  1\nRHS\n    "
                                               "RHS  g  -0.1\nRANGES\n    RNG  g  " +
                                               range + "\nENDATA\n");
        return reading.Ok() ? NumberText(UpperOf(*reading.model, reading.model->RowAt(0)))
                            : std::string();
    };
    EXPECT_EQ(end("0.3"), "0.2");
    EXPECT_NE(-0.1 + 0.3, 0.2);
    EXPECT_EQ(end("0.299999999999999962"), "0.199999999999999962");
    EXPECT_EQ(end("0.300000000000000017"), "0.200000000000000017");
    EXPECT_EQ(end("3.00000000000000017d-1"), "0.200000000000000017");
    EXPECT_EQ(end("-30000000000000001.7e-17"), "0.200000000000000017");
    EXPECT_EQ(end("0.299999999999999962" + std::string(100, '0') + "1"),
              "0.199999999999999962" + std::string(100, '0') + "1");
}

TEST(MpsAccepts, ARangeOfTheObjectiveWithAWarning)
{
    const std::string text = Small("RANGES\n    RNG       cost               4\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,0", "0,inf", "0,inf", "0,inf"));
    EXPECT_EQ(SaidAbout(text), "warning mps.range-of-free-row 11:15");
}

TEST(MpsAccepts, AnInfiniteLimitOfARow)
{
    const std::string text =
        Small("RHS\n    RHS       lim               1e30   dem             -inf\n"
              "ENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,inf", "-inf,inf", "0,inf", "0,inf"));
    EXPECT_EQ(SaidAbout(text), "note mps.infinite-number 11:33\nnote mps.infinite-number 11:56");
}

TEST(MpsAccepts, ObjsenseOnOneLineOrTwo)
{
    const std::string rest = Small("ENDATA\n").substr(20);
    const std::string maximised =
        "max" + SmallIs("0", "-inf,0", "0,inf", "0,inf", "0,inf").substr(3);
    for (const std::string_view sense :
         {"OBJSENSE MAX\n", "OBJSENSE\n    MAX\n", "OBJSENSE\nMAXIMIZE\n", "OBJSENSE MAXIMIZE\n",
          "objsense\n maximise\n", "OBJSENSE Maximum\n"})
    {
        EXPECT_EQ(ModelIn(std::string(sense) + rest), maximised) << sense;
        EXPECT_EQ(SaidAbout(std::string(sense) + rest), "") << sense;
    }
    for (const std::string_view sense : {"", "OBJSENSE MIN\n", "OBJSENSE\n    MINIMIZE\n"})
        EXPECT_EQ(ModelIn(std::string(sense) + rest).substr(0, 3), "min") << sense;
}

TEST(MpsAccepts, ACommentedSenseOnlyWhenAsked)
{
    const std::string text = "*SENSE:Maximize\n" + Small("ENDATA\n");
    EXPECT_EQ(ModelIn(text).substr(0, 3), "min");
    EXPECT_EQ(SaidAbout(text), "warning mps.sense-comment 1:1");
    ReadOptions obey;
    obey.mpsSenseComment = true;
    EXPECT_EQ(ModelIn(text, obey).substr(0, 3), "max");
    EXPECT_EQ(SaidAbout(text, obey), "note mps.sense-comment 1:1");
    // One that says what is done anyway is nothing to speak of.
    EXPECT_EQ(SaidAbout("*SENSE:Minimize\n" + Small("ENDATA\n")), "");
    // The section counts before the comment.
    const std::string both = "*SENSE:Maximize\nOBJSENSE MIN\n" + Small("ENDATA\n");
    EXPECT_EQ(ModelIn(both, obey).substr(0, 3), "min");
    EXPECT_EQ(SaidAbout(both, obey), "warning mps.sense-comment 1:1");
}

TEST(MpsAccepts, SetsWithoutAName)
{
    const std::string text = Small("RHS\n    lim   4   dem   5\n    cost  1\nRANGES\n    lim  2\n"
                                   "BOUNDS\n UP x 6\n FR y\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("-1", "2,4", "5,inf", "0,6", "-inf,inf"));
    EXPECT_EQ(SaidAbout(text), "note mps.objective-constant 12:5");
}

TEST(MpsAccepts, SetsWithoutANameInFixedColumns)
{
    const std::string text =
        Small("RHS\n              lim                  4   dem                5\n"
              "BOUNDS\n UP           x                  6\nENDATA\n");
    ReadOptions fixed;
    fixed.mpsForm = MpsForm::Fixed;
    EXPECT_EQ(ModelIn(text, fixed), SmallIs("0", "-inf,4", "5,inf", "0,6", "0,inf"));
    EXPECT_EQ(ModelIn(text), ModelIn(text, fixed));
}

TEST(MpsAccepts, TheFirstOfSeveralSets)
{
    const std::string text = Small("RHS\n    A         lim                4\n"
                                   "    B         lim                5\n"
                                   "    B         dem                6\n"
                                   "    A         dem                7\n"
                                   "RANGES\n    R         lim                1\n"
                                   "    S         lim                2\n"
                                   "BOUNDS\n UP U         x                  3\n"
                                   " UP V         x                  4\nENDATA\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "3,4", "7,inf", "0,3", "0,inf"));
    EXPECT_EQ(SaidAbout(text),
              "note mps.other-set 12:5\nnote mps.other-set 17:5\nnote mps.other-set 20:2");
}

TEST(MpsAccepts, NumbersInEveryNotation)
{
    const std::string head = "ROWS\n N  c\n L  l\nCOLUMNS\n    x         l         ";
    const auto read = [&](const std::string& number)
    { return ModelIn(head + number + "\nENDATA\n"); };
    const auto is = [](const std::string& number)
    { return "min 0; l: -inf <= " + number + " x <= 0; 0 <= x <= inf"; };
    EXPECT_EQ(read("1d1"), is("10"));
    EXPECT_EQ(read("1.5D+2"), is("150"));
    EXPECT_EQ(read("-2.5d-1"), is("-0.25"));
    EXPECT_EQ(read("+3"), is("3"));
    EXPECT_EQ(read("+.5E1"), is("5"));
    EXPECT_EQ(read("7."), is("7"));
    EXPECT_EQ(read("0.1"), is("0.1"));
    EXPECT_EQ(read("123456789012345678"), is("123456789012345680"));
    EXPECT_EQ(read("1e30"), is("1e+30"));
    EXPECT_EQ(read("4.9e-324"), is("5e-324"));
}

TEST(MpsAccepts, AZeroCoefficientWithANote)
{
    const std::string text = "ROWS\n N  c\n L  l\nCOLUMNS\n    x  l  0  c  0\nENDATA\n";
    EXPECT_EQ(ModelIn(text), "min 0; l: -inf <= 0 x <= 0; 0 <= x <= inf");
    EXPECT_EQ(SaidAbout(text), "note mps.zero-coefficient 5:11");
}

TEST(MpsAccepts, FilesWithoutAName)
{
    const std::string rest = Small("ENDATA\n").substr(20);
    for (const std::string_view name : {"", "NAME\n", "NAME          \n", "name x\n"})
        EXPECT_EQ(ModelIn(std::string(name) + rest), ModelIn(Small("ENDATA\n"))) << name;
    EXPECT_EQ(ReadMpsText("NAME\n" + rest).model->Name(), "");
    EXPECT_EQ(ReadMpsText("NAME   two words \n" + rest).model->Name(), "two words");
    EXPECT_EQ(ReadMpsText("NAME  small FREE\n" + rest).model->Name(), "small");
}

TEST(MpsAccepts, LowerCaseBlankLinesCommentsAndLineEnds)
{
    const std::string text =
        "\xEF\xBB\xBF* a comment\r\n\r\nname x\r\nrows\r\n n  cost\r\n l  lim\r\n"
        "*another\r\ncolumns\r\n    x         cost               1\r\n"
        "\r\n    x         lim\t               2\r\nrhs\r\n"
        "    RHS       lim                4\r\nbounds\r\n up BND x 5\r\nendata\r\n";
    const std::string model = "min 0 + 1 x; lim: -inf <= 2 x <= 4; 0 <= x <= 5";
    EXPECT_EQ(ModelIn(text), model);
    EXPECT_EQ(SaidAbout(text), "");
    std::string carriageReturns;
    for (const char c : text)
    {
        if (c != '\n')
            carriageReturns += c;
    }
    EXPECT_EQ(ModelIn(carriageReturns), model);
}

TEST(MpsAccepts, CommentsBehindTheFields)
{
    const std::string text = "ROWS\n N  cost $the objective\n L  lim * a limit\nCOLUMNS\n"
                             "    x         cost               1 $ and\n"
                             "    x         lim                2   *more\n"
                             "RHS $\n    RHS       lim                4   $rest 5\nBOUNDS\n"
                             " UP BND       x                  5 $\nENDATA $\n";
    EXPECT_EQ(ModelIn(text), "min 0 + 1 x; lim: -inf <= 2 x <= 4; 0 <= x <= 5");
    EXPECT_EQ(SaidAbout(text), "note mps.inline-comment 3:9\nnote mps.inline-comment 6:38");
}

TEST(MpsAccepts, CommentsBehindABlank)
{
    const std::string head =
        " * a model\nNAME  m\n * of little\nROWS\n  * rows\n N  cost\n L  lim\n";
    const std::string columns =
        "COLUMNS\n    x         cost                 1   lim                2\n";
    const std::string bounds =
        "BOUNDS\n   * UP bounds\n UP BND       x                  5\nENDATA\n";
    EXPECT_EQ(ModelIn(head + columns + bounds), "min 0 + 1 x; lim: -inf <= 2 x <= 0; 0 <= x <= 5");
    EXPECT_EQ(SaidAbout(head + columns + bounds),
              "note mps.indented-comment 1:2\nnote mps.indented-comment 3:2\n"
              "note mps.indented-comment 5:3\nnote mps.indented-comment 11:4");
    // A name may begin with '*' here, so that a record whose row is misspelt looks like a comment.
    const std::string starred = head + columns + "    *y        lin                2\n" +
                                "    * the sides\nRHS\n    *         lim                4\n" +
                                bounds;
    EXPECT_EQ(ModelIn(starred), "min 0 + 1 x; lim: -inf <= 2 x <= 4; 0 <= x <= 5");
    for (const std::string_view form :
         {"warning mps.starred-line 10:5", "warning mps.starred-line 11:5"})
        EXPECT_NE(SaidAbout(starred).find(form), std::string::npos) << SaidAbout(starred);
}

TEST(MpsAccepts, NamesThatLookLikeComments)
{
    const std::string text = "ROWS\n N  *obj*\n L  $lim\nCOLUMNS\n"
                             "    *x        *obj*   1  $lim  2\nRHS\n    *rhs*  $lim  4\nBOUNDS\n"
                             " UP *bnd* *x 5\nENDATA\n";
    EXPECT_EQ(ModelIn(text), "min 0 + 1 *x; $lim: -inf <= 2 *x <= 4; 0 <= *x <= 5");
    EXPECT_EQ(SaidAbout(text), "warning mps.dollar-name 5:26\nwarning mps.dollar-name 7:12");
}

TEST(MpsAccepts, LongNamesAndOtherAlphabets)
{
    const std::string longName(300, 'n');
    const std::string text = "ROWS\n N  co\xC3\xBBt\n L  " + longName +
                             "\nCOLUMNS\n    \xC3\xA9t\xC3\xA9  " + longName + "  1\nENDATA\n";
    EXPECT_TRUE(ReadMpsText(text).Ok());
    EXPECT_EQ(SaidAbout(text), "warning mps.long-name 3:5");
}

TEST(MpsAccepts, AFileWithoutItsEnd)
{
    const std::string text = Small("BOUNDS\n UP BND       x                  4\n");
    EXPECT_EQ(ModelIn(text), SmallIs("0", "-inf,0", "0,inf", "0,4", "0,inf"));
    EXPECT_EQ(SaidAbout(text), "warning mps.no-end 12:1");
    EXPECT_EQ(SaidAbout(text + "ENDATA\nNAME  another\n"), "warning mps.text-after-end 13:1");
}

TEST(MpsAccepts, ModelsWithoutRowsOrColumns)
{
    EXPECT_EQ(ModelIn("ROWS\nCOLUMNS\nENDATA\n"), "min 0");
    EXPECT_EQ(ModelIn("ROWS\n N  c\n L  l\nCOLUMNS\nENDATA\n"), "min 0; l: -inf <= nothing <= 0");
    EXPECT_EQ(SaidAbout("ROWS\n N  c\nENDATA\n"), "warning mps.no-columns 3:1");
}

TEST(MpsAccepts, NamesThatDifferInCaseOnlyWithAWarning)
{
    const std::string text = "ROWS\n N  c\n L  Wood\n L  wood\n G  C\nCOLUMNS\n"
                             "    x         c                  1   wood               1\n"
                             "    X         c                  1   Wood               1\nENDATA\n";
    EXPECT_EQ(SaidAbout(text), "warning mps.names-in-other-case 4:5\n"
                               "warning mps.names-in-other-case 5:5\n"
                               "warning mps.names-in-other-case 8:5");
    EXPECT_EQ(TextOf(ReadMpsText(text), "mps.names-in-other-case"),
              "'wood' and 'Wood' in line 3 are two rows");
}

TEST(MpsAccepts, IntegersOnlyRelaxed)
{
    const std::string text =
        "ROWS\n N  c\n L  l\nCOLUMNS\n"
        "    M1        'MARKER'                 'INTORG'\n"
        "    x         c                    1   l                  1\n"
        "    y         l                  1\n"
        "    z         l                  1\n"
        "    M2        'MARKER'                 'INTEND'\n"
        "    w         l                  1\n"
        "    b         l                  1\n"
        "BOUNDS\n UP BND       y                 40\n LI BND       w                  2\n"
        " UI BND       w                  9\n BV BND       b\n MI BND       z\nENDATA\n";
    EXPECT_EQ(SaidAbout(text), "error mps.integer 5:40");
    EXPECT_EQ(ModelIn(text, Relaxed()),
              "min 0 + 1 x; l: -inf <= 1 x + 1 y + 1 z + 1 w + 1 b <= 0; 0 <= x <= 1; "
              "0 <= y <= 40; -inf <= z <= inf; 2 <= w <= 9; 0 <= b <= 1");
    EXPECT_EQ(SaidAbout(text, Relaxed()), "warning mps.relaxed 6:5\n"
                                          "warning mps.integer-without-bounds 6:5\n"
                                          "warning mps.no-upper-bound 17:2");
}

}  // namespace
