/// The parser behind ReadLp: recursive descent over the words of the lexer, one member function for
/// each thing of the grammar, each leaving `m_token` at the first word that is not its own.
///
/// Line ends matter in one place only. The right-hand side of a row ends with its line, since `<=
/// 4` followed by `x + y` on the next line is two rows and not the term 4 x; everywhere else a line
/// end is a blank. A word of a section is a section's start where a variable could not stand, and a
/// variable where a section could not start; where both could, what follows decides.
///
/// Every function that returns bool has reported an error when it returns false.
#pragma once

#include "Nuv/Io/Lp/LpKeywords.hpp"
#include "Nuv/Io/Lp/LpLexer.hpp"
#include "Nuv/Io/Reading.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nuv::lp
{

/// From here on a number in a bound stands for infinity, as most programs take it.
inline constexpr double kInfiniteFrom = 1e30;

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
    Parser(std::string_view text, std::string_view file, const ReadOptions& options);

    [[nodiscard]] Reading Run();

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
        double constant = 0.0;
        const char* begin = nullptr;
    };

    /// Which bounds a file has given a variable, and where it did so last.
    struct BoundPlace
    {
        const char* at = nullptr;
        bool lower = false;
        bool upper = false;
    };

    /// The last row that a column occurs in, and which of that row's entries it is.
    struct Mark
    {
        std::uint32_t row;
        std::uint32_t entry;
    };

    /// A term that has been read and waits for its variable to be looked up.
    struct PendingTerm
    {
        NameTable::Key key;
        std::string_view name;
        double coefficient;
        std::uint32_t column;
    };
    /// So many lookups wait for memory together.
    static constexpr std::size_t kPendingTerms = 32;

    /// A value in Bounds or at the end of a row; infinite ones included.
    struct Value
    {
        double number = 0.0;
        const char* at = nullptr;
    };

    // Sections.
    bool ParseFile();
    bool ParseObjective();
    bool ParseSections();
    bool OpenSection(const Keyword& keyword);
    bool ParseRows();
    bool ParseBounds();
    bool ParseIntegers(const Keyword& keyword);
    void SetBinary(std::uint32_t column, const Token& name);
    bool ParseEnd();
    void Finish();
    void FinishBounds();

    // The objective and rows.
    bool AtObjectiveEnd();
    bool EndObjective();
    [[nodiscard]] bool Continues(const Side& side, SideKind kind) const;
    bool ParseSide(Side& side, double factor, SideKind kind);
    bool ParseTerm(Side& side, double factor, double sign, SideKind kind);
    bool ParseNumberTerm(Side& side, double factor, double sign, SideKind kind);
    bool NumberTakesName(SideKind kind) const;
    bool SectionAfterObjectiveConstant(const Keyword& keyword) const;
    bool RelationFollowsOnLine() const;
    bool AddTerm(Side& side, const Token& name, double coefficient);
    bool FlushTerms();
    bool StoreTerm(const PendingTerm& term);
    bool AddInfinity(Side& side, double sign, SideKind kind);
    bool AddConstant(Side& side, double value, const char* at);
    bool NoteRepeat(std::string_view name);
    bool TakeLabel(Token& label);
    bool BeginRow(const std::optional<Token>& label);
    bool ParseRow();
    bool ParseAfterVariables(const Side& left, TokenKind relation);
    bool ParseAfterConstant(const Side& left, TokenKind relation);
    bool EndRow(const Side& last);
    bool SetRow(TokenKind relation, const Side& bound, double bodyConstant);
    bool SideValue(const Side& side, TokenKind relation, double& value);
    bool FinishRow(double bodyConstant);
    bool CheckRow(const char* at);

    // Bounds.
    bool ParseBound();
    bool ParseBoundAfterName(const Token& name);
    bool ParseValue(Value& value);
    bool ApplyBound(std::uint32_t column, TokenKind relation, const Value& value,
                    std::string_view name);
    bool SetFree(const Token& name);
    std::uint32_t BoundColumn(const Token& name);

    // Names and words.
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
    bool InternVariable(std::string_view name, std::uint32_t& column);
    bool InternVariable(std::string_view name, const NameTable::Key& key, std::uint32_t& column);
    bool CheckNewName(std::string_view name);
    bool CheckName(std::string_view name, const char* at);
    void FindProblemName(std::string_view before);

    // Complaints: each returns false.
    bool Unexpected();
    bool UnexpectedName();
    bool UnexpectedNumber();
    bool NotANumber(std::string_view name);
    bool SecondRelation();
    bool NotAModel();
    bool RowWithoutRelation(const Side& side);
    bool Refuse(const Keyword& keyword);
    [[nodiscard]] std::string Where() const;
    bool FailHere(std::string code, std::string text, std::string hint = {})
    {
        return m_log.Fail(m_token.Begin(), std::move(code), std::move(text), std::move(hint));
    }

    std::string_view m_text;
    ReadOptions m_options;
    DiagnosticLog m_log;
    Lexer m_lexer;
    Token m_token;
    Model m_model;

    Keyword m_section;  ///< set by AtSection
    bool m_seenConstraints = false;
    bool m_seenEnd = false;
    enum class Place : std::uint8_t
    {
        Start,
        Objective,
        Rows,
        Bounds,
        Integers
    };
    Place m_place = Place::Start;

    std::vector<Mark> m_marks;
    std::vector<PendingTerm> m_pending;
    std::vector<const char*> m_rowPlaces;
    std::vector<const char*> m_variablePlaces;  ///< where each is named first
    std::vector<BoundPlace> m_boundPlaces;
    bool m_rowHasRepeats = false;
    bool m_rowHasZeros = false;
};

}  // namespace nuv::lp
