// Comparing models bit for bit.
#include "tests/model/SameModel.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace nuv::test
{
namespace
{

bool SameBits(double left, double right)
{
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

bool SameBits(std::span<const double> left, std::span<const double> right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](double a, double b) { return SameBits(a, b); });
}

using Entries = std::vector<std::pair<std::uint32_t, std::uint64_t>>;

Entries EntriesOf(const Model& model, std::uint32_t row)
{
    Entries entries;
    const std::span<const double> coefficients = model.RowCoefficients(row);
    for (std::size_t at = 0; at < coefficients.size(); ++at)
        entries.emplace_back(model.RowColumns(row)[at],
                             std::bit_cast<std::uint64_t>(coefficients[at]));
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::string RowDifference(const Model& left, const Model& right)
{
    for (std::uint32_t row = 0; row < left.RowCount(); ++row)
    {
        const std::string name(left.RowName(row));
        if (name != right.RowName(row))
            return "name of row " + name;
        if (!SameBits(left.RowLower()[row], right.RowLower()[row]))
            return "lower limit of row " + name;
        if (!SameBits(left.RowUpper()[row], right.RowUpper()[row]))
            return "upper limit of row " + name;
        if (EntriesOf(left, row) != EntriesOf(right, row))
            return "coefficients of row " + name;
    }
    return "";
}

}  // namespace

std::string Difference(const Model& left, const Model& right)
{
    if (left.Name() != right.Name())
        return "name of the model";
    if (left.ObjectiveName() != right.ObjectiveName())
        return "name of the objective";
    if (left.ObjectiveSense() != right.ObjectiveSense())
        return "sense";
    if (!SameBits(left.ObjectiveConstant(), right.ObjectiveConstant()))
        return "objective's constant";
    if (left.VariableCount() != right.VariableCount() || left.RowCount() != right.RowCount())
        return "size";
    for (std::uint32_t column = 0; column < left.VariableCount(); ++column)
    {
        if (left.VariableName(column) != right.VariableName(column))
            return "name of variable " + std::string(left.VariableName(column));
    }
    if (!SameBits(left.Objective(), right.Objective()))
        return "objective";
    if (!SameBits(left.VariableLower(), right.VariableLower()))
        return "lower bounds";
    if (!SameBits(left.VariableUpper(), right.VariableUpper()))
        return "upper bounds";
    if (std::string difference = RowDifference(left, right); !difference.empty())
        return difference;
    return left.Exact() == right.Exact() ? "" : "exact numbers";
}

}  // namespace nuv::test
