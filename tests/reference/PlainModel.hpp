// What a model of the library should hold after a sequence of edits, in the standard library's
// types and without a thought for memory.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/reference/NaiveSimplex.hpp"

namespace reference
{
/// A row Σ coefficient × variable ≤ rhs, its variables by name or by index from 1.
struct PlainRow
{
    bool isNamed = false;
    std::vector<std::pair<std::uint32_t, float>> indexed;
    std::vector<std::pair<std::string, float>> named;
    float rhs = 0.0F;
};

class PlainModel
{
public:
    explicit PlainModel(std::uint32_t numVars);

    /// New variables X1, X2, ...; rows and objective stay.
    void Replace(std::uint32_t numVars);
    /// @return what NuvLinearProgrammingSetVariableInfo answers.
    bool Rename(std::uint32_t index, const std::string& name);
    /// @return false, with the objective unchanged, when a name is unknown.
    bool Maximise(const std::vector<std::pair<std::string, float>>& terms);
    /// Whether every name and index of the row is that of a variable.
    bool IsKnown(const PlainRow& row) const;
    /// The problem with its rows in the order of `ids`; none where a name or an index is unknown.
    std::optional<Problem> InOrder(const std::vector<std::uint32_t>& ids) const;

    /// By index.
    std::vector<std::string> names;
    std::map<std::string, std::uint32_t> indices;
    /// By number.
    std::map<std::uint32_t, PlainRow> rows;
    std::vector<std::pair<std::uint32_t, float>> objective;

private:
    bool Enter(const PlainRow& row, std::vector<float>* coefficients) const;
};
}  // namespace reference
