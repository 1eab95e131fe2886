// The parser calls Builder with each piece of the text as it finds it. It says neither where a
// value stands nor, of an integer, how it is written; the bytes that it has taken so far show both.
#include "Nuv/Report/JsonReader.hpp"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace nuv
{
namespace
{

/// What reads the values, and what frees them, may call itself for each level.
constexpr std::size_t kDeepest = 100;

/// Reads on in a text and shows others how far it has come.
class Cursor
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Cursor(const char* at, const char** shown) : m_at(at), m_shown(shown) {}

    reference operator*() const
    {
        return *m_at;
    }
    Cursor& operator++()
    {
        *m_shown = ++m_at;
        return *this;
    }
    bool operator==(const Cursor& other) const
    {
        return m_at == other.m_at;
    }

private:
    const char* m_at;
    const char** m_shown;
};

class Builder
{
public:
    using number_integer_t = nlohmann::json::number_integer_t;
    using number_unsigned_t = nlohmann::json::number_unsigned_t;
    using number_float_t = nlohmann::json::number_float_t;
    using string_t = nlohmann::json::string_t;
    using binary_t = nlohmann::json::binary_t;
    using Kind = JsonValue::Kind;

    Builder(std::string_view text, DiagnosticLog& log)
        : m_text(text), m_log(log), m_taken(text.data()), m_behind(text.data())
    {
    }

    [[nodiscard]] bool Read(JsonValue& root)
    {
        m_root = &root;
        const char* const end = m_text.data() + m_text.size();
        return nlohmann::json::sax_parse(Cursor(m_text.data(), &m_taken), Cursor(end, &m_taken),
                                         this);
    }

    // What the parser calls; false ends the reading.
    bool null()
    {
        return Add(Kind::Null, "null");
    }
    bool boolean(bool value)
    {
        return Add(Kind::Boolean, value ? "true" : "false");
    }
    bool number_integer(number_integer_t value)
    {
        return Add(Kind::Number, std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value)
    {
        return Add(Kind::Number, std::to_string(value));
    }
    bool number_float(number_float_t, const string_t& written)
    {
        return Add(Kind::Number, written);
    }
    bool string(string_t& value)
    {
        return Add(Kind::String, std::move(value));
    }
    bool binary(binary_t&)
    {
        return false;
    }
    bool start_object(std::size_t)
    {
        return Open(Kind::Object);
    }
    bool start_array(std::size_t)
    {
        return Open(Kind::Array);
    }
    bool key(string_t& name)
    {
        m_behind = m_taken;
        m_open.back()->keys.push_back(std::move(name));
        return true;
    }
    bool end_object()
    {
        const JsonValue& object = *m_open.back();
        std::vector<std::string_view> keys(object.keys.begin(), object.keys.end());
        std::ranges::sort(keys);
        const auto twice = std::ranges::adjacent_find(keys);
        if (twice != keys.end())
            return m_log.Fail(object.at, "json.repeated-key",
                              fmt::format("this object has the key \"{}\" twice", *twice));
        return end_array();
    }
    bool end_array()
    {
        m_open.pop_back();
        return true;
    }
    bool parse_error(std::size_t position, const std::string&,
                     const nlohmann::json::exception& error)
    {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: what it is"
        const std::string_view text = error.what();
        const std::size_t colon = text.find(": ");
        const std::size_t begin = colon == std::string_view::npos ? 0 : colon + 2;
        const std::size_t at = std::min(position == 0 ? 0 : position - 1, m_text.size());
        return m_log.Fail(m_text.data() + at, "json.syntax", std::string(text.substr(begin)));
    }

private:
    /// The first byte of the value that was just found: what lies between it and the piece before
    /// is blanks and marks. Of a number one byte more than its own was taken, which is such a one.
    const char* Begin()
    {
        const std::string_view between = " \t\r\n,:]}";
        const char* const begin = std::find_if(
            m_behind, m_taken, [&](char c) { return between.find(c) == std::string_view::npos; });
        m_behind = m_taken;
        return begin;
    }

    bool Add(Kind kind, std::string text)
    {
        JsonValue& value = m_open.empty() ? *m_root : m_open.back()->items.emplace_back();
        value.kind = kind;
        value.at = Begin();
        value.text = std::move(text);
        return true;
    }

    bool Open(Kind kind)
    {
        JsonValue& parent = m_open.empty() ? *m_root : *m_open.back();
        (void)Add(kind, {});
        // A value moves only when its parent takes another one, and then it is closed.
        m_open.push_back(m_open.empty() ? &parent : &parent.items.back());
        return m_open.size() <= kDeepest ||
               m_log.Fail(m_open.back()->at, "json.depth",
                          fmt::format("more than {} levels of brackets", kDeepest));
    }

    std::string_view m_text;
    DiagnosticLog& m_log;
    const char* m_taken;   ///< behind the last byte that the parser has seen
    const char* m_behind;  ///< the same, when it found the piece before
    JsonValue* m_root = nullptr;
    std::vector<JsonValue*> m_open;  ///< the objects and arrays around the next value
};

}  // namespace

const JsonValue* JsonValue::Find(std::string_view key) const noexcept
{
    const auto found = std::ranges::find(keys, key);
    return found == keys.end() ? nullptr : &items[static_cast<std::size_t>(found - keys.begin())];
}

std::string_view KindWords(JsonValue::Kind kind) noexcept
{
    constexpr std::string_view kWords[] = {"null",     "a boolean", "a number",
                                           "a string", "an array",  "an object"};
    return kWords[static_cast<std::size_t>(kind)];
}

std::optional<JsonValue> ReadJson(std::string_view text, DiagnosticLog& log)
{
    JsonValue value;
    if (!Builder(text, log).Read(value))
        return std::nullopt;
    return value;
}

}  // namespace nuv
