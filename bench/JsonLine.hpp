// A line of JSON: what bench/report/document.py makes tables of.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdio>
#include <string>
#include <string_view>

namespace bench
{
class JsonLine
{
public:
    explicit JsonLine(std::string_view kind) : text("{\"kind\": \"" + std::string(kind) + '"') {}

    /// A text without quotes and backslashes.
    JsonLine& Add(std::string_view name, std::string_view value)
    {
        return Put(name, '"' + std::string(value) + '"');
    }

    JsonLine& Add(std::string_view name, const char* value)
    {
        return Add(name, std::string_view(value));
    }

    template <std::integral Value>
    JsonLine& Add(std::string_view name, Value value)
    {
        if constexpr (std::same_as<Value, bool>)
            return Put(name, value ? "true" : "false");
        else
            return Put(name, std::to_string(value));
    }

    /// To nine digits; what is not finite as Python spells it.
    JsonLine& Add(std::string_view name, double value)
    {
        if (!std::isfinite(value))
            return Put(name, std::isnan(value) ? "NaN" : value > 0.0 ? "Infinity" : "-Infinity");
        char digits[32];
        (void)std::snprintf(digits, sizeof digits, "%.9g", value);
        return Put(name, digits);
    }

    [[nodiscard]] std::string Text() const
    {
        return text + "}\n";
    }

private:
    JsonLine& Put(std::string_view name, const std::string& value)
    {
        text += ", \"" + std::string(name) + "\": " + value;
        return *this;
    }

    std::string text;
};
}  // namespace bench
