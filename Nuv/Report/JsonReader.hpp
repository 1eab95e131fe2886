/// JSON as RFC 8259 has it, and nothing beyond: no comments, no trailing commas, no NaN, no key
/// twice in an object. Every value knows where it stands, so that what reads the values can point
/// to them.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuv
{

struct JsonValue
{
    enum class Kind
    {
        Null,
        Boolean,
        Number,
        String,
        Array,
        Object
    };

    Kind kind = Kind::Null;
    const char* at = nullptr;  ///< its first byte in the text
    /// A string's characters in UTF-8; a number, true or false as it is written.
    std::string text;
    std::vector<JsonValue> items;   ///< of an array, or the values of an object
    std::vector<std::string> keys;  ///< of an object, alongside items

    /// @return the value under `key`; null if this is no object or has none.
    [[nodiscard]] const JsonValue* Find(std::string_view key) const noexcept;
};

/// "null", "a boolean", "a number", "a string", "an array" or "an object".
[[nodiscard]] std::string_view KindWords(JsonValue::Kind kind) noexcept;

/// Reads one value that takes up the whole of `text`, which is the log's text.
/// @return nothing after an error, which is in the log.
[[nodiscard]] std::optional<JsonValue> ReadJson(std::string_view text, DiagnosticLog& log);

}  // namespace nuv
