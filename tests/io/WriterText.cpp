// What the writers write, to the letter: two small models against files that were looked at, and
// each thing that a format does not hold.
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/Mps/MpsReader.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Io/NumberText.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "tests/io/mps/MpsText.hpp"
#include "tests/model/SameModel.hpp"

#include <gtest/gtest.h>

#include <string>

#include <filesystem>
#include <sstream>

#include <unistd.h>

namespace
{

using namespace nuv;
using namespace nuv::test;

const std::string kFolder = NUV_TEST_MODELS "/written/";

std::string Held(const std::string& file)
{
    const Result<std::string> text = ReadTextFile(kFolder + file);
    return text.Ok() ? *text : text.GetError().text;
}

/// "warning code", one a line.
std::string SaidBy(const WriteResult& writing)
{
    std::string said;
    for (const Diagnostic& diagnostic : writing.diagnostics)
    {
        said += said.empty() ? "" : "\n";
        said += std::string(SeverityName(diagnostic.severity)) + " " + diagnostic.error.code;
    }
    return said;
}

Model Factory()
{
    Model model;
    model.SetName("factory");
    model.SetObjectiveName("profit");
    const Variable chairs = model.AddVariable("chairs");
    const Variable tables = model.AddVariable("tables", {0, 40});
    (void)model.Add("wood", 2 * chairs + 5 * tables <= 300);
    (void)model.Add("labour", 4 * chairs + 3 * tables <= 240);
    model.Maximize(30 * chairs + 70 * tables);
    return model;
}

/// Every kind of row and bound, an objective's constant, and a variable that occurs in no row.
Model Everything()
{
    Model model;
    model.SetName("everything");
    model.SetObjectiveName("cost");
    const Variable a = model.AddVariable("a", {-Infinity, Infinity});
    const Variable b = model.AddVariable("b", {-Infinity, -1.5});
    const Variable c = model.AddVariable("c", {-2, 7});
    const Variable d = model.AddVariable("d", {4, 4});
    const Variable e = model.AddVariable("e", {0, -3});
    const Variable f = model.AddVariable("f", {0.1, Infinity});
    (void)model.AddVariable("idle");
    (void)model.Add("equal", a + b - c == 1e-7);
    (void)model.Add("range", Range(-0.125, 0.3 * d - 1e20 * e, 0.25));
    (void)model.Add("least", f - a >= 12);
    (void)model.Add("loose", Range(-Infinity, f + e, Infinity));
    (void)model.Add("empty", Range(-1, Expression(), 2));
    model.Minimize(0.5 * c - d + 17.25);
    return model;
}

TEST(WrittenText, IsWhatTheFilesHold)
{
    EXPECT_EQ(*WriteLp(Factory()).text, Held("factory.lp"));
    EXPECT_EQ(*WriteMps(Factory()).text, Held("factory.mps"));
    EXPECT_EQ(*WriteLp(Everything()).text, Held("everything.lp"));
    EXPECT_EQ(*WriteMps(Everything()).text, Held("everything.mps"));
}

TEST(WrittenText, OfEverythingReadsBack)
{
    const Model model = Everything();
    EXPECT_EQ(SaidBy(WriteLp(model)), "");
    EXPECT_EQ(SaidBy(WriteMps(model)), "");
    EXPECT_EQ(Difference(model, *ReadLp(*WriteLp(model).text, "m").model), "");
    EXPECT_EQ(Difference(model, *ReadMps(*WriteMps(model).text, "m").model), "");
    const WriteResult fixed = WriteMps(model, MpsForm::Fixed);
    ASSERT_TRUE(fixed.Ok()) << SaidBy(fixed);
    ReadOptions options;
    options.mpsForm = MpsForm::Fixed;
    EXPECT_EQ(Difference(model, *ReadMps(*fixed.text, "m", options).model), "");
}

TEST(WrittenText, OfAnEmptyModelReadsBack)
{
    Model model;
    model.SetObjectiveName("obj");
    EXPECT_EQ(*WriteLp(model).text, "Minimize\n obj:\nSubject To\nEnd\n");
    EXPECT_EQ(*WriteMps(model).text, "NAME\nROWS\n N  obj\nCOLUMNS\nENDATA\n");
    EXPECT_EQ(Difference(model, *ReadLp(*WriteLp(model).text, "m").model), "");
    EXPECT_EQ(Difference(model, *ReadMps(*WriteMps(model).text, "m").model), "");
}

/// One row over variables of these names, under the name of the last.
Model Named(std::initializer_list<const char*> names)
{
    Model model;
    model.SetObjectiveName("obj");
    Expression sum;
    for (const char* const name : names)
        sum += model.AddVariable(name);
    (void)model.Add(*(names.end() - 1), sum <= 1);
    model.Minimize(sum);
    return model;
}

std::string NamesIn(const Model& model)
{
    std::string names;
    for (std::uint32_t column = 0; column < model.VariableCount(); ++column)
        names += std::string(column == 0 ? "" : " ") + "<" +
                 std::string(model.VariableName(column)) + ">";
    return names + " row <" + std::string(model.RowName(0)) + ">";
}

std::string NamesThroughLp(const Model& model)
{
    return NamesIn(*ReadLp(*WriteLp(model).text, "m").model);
}

std::string NamesThroughMps(const Model& model, MpsForm form = MpsForm::ByContent)
{
    return NamesIn(*ReadMps(*WriteMps(model, form).text, "m").model);
}

TEST(WrittenNames, ThatLpDoesNotHoldBecomeOnesThatItDoes)
{
    const Model model = Named({"x[1]", "x_1_", "2x", ".y", "a b", "free", "st", "inf", "x+y", "m/2",
                               "\xE2\x88\x92", "\xC3\xA9"});
    EXPECT_EQ(NamesThroughLp(model),
              "<x_1__2> <x_1_> <_2x> <_.y> <a_b> <_free> <_st> <_inf> <x_y> <m_2> <_> <\xC3\xA9> "
              "row <\xC3\xA9>");
    EXPECT_EQ(SaidBy(WriteLp(model)), "warning lp.renamed-variable");
    EXPECT_EQ(WriteLp(model).diagnostics[0].error.text,
              "10 variables are renamed, since the format does not hold their names: 'x[1]' as "
              "x_1__2, '2x' as _2x, '.y' as _.y, 'a b' as a_b, 'free' as _free and 5 more");
}

TEST(WrittenNames, WithHalfAParenthesisOrAPercentSignInFrontChangeInLp)
{
    const Model model = Named({"x(1)", "x(", "(x", ")a(", "_(x(1)", "%", "%x", "y%", "f(a"});
    EXPECT_EQ(NamesThroughLp(model),
              "<x(1)> <x_> <_x> <_a_> <__x_1_> <_%> <_%x> <y%> <f_a> row <f_a>");
    EXPECT_EQ(NamesThroughMps(model),
              "<x(1)> <x(> <(x> <)a(> <_(x(1)> <%> <%x> <y%> <f(a> row <f(a>");
}

TEST(WrittenNames, ThatFreeMpsDoesNotHoldBecomeOnesThatItDoes)
{
    const Model model = Named({"a b", "a_b", "$x", "'MARKER'", "a\tb", "[1]+2", "a long name"});
    EXPECT_EQ(NamesThroughMps(model), "<a_b_2> <a_b> <_$x> <_'MARKER'> <a_b_3> <[1]+2> "
                                      "<a_long_name> row <a_long_name>");
    EXPECT_EQ(SaidBy(WriteMps(model)), "warning mps.renamed-variable\nwarning mps.renamed-row");
}

TEST(WrittenNames, WithBlanksStayWhereFixedMpsHoldsAll)
{
    const Model model = Named({"a b", "c  d 5", "x"});
    EXPECT_EQ(NamesThroughMps(model), "<a b> <c  d 5> <x> row <x>");
    EXPECT_EQ(SaidBy(WriteMps(model)), "");
    EXPECT_EQ(NamesThroughMps(model, MpsForm::Free), "<a_b> <c__d_5> <x> row <x>");
}

TEST(WrittenNames, TooLongForFixedMpsAreCut)
{
    const Model model = Named({"production1", "production2", "product", "short"});
    EXPECT_EQ(NamesThroughMps(model, MpsForm::Fixed),
              "<producti> <produc_2> <product> <short> row <short>");
    const auto hint = [](const Model& of)
    { return WriteMps(of, MpsForm::Fixed).diagnostics[0].error.hint; };
    EXPECT_NE(hint(model).find("at most 8 bytes"), std::string::npos) << hint(model);
    EXPECT_EQ(hint(Named({"$a"})),
              "a character that the format does not hold becomes an underscore");
    EXPECT_EQ(NamesThroughMps(model), "<production1> <production2> <product> <short> row <short>");
}

TEST(WrittenNames, OfTheObjectiveMakeWayForRows)
{
    Model model = Named({"x", "cost"});
    model.SetObjectiveName("cost");
    const WriteResult writing = WriteMps(model);
    EXPECT_EQ(SaidBy(writing), "warning mps.renamed-objective");
    EXPECT_EQ(ReadMps(*writing.text, "m").model->ObjectiveName(), "cost_");
    model.SetObjectiveName("");
    EXPECT_EQ(SaidBy(WriteMps(model)), "");
    EXPECT_EQ(ReadMps(*WriteMps(model).text, "m").model->ObjectiveName(), "obj");
    EXPECT_EQ(ReadLp(*WriteLp(model).text, "m").model->ObjectiveName(), "");
}

TEST(WrittenLimits, ThatAFormatTakesForInfinityAreReported)
{
    Model model;
    const Variable x = model.AddVariable("x", {-1e35, 1e30});
    (void)model.Add("r", x <= 1e31);
    EXPECT_EQ(SaidBy(WriteLp(model)), "warning lp.infinite-number\nwarning lp.infinite-number\n"
                                      "warning lp.infinite-number");
    EXPECT_EQ(SaidBy(WriteMps(model)), "warning mps.infinite-number\nwarning mps.infinite-number\n"
                                       "warning mps.infinite-number");
    for (const ReadResult& back :
         {ReadLp(*WriteLp(model).text, "m"), ReadMps(*WriteMps(model).text, "m")})
    {
        EXPECT_EQ(back.model->RowUpper()[0], Infinity);
        EXPECT_EQ(back.model->VariableLower()[0], -Infinity);
        EXPECT_EQ(back.model->VariableUpper()[0], Infinity);
    }
}

TEST(WrittenLimits, ThatNoNumberKeepsThereAreErrors)
{
    Model model;
    (void)model.AddVariable("x", {1e30, Infinity});
    EXPECT_EQ(SaidBy(WriteLp(model)), "error lp.infinite-number");
    EXPECT_FALSE(WriteLp(model).Ok());
    EXPECT_EQ(SaidBy(WriteMps(model)), "error mps.infinite-number");
    EXPECT_FALSE(WriteMps(model).Ok());
}

TEST(WrittenLimits, ThatContradictEachOtherAreForLpOnly)
{
    Model model;
    model.SetObjectiveName("obj");
    const Variable x = model.AddVariable("x");
    (void)model.Add("r", Range(2, 1.0 * x, 1));
    EXPECT_EQ(Difference(model, *ReadLp(*WriteLp(model).text, "m").model), "");
    EXPECT_EQ(SaidBy(WriteMps(model)), "error mps.contradictory-row");
    EXPECT_FALSE(WriteMps(model).Ok());
}

/// No two limits that the format holds are too far apart for a range.
TEST(WrittenLimits, FarApartAreARangeOrAnInfinity)
{
    Model model;
    model.SetObjectiveName("obj");
    const Variable x = model.AddVariable("x");
    (void)model.Add("r", Range(-0.99e30, 1.0 * x, 0.99e30));
    EXPECT_EQ(SaidBy(WriteMps(model)), "");
    EXPECT_EQ(Difference(model, *ReadMps(*WriteMps(model).text, "m").model), "");
    (void)model.Add("s", Range(1e308, 1.0 * x, 1.5e308));
    EXPECT_EQ(SaidBy(WriteMps(model)), "warning mps.infinite-number");
    EXPECT_EQ(ReadMps(*WriteMps(model).text, "m").model->RowLower()[1], 1e308);
}

TEST(WrittenNumbers, ThatDoNotFitFixedMpsAreAnError)
{
    Model model;
    const Variable x = model.AddVariable("x");
    model.Minimize(-1.23456789012345 * x);
    const WriteResult writing = WriteMps(model, MpsForm::Fixed);
    EXPECT_FALSE(writing.Ok());
    EXPECT_EQ(SaidBy(writing), "error mps.wide-field");
    EXPECT_TRUE(WriteMps(model).Ok());
}

TEST(WrittenNumbers, AreTheShortestThatReadBack)
{
    EXPECT_EQ(NumberText(0.1), "0.1");
    EXPECT_EQ(NumberText(-1e22), "-1e+22");
    EXPECT_EQ(NumberText(5e-324), "5e-324");
    EXPECT_EQ(NumberText(-2.2250738585072014e-308), "-2.2250738585072014e-308");
    EXPECT_EQ(NumberText(Infinity), "inf");
    EXPECT_EQ(NumberText(-0.0), "-0");
}

TEST(WrittenText, LeavesZerosOutOfRowsOfLpWithANote)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y");
    (void)model.Add("r", 0 * x + y <= 1);
    const WriteResult lp = WriteLp(model);
    EXPECT_EQ(SaidBy(lp), "note lp.zero-coefficient");
    EXPECT_EQ(ReadLp(*lp.text, "m").model->NonzeroCount(), 1u);
    EXPECT_EQ(ReadMps(*WriteMps(model).text, "m").model->NonzeroCount(), 2u);
}

