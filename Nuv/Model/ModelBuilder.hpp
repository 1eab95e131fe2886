/// Makes a model piece by piece and without intermediate storage, for readers of files: by index,
/// rows entry by entry or the whole matrix by columns. Indices are those of the model; numbers are
/// taken as they are, since a reader has the line to blame for one that is not finite
/// (Model::FindFault finds those that slipped through).
#pragma once

#include "Nuv/Model/Model.hpp"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace nuv
{

class ModelBuilder
{
public:
    ModelBuilder() = default;
    /// Goes on from a model.
    explicit ModelBuilder(Model model) : m_model(std::move(model)) {}

    /// The model as far as it is made.
    [[nodiscard]] const Model& Made() const noexcept
    {
        return m_model;
    }
    [[nodiscard]] Model Take()
    {
        return std::exchange(m_model, Model());
    }

    void SetName(std::string_view name)
    {
        m_model.SetName(name);
    }
    void SetObjectiveName(std::string_view name)
    {
        m_model.SetObjectiveName(name);
    }
    void SetSense(Sense sense) noexcept
    {
        m_model.m_sense = sense;
    }
    void SetObjectiveConstant(double constant) noexcept
    {
        m_model.m_objectiveConstant = constant;
    }

    /// The column called `name`, appended with default bounds and no objective coefficient if it is
    /// new.
    NameTable::Interned InternVariable(std::string_view name)
    {
        return InternVariable(name, PrepareVariable(name));
    }
    /// The same in two steps; see NameTable.
    [[nodiscard]] NameTable::Key PrepareVariable(std::string_view name) const noexcept
    {
        return m_model.m_variableNames.PrepareKey(name);
    }
    NameTable::Interned InternVariable(std::string_view name, const NameTable::Key& key)
    {
        const NameTable::Interned found = m_model.m_variableNames.Intern(name, key);
        if (found.isNew)
            m_model.AppendColumn({});
        return found;
    }
    void SetObjectiveCoefficient(std::uint32_t column, double value) noexcept
    {
        assert(column < m_model.VariableCount());
        m_model.m_objective[column] = value;
    }
    void SetVariableBounds(std::uint32_t column, Bounds bounds) noexcept
    {
        assert(column < m_model.VariableCount());
        m_model.m_variableLower[column] = bounds.lower;
        m_model.m_variableUpper[column] = bounds.upper;
    }

    /// Appends a row without entries. An empty name is filled in by NameUnnamedRows.
    /// @return an invalid row, and changes nothing, if the name is taken.
    Row AppendRow(std::string_view name, Bounds bounds)
    {
        return m_model.AppendRow(name, bounds);
    }
    void SetRowBounds(std::uint32_t row, Bounds bounds) noexcept
    {
        assert(row < m_model.RowCount());
        m_model.m_rowLower[row] = bounds.lower;
        m_model.m_rowUpper[row] = bounds.upper;
    }

    /// Appends an entry to the last row; the column is not in it yet.
    void AppendEntry(std::uint32_t column, double coefficient)
    {
        assert(m_model.RowCount() != 0 && column < m_model.VariableCount());
        m_model.AppendEntry(column, coefficient);
    }
    /// Entry `at`, counted over the whole matrix, of the last row: to add a repeated term to.
    [[nodiscard]] double& EntryOfLastRow(std::size_t at) noexcept
    {
        assert(at < m_model.NonzeroCount());
        return m_model.m_coefficients[at];
    }
    /// Removes entries of the last row that are zero.
    /// @return how many there were.
    std::size_t DropZerosOfLastRow();

    /// Fills all rows, which are empty so far, from a matrix stored by columns: column j is
    /// [starts[j], starts[j + 1]) of `rows` and `coefficients`.
    void AssignColumns(std::span<const std::size_t> starts, std::span<const std::uint32_t> rows,
                       std::span<const double> coefficients);

    /// Says what a number is that its double, which is set by itself, is only near to; or that the
    /// double says it after all. Setting a double again leaves what was said of it.
    void SetExact(const NumberPlace& place, std::string text)
    {
        m_model.m_exact.Set(place, std::move(text));
    }
    void EraseExact(const NumberPlace& place)
    {
        m_model.m_exact.Erase(place);
    }

    /// Gives each row without a name the name R<k> (k its position from 1), or that with
    /// underscores appended while taken.
    void NameUnnamedRows();

private:
    Model m_model;
};

}  // namespace nuv
