/// A file from its first line to its last: the headers of its sections, comments that speak, and
/// what can only be said when all of it is known.
#include "Nuv/Io/Mps/MpsParser.hpp"

#include "Nuv/Io/LetterCase.hpp"
#include "Nuv/Io/NamesInOtherCase.hpp"

#include "fmt/format.h"

#include <optional>
#include <utility>

namespace nuv::mps
{
namespace
{

struct SectionWord
{
    std::string_view word;
    Section section;
};

constexpr SectionWord kSections[] = {
    {"name", Section::Name},          {"objsense", Section::ObjectiveSense},
    {"rows", Section::Rows},          {"columns", Section::Columns},
    {"rhs", Section::RightHandSides}, {"ranges", Section::Ranges},
    {"bounds", Section::Bounds},      {"endata", Section::End},
    {"quadobj", Section::Refused},    {"qmatrix", Section::Refused},
    {"qsection", Section::Refused},   {"qcmatrix", Section::Refused},
    {"sos", Section::Refused},        {"sos1", Section::Refused},
    {"sos2", Section::Refused},       {"sets", Section::Refused},
    {"indicators", Section::Refused}, {"csection", Section::Refused},
    {"gencons", Section::Refused},    {"pwlobj", Section::Refused},
    {"lazycons", Section::Refused},   {"usercuts", Section::Refused},
    {"branch", Section::Refused},     {"multiobj", Section::Refused},
};

Section FindSection(std::string_view word) noexcept
{
    for (const SectionWord& known : kSections)
    {
        if (EqualsIgnoringCase(word, known.word))
            return known.section;
    }
    return Section::Unknown;
}

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

bool IsComment(std::string_view word) noexcept
{
    return word.starts_with('$') || word.starts_with('*');
}

}  // namespace

Parser::Parser(std::string_view text, std::string_view file, const ReadOptions& options,
               MpsForm form)
    : m_text(text), m_options(options), m_form(form), m_log(file, text), m_lines(text)
{
}

Reading Parser::Run()
{
    Reading reading;
    if (ReadLines() && CheckComplete() && Finish())
        reading.model = std::move(m_model);
    reading.diagnostics = m_log.Take();
    return reading;
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
        return RefuseSection(section, words.word[0]);
    if (!SettleEntries() || !CheckSense() || !CheckOrder(section))
        return false;
    m_section = section;
    m_sectionPlaces[static_cast<std::size_t>(section)] = m_line.Begin();
    return OpenSection(section, words);
}

bool Parser::RefuseSection(Section section, std::string_view word)
{
    if (section == Section::Refused)
    {
        return Fail(word.data(), "mps.refused-section",
                    fmt::format("section {} is no part of a linear program", word),
                    "only rows, columns, ranges and bounds are read; take the section out if "
                    "the rest is the model");
    }
    if (m_section == Section::None)
    {
        return Fail(word.data(), "mps.no-model", "this is not a model in the MPS format",
                    "an MPS file starts with NAME or ROWS");
    }
    return Fail(word.data(), "mps.unknown-section",
                fmt::format("there is no section called '{}'", word.substr(0, 60)),
                "a line that belongs to a section starts with a blank");
}

/// What a section builds on comes before it, and each comes once.
bool Parser::CheckOrder(Section section)
{
    const auto placeOf = [this](Section of)
    { return m_sectionPlaces[static_cast<std::size_t>(of)]; };
    if (const char* const first = placeOf(section))
    {
        return Fail(m_line.Begin(), "mps.repeated-section",
                    fmt::format("a second section {}; the first is in line {}",
                                SplitWords(m_line.text).word[0], m_log.LineOf(first)),
                    "put all of its lines under one header");
    }
    const bool needsRows = section == Section::Columns || section == Section::RightHandSides ||
                           section == Section::Ranges;
    if (needsRows && placeOf(Section::Rows) == nullptr)
    {
        return Fail(m_line.Begin(), "mps.section-order", "there is no section ROWS before",
                    "the sections are NAME, ROWS, COLUMNS, RHS, RANGES, BOUNDS, ENDATA");
    }
    if (section == Section::Bounds && placeOf(Section::Columns) == nullptr)
    {
        return Fail(m_line.Begin(), "mps.section-order", "there is no section COLUMNS before",
                    "the sections are NAME, ROWS, COLUMNS, RHS, RANGES, BOUNDS, ENDATA");
    }
    return true;
}

bool Parser::OpenSection(Section section, const Words& words)
{
    if (section == Section::Name)
    {
        std::string_view name = Trimmed(m_line.text.substr(words.word[0].size()));
        // A mark of the form, as some programs write it.
        if (words.count == 3 && words.word[2] == "FREE")
            name = words.word[1];
        m_model.SetName(name);
        return true;
    }
    if (words.count == 1 || IsComment(words.word[1]))
        return true;
    if (section == Section::ObjectiveSense)
        return ReadObjectiveSense(words.word[1]);
    return Fail(words.word[1].data(), "mps.text-after-section",
                fmt::format("'{}' stands behind {}", words.word[1], words.word[0]),
                "a line that belongs to a section starts with a blank");
}

bool Parser::ReadObjectiveSense(std::string_view word)
{
    if (m_sensePlace != nullptr)
    {
        return Fail(word.data(), "mps.repeated-sense",
                    fmt::format("a second sense of the objective; the first is in line {}",
                                m_log.LineOf(m_sensePlace)),
                    "OBJSENSE takes one word");
    }
    const std::optional<Sense> sense = FindSense(word);
    if (!sense)
    {
        return Fail(word.data(), "mps.unknown-sense",
                    fmt::format("'{}' is no sense of an objective", word),
                    "OBJSENSE is MAX, MAXIMIZE, MIN or MINIMIZE");
    }
    m_sensePlace = word.data();
    m_model.SetSense(*sense);
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

bool Parser::CheckSense()
{
    if (m_section != Section::ObjectiveSense || m_sensePlace != nullptr)
        return true;
    return Fail(m_sectionPlaces[static_cast<std::size_t>(Section::ObjectiveSense)],
                "mps.unknown-sense", "OBJSENSE without a sense",
                "OBJSENSE is MAX, MAXIMIZE, MIN or MINIMIZE");
}

bool Parser::CheckComplete()
{
    if (!SettleEntries() || !CheckSense())
        return false;
    const char* const begin = m_text.data();
    const bool ended = m_section == Section::End;
    if (m_section == Section::None)
    {
        return Fail(begin, "mps.no-model", "there is no model in this file",
                    "an MPS file starts with NAME or ROWS");
    }
    if (m_sectionPlaces[static_cast<std::size_t>(Section::Rows)] == nullptr)
    {
        return Fail(ended ? m_line.Begin() : m_line.End(), "mps.no-rows",
                    "there is no section ROWS", "check that the file is complete");
    }
    if (m_sectionPlaces[static_cast<std::size_t>(Section::Columns)] == nullptr)
    {
        if (!ended)
        {
            return Fail(m_line.End(), "mps.no-columns", "the file ends before COLUMNS",
                        "check that it is complete");
        }
        m_log.Warn(m_sectionPlaces[static_cast<std::size_t>(Section::End)], "mps.no-columns",
                   "the model has no section COLUMNS, and so no variable");
    }
    if (!ended)
    {
        m_log.Warn(m_line.End(), "mps.no-end", "the file ends without ENDATA",
                   "check that it is complete and add ENDATA");
    }
    return true;
}

bool Parser::Fail(const char* at, std::string code, std::string text, std::string hint)
{
    if (!SettleEntries())
        return false;
    return m_log.Fail(at, std::move(code), std::move(text), std::move(hint));
}

bool Parser::Finish()
{
    FinishSense();
    if (!m_hasObjective)
    {
        m_log.Note(m_sectionPlaces[static_cast<std::size_t>(Section::Rows)], "mps.no-objective",
                   "there is no row of type N: any feasible point is optimal");
    }
    WarnOfNamesInOtherCase(m_log, "mps", "rows", m_rowPlaces,
                           [this](std::uint32_t at) { return m_rowNames[at]; });
    WarnOfNamesInOtherCase(m_log, "mps", "columns", m_columnPlaces,
                           [this](std::uint32_t at) { return m_model.VariableName(at); });
    FinishColumns();
    FinishBounds();
    return FinishRows();
}

void Parser::FinishSense()
{
    if (m_senseComment == nullptr || m_commentedSense == m_model.ObjectiveSense())
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
        m_model.SetSense(m_commentedSense);
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
