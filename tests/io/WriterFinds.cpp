// What fuzzing found in the writers: models that were written in words that the readers took for
// another model.
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/Mps/MpsReader.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Model/ModelBuilder.hpp"
#include "tests/model/SameModel.hpp"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace nuv;
using nuv::test::Difference;

Model ThroughLp(const Model& model)
{
    return *ReadLp(*WriteLp(model).text, "m").model;
}

std::string CodeOf(const WriteResult& writing)
{
    return writing.diagnostics.empty() ? "" : writing.diagnostics[0].error.code;
}

TEST(WriterFinds, ANameThatCannotEndAsItDoesEndsInAnUnderscore)
{
    Model model;
    const Variable x = model.AddVariable("x;");
    (void)model.Add("c;", x <= 1);
    EXPECT_EQ(ThroughLp(model).VariableName(0), "x_");
    EXPECT_EQ(ThroughLp(model).RowName(0), "c_");
    EXPECT_EQ(*WriteLp(ThroughLp(model)).text, *WriteLp(model).text);
}

TEST(WriterFinds, AFixedNameIsNotCutBehindABlank)
{
    Model model;
    (void)model.AddVariable("seven c and more");
    const WriteResult writing = WriteMps(model, MpsForm::Fixed);
    ReadOptions options;
    options.mpsForm = MpsForm::Fixed;
    EXPECT_EQ(ReadMps(*writing.text, "m", options).model->VariableName(0), "_seven c");
    Model both;
    (void)both.AddVariable(" ;");
    EXPECT_EQ(ReadMps(*WriteMps(both, MpsForm::Fixed).text, "m", options).model->VariableName(0),
              "_ ;");
}

TEST(WriterFinds, RowsOfAModelWithoutVariablesKeepTheirLimits)
{
    for (const Bounds bounds : {Bounds{3, Infinity}, Bounds{-Infinity, 4}, Bounds{-5, -5},
                                Bounds{0, Infinity}, Bounds{-Infinity, 0}})
    {
        ModelBuilder builder;
        (void)builder.AppendRow("r", bounds);
        const Model model = builder.Take();
        EXPECT_EQ(Difference(model, ThroughLp(model)), "") << *WriteLp(model).text;
    }
}

TEST(WriterFinds, AModelsNameIsKeptOrReported)
{
    Model model;
    model.SetObjectiveName("obj");
    model.SetName("a *\\");
    EXPECT_EQ(CodeOf(WriteLp(model)), "");
    EXPECT_EQ(Difference(model, ThroughLp(model)), "");
    model.SetName("two\nlines \t");
    EXPECT_EQ(CodeOf(WriteLp(model)), "lp.renamed-model");
    EXPECT_EQ(ThroughLp(model).Name(), "two lines");
    EXPECT_EQ(CodeOf(WriteMps(model)), "mps.renamed-model");
    EXPECT_EQ(ReadMps(*WriteMps(model).text, "m").model->Name(), "two_lines _");
}

}  // namespace
