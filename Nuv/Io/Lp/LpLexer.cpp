/// One table says what each byte may be; the rest follows from it.
#include "Nuv/Io/Lp/LpLexer.hpp"

#include "Nuv/Io/NumberText.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

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

/// An integer, nearly: digits * 10^places.
struct Leading
{
    double digits;
    std::ptrdiff_t places;
};

Leading LeadingDigits(const char* first, const char* last) noexcept
{
    constexpr std::ptrdiff_t kMost = 18;
    first = std::find_if(first, last, [](char c) { return c != '0'; });
    const char* const end = std::min(first + std::min(kMost, last - first), last);
    Leading leading{0.0, last - end};
    for (; first != end; ++first)
        leading.digits = 10.0 * leading.digits + (*first - '0');
    return leading;
}

/// value * 10^places, nearly; infinite or zero where that is beyond doubles.
double TimesPowerOfTen(double value, std::ptrdiff_t places) noexcept
{
    for (; places > 0 && std::isfinite(value); --places)
        value *= 10.0;
    for (; places < 0 && value != 0.0; ++places)
        value /= 10.0;
    return value;
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
        m_at = NameEnd(m_at);
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
    const char* const begin = m_at;
    const std::from_chars_result result = ReadDouble(m_at, m_end, token.value);
    if (result.ec != std::errc{})
        token.kind = TokenKind::Range;
    m_at = result.ptr;
    if (m_at != m_end && *m_at == '/')
        ReadDivisor(begin, token);
}

/// Takes `/q` behind an integer.
void Lexer::ReadDivisor(const char* begin, Token& token) noexcept
{
    const auto isDigit = [](char c) { return Is(c, kDigit); };
    const char* const first = m_at + 1;
    const char* const last = std::find_if_not(first, m_end, isDigit);
    if (first == last || *first == '0' || !std::all_of(begin, m_at, isDigit))
        return;
    // Either integer may be beyond doubles where their quotient is not.
    const Leading top = LeadingDigits(begin, m_at);
    const Leading bottom = LeadingDigits(first, last);
    token.value = TimesPowerOfTen(top.digits / bottom.digits, top.places - bottom.places);
    const bool isThere = std::isfinite(token.value) && (token.value != 0.0 || top.digits == 0.0);
    token.kind = isThere ? TokenKind::Number : TokenKind::Range;
    m_at = last;
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
    return {at, static_cast<std::size_t>(NameEnd(at) - at)};
}

/// Behind the name from `at`, the indices of which are parts of it: x[1,2], f[a][b]_in.
const char* Lexer::NameEnd(const char* at) const noexcept
{
    for (const char* index = at; index != m_end; at = index)
    {
        while (at != m_end && Is(*at, kNamePart))
            ++at;
        index = IndexEnd(at);
        if (index == at)
            break;
    }
    return at;
}

/// Behind the brackets that stand at `at`, or `at` where there are none or they may hold quadratic
/// terms, of which no name is glued to the bracket.
const char* Lexer::IndexEnd(const char* at) const noexcept
{
    const auto isIndex = [](char c)
    { return Is(c, kNamePart) || c == '-' || c == '+' || c == ':' || c == '='; };
    if (at == m_end || *at != '[')
        return at;
    const char* const end = std::find_if_not(at + 1, m_end, isIndex);
    return end != m_end && *end == ']' && end != at + 1 ? end + 1 : at;
}

}  // namespace nuv::lp
