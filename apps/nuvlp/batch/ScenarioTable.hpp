/// A table of scenarios: which numbers of a model each of them replaces. Its columns are named
/// `cost:VARIABLE`, `lower:VARIABLE`, `upper:VARIABLE`, `side:ROW` (the one finite side of a row,
/// or both of an equation), `row-lower:ROW`, `row-upper:ROW`, and `scenario`, which labels the
/// result. An empty cell, or a key that an object does not have, leaves the model's number.
#pragma once

#include "Nuv/Model/Error.hpp"
#include "Nuv/Model/Model.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuvlp
{

enum class Replaced
{
    Cost,
    VariableLower,
    VariableUpper,
    Side,
    RowLower,
    RowUpper
};

/// A number of the model: that of a variable or of a row, by place.
struct Replacement
{
    Replaced what;
    std::uint32_t at;
};

struct ScenarioTable
{
    std::vector<Replacement> columns;
    std::vector<std::string> labels;  ///< by scenario; its number, from 1, without one
    std::vector<double> cells;        ///< scenario after scenario; NaN where one is empty

    [[nodiscard]] std::size_t Count() const noexcept
    {
        return labels.size();
    }
    [[nodiscard]] std::optional<double> Cell(std::size_t scenario, std::size_t column) const
    {
        const double value = cells[scenario * columns.size() + column];
        return std::isnan(value) ? std::nullopt : std::optional(value);
    }
};

/// Reads comma-separated values with a line of names, or, where the text begins with a brace, an
/// object a line. `name` is the file's, for messages.
[[nodiscard]] nuv::Result<ScenarioTable>
ReadScenarios(std::string_view text, const std::string& name, const nuv::Model& model);

}  // namespace nuvlp
