/// The records of an MPS file as text. Each field lies at the column that fixed MPS has for it, or
/// behind the field before it, with a blank between, where it does not fit: then the text is free
/// MPS only.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace nuv::mps
{

/// The characters that fixed MPS has room for, in names and in numbers.
inline constexpr std::size_t kNameColumns = 8;
inline constexpr std::size_t kNumberColumns = 12;

class Layout
{
public:
    void Name(std::string_view model);
    /// A header, or anything else on a line of its own.
    void PutLine(std::string_view line);

    /// Starts a section that is left out if no record follows.
    void BeginSection(std::string_view header);
    void EndSection();

    void Row(char type, std::string_view name);
    /// A pair of a row and its number, under a column or set. Pairs stand two on a line until
    /// EndPairs, which comes before another name.
    void Pair(std::string_view name, std::string_view row, std::string_view number);
    void EndPairs();
    void Bound(std::string_view type, std::string_view column, std::string_view number = {});

    /// The first field that does not fit its columns; empty if the text is fixed MPS.
    [[nodiscard]] const std::string& FirstMisfit() const noexcept
    {
        return m_misfit;
    }
    [[nodiscard]] std::string Take()
    {
        return std::move(m_text);
    }

private:
    void Field(std::size_t column, std::string_view text, std::size_t width);
    void EndLine();

    std::string m_text;
    std::string m_misfit;
    std::size_t m_lineBegin = 0;
    std::size_t m_sectionBegin = 0;
    std::size_t m_recordsBegin = 0;
    bool m_hasOnePair = false;
};

}  // namespace nuv::mps
