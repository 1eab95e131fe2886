/// Appends many columns or rows to a model at once, all of them or none: until Commit, the end of
/// the editor takes back what it has appended. Numbers are taken as they are.
#pragma once

#include "Nuv/Model/Model.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace nuv
{

class BulkEditor
{
public:
    explicit BulkEditor(Model& model) noexcept;
    BulkEditor(const BulkEditor&) = delete;
    BulkEditor& operator=(const BulkEditor&) = delete;
    ~BulkEditor()
    {
        if (!m_isCommitted)
            TakeBack();
    }

    /// An empty name is filled in by Commit: x<k> for the k-th column, R<k> for the k-th row, with
    /// underscores behind it while that is taken.
    /// @return false, and appends nothing, if the name is taken.
    [[nodiscard]] bool AppendColumn(std::string_view name, Bounds bounds, double cost);
    /// The same for a row, whose entries are in different columns of the model.
    [[nodiscard]] bool AppendRow(std::string_view name, Bounds bounds,
                                 std::span<const std::uint32_t> columns,
                                 std::span<const double> coefficients);

    void Commit();

private:
    void TakeBack() noexcept;

    Model& m_model;
    std::uint32_t m_columns;
    std::uint32_t m_rows;
    std::size_t m_entries;
    std::size_t m_columnCharacters;
    std::size_t m_rowCharacters;
    bool m_isCommitted = false;
};

}  // namespace nuv
