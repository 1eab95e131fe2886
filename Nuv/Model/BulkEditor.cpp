#include "Nuv/Model/BulkEditor.hpp"

#include <string>

namespace nuv
{
namespace
{

void NameUnnamed(NameTable& names, std::uint32_t from, const char* prefix)
{
    for (std::uint32_t index = from; index < names.Size(); ++index)
    {
        if (!names[index].empty())
            continue;
        std::string name = prefix + std::to_string(index + 1);
        while (!names.Name(index, name))
            name += '_';
    }
}

}  // namespace

BulkEditor::BulkEditor(Model& model) noexcept
    : m_model(model),
      m_columns(model.VariableCount()),
      m_rows(model.RowCount()),
      m_entries(model.NonzeroCount()),
      m_columnCharacters(model.m_variableNames.CharacterCount()),
      m_rowCharacters(model.m_rowNames.CharacterCount())
{
}

bool BulkEditor::AppendColumn(std::string_view name, Bounds bounds, double cost)
{
    if (name.empty())
        (void)m_model.m_variableNames.AddUnnamed();
    else if (!m_model.m_variableNames.Intern(name).isNew)
        return false;
    m_model.AppendColumn(bounds);
    m_model.m_objective.back() = cost;
    return true;
}

bool BulkEditor::AppendRow(std::string_view name, Bounds bounds,
                           std::span<const std::uint32_t> columns,
                           std::span<const double> coefficients)
{
    if (!m_model.AppendRow(name, bounds).Valid())
        return false;
    m_model.m_columns.insert(m_model.m_columns.end(), columns.begin(), columns.end());
    m_model.m_coefficients.insert(m_model.m_coefficients.end(), coefficients.begin(),
                                  coefficients.end());
    m_model.m_rowStarts.back() = m_model.m_columns.size();
    return true;
}

void BulkEditor::Commit()
{
    NameUnnamed(m_model.m_variableNames, m_columns, "x");
    NameUnnamed(m_model.m_rowNames, m_rows, "R");
    m_isCommitted = true;
}

void BulkEditor::TakeBack() noexcept
{
    // Nothing becomes longer, so nothing is allocated, wherever the appending broke off.
    m_model.m_variables.TakeBack(m_columns);
    m_model.m_variableNames.Truncate(m_columns, m_columnCharacters);
    m_model.m_objective.resize(m_columns);
    m_model.m_variableLower.resize(m_columns);
    m_model.m_variableUpper.resize(m_columns);
    m_model.m_rows.TakeBack(m_rows);
    m_model.m_rowNames.Truncate(m_rows, m_rowCharacters);
    m_model.m_rowLower.resize(m_rows);
    m_model.m_rowUpper.resize(m_rows);
    m_model.m_rowStarts.resize(std::size_t{m_rows} + 1);
    m_model.m_columns.resize(m_entries);
    m_model.m_coefficients.resize(m_entries);
}

}  // namespace nuv
