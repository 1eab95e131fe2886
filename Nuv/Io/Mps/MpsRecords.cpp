#include "Nuv/Io/Mps/MpsRecords.hpp"

#include "Nuv/Io/Mps/MpsNumber.hpp"

#include <fmt/core.h>

#include <algorithm>

namespace nuv::mps
{
namespace
{

/// Where the fields 3 and 5 start, which a comment may take the place of in fixed MPS too.
constexpr std::ptrdiff_t kCommentColumns[] = {14, 39};

bool IsNumber(std::string_view word) noexcept
{
    return ReadNumber(word).fault != NumberFault::NotANumber;
}

}  // namespace

bool Records::IsComment(const Line& line, Section section)
{
    const std::string_view text = Trimmed(line.text);
    if (text.empty() || text[0] != '*')
        return false;
    constexpr const char* kHint = "put the '*' in the first column, for other programs too";
    // The records of the other sections start with a type.
    if (section != Section::Columns && section != Section::RightHandSides &&
        section != Section::Ranges)
    {
        m_messages.Log().Note(text.data(), "mps.indented-comment",
                              "a comment that starts behind a blank", kHint);
        return true;
    }
    m_section = section;
    if (NamesARow(line, m_form))
        return false;
    m_fitColumns = m_fitColumns && !NamesARow(line, MpsForm::Fixed);
    if (!m_messages.Log().Full("mps.starred-line"))
        m_messages.Log().Warn(text.data(), "mps.starred-line",
                              "this line is taken for a comment, since it names no row", kHint);
    return true;
}

/// Whether the line has a row, or a marker, where a record of COLUMNS, RHS or RANGES has one.
bool Records::NamesARow(const Line& line, MpsForm form) const
{
    const Words words = SplitWords(line.text);
    if (words.word[1] == kMarker)
        return true;
    if (form == MpsForm::Free)
        return IsKnown(words.word[1]) || (m_section != Section::Columns && IsKnown(words.word[0]));
    Record record;
    return SplitColumns(line, record) == nullptr && IsKnown(record.first);
}

bool Records::Read(const Line& line, Section section, Record& record)
{
    m_line = line;
    m_section = section;
    record = EmptyRecord(line);
    if (!HasFields(section))
        return true;
    if (m_form == MpsForm::Fixed)
        return ReadColumns(record);
    Words words = SplitWords(line.text);
    if (words.mark != Words::kNone)
        DropComment(words);
    if (!AssignWords(words, record))
        return false;
    m_fitColumns = m_fitColumns && (record.first == kMarker || FitsColumns(line, record));
    return true;
}

bool Records::ReadColumns(Record& record)
{
    if (TakeMarker(record))
        return true;
    const char* const stray = SplitColumns(m_line, record);
    if (stray == nullptr)
        return true;
    return m_messages.Fail(stray, "mps.stray-column", "fixed MPS has a blank in this column",
                           "fields are in columns 2-3, 5-12, 15-22, 25-36, 40-47 and 50-61; "
                           "--mps-free reads words instead");
}

/// A marker is known by its word, wherever that stands: programs that write fixed MPS agree about
/// the columns of numbers, but not about those of markers.
bool Records::TakeMarker(Record& record)
{
    if (m_section != Section::Columns || m_line.text.find(kMarker) == std::string_view::npos)
        return false;
    const Words words = SplitWords(m_line.text);
    if (words.word[1] != kMarker)
        return false;
    AssignColumn(words, record);
    return true;
}

/// Cuts off what '$' or '*' opens behind the fields. A word that is a row or column where one may
/// stand is no comment; nor is one that a number follows, unless '$' opens it.
void Records::DropComment(Words& words)
{
    const std::size_t names = m_section == Section::Rows || m_section == Section::Bounds ? 2 : 1;
    const std::size_t kept = std::min(words.count, Words::kMost);
    for (std::size_t at = std::max(words.mark, names); at < kept; ++at)
    {
        const std::string_view word = words.word[at];
        const bool dollar = word[0] == '$';
        if (!dollar && word[0] != '*')
            continue;
        if (IsKnown(word))
        {
            if (dollar)
            {
                m_messages.Log().Warn(
                    word.data(), "mps.dollar-name",
                    fmt::format("'{}' is taken for the name it is", word),
                    "other programs take '$' for the start of a comment; rename it");
            }
            continue;
        }
        if (!dollar && at + 1 < kept && IsNumber(words.word[at + 1]))
            continue;
        if (!dollar)
        {
            m_messages.Log().Note(word.data(), "mps.inline-comment",
                                  "what follows '*' is taken for a comment",
                                  "'$' opens a comment at the end of a line for more programs");
        }
        const std::ptrdiff_t column = word.data() - m_line.Begin();
        m_fitColumns = m_fitColumns && dollar &&
                       std::find(std::begin(kCommentColumns), std::end(kCommentColumns), column) !=
                           std::end(kCommentColumns);
        words.count = at;
        return;
    }
}

bool Records::IsKnown(std::string_view word) const noexcept
{
    return m_section == Section::Bounds ? m_builder.HasColumn(word) : m_builder.HasRow(word);
}

bool Records::AssignWords(const Words& words, Record& record)
{
    std::size_t most = 5;
    if (m_section == Section::Rows)
        most = 2;
    else if (m_section == Section::Bounds)
        most = 4;
    if (words.count > most)
    {
        const std::string_view word = most < Words::kMost ? words.word[most] : words.surplus;
        return m_messages.Fail(
            word.data(), "mps.surplus-word", fmt::format("'{}' is one word too many", word),
            "names with blanks need fixed MPS, where every field has its columns");
    }
    if (m_section == Section::Rows)
        AssignRow(words, record);
    else if (m_section == Section::Columns)
        AssignColumn(words, record);
    else if (m_section == Section::Bounds)
        AssignBound(words, record);
    else
        AssignRightHandSide(words, record);
    return true;
}

void Records::AssignRow(const Words& words, Record& record)
{
    record.type = words.word[0];
    if (words.count > 1)
        record.name = words.word[1];
}

void Records::AssignColumn(const Words& words, Record& record)
{
    record.name = words.word[0];
    if (words.count > 1)
        record.first = words.word[1];
    if (words.count > 2)
        (record.first == kMarker ? record.second : record.firstNumber) = words.word[2];
    if (words.count > 3)
        record.second = words.word[3];
    if (words.count > 4)
        record.secondNumber = words.word[4];
}

/// An odd number of words starts with the name of a set. So does an even one whose first word is
/// no row while the second is: then a number is missing.
void Records::AssignRightHandSide(const Words& words, Record& record)
{
    const bool missing = words.count % 2 == 0 && !IsKnown(words.word[0]) && IsKnown(words.word[1]);
    std::size_t at = 0;
    const auto take = [&](std::string_view& field)
    {
        if (at < words.count)
            field = words.word[at++];
    };
    if (words.count % 2 == 1 || missing)
        take(record.name);
    else
        record.name = m_line.text.substr(0, 0);
    take(record.first);
    take(record.firstNumber);
    take(record.second);
    take(record.secondNumber);
}

/// Four words are type, set, column, value. Three leave out the set or the value: the set if the
/// type needs a value and the second word is a column, or if the third is none.
void Records::AssignBound(const Words& words, Record& record)
{
    record.type = words.word[0];
    const bool isThree = words.count == 3;
    bool hasSet = words.count == 4;
    if (isThree)
    {
        hasSet = IsKnown(words.word[2]);
        if (hasSet && IsKnown(words.word[1]) && IsNumber(words.word[2]))
            hasSet = !BoundNeedsValue(words.word[0]);
    }
    std::size_t at = 1;
    if (hasSet)
        record.name = words.word[at++];
    else
        record.name = m_line.text.substr(0, 0);
    if (at < words.count)
        record.first = words.word[at++];
    if (at < words.count)
        record.firstNumber = words.word[at++];
}

}  // namespace nuv::mps
