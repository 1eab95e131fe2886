// What the reader of the CPLEX-LP format refuses: each with its code, its line and its column.
#include "tests/io/lp/LpText.hpp"

#include <gtest/gtest.h>

namespace nuv::test
{
namespace
{

struct Case
{
    const char* title;
    std::string text;
    std::string error;
};

void PrintTo(const Case& value, std::ostream* out)
{
    *out << value.title;
}

class LpRefuses : public testing::TestWithParam<Case>
{
};

TEST_P(LpRefuses, WithItsPlaceAndAHint)
{
    const ReadResult reading = ReadText(GetParam().text);
    EXPECT_FALSE(reading.Ok());
    EXPECT_FALSE(reading.model.has_value());
    ASSERT_FALSE(reading.diagnostics.empty());
    ReadResult last;
    last.diagnostics = {reading.diagnostics.back()};
    EXPECT_EQ(Said(last), "error " + GetParam().error) << Render(reading.diagnostics.back());
    EXPECT_EQ(reading.GetError().code, last.GetError().code) << "there is one error";
    EXPECT_FALSE(reading.GetError().hint.empty());
    EXPECT_EQ(reading.GetError().file, "model.lp");
}

const Case kCases[] = {
    // What is no model.
    {"an empty file", "", "lp.empty 1:1"},
    {"a file of blanks", " \n\n\t\n", "lp.empty 1:1"},
    {"a file of comments", "\\ nothing\n\\ at all", "lp.empty 1:1"},
    {"words", "blah blah not a good file", "lp.no-objective 1:1"},
    {"binary", std::string("\x7F\x45LF\0\0\x01", 7), "lp.binary 1:1"},
    {"a zero byte within", std::string("max x\nst\n x \0 <= 4\nend", 22), "lp.binary 3:4"},
    {"UTF-16", std::string("\xFF\xFEm\0a\0x\0", 8), "lp.utf-16 1:1"},
    {"an MPS file", "NAME  TEST\nROWS\n N  COST\n", "lp.looks-like-mps 1:1"},
    {"the lp_solve language", "max: 3x+2y;\nc1: x + y <= 4;\n", "lp.other-dialect 1:4"},
    {"the lp_solve language with a comment", "/* a */\nmin: x;\n", "lp.other-dialect 1:1"},
    {"the lp_solve language without an objective", "x + y >= 2;\n", "lp.other-dialect 1:1"},
    {"no objective", "subject to\n x <= 4\nend", "lp.no-objective 1:1"},
    {"no Subject To", "max x\n x <= 4\nend", "lp.missing-sign 2:2"},
    {"no Subject To before a label", "max x\n c: x <= 4\nend", "lp.several-objectives 2:2"},
    {"no Subject To before a relation", "max x <= 4\nend", "lp.no-constraints 1:7"},
    {"several objectives", "min\n a: x\n b: y\nst\nend", "lp.several-objectives 3:2"},
    {"several objectives announced", "min multi-objectives\n a: x\nst\nend",
     "lp.refused-section 1:5"},
    {"text after End", "max x\nst\n x <= 4\nend\n y <= 5\n", "lp.text-after-end 5:2"},
    {"an unknown section", "max x\nst\n x <= 4\nfoo\n x <= 5\nend", "lp.unknown-section 4:1"},
    {"an unknown section of two words", "max x\nst\n x <= 4\nfoo bar\n x <= 5\nend",
     "lp.missing-sign 4:5"},
    // Rows.
    {"two relations with the constant in between", "max x\nst\n R: x + y >= 1 <= 5\nend",
     "lp.second-relation 3:16"},
    {"a range in both directions", "max x\nst\n 1 <= x >= 5\nend", "lp.mixed-relations 3:9"},
    {"a range of an equation", "max x\nst\n 1 = x = 5\nend", "lp.mixed-relations 3:8"},
    {"a range without constants", "max x\nst\n 1 <= x + y <= z\nend",
     "lp.range-without-constants 3:16"},
    {"a duplicate name", "max x\nst\n c1: x <= 4\n c2: x <= 5\n c1: x <= 6\nend",
     "lp.duplicate-row 5:2"},
    {"a row without a relation", "max x\nst\n c1: x + y\n c2: x <= 4\nend",
     "lp.missing-relation 3:6"},
    {"a row that the file ends in", "max x\nst\n x +", "lp.unfinished 3:5"},
    {"a right-hand side that the file ends in", "max x\nst\n x <=\n", "lp.unfinished 4:1"},
    {"a label without a row", "max x\nst\n c1:\n", "lp.unfinished 4:1"},
    {"two colons", "max x\nst\n c1:: x <= 4\nend", "lp.double-colon 3:4"},
    {"a colon within", "max x\nst\n c1: x + y: <= 4\nend", "lp.unexpected-colon 3:11"},
    {"an indicator row", "max x\nst\n c: b = 1 -> x <= 5\nend", "lp.indicator 3:11"},
    {"infinity on the wrong side", "max x\nst\n x >= inf\nend", "lp.impossible-bound 3:7"},
    {"an equation with infinity", "max x\nst\n x = inf\nend", "lp.impossible-bound 3:6"},
    {"infinity in a sum", "max x\nst\n x + inf <= 4\nend", "lp.infinite-term 3:6"},
    {"a term after infinity", "max x\nst\n x <= inf + 4\nend", "lp.infinite-term 3:13"},
    {"infinity with a coefficient", "max x\nst\n 2 inf <= 4\nend", "lp.infinite-term 3:4"},
    // Terms.
    {"a quotient of a decimal", "max x\nst\n 1.5/2 x <= 4\nend", "lp.quotient 3:5"},
    {"a quotient with blanks", "max x\nst\n 1 / 2 x <= 4\nend", "lp.quotient 3:4"},
    {"a quotient by zero", "max x\nst\n 1/0 x <= 4\nend", "lp.quotient 3:3"},
    {"a quotient of a variable", "max x\nst\n x/2 <= 4\nend", "lp.quotient 3:2"},
    {"a product", "max x\nst\n 2 * x <= 4\nend", "lp.product 3:4"},
    {"two variables side by side", "max x\nst\n x y <= 4\nend", "lp.missing-sign 3:4"},
    {"a number behind its variable", "max x\nst\n x 2 <= 4\nend", "lp.missing-sign 3:4"},
    {"a square", "max x\nst\n x^2 <= 4\nend", "lp.quadratic 3:3"},
    {"a quadratic objective", "min [ x^2 ] / 2\nst\nend", "lp.quadratic 1:5"},
    {"brackets without a name", "max [1]\nst\nend", "lp.quadratic 1:5"},
    {"brackets without an end", "max x[1\nst\nend", "lp.quadratic 1:6"},
    {"brackets without an index", "max x[]\nst\nend", "lp.quadratic 1:6"},
    {"brackets with a square", "max x[y^2]\nst\nend", "lp.quadratic 1:6"},
    {"brackets with a product", "max x[y*z]\nst\nend", "lp.quadratic 1:6"},
    {"brackets with a blank", "max x[y z]\nst\nend", "lp.quadratic 1:6"},
    {"a colon and semicolons", "maximise: x\nst\n c: x <= 4; \nend", "lp.other-dialect 1:9"},
    {"a name that starts with a digit", "max 3 1x\nst\nend", "lp.name-starts-with-digit 1:7"},
    {"not a number as a coefficient", "max x\nst\n nan x <= 4\nend", "lp.not-a-number 3:2"},
    {"not a number on the right", "max x\nst\n x <= NaN\nend", "lp.not-a-number 3:7"},
    {"not a number in Bounds", "max x\nst\nbounds\n x <= nan\nend", "lp.not-a-number 4:7"},
    {"a number beyond double", "max x\nst\n x <= 1e400\nend", "lp.number-out-of-range 3:7"},
    {"a number below double", "max x\nst\n 1e-400 x <= 4\nend", "lp.number-out-of-range 3:2"},
    {"a quotient below double", "max x\nst\n 1/1" + std::string(400, '0') + " x <= 4\nend",
     "lp.number-out-of-range 3:2"},
    {"a bound beyond double", "max x\nst\nbounds\n x <= 1e999\nend", "lp.number-out-of-range 4:7"},
    {"coefficients that add up beyond double", "max x\nst\n 1e308 x + 1e308 x <= 4\nend",
     "lp.number-too-large 3:18"},
    {"constants that add up beyond double", "max x\nst\n x + 1e308 + 1e308 <= 4\nend",
     "lp.number-too-large 3:14"},
    {"a product with a sum", "max x\nst\n 2 (x + y) <= 4\nend", "lp.unbalanced-parenthesis 3:4"},
    {"a closing parenthesis", "max x\nst\n x + y) <= 4\nend", "lp.unbalanced-parenthesis 3:6"},
    {"parentheses the wrong way round", "max x)y(\nst\nend", "lp.unbalanced-parenthesis 1:5"},
    {"a label with half a parenthesis", "max x\nst\n c(1: x <= 4\nend",
     "lp.unbalanced-parenthesis 3:2"},
    {"a percentage", "max x\nst\n x <= 10%\nend", "lp.percentage 3:9"},
    {"a percentage of a variable", "max x\nst\n 10 % x <= 4\nend", "lp.percentage 3:5"},
    {"a name that starts with a percent sign", "max %x\nst\nend", "lp.percentage 1:5"},
    {"a comma in a number", "max x\nst\n 1,5 x <= 4\nend", "lp.comma-in-number 3:3"},
    {"a semicolon after a number", "max x\nst\n x <= 4;\nend", "lp.semicolon 3:8"},
    {"a sign that only looks right", "max x\nst\n x \xE2\x89\xA4 4\nend", "lp.look-alike 3:4"},
    {"a sign that only looks right, glued",
     "max x\nst\n x\xE2\x89\xA4"
     "4\nend",
     "lp.look-alike 3:3"},
    {"a long minus", "max x\nst\n x \xE2\x88\x92 y <= 4\nend", "lp.look-alike 3:4"},
    // Bounds.
    {"a coefficient in Bounds", "max x\nst\nbounds\n 3 x <= 5\nend",
     "lp.coefficient-in-bounds 4:4"},
    {"a variable as a bound", "max x\nst\nbounds\n x <= y\nend", "lp.variable-as-bound 4:7"},
    {"a label in Bounds", "max x\nst\nbounds\n b: x <= 5\nend", "lp.label-in-bounds 4:3"},
    {"three bounds", "max x\nst\nbounds\n 1 <= x <= 3 <= 5\nend", "lp.unexpected 4:14"},
    {"a second relation", "max x\nst\nbounds\n x <= 3 <= 5\nend", "lp.second-relation 4:9"},
    {"bounds in both directions", "max x\nst\nbounds\n 1 <= x >= 5\nend", "lp.mixed-relations 4:9"},
    {"an infinite lower bound", "max x\nst\nbounds\n x >= inf\nend", "lp.impossible-bound 4:7"},
    {"a variable fixed at infinity", "max x\nst\nbounds\n x = 1e30\nend",
     "lp.impossible-bound 4:6"},
    {"an exclamation mark", "max x\nst\nbounds\n x != 10\nend", "lp.bad-bound 4:4"},
    {"a bound without a relation", "max x\nst\nbounds\n x 10\nend", "lp.missing-sign 4:4"},
    {"a bound that the file ends in", "max x\nst\nbounds\n x <=", "lp.unfinished 4:6"},
    // Sections of other kinds of models.
    {"General", "max x\nst\n x <= 4\nGeneral\n x\nend", "lp.refused-section 4:1"},
    {"Integers", "max x\nst\n x <= 4\nIntegers\n x\nend", "lp.refused-section 4:1"},
    {"Binary", "max x\nst\n x <= 4\n BINARY x\nend", "lp.refused-section 4:2"},
    {"Semi-Continuous", "max x\nst\n x <= 4\nSemi-Continuous\n x\nend", "lp.refused-section 4:1"},
    {"SOS", "max x\nst\n x <= 4\nSOS\n s: S1:: x:1\nend", "lp.refused-section 4:1"},
    {"lazy constraints", "max x\nst\n x <= 4\nlazy constraints\n x <= 3\nend",
     "lp.refused-section 4:1"},
    {"user cuts", "max x\nst\n x <= 4\nuser cuts\n x <= 3\nend", "lp.refused-section 4:1"},
    {"general constraints", "max x\nst\n x <= 4\ngeneral constraints\n y = MAX(x)\nend",
     "lp.refused-section 4:1"},
    {"a piecewise-linear objective", "max x\nst\n x <= 4\nPWLObj\n x: (1, 1)\nend",
     "lp.refused-section 4:1"},
    {"a number in a list of integers", "max x\nst\n x <= 4\ngeneral\n 3\nend",
     "lp.missing-sign 5:2"},
    // Places.
    {"after CR LF", "max x\r\nst\r\n x y <= 4\r\nend", "lp.missing-sign 3:4"},
    {"after lone CR", "max x\rst\r x y <= 4\rend", "lp.missing-sign 3:4"},
    {"after tabs, each one column", "max x\nst\n\tc1:\tx\ty <= 4\nend", "lp.missing-sign 3:8"},
    {"after letters of two and three bytes", "max x\nst\n größe + 重 y <= 4\nend",
     "lp.missing-sign 3:12"},
};

INSTANTIATE_TEST_SUITE_P(Lp, LpRefuses, testing::ValuesIn(kCases));

TEST(LpRefusesText, ADuplicateNameNamesBothLines)
{
    const ReadResult reading = ReadText("max x\nst\n c1: x <= 4\n c2: x <= 5\n c1: x <= 6\nend");
    EXPECT_EQ(reading.GetError().text, "a second row called 'c1'; the first is in line 3");
    EXPECT_EQ(reading.GetError().line, 5u);
}

TEST(LpRefusesText, ANumberThatIsTooSmallIsNotCalledTooLarge)
{
    for (const std::string& small :
         {std::string("1e-400"), "0." + std::string(400, '0') + "1", "1/1" + std::string(400, '0')})
    {
        const Error error = ReadText("max x\nst\n " + small + " x <= 4\nend").GetError();
        EXPECT_NE(error.text.find("is nearer to 0 than any double"), std::string::npos) << small;
        EXPECT_EQ(error.hint, "write 0, or scale the model");
    }
    EXPECT_EQ(ReadText("max x\nst\n x <= 1e400\nend").GetError().text,
              "1e400 is beyond the largest double");
    EXPECT_EQ(ReadText("max x\nst\n x <= 1" + std::string(400, '0') + "/3\nend").GetError().hint,
              "scale the model, or write inf in a bound");
}

TEST(LpRefusesText, HintsThatSayWhatIsWritten)
{
    const auto hint = [](const std::string& text) { return ReadText(text).GetError().hint; };
    for (const std::string mark : {"#", "%", "!"})
        EXPECT_EQ(hint(mark + " a comment\nmax x\nst\n x <= 4\nend"),
                  "comments start with a backslash here");
    EXPECT_EQ(hint("text\nmax x\nst\n x <= 4\nend"),
              "if this is not an LP file, name it after its kind");
    for (const std::string relation : {"< =", "= >", "<= ="})
        EXPECT_NE(hint("max x\nst\n x " + relation + " 4\nend").find("without a blank within"),
                  std::string::npos)
            << relation;
    EXPECT_EQ(hint("max x\nst\n x + <= 4\nend"), "write sums such as 2 x + 3 y");
}

TEST(LpRefusesText, AnErrorInARowIsReportedBeforeWhatFollowsIt)
{
    // Terms are looked up in groups; the first trouble in the file still comes first.
    EXPECT_EQ(Read("max x\nst\n nan + x y <= 4\nend"), "error lp.not-a-number 3:2");
}

}  // namespace
}  // namespace nuv::test
