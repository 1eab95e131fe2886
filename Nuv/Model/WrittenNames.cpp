#include "Nuv/Model/WrittenNames.hpp"

#include "fmt/format.h"

#include <algorithm>
#include <utility>

namespace nuv
{
namespace
{

constexpr std::size_t kShown = 5;

bool IsContinuation(char c) noexcept
{
    return (static_cast<unsigned char>(c) & 0xC0u) == 0x80u;
}

}  // namespace

std::vector<std::string_view> VariableNamesOf(const Model& model)
{
    std::vector<std::string_view> names;
    names.reserve(model.VariableCount());
    for (std::uint32_t column = 0; column < model.VariableCount(); ++column)
        names.push_back(model.VariableName(column));
    return names;
}

std::vector<std::string_view> RowNamesOf(const Model& model)
{
    std::vector<std::string_view> names;
    names.reserve(model.RowCount() + 1);
    for (std::uint32_t row = 0; row < model.RowCount(); ++row)
        names.push_back(model.RowName(row));
    return names;
}

WrittenNames::WrittenNames(const std::vector<std::string_view>& names, const NameRules& rules)
    : m_rules(rules), m_written(names)
{
    std::vector<std::size_t> changed;
    for (std::size_t at = 0; at < names.size(); ++at)
    {
        if (!Holds(names[at]))
            changed.push_back(at);
    }
    if (changed.empty())
        return;
    // All names count as taken, the changed ones too: a name never changes its bearer.
    for (const std::string_view name : names)
        m_taken.Intern(name);
    for (const std::size_t at : changed)
    {
        m_written[at] = m_mended.emplace_back(Mended(names[at]));
        m_taken.Intern(m_written[at]);
        m_changes.push_back({names[at], m_written[at]});
    }
}

bool WrittenNames::Holds(std::string_view name) const
{
    return name.size() <= m_rules.longest && m_rules.holds(name);
}

std::string WrittenNames::Mended(std::string_view name) const
{
    std::string mended;
    for (const char c : name)
    {
        if (m_rules.holdsCharacter(c))
            mended += c;
        else if (!IsContinuation(c))
            mended += '_';
    }
    const auto fitted = [&](const std::string& suffix)
    {
        const std::size_t room = m_rules.longest - std::min(m_rules.longest, suffix.size());
        return mended.substr(0, room) + suffix;
    };
    if (mended.empty() || !m_rules.holds(fitted("")))
        mended.insert(mended.begin(), '_');
    std::string candidate = fitted("");
    for (std::size_t number = 2; m_taken.Find(candidate) != NameTable::None; ++number)
        candidate = fitted("_" + std::to_string(number));
    return candidate;
}

void WrittenNames::Report(Writing& writing, std::string code, std::string_view what) const
{
    if (m_changes.empty())
        return;
    std::string list;
    for (std::size_t at = 0; at < std::min(kShown, m_changes.size()); ++at)
        list +=
            fmt::format("{}'{}' as {}", at == 0 ? "" : ", ", m_changes[at].from, m_changes[at].to);
    const std::size_t others = m_changes.size() - std::min(kShown, m_changes.size());
    if (others != 0)
        list += fmt::format(" and {} more", others);
    writing.Report(Severity::Warning, std::move(code),
                   fmt::format("{} {} renamed, since the format does not hold {}: {}",
                               m_changes.size(),
                               std::string(what) + (m_changes.size() == 1 ? " is" : "s are"),
                               m_changes.size() == 1 ? "its name" : "their names", list),
                   "a character that the format does not hold becomes an underscore");
}

}  // namespace nuv
