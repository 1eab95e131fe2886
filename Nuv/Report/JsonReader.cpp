// One function for each kind of value. Each leaves m_at behind what it has read, or fails with the
// place of the first byte that does not belong.
#include "Nuv/Report/JsonReader.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace nuv
{
namespace
{

/// A reader that calls itself for each level must not run out of stack.
constexpr int kDeepest = 100;

bool IsDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

/// The character in UTF-8; it is no surrogate.
void AppendCharacter(std::string& text, unsigned code)
{
    const auto byte = [&](unsigned bits) { text += static_cast<char>(bits); };
    if (code < 0x80)
        return byte(code);
    if (code < 0x800)
        byte(0xC0U | (code >> 6U));
    else if (code < 0x10000)
    {
        byte(0xE0U | (code >> 12U));
        byte(0x80U | ((code >> 6U) & 0x3FU));
    }
    else
    {
        byte(0xF0U | (code >> 18U));
        byte(0x80U | ((code >> 12U) & 0x3FU));
        byte(0x80U | ((code >> 6U) & 0x3FU));
    }
    byte(0x80U | (code & 0x3FU));
}

class Reader
{
public:
    Reader(std::string_view text, DiagnosticLog& log)
        : m_at(text.data()), m_end(text.data() + text.size()), m_log(log)
    {
    }

    bool ReadWhole(JsonValue& value)
    {
        if (!ReadValue(value, 0))
            return false;
        SkipBlanks();
        return m_at == m_end ||
               Fail("json.after-end", "the value has ended before this", "a file holds one value");
    }

private:
    bool ReadValue(JsonValue& value, int depth)
    {
        SkipBlanks();
        value.at = m_at;
        if (m_at == m_end)
            return Fail("json.incomplete", "the text ends where a value should be",
                        "check that the file is complete");
        if (depth > kDeepest)
            return Fail("json.depth", fmt::format("more than {} levels of brackets", kDeepest), "");
        switch (*m_at)
        {
        case '{':
            return ReadObject(value, depth);
        case '[':
            return ReadArray(value, depth);
        case '"':
            value.kind = JsonValue::Kind::String;
            return ReadString(value.text);
        default:
            return IsDigit(*m_at) || *m_at == '-' ? ReadNumber(value) : ReadWord(value);
        }
    }

    bool ReadObject(JsonValue& value, int depth)
    {
        value.kind = JsonValue::Kind::Object;
        ++m_at;
        if (Take('}'))
            return true;
        do
        {
            SkipBlanks();
            if (m_at == m_end || *m_at != '"')
                return Fail("json.key", "a key in quotes should be here",
                            "write \"key\": value, with a comma between two of them only");
            if (!ReadString(value.keys.emplace_back()))
                return false;
            if (!Take(':'))
                return Fail("json.colon", "a colon should be here, between key and value", "");
            if (!ReadValue(value.items.emplace_back(), depth + 1))
                return false;
        } while (Take(','));
        if (!Take('}'))
            return Fail("json.bracket", "a comma or } should be here", "");
        return HasEachKeyOnce(value);
    }

    bool HasEachKeyOnce(const JsonValue& object)
    {
        std::vector<std::string_view> keys(object.keys.begin(), object.keys.end());
        std::ranges::sort(keys);
        const auto twice = std::ranges::adjacent_find(keys);
        return twice == keys.end() ||
               m_log.Fail(object.at, "json.repeated-key",
                          fmt::format("this object has the key \"{}\" twice", *twice));
    }

    bool ReadArray(JsonValue& value, int depth)
    {
        value.kind = JsonValue::Kind::Array;
        ++m_at;
        if (Take(']'))
            return true;
        do
        {
            if (!ReadValue(value.items.emplace_back(), depth + 1))
                return false;
        } while (Take(','));
        return Take(']') || Fail("json.bracket", "a comma or ] should be here", "");
    }

    bool ReadString(std::string& text)
    {
        const char* const begin = m_at;
        for (++m_at; m_at != m_end && *m_at != '"';)
        {
            if (static_cast<unsigned char>(*m_at) < 0x20)
                return Fail("json.control-character", "a string may not hold this as it is",
                            "write \\n for a line feed, \\t for a tab, \\u00XX for others");
            if (*m_at != '\\')
                text += *m_at++;
            else if (!ReadEscape(text))
                return false;
        }
        if (m_at == m_end)
            return m_log.Fail(begin, "json.open-string", "this string does not end");
        ++m_at;
        return true;
    }

    bool ReadEscape(std::string& text)
    {
        constexpr std::string_view letters = "\"\\/bfnrt";
        constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
        const char* const begin = m_at++;
        if (m_at != m_end && *m_at == 'u')
            return ReadCodes(begin, text);
        const std::size_t letter = m_at == m_end ? std::string_view::npos : letters.find(*m_at);
        if (letter == std::string_view::npos)
            return m_log.Fail(begin, "json.escape", "there is no such escape",
                              "a backslash itself is written \\\\");
        text += meanings[letter];
        ++m_at;
        return true;
    }

    /// \uXXXX, or two of them for a character beyond the first 65536.
    bool ReadCodes(const char* begin, std::string& text)
    {
        unsigned code = 0;
        unsigned low = 0;
        const bool isRead = ReadCode(code);
        const bool isHigh = isRead && code >= 0xD800 && code < 0xDC00;
        if (isHigh && m_at != m_end && *m_at == '\\')
        {
            ++m_at;
            if (ReadCode(low) && low >= 0xDC00 && low < 0xE000)
                code = 0x10000 + ((code - 0xD800) << 10U) + (low - 0xDC00);
        }
        if (!isRead || (code >= 0xD800 && code < 0xE000))
            return m_log.Fail(begin, "json.escape", "these are no digits of a character",
                              "\\u takes four hexadecimal digits, and surrogates come in pairs");
        AppendCharacter(text, code);
        return true;
    }

    bool ReadCode(unsigned& code)
    {
        if (m_at == m_end || *m_at != 'u')
            return false;
        ++m_at;
        for (int k = 0; k < 4; ++k, ++m_at)
        {
            if (m_at == m_end)
                return false;
            const char c = *m_at;
            const int digit = IsDigit(c)               ? c - '0'
                              : (c >= 'a' && c <= 'f') ? c - 'a' + 10
                              : (c >= 'A' && c <= 'F') ? c - 'A' + 10
                                                       : -1;
            if (digit < 0)
                return false;
            code = 16 * code + static_cast<unsigned>(digit);
        }
        return true;
    }

    bool ReadNumber(JsonValue& value)
    {
        const char* const begin = m_at;
        value.kind = JsonValue::Kind::Number;
        m_at += *m_at == '-' ? 1 : 0;
        const bool startsWithZero = m_at != m_end && *m_at == '0';
        const char* const whole = m_at;
        bool isGood = SkipDigits() && !(startsWithZero && m_at - whole > 1);
        if (isGood && m_at != m_end && *m_at == '.')
            isGood = (++m_at, SkipDigits());
        if (isGood && m_at != m_end && (*m_at == 'e' || *m_at == 'E'))
        {
            ++m_at;
            if (m_at != m_end && (*m_at == '+' || *m_at == '-'))
                ++m_at;
            isGood = SkipDigits();
        }
        value.text.assign(begin, m_at);
        return isGood || m_log.Fail(begin, "json.number", "JSON has no such number",
                                    "digits before and behind the point, no leading zero");
    }

    bool ReadWord(JsonValue& value)
    {
        const std::string_view rest(m_at, static_cast<std::size_t>(m_end - m_at));
        for (const std::string_view word : {"true", "false", "null"})
        {
            if (!rest.starts_with(word))
                continue;
            value.kind = word == "null" ? JsonValue::Kind::Null : JsonValue::Kind::Boolean;
            value.text = word;
            m_at += word.size();
            return true;
        }
        return Fail("json.value", "a value should be here",
                    "a number, a string in quotes, true, false, null, [ or {");
    }

    /// @return whether there was one at least.
    bool SkipDigits()
    {
        const char* const begin = m_at;
        while (m_at != m_end && IsDigit(*m_at))
            ++m_at;
        return m_at != begin;
    }

    void SkipBlanks()
    {
        while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\t' || *m_at == '\r'))
            ++m_at;
    }

    bool Take(char c)
    {
        SkipBlanks();
        if (m_at == m_end || *m_at != c)
            return false;
        ++m_at;
        return true;
    }

    bool Fail(std::string code, std::string text, std::string hint)
    {
        return m_log.Fail(m_at, std::move(code), std::move(text), std::move(hint));
    }

    const char* m_at;
    const char* m_end;
    DiagnosticLog& m_log;
};

}  // namespace

const JsonValue* JsonValue::Find(std::string_view key) const noexcept
{
    const auto found = std::ranges::find(keys, key);
    return found == keys.end() ? nullptr : &items[static_cast<std::size_t>(found - keys.begin())];
}

std::string_view KindWords(JsonValue::Kind kind) noexcept
{
    switch (kind)
    {
    case JsonValue::Kind::Null:
        return "null";
    case JsonValue::Kind::Boolean:
        return "a boolean";
    case JsonValue::Kind::Number:
        return "a number";
    case JsonValue::Kind::String:
        return "a string";
    case JsonValue::Kind::Array:
        return "an array";
    case JsonValue::Kind::Object:
        break;
    }
    return "an object";
}

std::optional<JsonValue> ReadJson(std::string_view text, DiagnosticLog& log)
{
    JsonValue value;
    if (!Reader(text, log).ReadWhole(value))
        return std::nullopt;
    return value;
}

}  // namespace nuv
