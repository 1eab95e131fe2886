// What the reader of the CPLEX-LP format takes, how it understands it, and what it says about it.
#include "tests/io/lp/LpText.hpp"

#include <gtest/gtest.h>

namespace nuv::test
{
namespace
{

const std::string kSmall = "max 0 + 1 x; R1: -inf <= 1 x <= 4; 0 <= x <= inf";

TEST(LpAccepts, AModelWithoutAnyVariable)
{
    const ReadResult reading = ReadText("min\nst\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "min 0");
    EXPECT_EQ(Said(reading), "note lp.empty-objective 2:1");
}

TEST(LpAccepts, EveryWordForTheSense)
{
    for (const char* word : {"max", "MAX", "Maximize", "maximise", "MAXIMUM"})
        EXPECT_EQ(Read(std::string(word) + " x\nst\nx <= 4\nend"), kSmall) << word;
    for (const char* word : {"min", "Min", "MINIMIZE", "minimise", "minimum"})
        EXPECT_EQ(Read(std::string(word) + " x\nst\nend"), "min 0 + 1 x; 0 <= x <= inf") << word;
}

TEST(LpAccepts, EveryWordForSubjectTo)
{
    for (const char* word :
         {"st", "ST", "s.t.", "S.T.", "st.", "subject to", "Subject To", "SUCH THAT"})
        EXPECT_EQ(Read(std::string("max x\n") + word + "\nx <= 4\nend"), kSmall) << word;
}

TEST(LpAccepts, AMissingEndWithAWarning)
{
    const ReadResult reading = ReadText("max x\nst\n x <= 4\n");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), kSmall);
    EXPECT_EQ(Said(reading), "warning lp.no-end 4:1");
}

TEST(LpAccepts, AMissingSubjectToWithAWarning)
{
    const ReadResult reading = ReadText("max x\nbounds\n x <= 4\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 1 x; 0 <= x <= 4");
    EXPECT_EQ(Said(reading), "warning lp.no-constraints 4:4");
}

TEST(LpAccepts, UnlabelledRowsNamedByTheirPosition)
{
    EXPECT_EQ(Read("max x\nst\n x <= 4\n second: x <= 5\n x <= 6\nend"),
              "max 0 + 1 x; R1: -inf <= 1 x <= 4; second: -inf <= 1 x <= 5; R3: -inf <= 1 x <= 6; "
              "0 <= x <= inf");
}

TEST(LpAccepts, ANameMadeForARowGivesWayToALabel)
{
    EXPECT_EQ(Read("max x\nst\n x <= 4\n R1: x <= 5\nend"),
              "max 0 + 1 x; R1_: -inf <= 1 x <= 4; R1: -inf <= 1 x <= 5; 0 <= x <= inf");
}

TEST(LpAccepts, LabelsThatStartWithADigit)
{
    EXPECT_EQ(Read("max x\nst\n 1: x <= 4\n 2nd: x <= 5\nend"),
              "max 0 + 1 x; 1: -inf <= 1 x <= 4; 2nd: -inf <= 1 x <= 5; 0 <= x <= inf");
}

TEST(LpAccepts, EverySpellingOfTheRelations)
{
    for (const char* less : {"<", "<=", "=<"})
        EXPECT_EQ(Read(std::string("max x\nst\n x ") + less + " 4\nend"), kSmall) << less;
    for (const char* greater : {">", ">=", "=>"})
        EXPECT_EQ(Read(std::string("max x\nst\n x ") + greater + "4\nend"),
                  "max 0 + 1 x; R1: 4 <= 1 x <= inf; 0 <= x <= inf")
            << greater;
    EXPECT_EQ(Read("max x\nst\n x = 4\nend"), "max 0 + 1 x; R1: 4 <= 1 x <= 4; 0 <= x <= inf");
}

TEST(LpAccepts, AConstantInTheObjective)
{
    const ReadResult reading = ReadText("max\n obj: x + 5\nst\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 5 + 1 x; 0 <= x <= inf");
    EXPECT_EQ(reading.model->ObjectiveName(), "obj");
    EXPECT_EQ(Said(reading), "note lp.objective-constant 2:7");
}

TEST(LpAccepts, AConstantInARowMovesToItsBound)
{
    const ReadResult reading = ReadText("max x\nst\nc: x - 3 <= 0\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 1 x; c: -inf <= 1 x <= 3; 0 <= x <= inf");
    EXPECT_EQ(Said(reading), "note lp.moved-constant 3:1");
}

TEST(LpAccepts, VariablesOnBothSides)
{
    EXPECT_EQ(Read("max x\nst\n 2 x + 3 <= y - x + 5\nend"),
              "max 0 + 1 x; R1: -inf <= 3 x + -1 y <= 2; 0 <= x <= inf; 0 <= y <= inf");
    EXPECT_EQ(Read("max x\nst\n 4 >= x + y\nend"),
              "max 0 + 1 x; R1: -inf <= 1 x + 1 y <= 4; 0 <= x <= inf; 0 <= y <= inf");
}

TEST(LpAccepts, ARangeInEitherDirection)
{
    EXPECT_EQ(Read("max x\nst\n -2 <= x + y <= 10\n 7 >= x - y >= 3\nend"),
              "max 0 + 1 x; R1: -2 <= 1 x + 1 y <= 10; R2: 3 <= 1 x + -1 y <= 7; 0 <= x <= inf; 0 "
              "<= y <= inf");
}

TEST(LpAccepts, ARangeOverSeveralLines)
{
    EXPECT_EQ(Read("max x\nst\n -2 <=\n x\n + y\n <= 10\nend"),
              "max 0 + 1 x; R1: -2 <= 1 x + 1 y <= 10; 0 <= x <= inf; 0 <= y <= inf");
}

TEST(LpAccepts, AVariableTwiceInARowWithANote)
{
    const ReadResult reading = ReadText("max x\nst\n x + 2 x <= 4\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 1 x; R1: -inf <= 3 x <= 4; 0 <= x <= inf");
    EXPECT_EQ(Said(reading), "note lp.repeated-variable 3:8");
}

TEST(LpAccepts, AVariableTwiceInTheObjectiveWithANote)
{
    const ReadResult reading = ReadText("max x + 2 x\nst\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 3 x; 0 <= x <= inf");
    EXPECT_EQ(Said(reading), "note lp.repeated-variable 1:11");
}

/// 0.1 + 0.2 and 1 - 0.9 are other doubles than 0.3 and 0.1.
TEST(LpAccepts, SumsAsThoseOfTheDecimals)
{
    EXPECT_EQ(Read("max 0.1 x + 0.2 x + 0.1 + 0.2\nst\n 0.1 x + 0.2 x + 0.9 <= 1\nend"),
              "max 0.3 + 0.3 x; R1: -inf <= 0.3 x <= 0.1; 0 <= x <= inf");
    EXPECT_EQ(Read("max x\nst\n 0.3 x + 0.1 <= 0.2 x + 0.3 + 0.1\nend"),
              "max 0 + 1 x; R1: -inf <= 0.1 x <= 0.3; 0 <= x <= inf");
}

TEST(LpAccepts, ManyRepeatedVariablesWithAShortReport)
{
    std::string text = "max x\nst\n x";
    for (int i = 0; i < 1000; ++i)
        text += " + x";
    const ReadResult reading = ReadText(text + " <= 4\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(reading.model->RowCoefficients(0)[0], 1001.0);
    ASSERT_EQ(reading.diagnostics.size(), DiagnosticLog::kKeptPerCode + 1);
    EXPECT_EQ(reading.diagnostics.back().error.text, "990 more like these");
}

TEST(LpAccepts, CoefficientsThatCancelLeaveNoEntry)
{
    const ReadResult reading = ReadText("max x\nst\n x - x + y <= 4\n 0 x + y <= 5\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(
        Written(*reading.model),
        "max 0 + 1 x; R1: -inf <= 1 y <= 4; R2: -inf <= 1 y <= 5; 0 <= x <= inf; 0 <= y <= inf");
    EXPECT_EQ(Said(reading), "note lp.repeated-variable 3:6\nnote lp.zero-coefficient 3:2\n"
                             "note lp.zero-coefficient 4:2");
}

TEST(LpAccepts, NumbersGluedToTheirVariables)
{
    EXPECT_EQ(Read("max 2x + 1.5e-1y + .5z\nst\nend"),
              "max 0 + 2 x + 0.15 y + 0.5 z; 0 <= x <= inf; 0 <= y <= inf; 0 <= z <= inf");
}

TEST(LpAccepts, VariablesThatLookLikeExponentsWithAWarning)
{
    const ReadResult reading = ReadText("max 2 e1 + E12\nst\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 2 e1 + 1 E12; 0 <= e1 <= inf; 0 <= E12 <= inf");
    EXPECT_EQ(Said(reading), "warning lp.exponent-name 1:7\nwarning lp.exponent-name 1:12");
}

TEST(LpAccepts, AnExponentGluedToANameWithAWarning)
{
    const ReadResult reading = ReadText("max 3e5ast\nst\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 3e+05 ast; 0 <= ast <= inf");
    EXPECT_EQ(Said(reading), "warning lp.glued-exponent 1:5");
}

TEST(LpAccepts, NumbersToTheNearestDouble)
{
    const ReadResult reading =
        ReadText("max 0.1 a + 9007199254740993 b + 2.2250738585072011e-308 c + "
                 "1.7976931348623157e308 d\nst\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(reading.model->Objective()[0], 0.1);
    EXPECT_EQ(reading.model->Objective()[1], 9007199254740992.0);
    EXPECT_EQ(reading.model->Objective()[2], 2.2250738585072011e-308);
    EXPECT_EQ(reading.model->Objective()[3], 1.7976931348623157e308);
}

TEST(LpAccepts, SeveralSignsBeforeATerm)
{
    EXPECT_EQ(Read("max x\nst\n x + -2 y - -3 z <= - 4\nend"),
              "max 0 + 1 x; R1: -inf <= 1 x + -2 y + 3 z <= -4; 0 <= x <= inf; 0 <= y <= inf; 0 <= "
              "z <= inf");
}

TEST(LpAccepts, EverySpellingOfInfinityInBounds)
{
    for (const char* infinity : {"inf", "Inf", "+inf", "infinity", "+Infinity", "1e30", "1e+31"})
    {
        EXPECT_EQ(Read(std::string("max x\nst\nbounds\n 2 <= x <= 7\n x <= ") + infinity + "\nend"),
                  "max 0 + 1 x; 2 <= x <= inf")
            << infinity;
    }
    EXPECT_EQ(Read("max x\nst\nbounds\n -1e30 <= x <= 3\nend"), "max 0 + 1 x; -inf <= x <= 3");
    EXPECT_EQ(Read("max x\nst\nbounds\n inf >= x >= -inf\nend"), "max 0 + 1 x; -inf <= x <= inf");
}

TEST(LpAccepts, ALargeBoundThatOthersTakeForInfiniteWithAWarning)
{
    const ReadResult reading = ReadText("max x\nst\nbounds\n x <= 1e20\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 1 x; 0 <= x <= 1e+20");
    EXPECT_EQ(Said(reading), "warning lp.large-bound 4:7");
}

TEST(LpAccepts, InfinityAtTheEndOfARow)
{
    EXPECT_EQ(Read("max x\nst\n x <= inf\n -inf <= x + y <= 5\nend"),
              "max 0 + 1 x; R1: -inf <= 1 x <= inf; R2: -inf <= 1 x + 1 y <= 5; 0 <= x <= inf; 0 "
              "<= y <= inf");
    const ReadResult reading = ReadText("max x\nst\n x <= 1e30\nend");
    EXPECT_EQ(Written(*reading.model), "max 0 + 1 x; R1: -inf <= 1 x <= inf; 0 <= x <= inf");
    EXPECT_EQ(Said(reading), "warning lp.infinite-number 3:7");
}

TEST(LpAccepts, ANegativeUpperBoundAloneLeavesTheLowerOneAtZero)
{
    const ReadResult reading = ReadText("max x\nst\nbounds\n x <= -3\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 1 x; 0 <= x <= -3");
    EXPECT_EQ(Said(reading), "warning lp.negative-upper-bound 4:7");
}

TEST(LpAccepts, ANegativeUpperBoundWithALowerOneInAnyOrderInSilence)
{
    const ReadResult reading = ReadText("max x\nst\nbounds\n x <= -3\n x >= -5\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 1 x; -5 <= x <= -3");
    EXPECT_EQ(Said(reading), "");
}

TEST(LpAccepts, EveryFormOfABound)
{
    EXPECT_EQ(Read("max a + b + c + d + e\nst\nbounds\n a free\n -inf <= b\n c >= -inf\n 3 <= d <= "
                   "5\n e = 4\nend"),
              "max 0 + 1 a + 1 b + 1 c + 1 d + 1 e; -inf <= a <= inf; -inf <= b <= inf; -inf <= c "
              "<= inf; "
              "3 <= d <= 5; 4 <= e <= 4");
    EXPECT_EQ(Read("max a + b\nst\nbounds\n 5 >= a >= 3 4 >= b\n b >= 2\nend"),
              "max 0 + 1 a + 1 b; 3 <= a <= 5; 2 <= b <= 4");
}

TEST(LpAccepts, ABoundSetTwiceWithAWarning)
{
    const ReadResult reading = ReadText("max x\nst\nbounds\n x <= 3\n x <= 4\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 1 x; 0 <= x <= 4");
    EXPECT_EQ(Said(reading), "warning lp.bound-redefined 5:7");
}

TEST(LpAccepts, ABoundThatAddsAVariableWithAWarning)
{
    const ReadResult reading = ReadText("max x\nst\nbounds\n y <= 3\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), "max 0 + 1 x; 0 <= x <= inf; 0 <= y <= 3");
    EXPECT_EQ(Said(reading), "warning lp.new-variable 4:2");
}

TEST(LpAccepts, ContradictionsWithAWarning)
{
    const ReadResult reading = ReadText("max x\nst\n 5 <= x + y <= 3\nbounds\n 5 <= x <= 3\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Said(reading),
              "warning lp.contradictory-row 3:2\nwarning lp.contradictory-bounds 5:12");
}

TEST(LpAccepts, RowsWithoutVariablesWithANote)
{
    const ReadResult reading = ReadText("max x\nst\n 0 <= 5\n zero: = 0\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model),
              "max 0 + 1 x; R1: -5 <= nothing <= inf; zero: 0 <= nothing <= 0; 0 <= x <= inf");
    EXPECT_EQ(Said(reading), "note lp.empty-row 3:2\nnote lp.empty-row 4:2");
}

TEST(LpAccepts, ARowWithoutVariablesThatCannotHoldWithAWarning)
{
    const ReadResult reading = ReadText("max x\nst\n c: 0 >= 5\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Said(reading), "note lp.empty-row 3:2\nwarning lp.contradictory-row 3:2");
}

TEST(LpAccepts, WordsOfTheFormatAsVariablesWithAWarning)
{
    const ReadResult reading =
        ReadText("max 2 free + 3 st + end\nst\n free + bounds <= 4\n end <= 5\n bounds - x <= 3\n"
                 "bounds\n free free\n end <= 4\n bounds >= 2\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model),
              "max 0 + 2 free + 3 st + 1 end; R1: -inf <= 1 free + 1 bounds <= 4; "
              "R2: -inf <= 1 end <= 5; R3: -inf <= 1 bounds + -1 x <= 3; "
              "-inf <= free <= inf; 0 <= st <= inf; 0 <= end <= 4; 2 <= bounds <= inf; "
              "0 <= x <= inf");
    EXPECT_EQ(Said(reading), "warning lp.keyword-name 1:7\nwarning lp.keyword-name 1:16\n"
                             "warning lp.keyword-name 1:21\nwarning lp.keyword-name 3:9");
}

TEST(LpAccepts, AModelOnOneLine)
{
    const std::string model =
        "max 0 + 3 x + 2 y; R1: -inf <= 1 x + 1 y <= 4; R2: -inf <= 1 x + 3 y <= 6; "
        "0 <= x <= 3; 0 <= y <= inf";
    EXPECT_EQ(Read("max 3x+2y st R1: x+y<=4 R2: x+3y<=6 bounds x<=3 end"), model);
    EXPECT_EQ(Read("max 3 x + 2 y st x + y <= 4 1 x + 3 y <= 6 bounds x <= 3 end"), model);
    const ReadResult reading = ReadText("max 3x+2y st x+y<=4 x+3y<=6 bounds x<=3 end");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), model);
    EXPECT_EQ(Said(reading), "warning lp.rows-on-one-line 1:21");
}

TEST(LpAccepts, AConstantBeforeSubjectToOnOneLine)
{
    EXPECT_EQ(Read("max x + 5 st -x <= 4 end"),
              "max 5 + 1 x; R1: -inf <= -1 x <= 4; 0 <= x <= inf");
}

TEST(LpAccepts, ALineEndAfterARightHandSideEndsTheRow)
{
    EXPECT_EQ(Read("max x\nst\n x <= 4\n y >= 1\n - y >= -3\nend"),
              "max 0 + 1 x; R1: -inf <= 1 x <= 4; R2: 1 <= 1 y <= inf; R3: -3 <= -1 y <= inf; 0 <= "
              "x <= inf; "
              "0 <= y <= inf");
}

TEST(LpAccepts, LineEndsAnywhereElse)
{
    EXPECT_EQ(Read("max\n 2\n x\n +\n y\nst\n c1:\n x\n + y\n <=\n 4\nend"),
              "max 0 + 2 x + 1 y; c1: -inf <= 1 x + 1 y <= 4; 0 <= x <= inf; 0 <= y <= inf");
}

TEST(LpAccepts, EveryKindOfLineEndAndBlank)
{
    EXPECT_EQ(Read("max x\r\nst\r\n\tx\t<=\t4\r\nend\r\n"), kSmall);
    EXPECT_EQ(Read("max x\rst\r\\ comment\r x <= 4\rend"), kSmall);
    EXPECT_EQ(Read("\n\n\fmax x\v\nst\n\n x <= 4\n\n\nend\n\n"), kSmall);
}

TEST(LpAccepts, Comments)
{
    EXPECT_EQ(
        Read("\\ before\nmax x \\ after: + y\nst \\ \\ twice\n x \\ in between\n <= 4\nend\\"),
        kSmall);
}

TEST(LpAccepts, AByteOrderMarkWithoutCountingIt)
{
    EXPECT_EQ(Read("\xEF\xBB\xBFmax x\nst\n x <= 4\nend"), kSmall);
    EXPECT_EQ(Read("\xEF\xBB\xBFwax x\nst\n x <= 4\nend"), "error lp.no-objective 1:1");
}

TEST(LpAccepts, NamesOfSignsAndOfOtherLetters)
{
    const std::string name = "!\"#$%&(),.;?@_'{}~`|";
    EXPECT_EQ(Read("max " + name + "\nst\nend"),
              "max 0 + 1 " + name + "; 0 <= " + name + " <= inf");
    EXPECT_EQ(Read("max größe + 重さ\nst\n höchst: größe <= 4\nend"),
              "max 0 + 1 größe + 1 重さ; höchst: -inf <= 1 größe <= 4; 0 <= größe <= inf; 0 <= "
              "重さ <= inf");
    EXPECT_EQ(Read("max a/b\nst\nend"), "max 0 + 1 a/b; 0 <= a/b <= inf");
}

TEST(LpAccepts, ParenthesesInPairsAndPercentSignsWithin)
{
    for (const std::string name : {"x(1,2)", "(a)", "f(g(x))", "(a)(b)", "a%", "a%b"})
        EXPECT_EQ(Read("max " + name + "\nst\nend"),
                  "max 0 + 1 " + name + "; 0 <= " + name + " <= inf");
}

TEST(LpAccepts, NamesThatDifferInCaseOnlyWithAWarning)
{
    const ReadResult reading =
        ReadText("max Tables + tables + chairs\nst\n wood: Tables + TABLES <= 4"
                 "\n Wood: chairs <= 5\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model),
              "max 0 + 1 Tables + 1 tables + 1 chairs; wood: -inf <= 1 Tables + 1 TABLES <= 4; "
              "Wood: -inf <= 1 chairs <= 5; 0 <= Tables <= inf; 0 <= tables <= inf; "
              "0 <= chairs <= inf; 0 <= TABLES <= inf");
    EXPECT_EQ(Said(reading), "warning lp.names-in-other-case 1:14\n"
                             "warning lp.names-in-other-case 3:17\n"
                             "warning lp.names-in-other-case 4:2");
    EXPECT_EQ(reading.diagnostics[1].error.text,
              "'TABLES' and 'Tables' in line 1 are two variables");
    EXPECT_EQ(Said(ReadText("max Ab + aB1 + A\nst\nend")), "");
}

TEST(LpAccepts, ManyNamesThatDifferInCaseWithAShortReport)
{
    std::string text = "max 0\nst\n";
    for (int i = 0; i < 100; ++i)
        text += " x" + std::to_string(i) + " + X" + std::to_string(i) + " <= 1\n";
    const ReadResult reading = ReadText(text + "end");
    ASSERT_EQ(reading.diagnostics.size(), DiagnosticLog::kKeptPerCode + 1);
    EXPECT_EQ(reading.diagnostics.back().error.text, "90 more like these");
}

TEST(LpAccepts, LongNamesWithAWarningAbove255Bytes)
{
    const std::string allowed(255, 'a');
    EXPECT_EQ(Said(ReadText("max " + allowed + "\nst\nend")), "");
    const ReadResult reading = ReadText("max " + allowed + "aaa\nst\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(reading.model->VariableName(0), allowed + "aaa");
    EXPECT_EQ(Said(reading), "warning lp.long-name 1:5");
}

TEST(LpAccepts, ASemicolonInANameWithAWarning)
{
    EXPECT_EQ(Said(ReadText("max x;\nst\nend")), "warning lp.semicolon 1:5");
}

TEST(LpAccepts, TheNameOfTheModelInAComment)
{
    EXPECT_EQ(ReadText("\\Problem name: my model \nmax x\nst\nend").model->Name(), "my model");
    EXPECT_EQ(ReadText("\\* Problem: other *\\\nmax x\nst\nend").model->Name(), "other");
}

TEST(LpAccepts, ARowCalledAsTheObjectiveWithAWarning)
{
    EXPECT_EQ(Said(ReadText("max a: x\nst\n a: x <= 4\nend")),
              "warning lp.objective-name-taken 3:2");
}

TEST(LpAccepts, AColonAfterSubjectToWithAWarning)
{
    const ReadResult reading = ReadText("max x\nsubject to:\n x <= 4\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), kSmall);
    EXPECT_EQ(Said(reading), "warning lp.colon-after-section 2:11");
}

TEST(LpAccepts, AColonAfterTheSenseWithAWarning)
{
    const ReadResult reading = ReadText("maximize: x\nsubject to\n x <= 4\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model), kSmall);
    EXPECT_EQ(Said(reading), "warning lp.colon-after-section 1:9");
}

TEST(LpAccepts, AColonAfterBoundsOnALineOfItsOwnWithAWarning)
{
    const ReadResult reading = ReadText("min x\nst\n c: x + y >= -4\nbounds:\n x >= -2\nend");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(reading.model->RowCount(), 1U);
    EXPECT_EQ(reading.model->VariableLower()[0], -2.0);
    EXPECT_EQ(Said(reading), "warning lp.colon-after-section 4:7");
    const ReadResult labelled = ReadText("max x\nst\n bounds: x <= 4\nend");
    ASSERT_TRUE(labelled.Ok());
    EXPECT_EQ(labelled.model->RowName(0), "bounds");
}

/// As modelling layers write the names of indexed variables and rows.
TEST(LpAccepts, NamesWithIndicesInBrackets)
{
    const ReadResult reading = ReadText(
        "max 2 x[1] + 3x[a,-b] + f[0][1]_in\nst\n cap[1]: x[1] + x[a,-b]+ f[0][1]_in <= 4\n"
        "bounds\n x[1] <= 1\n x[a,-b] free\nend");
    ASSERT_TRUE(reading.Ok());
    const Model& model = *reading.model;
    ASSERT_EQ(model.VariableCount(), 3U);
    EXPECT_EQ(model.VariableName(0), "x[1]");
    EXPECT_EQ(model.VariableName(1), "x[a,-b]");
    EXPECT_EQ(model.VariableName(2), "f[0][1]_in");
    EXPECT_EQ(model.RowName(0), "cap[1]");
    EXPECT_EQ(model.VariableUpper()[0], 1.0);
    EXPECT_EQ(model.VariableLower()[1], -Infinity);
    EXPECT_EQ(Said(reading), "note lp.bracket-name 1:7\nnote lp.bracket-name 1:15\n"
                             "note lp.bracket-name 1:25\nnote lp.bracket-name 3:2");
}

TEST(LpAccepts, IntegersTakenForContinuousOnRequestWithAWarning)
{
    const ReadResult reading = ReadText(
        "max x + y + z\nst\nbounds\n x <= 7\n z <= 9\ngeneral\n x y\nbinary\n z\nend", true);
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(Written(*reading.model),
              "max 0 + 1 x + 1 y + 1 z; 0 <= x <= 7; 0 <= y <= inf; 0 <= z <= 1");
    EXPECT_EQ(Said(reading),
              "warning lp.relaxed 6:1\nwarning lp.bound-redefined 9:2\nwarning lp.relaxed 8:1");
}

TEST(LpAccepts, SectionsOfIntegersThatAreEmpty)
{
    EXPECT_EQ(Read("max x\nst\n x <= 4\ngeneral\nbinary\nend"), kSmall);
}

}  // namespace
}  // namespace nuv::test
