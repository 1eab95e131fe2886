#include "fmt/core.h"

namespace fmt
{

void Argument::AppendTo(std::string& out, std::string_view format) const
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    if (format == ":02X")
        out.append({kDigits[m_number / 16 % 16], kDigits[m_number % 16]});
    else if (m_kind == Kind::Text)
        out.append(m_text);
    else if (m_kind == Kind::Character)
        out.push_back(static_cast<char>(m_number));
    else if (m_kind == Kind::Signed)
        out.append(std::to_string(m_number));
    else
        out.append(std::to_string(static_cast<unsigned long long>(m_number)));
}

std::string Join(std::string_view format, const Argument* const* arguments)
{
    std::string out;
    for (std::size_t at = 0; at < format.size(); ++at)
    {
        const bool isDoubled = at + 1 < format.size() && format[at + 1] == format[at];
        if (format[at] == '{' && !isDoubled)
        {
            const std::size_t end = format.find('}', at);
            (*arguments++)->AppendTo(out, format.substr(at + 1, end - at - 1));
            at = end;
            continue;
        }
        out.push_back(format[at]);
        if ((format[at] == '{' || format[at] == '}') && isDoubled)
            ++at;
    }
    return out;
}

}  // namespace fmt
