/// A file from its first word to its last: what precedes the model, the objective, and the sections
/// one after another.
#include "Nuv/Io/Lp/LpParser.hpp"

#include <fmt/core.h>

namespace nuv::lp
{

Parser::Parser(std::string_view text, const ReadOptions& options, Builder& builder,
               Messages& messages)
    : m_text(text),
      m_options(options),
      m_builder(builder),
      m_messages(messages),
      m_log(messages.Log()),
      m_lexer(text),
      m_section{Section::None, false, {}, m_lexer}
{
}

bool Parser::Parse()
{
    Advance();
    const Keyword keyword = MatchKeyword(m_token, m_lexer);
    if (keyword.section != Section::Maximize && keyword.section != Section::Minimize)
        return m_messages.NotAModel(m_token, keyword.section);
    FindProblemName(m_text.substr(0, static_cast<std::size_t>(m_token.Begin() - m_text.data())));
    m_builder.SetSense(keyword.section == Section::Maximize ? Sense::Maximize : Sense::Minimize);
    Advance();
    // Rows of the language that starts with `max:` end with semicolons.
    if (m_token.kind == TokenKind::Colon && m_text.find(';') != std::string_view::npos)
        return m_messages.NotAModel(m_token, keyword.section);
    PassColon(keyword);
    return ParseObjective() && ParseSections();
}

void Parser::FindProblemName(std::string_view before)
{
    // What CPLEX writes, "\Problem name: x", and GLPK, "\* Problem: x *\".
    constexpr std::string_view kFramed = "\\* Problem: ";
    for (const std::string_view key : {std::string_view("\\Problem name: "), kFramed})
    {
        const std::size_t at = before.find(key);
        if (at == std::string_view::npos)
            continue;
        std::string_view name = before.substr(at + key.size());
        name = name.substr(0, name.find_first_of("\r\n"));
        if (key == kFramed && name.ends_with("*\\"))
            name.remove_suffix(2);
        name = name.substr(0, name.find_last_not_of(" \t") + 1);
        m_builder.SetName(name);
        return;
    }
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
    if (!m_seenConstraints)
    {
        m_log.Warn(m_token.Begin(), "lp.no-constraints", "the model has no Subject To section",
                   "check that the file is complete");
    }
    return true;
}

bool Parser::OpenSection(const Keyword& keyword)
{
    switch (keyword.section)
    {
    case Section::Constraints:
        OpenConstraints(keyword);
        return ParseRows();
    case Section::Bounds:
        PassColon(keyword);
        return ParseBounds();
    case Section::General:
    case Section::Binary:
        return ParseIntegers(keyword);
    case Section::End:
        return ParseEnd();
    default:
        return m_messages.Refuse(keyword);
    }
}

void Parser::OpenConstraints(const Keyword& keyword)
{
    if (m_seenConstraints)
    {
        m_log.Warn(keyword.text.data(), "lp.repeated-section",
                   fmt::format("a second '{}'", keyword.text), "other programs accept one only");
    }
    m_seenConstraints = true;
    PassColon(keyword);
}

void Parser::PassColon(const Keyword& keyword)
{
    if (m_token.kind != TokenKind::Colon)
        return;
    m_log.Warn(m_token.Begin(), "lp.colon-after-section",
               fmt::format("the colon after '{}' is passed over", keyword.text), "take it out");
    Advance();
}

bool Parser::ParseIntegers(const Keyword& keyword)
{
    m_messages.Enter(Place::Integers);
    const bool binary = keyword.section == Section::Binary;
    std::size_t count = 0;
    for (; m_token.kind == TokenKind::Name && !AtSection(false); Advance())
    {
        if (!m_options.relax)
            return m_messages.Refuse(keyword);
        if (!m_builder.AddInteger(m_token.text, binary))
            return false;
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

bool Parser::ParseEnd()
{
    m_seenEnd = true;
    if (m_token.kind == TokenKind::End)
        return true;
    return FailHere("lp.text-after-end", fmt::format("'{}' stands after End", m_token.text),
                    "move End to the end of the model, or take out what follows it");
}

/// `Bounds:` on a line of its own, which a label of a row would hardly have.
bool Parser::IsAloneWithColon(const Keyword& keyword) const
{
    Lexer ahead = m_lexer;
    return keyword.section == Section::Bounds && m_token.firstOfLine &&
           ahead.Next().kind == TokenKind::Colon && ahead.Next().firstOfLine;
}

bool Parser::AtSection(bool mayBeName)
{
    const Keyword keyword = MatchKeyword(m_token, m_lexer);
    if (keyword.section == Section::None || keyword.section == Section::Maximize ||
        keyword.section == Section::Minimize)
        return false;
    if (mayBeName && !keyword.manyWords)
    {
        const Token next = Peek();
        const bool sameLine = !next.firstOfLine;
        const bool isLabel = next.kind == TokenKind::Colon && !IsAloneWithColon(keyword);
        if (next.IsRelation() || isLabel || (sameLine && next.IsSign()))
            return false;
        if (m_messages.At() == Place::Bounds && sameLine && EqualsIgnoringCase(next.text, "free"))
            return false;
    }
    m_section = keyword;
    return true;
}

}  // namespace nuv::lp
