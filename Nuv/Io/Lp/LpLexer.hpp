/// The words of a CPLEX-LP file: names, numbers and signs, found in place in the text. Nothing is
/// copied and nothing allocated; a Lexer is two pointers, so that looking ahead is working on a
/// copy.
///
/// A name starts with a letter, a byte of a longer UTF-8 character or one of !"#$%&(),.;?@_'`{}~|
/// and goes on with those, digits and '/'. A number starts with a digit, or with a point before a
/// digit; two integers with '/' between them and no blanks are one too, the quotient. Comments run
/// from a backslash to the end of the line. Whether a word is the first of its line is kept, since
/// the format needs it where a right-hand side ends.
#pragma once

#include "Nuv/Io/LetterCase.hpp"

#include <cstdint>
#include <string_view>

namespace nuv::lp
{

enum class TokenKind : std::uint8_t
{
    End,
    Name,
    Number,
    Plus,
    Minus,
    LessEqual,     ///< <, <=, =<
    GreaterEqual,  ///< >, >=, =>
    Equal,
    Colon,
    DoubleColon,
    Arrow,   ///< ->
    Other,   ///< one character that has no part in the format
    Binary,  ///< a byte that is no text
    Range,   ///< a number that double precision cannot hold
};

struct Token
{
    TokenKind kind = TokenKind::End;
    bool firstOfLine = false;
    bool glued = false;  ///< nothing stands between this word and the one before
    std::string_view text;
    double value = 0.0;  ///< of a Number, of a quotient nearly

    [[nodiscard]] const char* Begin() const noexcept
    {
        return text.data();
    }
    [[nodiscard]] const char* End() const noexcept
    {
        return text.data() + text.size();
    }
    [[nodiscard]] bool IsRelation() const noexcept
    {
        return kind == TokenKind::LessEqual || kind == TokenKind::GreaterEqual ||
               kind == TokenKind::Equal;
    }
    [[nodiscard]] bool IsSign() const noexcept
    {
        return kind == TokenKind::Plus || kind == TokenKind::Minus;
    }
};

class Lexer
{
public:
    explicit Lexer(std::string_view text) : m_at(text.data()), m_end(text.data() + text.size()) {}

    /// The next word; End, without characters, after the last one.
    Token Next() noexcept;

    /// The longest run of characters that names may hold, from `at`: what stands before the colon
    /// of a label, which unlike other names may start with a digit.
    [[nodiscard]] std::string_view NameRun(const char* at) const noexcept;

    /// Where the last word ended.
    [[nodiscard]] const char* Position() const noexcept
    {
        return m_at;
    }

    /// Goes on reading at `at`.
    void Rewind(const char* at) noexcept
    {
        m_at = at;
    }

private:
    [[nodiscard]] const char* NameEnd(const char* at) const noexcept;
    [[nodiscard]] const char* IndexEnd(const char* at) const noexcept;
    void SkipBlanks(Token& token) noexcept;
    void ReadNumber(Token& token) noexcept;
    void ReadDivisor(const char* begin, Token& token) noexcept;
    void ReadSign(Token& token) noexcept;

    const char* m_at;
    const char* m_end;
    bool m_started = false;
};

}  // namespace nuv::lp
