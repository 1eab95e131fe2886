#include "Nuv/Io/WrittenNames.hpp"

#include "Nuv/Io/Utf8.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace nuv
{
namespace
{

constexpr std::size_t kShown = 5;

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

/// The name itself, or with an underscore in front, or in place of its last character, or both.
std::string WrittenNames::WithHeldEnds(const std::string& name) const
{
    std::string led = ("_" + name).substr(0, m_rules.longest);
    if (name.empty() || (!m_rules.holds(name) && m_rules.holds(led)))
        return led;
    std::string ended = m_rules.holds(name) ? name : name.substr(0, name.size() - 1) + '_';
    return m_rules.holds(ended) ? ended : led.substr(0, led.size() - 1) + '_';
}

std::string WrittenNames::WithHeldCharacters(std::string_view name, std::string_view without) const
{
    std::string text;
    for (const char c : name)
    {
        if (m_rules.holdsCharacter(c) && without.find(c) == std::string_view::npos)
            text += c;
        else if (!IsContinuation(c))
            text += '_';
    }
    return WithHeldEnds(text.substr(0, m_rules.longest));
}

std::string WrittenNames::Mended(std::string_view name) const
{
    std::string mended = WithHeldCharacters(name, {});
    if (!m_rules.holds(mended))
        mended = WithHeldCharacters(name, m_rules.lastResort);
    const auto fitted = [&](const std::string& suffix)
    {
        const std::size_t room = m_rules.longest - std::min(m_rules.longest, suffix.size());
        return mended.substr(0, room) + suffix;
    };
    std::string candidate = mended;
    for (std::size_t number = 2; m_taken.Find(candidate) != NameTable::kNone; ++number)
        candidate = fitted("_" + std::to_string(number));
    return candidate;
}

void WrittenNames::Report(WriteResult& writing, std::string code, std::string_view what) const
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
    const bool isCut = std::ranges::any_of(m_changes, [&](const Change& change)
                                           { return change.from.size() > m_rules.longest; });
    std::string hint = "a character that the format does not hold becomes an underscore";
    if (isCut)
        hint = fmt::format("names have at most {} bytes here, and {}", m_rules.longest, hint);
    writing.Report(Severity::Warning, std::move(code),
                   fmt::format("{} {} renamed, since the format does not hold {}: {}",
                               m_changes.size(),
                               std::string(what) + (m_changes.size() == 1 ? " is" : "s are"),
                               m_changes.size() == 1 ? "its name" : "their names", list),
                   std::move(hint));
}

void ReportModelName(WriteResult& writing, std::string code, std::string_view name,
                     std::string_view written)
{
    if (name == written)
        return;
    writing.Report(
        Severity::Note, std::move(code),
        fmt::format("the model is called '{}', since the format does not hold its name", written));
}

}  // namespace nuv