TEST(WrittenText, HasLinesOfBoundedLength)
{
    Model model;
    Expression sum;
    for (int i = 0; i < 200; ++i)
        sum += (1.0 / (i + 3)) * model.AddVariable("variable" + std::to_string(i));
    (void)model.Add("r", Range(-1, sum, 1));
    model.Minimize(sum);
    const std::string text = *WriteLp(model).text;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin))
    {
        EXPECT_LE(end - begin, 80u);
        begin = end + 1;
    }
}

TEST(Model, PrintsItselfAsLp)
{
    Model model;
    const Variable x = model.AddVariable();
    model.Add(3 * x + model.AddVariable() <= 4);
    model.Maximize(2 * x);
    EXPECT_EQ(ToLp(model), *WriteLp(model).text);
    std::ostringstream out;
    out << model;
    EXPECT_EQ(out.str(), ToLp(model));
    model.Add("beyond", x >= 1e31);
    EXPECT_EQ(ToLp(model).substr(0, 2), "\\ ") << ToLp(model);
    EXPECT_NE(ToLp(model).find("beyond"), std::string::npos);
}

TEST(Model, IsWrittenToAFileAndReadFromIt)
{
    Model model;
    const Variable x = model.AddVariable("x", {-1, 5});
    model.Add("row", x + 2 * model.AddVariable("y") >= 4);
    model.Minimize(x);
    model.SetObjectiveName("obj");
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    const std::string path = folder / ("nuv-model-" + std::to_string(getpid()));
    for (const std::string ending : {".lp", ".mps", ".MPS", ""})
    {
        SCOPED_TRACE(ending);
        ASSERT_FALSE(model.Write(path + ending).has_value());
        const Result<Model> read = Model::Read(path + ending);
        const Result<std::string> text = ReadTextFile(path + ending);
        std::filesystem::remove(path + ending);
        ASSERT_TRUE(read.Ok()) << read.GetError().text;
        EXPECT_EQ(*WriteLp(*read).text, *WriteLp(model).text);
        EXPECT_EQ(text->find("ROWS") != std::string::npos, ending.size() == 4);
    }
}

TEST(Model, SaysWhyItIsNeitherWrittenNorRead)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const std::optional<Error> nowhere = model.Write("/nowhere/at all.lp");
    ASSERT_TRUE(nowhere.has_value());
    EXPECT_EQ(nowhere->code, "file.unwritable");
    EXPECT_EQ(nowhere->file, "/nowhere/at all.lp");
    EXPECT_NE(nowhere->text.find("No such file"), std::string::npos) << nowhere->text;
    EXPECT_EQ(model.Write("/dev/full")->code, "file.unwritable");
    model.Add("beyond", x >= 1e31);
    EXPECT_EQ(model.Write("/nowhere/at all.lp")->code, "lp.infinite-number");
    model.AddVariable("x");
    EXPECT_EQ(model.Write("/nowhere/at all.lp")->code, "model.duplicate-variable");
    EXPECT_EQ(Model::Read("/nowhere/at all.lp").GetError().code, "file.missing");
}

}  // namespace
