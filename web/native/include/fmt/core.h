// What the readers and writers of models ask of the formatting library, and no more: "{}" for
// texts, characters and integers, "{{" and "}}" for braces, and a byte in two hexadecimal digits.
// It stands in for that library in the build for WebAssembly, where its number printing and its
// locales would be a third of the program.
#ifndef NUV_WEB_FMT_CORE_H
#define NUV_WEB_FMT_CORE_H

#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>

namespace fmt
{

/// An argument: a text, which outlives it, a character, or an integer.
class Argument
{
public:
    Argument(std::string_view text) : m_text(text) {}
    Argument(const std::string& text) : m_text(text) {}
    Argument(const char* text) : m_text(text) {}
    Argument(char character) : m_number(character), m_kind(Kind::Character) {}
    template <std::integral Number>
    Argument(Number number)
        : m_number(static_cast<long long>(number)),
          m_kind(std::is_signed_v<Number> ? Kind::Signed : Kind::Unsigned)
    {
    }
    Argument(const Argument&) = delete;
    Argument& operator=(const Argument&) = delete;

    void AppendTo(std::string& out, std::string_view format) const;

private:
    enum class Kind : unsigned char
    {
        Text,
        Character,
        Signed,
        Unsigned,
    };

    std::string_view m_text;
    long long m_number = 0;
    Kind m_kind = Kind::Text;
};

std::string Join(std::string_view format, const Argument* const* arguments);

template <class... Arguments>
std::string format(std::string_view format, const Arguments&... arguments)
{
    return [format](const auto&... made)
    {
        const Argument* const all[] = {&made..., nullptr};
        return Join(format, all);
    }(Argument(arguments)...);
}

}  // namespace fmt

#endif
