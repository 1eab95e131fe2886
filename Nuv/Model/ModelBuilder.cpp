#include "Nuv/Model/ModelBuilder.hpp"

#include "Nuv/Model/Transposed.hpp"

#include <string>
#include <vector>

namespace nuv
{

std::size_t ModelBuilder::DropZerosOfLastRow()
{
    std::vector<std::uint32_t>& columns = m_model.m_columns;
    std::vector<double>& coefficients = m_model.m_coefficients;
    const std::size_t before = columns.size();
    std::size_t kept = m_model.m_rowStarts[m_model.RowCount() - 1];
    for (std::size_t at = kept; at < before; ++at)
    {
        if (coefficients[at] == 0.0)
            continue;
        columns[kept] = columns[at];
        coefficients[kept] = coefficients[at];
        ++kept;
    }
    columns.resize(kept);
    coefficients.resize(kept);
    m_model.m_rowStarts.back() = kept;
    return before - kept;
}

void ModelBuilder::AssignColumns(std::span<const std::size_t> starts,
                                 std::span<const std::uint32_t> rows,
                                 std::span<const double> coefficients)
{
    assert(m_model.NonzeroCount() == 0);
    CompressedVectors byRow = Transposed(starts, rows, coefficients, m_model.RowCount());
    m_model.m_rowStarts = std::move(byRow.starts);
    m_model.m_columns = std::move(byRow.indices);
    m_model.m_coefficients = std::move(byRow.values);
}

void ModelBuilder::NameUnnamedRows()
{
    for (std::uint32_t row = 0; row < m_model.RowCount(); ++row)
    {
        if (!m_model.m_rowNames[row].empty())
            continue;
        std::string name = "R" + std::to_string(row + 1);
        while (!m_model.m_rowNames.Name(row, name))
            name += '_';
    }
}

}  // namespace nuv
