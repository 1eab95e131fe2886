/// Writing JSON: numbers are the shortest decimals that read back to the same bits, strings are
/// UTF-8 whatever bytes they had.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace nuv
{

/// A JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string JsonString(std::string_view text);

/// A JSON number, or null for one that is infinite or none.
[[nodiscard]] std::string JsonNumber(double value);

/// Writes objects and arrays with the commas where they belong.
class Json
{
public:
    Json& Key(std::string_view name)
    {
        Separate();
        m_text.append(JsonString(name)).append(":");
        m_isFirst = true;
        return *this;
    }
    Json& Raw(std::string_view value)
    {
        Separate();
        m_text.append(value);
        return *this;
    }
    Json& Text(std::string_view value)
    {
        return Raw(JsonString(value));
    }
    Json& Number(double value)
    {
        return Raw(JsonNumber(value));
    }
    Json& Count(std::uint64_t value)
    {
        return Raw(std::to_string(value));
    }
    Json& Open(char bracket)
    {
        Separate();
        m_text += bracket;
        m_isFirst = true;
        return *this;
    }
    Json& Close(char bracket)
    {
        m_text += bracket;
        m_isFirst = false;
        return *this;
    }
    [[nodiscard]] std::string Finish()
    {
        return std::move(m_text) + "\n";
    }

private:
    void Separate()
    {
        if (!m_isFirst)
            m_text += ',';
        m_isFirst = false;
    }

    std::string m_text;
    bool m_isFirst = true;
};

}  // namespace nuv
