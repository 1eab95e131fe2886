// The normal form that tests compare models in.
#include "tests/model/ModelText.hpp"

#include <charconv>

namespace nuv::test
{
namespace
{

std::string Number(double value)
{
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

std::string Terms(const Model& model, std::span<const std::uint32_t> columns,
                  std::span<const double> coefficients)
{
    std::string text;
    for (std::size_t k = 0; k < columns.size(); ++k)
    {
        text += k == 0 ? "" : " + ";
        text += Number(coefficients[k]) + " " + std::string(model.VariableName(columns[k]));
    }
    return text.empty() ? "nothing" : text;
}

}  // namespace

std::string Written(const Model& model)
{
    std::string text = model.ObjectiveSense() == Sense::Maximize ? "max " : "min ";
    text += Number(model.ObjectiveConstant());
    for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
    {
        if (model.Objective()[j] != 0.0)
            text += " + " + Number(model.Objective()[j]) + " " + std::string(model.VariableName(j));
    }
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
    {
        text += "; " + std::string(model.RowName(i)) + ": " + Number(model.RowLower()[i]) +
                " <= " + Terms(model, model.RowColumns(i), model.RowCoefficients(i)) +
                " <= " + Number(model.RowUpper()[i]);
    }
    for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
    {
        text += "; " + Number(model.VariableLower()[j]) +
                " <= " + std::string(model.VariableName(j)) +
                " <= " + Number(model.VariableUpper()[j]);
    }
    return text;
}

}  // namespace nuv::test
