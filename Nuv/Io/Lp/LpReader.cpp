/// A file from its first byte to its last: what precedes the model, its sections one after another,
/// and what can only be said when all of it is known.
#include "Nuv/Io/Lp/LpReader.hpp"

#include "Nuv/Io/Lp/LpParser.hpp"
#include "Nuv/Io/NamesInOtherCase.hpp"

#include <fmt/format.h>

namespace nuv
{

Reading ReadLp(std::string_view text, std::string_view file, const ReadOptions& options)
{
    // A byte-order mark is no part of the first line.
    if (text.substr(0, 3) == "\xEF\xBB\xBF")
        text.remove_prefix(3);
    return lp::Parser(text, file, options).Run();
}

namespace lp
{

Parser::Parser(std::string_view text, std::string_view file, const ReadOptions& options)
    : m_text(text),
      m_options(options),
      m_log(file, text),
      m_lexer(text),
      m_section{Section::None, false, {}, m_lexer}
{
}

Reading Parser::Run()
{
    Reading reading;
    if (ParseFile())
    {
        Finish();
        reading.model = std::move(m_model);
    }
    reading.diagnostics = m_log.Take();
    return reading;
}

bool Parser::ParseFile()
{
    Advance();
    const Keyword keyword = MatchKeyword(m_token, m_lexer);
    if (keyword.section != Section::Maximize && keyword.section != Section::Minimize)
        return NotAModel();
    FindProblemName(m_text.substr(0, static_cast<std::size_t>(m_token.Begin() - m_text.data())));
    m_model.SetSense(keyword.section == Section::Maximize ? Sense::Maximize : Sense::Minimize);
    Advance();
    if (m_token.kind == TokenKind::Colon)
        return NotAModel();
    return ParseObjective() && ParseSections();
}

bool Parser::ParseSections()
{
    while (m_section.section != Section::None)
    {
        const Keyword keyword = std::exchange(m_section, {Section::None, false, {}, m_lexer});
        m_lexer = keyword.after;
        Advance();
        if (!OpenSection(keyword))
            return false;
    }
    if (m_token.kind != TokenKind::End)
        return Unexpected();
    if (!m_seenEnd)
        m_log.Warn(m_token.Begin(), "lp.no-end", "the file ends without End",
                   "check that it is complete and add End");
    return true;
}

bool Parser::OpenSection(const Keyword& keyword)
{
    switch (keyword.section)
    {
    case Section::Constraints:
        if (m_seenConstraints)
        {
            m_log.Warn(keyword.text.data(), "lp.repeated-section",
                       fmt::format("a second '{}'", keyword.text),
                       "other programs accept one only");
        }
        m_seenConstraints = true;
        if (m_token.kind == TokenKind::Colon)
        {
            m_log.Warn(m_token.Begin(), "lp.colon-after-section",
                       fmt::format("the colon after '{}' is passed over", keyword.text),
                       "take it out");
            Advance();
        }
        return ParseRows();
    case Section::Bounds:
        return ParseBounds();
    case Section::General:
    case Section::Binary:
        return ParseIntegers(keyword);
    case Section::End:
        return ParseEnd();
    default:
        return Refuse(keyword);
    }
}

bool Parser::ParseIntegers(const Keyword& keyword)
{
    m_place = Place::Integers;
    const bool binary = keyword.section == Section::Binary;
    std::size_t count = 0;
    for (; m_token.kind == TokenKind::Name && !AtSection(false); Advance())
    {
        if (!m_options.relax)
            return Refuse(keyword);
        std::uint32_t column = 0;
        const std::uint32_t before = m_model.VariableCount();
        if (!InternVariable(m_token.text, column))
            return false;
        if (column == before)
        {
            m_log.Note(m_token.Begin(), "lp.new-variable",
                       fmt::format("'{}' stands in no row, in no bound and not in the objective",
                                   m_token.text));
        }
        if (binary)
            SetBinary(column, m_token);
        ++count;
    }
    if (m_token.kind != TokenKind::End && m_section.section == Section::None)
        return Unexpected();
    if (count == 0)
        return true;
    m_log.Warn(keyword.text.data(), "lp.relaxed",
               fmt::format("{} {} variable{} taken for continuous{}", count,
                           binary ? "binary" : "integer", count == 1 ? " is" : "s are",
                           binary ? " between 0 and 1" : ""),
               "the answer bounds that of the integer model and need not be whole");
    return true;
}

void Parser::SetBinary(std::uint32_t column, const Token& name)
{
    const bool bounded = column < m_boundPlaces.size() && m_boundPlaces[column].at != nullptr;
    const double lower = m_model.VariableLower()[column];
    const double upper = m_model.VariableUpper()[column];
    if (bounded && (lower < 0.0 || upper > 1.0))
    {
        m_log.Warn(name.Begin(), "lp.bound-redefined",
                   fmt::format("the bounds {} <= {} <= {} become 0 and 1", lower, name.text, upper),
                   "take one of them out");
    }
    m_model.SetVariableBounds(column, {0.0, 1.0});
}

bool Parser::ParseEnd()
{
    m_seenEnd = true;
    if (m_token.kind == TokenKind::End)
        return true;
    return FailHere("lp.text-after-end", fmt::format("'{}' stands after End", m_token.text),
                    "move End to the end of the model, or take out what follows it");
}

void Parser::Finish()
{
    if (!m_seenConstraints)
    {
        m_log.Warn(m_token.Begin(), "lp.no-constraints", "the model has no Subject To section",
                   "check that the file is complete");
    }
    FinishBounds();
    const std::string& objective = m_model.ObjectiveName();
    if (const std::optional<Row> row = m_model.FindRow(objective))
    {
        m_log.Warn(m_rowPlaces[row->Index()], "lp.objective-name-taken",
                   fmt::format("row '{}' has the name of the objective", objective),
                   "an MPS file cannot hold both; rename one");
    }
    WarnOfNamesInOtherCase(m_log, "lp", "variables", m_variablePlaces,
                           [this](std::uint32_t at) { return m_model.VariableName(at); });
    WarnOfNamesInOtherCase(m_log, "lp", "rows", m_rowPlaces,
                           [this](std::uint32_t at) { return m_model.RowName(at); });
    m_model.NameUnnamedRows();
}

/// Bounds that no value can keep.
void Parser::FinishBounds()
{
    for (std::uint32_t column = 0; column < m_boundPlaces.size(); ++column)
    {
        const BoundPlace& place = m_boundPlaces[column];
        const double lower = m_model.VariableLower()[column];
        const double upper = m_model.VariableUpper()[column];
        if (place.at == nullptr || lower <= upper)
            continue;
        const std::string_view name = m_model.VariableName(column);
        if (place.lower)
        {
            m_log.Warn(
                place.at, "lp.contradictory-bounds",
                fmt::format("the bounds {} <= {} <= {} contradict each other", lower, name, upper),
                "no value can keep them: the model is infeasible");
        }
        else
        {
            m_log.Warn(
                place.at, "lp.negative-upper-bound",
                fmt::format("'{}' <= {} while its lower bound stays 0: the model is infeasible",
                            name, upper),
                fmt::format(
                    "write -inf <= {} <= {} if it may be negative, as some programs read it", name,
                    upper));
        }
    }
}

void Parser::FindProblemName(std::string_view before)
{
    // What CPLEX writes, "\Problem name: x", and GLPK, "\* Problem: x *\".
    constexpr std::string_view framed = "\\* Problem: ";
    for (const std::string_view key : {std::string_view("\\Problem name: "), framed})
    {
        const std::size_t at = before.find(key);
        if (at == std::string_view::npos)
            continue;
        std::string_view name = before.substr(at + key.size());
        name = name.substr(0, name.find_first_of("\r\n"));
        if (key == framed && name.ends_with("*\\"))
            name.remove_suffix(2);
        name = name.substr(0, name.find_last_not_of(" \t") + 1);
        m_model.SetName(name);
        return;
    }
}

}  // namespace lp
}  // namespace nuv
