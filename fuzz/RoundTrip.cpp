// The way of a model through both writers and back.
#include "fuzz/RoundTrip.hpp"

#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/Mps/MpsReader.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Model/ModelBuilder.hpp"
#include "tests/model/SameModel.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace fuzz
{
namespace
{

using namespace nuv;

/// The model with every -0 as 0: the LP format does not keep the sign of a zero.
Model WithoutSignsOfZero(const Model& model)
{
    ModelBuilder builder(model);
    builder.SetObjectiveConstant(model.ObjectiveConstant() + 0.0);
    for (std::uint32_t column = 0; column < model.VariableCount(); ++column)
    {
        builder.SetObjectiveCoefficient(column, model.Objective()[column] + 0.0);
        builder.SetVariableBounds(
            column, {model.VariableLower()[column] + 0.0, model.VariableUpper()[column] + 0.0});
    }
    for (std::uint32_t row = 0; row < model.RowCount(); ++row)
        builder.SetRowBounds(row, {model.RowLower()[row] + 0.0, model.RowUpper()[row] + 0.0});
    return builder.Take();
}

std::string TextOf(const ReadResult& reading)
{
    std::string text;
    for (const Diagnostic& diagnostic : reading.diagnostics)
        text += Render(diagnostic);
    return text;
}

void ExpectBackFromLp(const Model& model)
{
    const WriteResult writing = WriteLp(model);
    if (!writing.Ok())
        return;
    const ReadResult back = ReadLp(*writing.text, "back.lp");
    ASSERT_TRUE(back.Ok()) << TextOf(back) << *writing.text;
    if (writing.diagnostics.empty())
    {
        EXPECT_EQ(test::Difference(WithoutSignsOfZero(model), WithoutSignsOfZero(*back.model)), "")
            << *writing.text;
    }
    EXPECT_EQ(WriteLp(*back.model).text, writing.text);
}

void ExpectBackFromMps(const Model& model)
{
    const WriteResult writing = WriteMps(model);
    if (!writing.Ok())
        return;
    const ReadResult back = ReadMps(*writing.text, "back.mps");
    ASSERT_TRUE(back.Ok()) << TextOf(back) << *writing.text;
    if (writing.diagnostics.empty() && !model.ObjectiveName().empty())
    {
        EXPECT_EQ(test::Difference(model, *back.model), "") << *writing.text;
    }
    EXPECT_EQ(WriteMps(*back.model).text, writing.text);
}

}  // namespace

void ExpectRoundTrips(const ReadResult& reading)
{
    if (!reading.Ok())
    {
        EXPECT_FALSE(reading.GetError().text.empty());
        return;
    }
    EXPECT_FALSE(reading.model->Failure().has_value());
    ExpectBackFromLp(*reading.model);
    ExpectBackFromMps(*reading.model);
}

}  // namespace fuzz
