/// Records: which word of a free line is which field, what is a comment, and the checks that all
/// sections share.
#include "Nuv/Io/Mps/MpsParser.hpp"

#include "fmt/format.h"

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

bool Parser::ReadRecord()
{
    Record record;
    if (!TakeApart(record))
        return false;
    switch (m_section)
    {
    case Section::Rows:
        return ReadRow(record);
    case Section::Columns:
        return ReadColumn(record);
    case Section::RightHandSides:
        return ReadRightHandSide(record);
    case Section::Ranges:
        return ReadRange(record);
    case Section::Bounds:
        return ReadBound(record);
    case Section::ObjectiveSense:
        return ReadObjectiveSense(SplitWords(m_line.text).word[0]);
    default:
        break;
    }
    const bool started = m_section != Section::None;
    return Fail(Trimmed(m_line.text).data(), started ? "mps.stray-record" : "mps.no-model",
                "this line starts with a blank and stands in no section that has records",
                started ? "a section starts in the first column of its line"
                        : "an MPS file starts with NAME or ROWS in its first column");
}

bool Parser::TakeApart(Record& record)
{
    const bool hasFields = m_section >= Section::Rows && m_section <= Section::Bounds;
    record = EmptyRecord(m_line);
    if (!hasFields)
        return true;
    if (m_form == MpsForm::Fixed)
    {
        if (TakeMarker(record))
            return true;
        const char* const stray = SplitColumns(m_line, record);
        if (stray == nullptr)
            return true;
        return Fail(stray, "mps.stray-column", "fixed MPS has a blank in this column",
                    "fields are in columns 2-3, 5-12, 15-22, 25-36, 40-47 and 50-61; "
                    "--mps-free reads words instead");
    }
    Words words = SplitWords(m_line.text);
    if (words.mark != Words::None)
        DropComment(words);
    if (!AssignWords(words, record))
        return false;
    m_fitsColumns =
        m_fitsColumns && (record.first == kMarker || nuv::mps::FitsColumns(m_line, record));
    return true;
}

/// A marker is known by its word, wherever that stands: programs that write fixed MPS agree about
/// the columns of numbers, but not about those of markers.
bool Parser::TakeMarker(Record& record)
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
void Parser::DropComment(Words& words)
{
    const std::size_t names = m_section == Section::Rows || m_section == Section::Bounds ? 2 : 1;
    const std::size_t kept = std::min(words.count, Words::Most);
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
                m_log.Warn(word.data(), "mps.dollar-name",
                           fmt::format("'{}' is taken for the name it is", word),
                           "other programs take '$' for the start of a comment; rename it");
            }
            continue;
        }
        if (!dollar && at + 1 < kept && IsNumber(words.word[at + 1]))
            continue;
        if (!dollar)
        {
            m_log.Note(word.data(), "mps.inline-comment", "what follows '*' is taken for a comment",
                       "'$' opens a comment at the end of a line for more programs");
        }
        const std::ptrdiff_t column = word.data() - m_line.Begin();
        m_fitsColumns = m_fitsColumns && dollar &&
                        std::find(std::begin(kCommentColumns), std::end(kCommentColumns), column) !=
                            std::end(kCommentColumns);
        words.count = at;
        return;
    }
}

bool Parser::IsKnown(std::string_view word) const noexcept
{
    return m_section == Section::Bounds ? m_model.FindVariable(word).has_value()
                                        : m_rowNames.Find(word) != NameTable::None;
}

bool Parser::AssignWords(const Words& words, Record& record)
{
    std::size_t most = 5;
    if (m_section == Section::Rows)
        most = 2;
    else if (m_section == Section::Bounds)
        most = 4;
    if (words.count > most)
    {
        const std::string_view word = most < Words::Most ? words.word[most] : words.surplus;
        return Fail(word.data(), "mps.surplus-word", fmt::format("'{}' is one word too many", word),
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

void Parser::AssignRow(const Words& words, Record& record)
{
    record.type = words.word[0];
    if (words.count > 1)
        record.name = words.word[1];
}

void Parser::AssignColumn(const Words& words, Record& record)
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
void Parser::AssignRightHandSide(const Words& words, Record& record)
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
void Parser::AssignBound(const Words& words, Record& record)
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

/// A finite number. `of` is what it belongs to.
bool Parser::TakeNumber(std::string_view text, std::string_view of, double& value)
{
    const Number number = ReadNumber(text);
    value = number.value;
    switch (number.fault)
    {
    case NumberFault::None:
        return true;
    case NumberFault::Undefined:
        return Fail(text.data(), "mps.not-finite",
                    fmt::format("the value for '{}' is not a number", of),
                    "find out where the program that wrote the file got it from");
    case NumberFault::TooLarge:
        return Fail(text.data(), "mps.number-too-large",
                    fmt::format("{} is beyond the largest double", text), "scale the model");
    case NumberFault::TooSmall:
        return Fail(text.data(), "mps.number-too-small",
                    fmt::format("{} is nearer to 0 than any double", text),
                    "write 0, or scale the model");
    case NumberFault::NotANumber:
        break;
    }
    if (text.empty())
    {
        return Fail(text.data(), "mps.missing-number",
                    fmt::format("there is no number behind '{}'", of),
                    "each name is followed by its number");
    }
    const bool comma = text.find(',') != std::string_view::npos;
    return Fail(text.data(), "mps.not-a-number",
                fmt::format("'{}' is no number, where '{}' needs one", text, of),
                comma ? "numbers have a decimal point and no marks between thousands"
                      : "each name is followed by its number");
}

bool Parser::CheckNewName(std::string_view name, std::string_view what)
{
    const auto isControl = [](char c)
    { return static_cast<unsigned char>(c) < 0x20u || c == 0x7F; };
    const char* const end = name.data() + name.size();
    const char* const control = std::find_if(name.data(), end, isControl);
    if (control != end)
    {
        return Fail(control, "mps.binary",
                    fmt::format("the name of a {} holds a byte that is no text", what),
                    "check that this is a text file");
    }
    if (name.size() > 255)
    {
        m_log.Warn(name.data(), "mps.long-name",
                   fmt::format("the name of a {} has {} bytes", what, name.size()),
                   "other programs take no more than 255");
    }
    return true;
}

/// Whether a record counts; one of another set than the first is passed over.
bool Parser::InFirstSet(FirstSet& set, const Record& record)
{
    if (!set.known)
        set = {true, record.name, record.name};
    if (record.name == set.name)
        return true;
    if (record.name != set.lastOther)
    {
        set.lastOther = record.name;
        m_log.Note(
            record.Begin(), "mps.other-set",
            record.name.empty()
                ? fmt::format("records without a set are left out: the first one is '{}'", set.name)
                : fmt::format("set '{}' is left out: the first one is '{}'", record.name, set.name),
            "a model is read with the first set of each section");
    }
    return false;
}

}  // namespace nuv::mps
