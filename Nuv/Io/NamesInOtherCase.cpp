/// Names in lower case are looked up in a table, if there can be two that become one.
#include "Nuv/Io/NamesInOtherCase.hpp"

#include "Nuv/Io/LetterCase.hpp"
#include "Nuv/Model/NameTable.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace nuv
{
namespace
{

using NameAt = std::function<std::string_view(std::uint32_t)>;

/// Where two names differ in case, one has a capital and one a small letter: most models have
/// letters of one case only.
bool HaveBothCases(std::size_t count, const NameAt& name)
{
    bool hasLower = false;
    bool hasUpper = false;
    for (std::uint32_t at = 0; at < count; ++at)
    {
        for (const char c : name(at))
        {
            hasLower = hasLower || (c >= 'a' && c <= 'z');
            hasUpper = hasUpper || (c >= 'A' && c <= 'Z');
        }
        if (hasLower && hasUpper)
            return true;
    }
    return false;
}

}  // namespace

void WarnOfNamesInOtherCase(DiagnosticLog& log, std::string_view format, std::string_view what,
                            const std::vector<const char*>& places, const NameAt& name)
{
    if (!HaveBothCases(places.size(), name))
        return;
    const std::string code = fmt::format("{}.names-in-other-case", format);
    NameTable lowered;
    std::vector<std::uint32_t> first;
    std::string text;
    for (std::uint32_t at = 0; at < places.size(); ++at)
    {
        text = name(at);
        if (text.empty())
            continue;
        std::transform(text.begin(), text.end(), text.begin(), ToLower);
        const NameTable::Interned interned = lowered.Intern(text);
        if (interned.isNew)
        {
            first.push_back(at);
            continue;
        }
        if (log.Full(code))
        {
            log.CountOnly(code);
            continue;
        }
        const std::uint32_t other = first[interned.index];
        log.Warn(places[at], code,
                 fmt::format("'{}' and '{}' in line {} are two {}", name(at), name(other),
                             log.LineOf(places[other]), what),
                 "letter case counts; if they are meant to be one, spell them alike");
    }
}

}  // namespace nuv
