/// One table says what each byte may be; the rest follows from it.
#include "Nuv/Io/Lp/LpLexer.hpp"

#include "Nuv/Io/NumberText.hpp"

#include <array>

namespace nuv::lp
{
namespace
{

enum ByteClass : std::uint8_t
{
    kNameStart = 1,
    kNamePart = 2,
    kDigit = 4,
    kBlank = 8,
};

constexpr std::array<std::uint8_t, 256> MakeClasses()
{
    std::array<std::uint8_t, 256> classes{};
    for (unsigned c = 0x80; c < 0x100; ++c)
        classes[c] = kNameStart | kNamePart;
    for (unsigned c = 'a'; c <= 'z'; ++c)
        classes[c] = classes[c - 'a' + 'A'] = kNameStart | kNamePart;
    for (const char c : std::string_view("!\"#$%&(),.;?@_'`{}~|"))
        classes[static_cast<unsigned char>(c)] = kNameStart | kNamePart;
    for (unsigned c = '0'; c <= '9'; ++c)
        classes[c] = kDigit | kNamePart;
    classes[static_cast<unsigned char>('/')] = kNamePart;
    for (const char c : std::string_view(" \t\n\v\f\r"))
        classes[static_cast<unsigned char>(c)] = kBlank;
    return classes;
}

constexpr std::array<std::uint8_t, 256> kClasses = MakeClasses();

bool Is(char c, ByteClass kind) noexcept
{
    return (kClasses[static_cast<unsigned char>(c)] & kind) != 0;
}

}  // namespace

void Lexer::SkipBlanks(Token& token) noexcept
{
    const char* const from = m_at;
    token.firstOfLine = !m_started;
    m_started = true;
    while (m_at != m_end)
    {
        if (*m_at == '\\')
        {
            while (m_at != m_end && *m_at != '\n' && *m_at != '\r')
                ++m_at;
        }
        else if (Is(*m_at, kBlank))
        {
            token.firstOfLine = token.firstOfLine || *m_at == '\n' || *m_at == '\r';
            ++m_at;
        }
        else
        {
            break;
        }
    }
    token.glued = m_at == from;
}

Token Lexer::Next() noexcept
{
    Token token;
    SkipBlanks(token);
    const char* const begin = m_at;
    if (m_at == m_end)
    {
        token.text = std::string_view(m_at, m_end);
        return token;
    }
    const bool pointBeforeDigit = *m_at == '.' && m_at + 1 != m_end && Is(m_at[1], kDigit);
    if (Is(*m_at, kDigit) || pointBeforeDigit)
    {
        ReadNumber(token);
    }
    else if (Is(*m_at, kNameStart))
    {
        token.kind = TokenKind::Name;
        do
            ++m_at;
        while (m_at != m_end && Is(*m_at, kNamePart));
    }
    else
    {
        ReadSign(token);
    }
    token.text = {begin, static_cast<std::size_t>(m_at - begin)};
    return token;
}

void Lexer::ReadNumber(Token& token) noexcept
{
    token.kind = TokenKind::Number;
    const std::from_chars_result result = ReadDouble(m_at, m_end, token.value);
    if (result.ec != std::errc{})
        token.kind = TokenKind::Range;
    m_at = result.ptr;
}

void Lexer::ReadSign(Token& token) noexcept
{
    const char first = *m_at++;
    const char second = m_at != m_end ? *m_at : '\0';
    const auto take = [&](TokenKind kind, std::size_t more)
    {
        token.kind = kind;
        m_at += more;
    };
    switch (first)
    {
    case '+':
        return take(TokenKind::Plus, 0);
    case '-':
        return second == '>' ? take(TokenKind::Arrow, 1) : take(TokenKind::Minus, 0);
    case '<':
        return take(TokenKind::LessEqual, second == '=' ? 1 : 0);
    case '>':
        return take(TokenKind::GreaterEqual, second == '=' ? 1 : 0);
    case '=':
        if (second == '<')
            return take(TokenKind::LessEqual, 1);
        return second == '>' ? take(TokenKind::GreaterEqual, 1) : take(TokenKind::Equal, 0);
    case ':':
        return second == ':' ? take(TokenKind::DoubleColon, 1) : take(TokenKind::Colon, 0);
    default:
        break;
    }
    const auto byte = static_cast<unsigned char>(first);
    take(byte < 0x20u || byte == 0x7Fu ? TokenKind::Binary : TokenKind::Other, 0);
}

std::string_view Lexer::NameRun(const char* at) const noexcept
{
    const char* end = at;
    while (end != m_end && Is(*end, kNamePart))
        ++end;
    return {at, static_cast<std::size_t>(end - at)};
}

}  // namespace nuv::lp
