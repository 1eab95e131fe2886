/// Places in a text and their presentation. A line may be longer than memory is patient, or no text
/// at all: what is shown of it is a window of at most kWindow characters around the place, with
/// everything unprintable replaced.
#include "Nuv/Io/Diagnostics.hpp"

#include "Nuv/Io/Utf8.hpp"

#include <algorithm>
#include <cstdint>

namespace nuv
{
namespace
{

constexpr std::size_t kWindow = 76;
constexpr std::size_t kBefore = 50;
constexpr std::size_t kTab = 4;
constexpr std::string_view kEllipsis = "…";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool IsLineEnd(char c) noexcept
{
    return c == '\n' || c == '\r';
}

/// Appends one character as it can be printed. @return the columns it takes.
std::size_t AppendPrintable(std::string& out, std::string_view bytes, std::uint32_t code)
{
    if (code == '\t')
    {
        out.append(kTab, ' ');
        return kTab;
    }
    if (code == Utf8Character::kNoCharacter || code < 0x20u || (code >= 0x7Fu && code < 0xA0u))
    {
        out.append(kReplacement);
        return 1;
    }
    out.append(bytes);
    return DisplayWidth(code);
}

/// What is quoted from a file may be no text, or mean something to a terminal.
std::string Printable(std::string_view text)
{
    std::string out;
    while (!text.empty())
    {
        const Utf8Character character = FirstCharacter(text);
        (void)AppendPrintable(out, text.substr(0, character.bytes), character.code);
        text.remove_prefix(character.bytes);
    }
    return out;
}

struct LineBounds
{
    std::size_t begin;
    std::size_t end;
};

LineBounds LineAround(std::string_view text, std::size_t offset) noexcept
{
    std::size_t begin = offset;
    while (begin > 0 && !IsLineEnd(text[begin - 1]))
        --begin;
    // The end is looked for no further than can be shown: the line may be the whole file.
    std::size_t end = offset;
    while (end < text.size() && end < offset + 4 * kWindow && !IsLineEnd(text[end]))
        ++end;
    return {begin, end};
}

/// Fills excerpt and caret from the line around `offset`.
void Excerpt(Diagnostic& diagnostic, std::string_view text, std::size_t offset, LineBounds line)
{
    std::size_t from = offset;
    for (std::size_t characters = 0; from > line.begin && characters < kBefore; ++characters)
    {
        --from;
        while (from > line.begin && IsContinuation(text[from]))
            --from;
    }
    std::size_t columns = 0;
    if (from > line.begin)
    {
        diagnostic.excerpt = kEllipsis;
        columns = 1;
    }
    std::size_t at = from;
    for (std::size_t characters = 0; at < line.end; ++characters)
    {
        if (characters == kWindow)
        {
            diagnostic.excerpt += kEllipsis;
            break;
        }
        if (at <= offset)
            diagnostic.caret = columns;
        const Utf8Character character = FirstCharacter(text.substr(at, line.end - at));
        columns +=
            AppendPrintable(diagnostic.excerpt, text.substr(at, character.bytes), character.code);
        at += character.bytes;
    }
    if (at <= offset)
        diagnostic.caret = columns;
}

std::string_view Paint(Severity severity) noexcept
{
    switch (severity)
    {
    case Severity::Error:
        return "\x1B[1;31m";
    case Severity::Warning:
        return "\x1B[1;35m";
    case Severity::Note:
        break;
    }
    return "\x1B[1;36m";
}

}  // namespace

std::string_view SeverityName(Severity severity) noexcept
{
    switch (severity)
    {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Note:
        break;
    }
    return "note";
}

std::string Render(const Diagnostic& diagnostic, bool colour)
{
    const std::string_view reset = colour ? "\x1B[0m" : "";
    const Error& error = diagnostic.error;
    std::string out;
    if (!error.file.empty())
    {
        out += Printable(error.file) + ":";
        for (const std::size_t place : {error.line, error.column})
            out += place != 0 ? std::to_string(place) + ":" : std::string();
        out += ' ';
    }
    out.append(colour ? Paint(diagnostic.severity) : "").append(SeverityName(diagnostic.severity));
    out.append(":").append(reset).append(" ").append(Printable(error.text));
    if (!error.code.empty())
        out += " [" + error.code + "]";
    out += '\n';
    if (!diagnostic.excerpt.empty())
    {
        out += "  " + diagnostic.excerpt + "\n  " + std::string(diagnostic.caret, ' ');
        out.append(colour ? Paint(diagnostic.severity) : "").append("^").append(reset).append("\n");
    }
    if (!error.hint.empty())
        out += "  hint: " + Printable(error.hint) + "\n";
    return out;
}

Diagnostic WithoutPlace(Error error, Severity severity)
{
    return {severity, std::move(error), {}, 0};
}

bool DiagnosticLog::Fail(const char* at, std::string code, std::string text, std::string hint)
{
    if (m_errorPlace != nullptr && m_errorPlace <= at)
        return false;
    m_errorPlace = at;
    std::erase_if(m_diagnostics, [](const Diagnostic& diagnostic)
                  { return diagnostic.severity == Severity::Error; });
    Report(Severity::Error, at, std::move(code), std::move(text), std::move(hint));
    return false;
}

bool DiagnosticLog::Warn(const char* at, std::string code, std::string text, std::string hint)
{
    Report(Severity::Warning, at, std::move(code), std::move(text), std::move(hint));
    return false;
}

bool DiagnosticLog::Note(const char* at, std::string code, std::string text, std::string hint)
{
    Report(Severity::Note, at, std::move(code), std::move(text), std::move(hint));
    return false;
}

bool DiagnosticLog::Full(std::string_view code) const noexcept
{
    for (const Tally& tally : m_tallies)
    {
        if (tally.code == code)
            return tally.count >= kKeptPerCode;
    }
    return false;
}

void DiagnosticLog::CountOnly(std::string_view code)
{
    ++TallyOf(code).count;
}

std::size_t DiagnosticLog::LineOf(const char* at)
{
    const auto offset = static_cast<std::size_t>(at - m_text.data());
    if (offset < m_knownOffset)
    {
        m_knownOffset = 0;
        m_knownLine = 1;
    }
    for (; m_knownOffset < offset; ++m_knownOffset)
    {
        // CR LF is one line end, counted at the LF.
        const char c = m_text[m_knownOffset];
        const bool loneReturn =
            c == '\r' && (m_knownOffset + 1 == m_text.size() || m_text[m_knownOffset + 1] != '\n');
        if (c == '\n' || loneReturn)
            ++m_knownLine;
    }
    return m_knownLine;
}

std::vector<Diagnostic> DiagnosticLog::Take()
{
    for (const Tally& tally : m_tallies)
    {
        if (tally.count <= kKeptPerCode)
            continue;
        Error error;
        error.code = tally.code;
        error.file = m_file;
        error.text = std::to_string(tally.count - kKeptPerCode) + " more like these";
        m_diagnostics.push_back(WithoutPlace(std::move(error), Severity::Note));
    }
    m_tallies.clear();
    return std::move(m_diagnostics);
}

DiagnosticLog::Tally& DiagnosticLog::TallyOf(std::string_view code)
{
    for (Tally& tally : m_tallies)
    {
        if (tally.code == code)
            return tally;
    }
    return m_tallies.emplace_back(Tally{std::string(code), 0});
}

void DiagnosticLog::Report(Severity severity, const char* at, std::string code, std::string text,
                           std::string hint)
{
    if (++TallyOf(code).count > kKeptPerCode && severity != Severity::Error)
        return;
    Diagnostic diagnostic;
    diagnostic.severity = severity;
    diagnostic.error = {std::move(code), std::move(text), std::move(hint), m_file, LineOf(at), 0};
    const auto offset = static_cast<std::size_t>(at - m_text.data());
    const LineBounds line = LineAround(m_text, offset);
    const std::string_view before = m_text.substr(line.begin, offset - line.begin);
    const auto characters =
        std::count_if(before.begin(), before.end(), [](char c) { return !IsContinuation(c); });
    diagnostic.error.column = static_cast<std::size_t>(characters) + 1;
    Excerpt(diagnostic, m_text, offset, line);
    m_diagnostics.push_back(std::move(diagnostic));
}

}  // namespace nuv
