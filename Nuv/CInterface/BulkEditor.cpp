#include "Nuv/CInterface/BulkEditor.hpp"

#include <utility>

namespace nuv
{

BulkEditor::Names::Names(NameTable& names, char letter) noexcept
    : m_names(names), m_letter(letter), m_size(names.Size()), m_characters(names.CharacterCount())
{
}

bool BulkEditor::Names::Append(std::string_view name)
{
    if (name.empty())
        return m_names.Add(m_names.MakeName(m_letter), true) != NameTable::kNone;
    const std::uint32_t taken = m_names.Find(name);
    // A made name of an entry that was there before gives way, which nothing but a copy takes back.
    if (taken < m_size && m_names.IsMade(taken) && !m_before)
        m_before = m_names;
    return m_names.Add(name) != NameTable::kNone;
}

void BulkEditor::Names::TakeBack() noexcept
{
    if (m_before)
        m_names = std::move(*m_before);
    m_names.Truncate(m_size, m_characters);
}

BulkEditor::BulkEditor(Model& model) noexcept
    : m_model(model),
      m_columns(model.VariableCount()),
      m_rows(model.RowCount()),
      m_entries(model.NonzeroCount()),
      m_columnNames(model.m_variableNames, 'x'),
      m_rowNames(model.m_rowNames, 'R')
{
}

bool BulkEditor::AppendColumn(std::string_view name, Bounds bounds, double cost)
{
    if (!m_columnNames.Append(name))
        return false;
    m_model.AppendColumn(bounds);
    m_model.m_objective.back() = cost;
    return true;
}

bool BulkEditor::AppendRow(std::string_view name, Bounds bounds,
                           std::span<const std::uint32_t> columns,
                           std::span<const double> coefficients)
{
    if (!m_rowNames.Append(name))
        return false;
    m_model.AppendUnnamedRow(bounds);
    m_model.m_columns.insert(m_model.m_columns.end(), columns.begin(), columns.end());
    m_model.m_coefficients.insert(m_model.m_coefficients.end(), coefficients.begin(),
                                  coefficients.end());
    m_model.m_rowStarts.back() = m_model.m_columns.size();
    return true;
}

void BulkEditor::TakeBack() noexcept
{
    // Nothing becomes longer, so nothing is allocated, wherever the appending broke off.
    m_columnNames.TakeBack();
    m_rowNames.TakeBack();
    m_model.m_variables.TakeBack(m_columns);
    m_model.m_objective.resize(m_columns);
    m_model.m_variableLower.resize(m_columns);
    m_model.m_variableUpper.resize(m_columns);
    m_model.m_rows.TakeBack(m_rows);
    m_model.m_rowLower.resize(m_rows);
    m_model.m_rowUpper.resize(m_rows);
    m_model.m_rowStarts.resize(std::size_t{m_rows} + 1);
    m_model.m_columns.resize(m_entries);
    m_model.m_coefficients.resize(m_entries);
}

}  // namespace nuv
