/// A file from its first line to its last: the headers of its sections, comments that speak, and
/// what can only be said when all of it is known.
#include "Nuv/Io/Mps/MpsParser.hpp"

#include "Nuv/Io/LetterCase.hpp"

#include <fmt/core.h>

#include <optional>

namespace nuv::mps
{
namespace
{

std::optional<Sense> FindSense(std::string_view word) noexcept
{
    for (const std::string_view known : {"max", "maximize", "maximise", "maximum"})
    {
        if (EqualsIgnoringCase(word, known))
            return Sense::Maximize;
    }
    for (const std::string_view known : {"min", "minimize", "minimise", "minimum"})
    {
        if (EqualsIgnoringCase(word, known))
            return Sense::Minimize;
    }
    return std::nullopt;
}

}  // namespace

Parser::Parser(std::string_view text, std::string_view file, const ReadOptions& options,
               MpsForm form)
    : m_text(text),
      m_options(options),
      m_messages(text, file),
      m_log(m_messages.Log()),
      m_builder(m_messages, options),
      m_records(form, m_builder, m_messages),
      m_lines(text)
{
}

ReadResult Parser::Run()
{
    ReadResult result;
    if (ReadLines() && CheckComplete())
    {
        FinishSense();
        if (m_builder.Finish())
            result.model = m_builder.Take();
    }
    else
    {
        (void)m_builder.TakeEntries();  // One that waits may hold an error that comes first.
    }
    result.diagnostics = m_log.Take();
    return result;
}

bool Parser::ReadLines()
{
    for (m_line = m_lines.Next(); m_line.kind != LineKind::End; m_line = m_lines.Next())
    {
        if (m_section == Section::End)
        {
            if (m_line.kind == LineKind::Comment)
                continue;
            m_log.Warn(m_line.Begin(), "mps.text-after-end", "what follows ENDATA is left out",
                       "move ENDATA to the end of the model");
            return true;
        }
        if (m_line.kind == LineKind::Record && m_records.IsComment(m_line, m_section))
            continue;
        if (m_line.kind == LineKind::Comment)
            ReadComment();
        else if (m_line.kind == LineKind::Header ? !ReadHeader() : !ReadRecord())
            return false;
    }
    return true;
}

bool Parser::ReadHeader()
{
    const Words words = SplitWords(m_line.text);
    // Some programs write the sense under OBJSENSE in the first column.
    if (m_section == Section::ObjectiveSense && m_sensePlace == nullptr && FindSense(words.word[0]))
        return ReadObjectiveSense(words.word[0]);
    const Section section = FindSection(words.word[0]);
    if (section == Section::Refused || section == Section::Unknown)
        return m_messages.RefuseSection(section, words.word[0], m_section == Section::None);
    if (!m_builder.TakeEntries() || !CheckObjective() || !CheckOrder(section))
        return false;
    m_section = section;
    m_messages.Enter(section, m_line.Begin());
    return OpenSection(words);
}

bool Parser::ReadRecord()
{
    Record record;
    if (!m_records.Read(m_line, m_section, record))
        return false;
    switch (m_section)
    {
    case Section::Rows:
        return m_builder.AddRow(record);
    case Section::Columns:
        return m_builder.AddColumn(record);
    case Section::RightHandSides:
        return m_builder.AddRightHandSide(record);
    case Section::Ranges:
        return m_builder.AddRange(record);
    case Section::Bounds:
        return m_builder.AddBound(record);
    case Section::ObjectiveSense:
        return ReadObjectiveSense(SplitWords(m_line.text).word[0]);
    case Section::ObjectiveName:
        return ReadObjectiveName(Trimmed(m_line.text));
    default:
        break;
    }
    const bool started = m_section != Section::None;
    return m_messages.Fail(
        Trimmed(m_line.text).data(), started ? "mps.stray-record" : "mps.no-model",
        "this line starts with a blank and stands in no section that has records",
        started ? "a section starts in the first column of its line"
                : "an MPS file starts with NAME or ROWS in its first column");
}

/// What a section builds on comes before it, and each comes once.
bool Parser::CheckOrder(Section section)
{
    if (const char* const first = m_messages.PlaceOf(section))
    {
        return m_messages.Fail(m_line.Begin(), "mps.repeated-section",
                               fmt::format("a second section {}; the first is in line {}",
                                           SplitWords(m_line.text).word[0], m_log.LineOf(first)),
                               "put all of its lines under one header");
    }
    if (section == Section::ObjectiveName && m_messages.PlaceOf(Section::Rows) != nullptr)
    {
        return m_messages.Fail(m_line.Begin(), "mps.section-order", "OBJNAME stands behind ROWS",
                               "put it before ROWS");
    }
    const bool needsRows = section == Section::Columns || section == Section::RightHandSides ||
                           section == Section::Ranges;
    if (needsRows && m_messages.PlaceOf(Section::Rows) == nullptr)
    {
        return m_messages.Fail(m_line.Begin(), "mps.section-order",
                               "there is no section ROWS before",
                               "the sections are NAME, ROWS, COLUMNS, RHS, RANGES, BOUNDS, ENDATA");
    }
    if (section == Section::Bounds && m_messages.PlaceOf(Section::Columns) == nullptr)
    {
        return m_messages.Fail(m_line.Begin(), "mps.section-order",
                               "there is no section COLUMNS before",
                               "the sections are NAME, ROWS, COLUMNS, RHS, RANGES, BOUNDS, ENDATA");
    }
    return true;
}

bool Parser::OpenSection(const Words& words)
{
    if (m_section == Section::Name)
    {
        std::string_view name = Trimmed(m_line.text.substr(words.word[0].size()));
        // A mark of the form, as some programs write it.
        if (words.count == 3 && words.word[2] == "FREE")
            name = words.word[1];
        m_builder.SetName(name);
        return true;
    }
    if (m_section == Section::ObjectiveName && words.count > 1)
        return ReadObjectiveName(Trimmed(m_line.text.substr(words.word[0].size())));
    if (words.count == 1 || words.word[1].starts_with('$') || words.word[1].starts_with('*'))
        return true;
    if (m_section == Section::ObjectiveSense)
        return ReadObjectiveSense(words.word[1]);
    return m_messages.Fail(words.word[1].data(), "mps.text-after-section",
                           fmt::format("'{}' stands behind {}", words.word[1], words.word[0]),
                           "a line that belongs to a section starts with a blank");
}

bool Parser::ReadObjectiveSense(std::string_view word)
{
    if (m_sensePlace != nullptr)
    {
        return m_messages.Fail(
            word.data(), "mps.repeated-sense",
            fmt::format("a second sense of the objective; the first is in line {}",
                        m_log.LineOf(m_sensePlace)),
            "OBJSENSE takes one word");
    }
    const std::optional<Sense> sense = FindSense(word);
    if (!sense)
    {
        return m_messages.Fail(word.data(), "mps.unknown-sense",
                               fmt::format("'{}' is no sense of an objective", word),
                               "OBJSENSE is MAX, MAXIMIZE, MIN or MINIMIZE");
    }
    m_sensePlace = word.data();
    m_builder.SetSense(*sense);
    return true;
}

/// Which of the rows of type N is the objective.
bool Parser::ReadObjectiveName(std::string_view name)
{
    if (!m_builder.ObjectiveAsked().empty())
    {
        return m_messages.Fail(
            name.data(), "mps.repeated-objective-name",
            fmt::format("a second name of the objective; the first is in line {}",
                        m_log.LineOf(m_builder.ObjectiveAsked().data())),
            "OBJNAME takes one row");
    }
    m_builder.AskForObjective(name);
    return true;
}

/// `*SENSE:Maximize`, as PuLP writes it.
void Parser::ReadComment()
{
    constexpr std::string_view kKey = "*sense:";
    const std::string_view text = m_line.text;
    if (m_senseComment != nullptr || !EqualsIgnoringCase(text.substr(0, kKey.size()), kKey))
        return;
    const std::optional<Sense> sense = FindSense(Trimmed(text.substr(kKey.size())));
    if (!sense)
        return;
    m_senseComment = m_line.Begin();
    m_commentedSense = *sense;
}

/// Whether the section that ends said what it is there for, if it is OBJSENSE or OBJNAME.
bool Parser::CheckObjective()
{
    if (m_section == Section::ObjectiveName && m_builder.ObjectiveAsked().empty())
    {
        return m_messages.Fail(m_messages.PlaceOf(m_section), "mps.objective-name",
                               "OBJNAME without a name", "OBJNAME takes a row of type N");
    }
    if (m_section != Section::ObjectiveSense || m_sensePlace != nullptr)
        return true;
    return m_messages.Fail(m_messages.PlaceOf(Section::ObjectiveSense), "mps.unknown-sense",
                           "OBJSENSE without a sense",
                           "OBJSENSE is MAX, MAXIMIZE, MIN or MINIMIZE");
}

bool Parser::CheckComplete()
{
    if (!m_builder.TakeEntries() || !CheckObjective())
        return false;
    const char* const begin = m_text.data();
    const bool ended = m_section == Section::End;
    if (m_section == Section::None)
    {
        return m_messages.Fail(begin, "mps.no-model", "there is no model in this file",
                               "an MPS file starts with NAME or ROWS");
    }
    if (m_messages.PlaceOf(Section::Rows) == nullptr)
    {
        return m_messages.Fail(ended ? m_line.Begin() : m_line.End(), "mps.no-rows",
                               "there is no section ROWS", "check that the file is complete");
    }
    if (m_messages.PlaceOf(Section::Columns) == nullptr)
    {
        if (!ended)
        {
            return m_messages.Fail(m_line.End(), "mps.no-columns", "the file ends before COLUMNS",
                                   "check that it is complete");
        }
        m_log.Warn(m_messages.PlaceOf(Section::End), "mps.no-columns",
                   "the model has no section COLUMNS, and so no variable");
    }
    if (!ended)
    {
        m_log.Warn(m_line.End(), "mps.no-end", "the file ends without ENDATA",
                   "check that it is complete and add ENDATA");
    }
    return true;
}

void Parser::FinishSense()
{
    if (m_senseComment == nullptr || m_commentedSense == m_builder.ObjectiveSense())
        return;
    const std::string_view word = m_commentedSense == Sense::Maximize ? "maximise" : "minimise";
    if (m_sensePlace != nullptr)
    {
        m_log.Warn(m_senseComment, "mps.sense-comment",
                   fmt::format("the comment asks to {}, but OBJSENSE in line {} holds", word,
                               m_log.LineOf(m_sensePlace)),
                   "take one of them out");
        return;
    }
    if (m_options.mpsSenseComment)
    {
        m_builder.SetSense(m_commentedSense);
        m_log.Note(m_senseComment, "mps.sense-comment",
                   fmt::format("the comment is obeyed: {}", word));
        return;
    }
    m_log.Warn(
        m_senseComment, "mps.sense-comment",
        fmt::format("a comment asks to {}; comments do not count, so the model is minimised", word),
        "--mps-sense-comment obeys it; OBJSENSE is the way to say it in the file");
}

}  // namespace nuv::mps
