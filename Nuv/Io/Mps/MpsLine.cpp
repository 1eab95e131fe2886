#include "Nuv/Io/Mps/MpsLine.hpp"

#include <cstring>

namespace nuv::mps
{
namespace
{

/// Columns from 0, the second one past the end.
struct Span
{
    std::size_t begin;
    std::size_t end;
};

constexpr Span kType = {1, 3};
constexpr Span kName = {4, 12};
constexpr Span kFirst = {14, 22};
constexpr Span kFirstNumber = {24, 36};
constexpr Span kSecond = {39, 47};
constexpr Span kSecondNumber = {49, 61};
constexpr Span kBetween[] = {{0, 1}, {3, 4}, {12, 14}, {22, 24}, {36, 39}, {47, 49}, {61, 72}};

std::string_view Cut(std::string_view line, Span span) noexcept
{
    if (line.size() <= span.begin)
        return line.substr(line.size());
    return Trimmed(line.substr(span.begin, span.end - span.begin));
}

bool Lies(const Line& line, std::string_view field, Span span) noexcept
{
    const auto begin = static_cast<std::size_t>(field.data() - line.Begin());
    return field.empty() || (begin >= span.begin && begin + field.size() <= span.end);
}

}  // namespace

Lines::Lines(std::string_view text)
    : m_at(text.data()),
      m_end(text.data() + text.size()),
      m_lineEnd(text.find('\n') == std::string_view::npos ? '\r' : '\n')
{
}

Line Lines::Next() noexcept
{
    while (m_at != m_end)
    {
        const char* const begin = m_at;
        const auto left = static_cast<std::size_t>(m_end - begin);
        const void* const found = std::memchr(begin, m_lineEnd, left);
        const char* end = found != nullptr ? static_cast<const char*>(found) : m_end;
        m_at = end == m_end ? end : end + 1;
        while (end != begin && IsBlank(end[-1]))
            --end;
        if (end == begin)
            continue;
        LineKind kind = LineKind::Header;
        if (IsBlank(*begin))
            kind = LineKind::Record;
        else if (*begin == '*')
            kind = LineKind::Comment;
        return {kind, {begin, static_cast<std::size_t>(end - begin)}};
    }
    return {LineKind::End, {m_end, m_end}};
}

std::string_view Trimmed(std::string_view text) noexcept
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

Words SplitWords(std::string_view line) noexcept
{
    Words words;
    const char* at = line.data();
    const char* const end = at + line.size();
    for (;;)
    {
        while (at != end && IsBlank(*at))
            ++at;
        if (at == end)
            return words;
        const char* const begin = at;
        while (at != end && !IsBlank(*at))
            ++at;
        const std::string_view word(begin, static_cast<std::size_t>(at - begin));
        if ((*begin == '$' || *begin == '*') && words.count != 0 && words.mark == Words::kNone)
            words.mark = words.count;
        if (words.count < Words::kMost)
            words.word[words.count] = word;
        else if (words.count == Words::kMost)
            words.surplus = word;
        ++words.count;
    }
}

Record EmptyRecord(const Line& line) noexcept
{
    const std::string_view none(line.End(), line.End());
    return {line.Begin(), none, none, none, none, none, none};
}

const char* SplitColumns(const Line& line, Record& record) noexcept
{
    const std::string_view text = line.text;
    const std::size_t tab = text.substr(0, kSecondNumber.end).find('\t');
    if (tab != std::string_view::npos)
        return line.Begin() + tab;
    record = {line.Begin(),
              Cut(text, kType),
              Cut(text, kName),
              Cut(text, kFirst),
              Cut(text, kFirstNumber),
              Cut(text, kSecond),
              Cut(text, kSecondNumber)};
    // What a '$' at the start of field 3 or 5 opens is a comment.
    std::size_t comment = text.size();
    if (text.size() > kSecond.begin && text[kSecond.begin] == '$')
    {
        comment = kSecond.begin;
        record.second = record.secondNumber = text.substr(comment, 0);
    }
    if (text.size() > kFirst.begin && text[kFirst.begin] == '$')
    {
        comment = kFirst.begin;
        record.first = record.firstNumber = record.second = record.secondNumber =
            text.substr(comment, 0);
    }
    for (const Span between : kBetween)
    {
        for (std::size_t at = between.begin; at < between.end && at < comment; ++at)
        {
            if (!IsBlank(text[at]))
                return line.Begin() + at;
        }
    }
    return nullptr;
}

bool FitsColumns(const Line& line, const Record& record) noexcept
{
    // A tab moves what follows it to other columns than those that are counted here.
    return line.text.find('\t') == std::string_view::npos && Lies(line, record.type, kType) &&
           Lies(line, record.name, kName) && Lies(line, record.first, kFirst) &&
           Lies(line, record.firstNumber, kFirstNumber) && Lies(line, record.second, kSecond) &&
           Lies(line, record.secondNumber, kSecondNumber);
}

}  // namespace nuv::mps
