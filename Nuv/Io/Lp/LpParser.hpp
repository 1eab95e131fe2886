/// The grammar of the LP format: recursive descent over the words of the lexer, one member function
/// for each thing of the grammar, each leaving `m_token` at the first word that is not its own.
/// What it understands goes to the Builder, what it does not to the Messages.
///
/// Line ends matter in one place only. The right-hand side of a row ends with its line, since `<=
/// 4` followed by `x + y` on the next line is two rows and not the term 4 x; everywhere else a line
/// end is a blank. A word of a section is a section's start where a variable could not stand, and a
/// variable where a section could not start; where both could, what follows decides.
///
/// Every function that returns bool has reported an error when it returns false.
#pragma once

#include "Nuv/Io/Lp/LpBuilder.hpp"
#include "Nuv/Io/Lp/LpKeywords.hpp"
#include "Nuv/Io/Lp/LpLexer.hpp"
#include "Nuv/Io/Lp/LpMessages.hpp"
#include "Nuv/Io/ReadResult.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace nuv::lp
{

/// The relation that says the same with its sides exchanged.
[[nodiscard]] inline TokenKind Mirrored(TokenKind relation) noexcept
{
    if (relation == TokenKind::Equal)
        return relation;
    return relation == TokenKind::LessEqual ? TokenKind::GreaterEqual : TokenKind::LessEqual;
}

[[nodiscard]] inline bool IsInfinity(const Token& token) noexcept
{
    return token.kind == TokenKind::Name && (token.text[0] == 'i' || token.text[0] == 'I') &&
           (EqualsIgnoringCase(token.text, "inf") || EqualsIgnoringCase(token.text, "infinity"));
}

class Parser
{
public:
    Parser(std::string_view text, const ReadOptions& options, Builder& builder, Messages& messages);

    /// From the first word to the last.
    bool Parse();

private:
    enum class SideKind : std::uint8_t
    {
        Objective,
        Left,   ///< before the first relation
        Body,   ///< after `constant <=`: may be the middle of a range
        Right,  ///< after the last relation
    };

    /// What stands between two relations, added up. Its variables have gone into the last row or
    /// into the objective.
    struct Side
    {
        bool hasVariables = false;
        bool bareName = false;  ///< nothing but one name
        std::size_t terms = 0;
        int infinity = 0;  ///< +1 or -1 for `inf`, which stands alone
        WrittenNumber constant;
        const char* begin = nullptr;

        [[nodiscard]] Limit AsLimit() const
        {
            return {infinity != 0 ? WrittenNumber(infinity * Infinity) : constant, begin};
        }
    };

    // Sections.
    bool ParseObjective();
    bool ParseSections();
    bool OpenSection(const Keyword& keyword);
    void OpenConstraints(const Keyword& keyword);
    void PassColon(const Keyword& keyword);
    [[nodiscard]] bool IsAloneWithColon(const Keyword& keyword) const;
    bool ParseRows();
    bool ParseBounds();
    bool ParseIntegers(const Keyword& keyword);
    bool ParseEnd();
    void FindProblemName(std::string_view before);

    // The objective and rows.
    bool AtObjectiveEnd();
    bool EndObjective();
    [[nodiscard]] bool Continues(const Side& side, SideKind kind) const;
    bool ParseSide(Side& side, double factor, SideKind kind);
    bool ParseTerm(Side& side, double factor, double sign, SideKind kind);
    bool ParseNumberTerm(Side& side, double factor, double sign, SideKind kind);
    bool CheckGluedName(const Token& number);
    [[nodiscard]] bool NumberTakesName(SideKind kind) const;
    [[nodiscard]] bool SectionAfterObjectiveConstant(const Keyword& keyword) const;
    [[nodiscard]] bool RelationFollowsOnLine() const;
    bool AddTerm(Side& side, const Token& name, WrittenNumber coefficient);
    bool AddInfinity(Side& side, double sign, SideKind kind);
    bool AddConstant(Side& side, const WrittenNumber& number, const char* at);
    WrittenNumber NumberOf(const Token& number, double sign);
    bool TakeLabel(Token& label);
    bool ParseRow(bool isLabelled);
    bool ParseAfterVariables(const Side& left, TokenKind relation);
    bool ParseAfterConstant(const Side& left, TokenKind relation);
    bool ParseEndOfRange(TokenKind first, const Side& body);
    bool EndRow(const Side& last);

    // Bounds.
    bool ParseBound();
    bool ParseBoundAfterName(const Token& name);
    bool ParseLimit(Limit& limit);

    // Words.
    void Advance()
    {
        m_token = m_lexer.Next();
    }
    [[nodiscard]] Token Peek() const
    {
        Lexer ahead = m_lexer;
        return ahead.Next();
    }
    /// Whether m_token opens a section; `mayBeName` says that a variable could stand here too.
    bool AtSection(bool mayBeName);

    bool Unexpected()
    {
        return m_messages.Unexpected(m_token, Peek());
    }
    bool FailHere(std::string code, std::string text, std::string hint = {})
    {
        return m_messages.Fail(m_token, std::move(code), std::move(text), std::move(hint));
    }

    std::string_view m_text;
    ReadOptions m_options;
    Builder& m_builder;
    Messages& m_messages;
    DiagnosticLog& m_log;
    Lexer m_lexer;
    Token m_token;
    Keyword m_section;  ///< set by AtSection
    bool m_seenConstraints = false;
    bool m_seenEnd = false;
};

}  // namespace nuv::lp
