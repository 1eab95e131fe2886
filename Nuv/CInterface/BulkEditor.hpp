/// Appends many columns or rows to a model at once, all of them or none: until Commit, the end of
/// the editor takes back what it has appended. Numbers are taken as they are.
#pragma once

#include "Nuv/Model/Model.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

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

    /// For so many entries more, wherever they go.
    static void MakeRoom(Model& model, std::size_t entries)
    {
        model.MakeRoom(entries);
    }

    /// Says at a place of the model what the nearest double, which is there, does not.
    static void KeepExact(Model& model, const NumberPlace& place, std::string text)
    {
        model.m_exact.Set(place, std::move(text));
    }

    /// An empty name is filled in as Model::AddVariable() does.
    /// @return false, and appends nothing, if the name was given to another.
    [[nodiscard]] bool AppendColumn(std::string_view name, Bounds bounds, double cost);
    /// The same for a row, whose entries are in different columns of the model.
    [[nodiscard]] bool AppendRow(std::string_view name, Bounds bounds,
                                 std::span<const std::uint32_t> columns,
                                 std::span<const double> coefficients);

    void Commit() noexcept
    {
        m_isCommitted = true;
    }

private:
    /// The names of a model, and what they were if one of them had to give way.
    class Names
    {
    public:
        Names(NameTable& names, char letter) noexcept;
        [[nodiscard]] bool Append(std::string_view name);
        void TakeBack() noexcept;

    private:
        NameTable& m_names;
        char m_letter;
        std::uint32_t m_size;
        std::size_t m_characters;
        std::optional<NameTable> m_before;
    };

    void TakeBack() noexcept;

    Model& m_model;
    std::uint32_t m_columns;
    std::uint32_t m_rows;
    std::size_t m_entries;
    Names m_columnNames;
    Names m_rowNames;
    bool m_isCommitted = false;
};

}  // namespace nuv
