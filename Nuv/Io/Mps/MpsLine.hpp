/// The lines of an MPS file and what stands on them, found in place in the text: nothing is copied
/// and nothing allocated. A line that starts in its first column is the header of a section, or a
/// comment if it starts with an asterisk; every other line is a record of the section it stands in.
///
/// A record has six fields. Fixed MPS gives each its columns: 2-3, 5-12, 15-22, 25-36, 40-47 and
/// 50-61, so that names may hold blanks; in free MPS fields are words, and which field a word
/// belongs to follows from their number.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nuv::mps
{

/// What field 3 of a record holds that is no entry but opens or closes a run of integer columns.
inline constexpr std::string_view kMarker = "'MARKER'";

enum class LineKind : std::uint8_t
{
    Header,
    Record,
    Comment,
    End,  ///< there is no further line
};

struct Line
{
    LineKind kind = LineKind::End;
    std::string_view text;  ///< without its end and without blanks at its end

    [[nodiscard]] const char* Begin() const noexcept
    {
        return text.data();
    }
    /// The place behind the last character that is not blank.
    [[nodiscard]] const char* End() const noexcept
    {
        return text.data() + text.size();
    }
};

/// Walks over the lines of a text, leaving out those without a character. A line ends at LF or CR
/// LF; in a text without any LF, at CR.
class Lines
{
public:
    explicit Lines(std::string_view text);

    Line Next() noexcept;

private:
    const char* m_at;
    const char* m_end;
    char m_lineEnd;
};

[[nodiscard]] constexpr bool IsBlank(char c) noexcept
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The text without blanks on either side. An empty text keeps its place.
[[nodiscard]] std::string_view Trimmed(std::string_view text) noexcept;

/// The words of a line; more than a record can have are counted but not kept.
struct Words
{
    static constexpr std::size_t kMost = 6;
    static constexpr std::size_t kNone = kMost + 1;

    std::array<std::string_view, kMost> word;
    std::size_t count = 0;
    /// The first word behind the first one that starts like a comment, with '$' or '*'.
    std::size_t mark = kNone;
    /// The first word that is not kept.
    std::string_view surplus;
};

[[nodiscard]] Words SplitWords(std::string_view line) noexcept;

/// A record taken apart. A field that is not there is empty and points at the end of the line.
struct Record
{
    const char* line;               ///< where it starts
    std::string_view type;          ///< 1: of a row or bound
    std::string_view name;          ///< 2: a column; a row in ROWS; a set elsewhere
    std::string_view first;         ///< 3: a row, or a column in BOUNDS
    std::string_view firstNumber;   ///< 4
    std::string_view second;        ///< 5: another row
    std::string_view secondNumber;  ///< 6

    [[nodiscard]] const char* Begin() const noexcept
    {
        if (!type.empty())
            return type.data();
        return name.empty() ? first.data() : name.data();
    }
};

/// A record with all fields empty at the end of `line`.
[[nodiscard]] Record EmptyRecord(const Line& line) noexcept;

/// Takes a record apart by columns. Columns 73 to 80, where punched cards had their sequence
/// numbers, are passed over.
/// @return null, or the first character that stands where fixed MPS has none.
[[nodiscard]] const char* SplitColumns(const Line& line, Record& record) noexcept;

/// Whether each field lies in its columns, so that reading by columns gives the same record.
[[nodiscard]] bool FitsColumns(const Line& line, const Record& record) noexcept;

}  // namespace nuv::mps
