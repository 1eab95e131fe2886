/// The names under which a model is written. A format may not hold a name as it is: then each
/// character that it does not hold becomes an underscore, a name that is too long is cut, an
/// underscore goes in front if the name cannot start as it does, or in place of the last character
/// if it cannot end as it does, parentheses become underscores where that is not enough, and as
/// long as another one has the result, _2, _3, ... is appended. Every other name stays. Invariant:
/// no two written names are equal, and the same names always become the same.
#pragma once

#include "Nuv/Io/WriteResult.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Model/NameTable.hpp"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace nuv
{

/// What a format asks of names.
struct NameRules
{
    bool (*holds)(std::string_view name);
    bool (*holdsCharacter)(char character);
    std::size_t longest = static_cast<std::size_t>(-1);
    /// Characters that become underscores too where a name is not held with them.
    std::string_view lastResort = {};
};

[[nodiscard]] std::vector<std::string_view> VariableNamesOf(const Model& model);
[[nodiscard]] std::vector<std::string_view> RowNamesOf(const Model& model);

/// Reports a model that is not written under its own name.
void ReportModelName(WriteResult& writing, std::string code, std::string_view name,
                     std::string_view written);

class WrittenNames
{
public:
    /// `names` are different from each other and not empty; they outlive this object.
    WrittenNames(const std::vector<std::string_view>& names, const NameRules& rules);

    [[nodiscard]] std::string_view operator[](std::size_t index) const noexcept
    {
        return m_written[index];
    }

    /// Reports which names are not written as they are: the first few, and how many.
    void Report(WriteResult& writing, std::string code, std::string_view what) const;

private:
    struct Change
    {
        std::string_view from;
        std::string_view to;
    };

    [[nodiscard]] std::string Mended(std::string_view name) const;
    [[nodiscard]] std::string WithHeldCharacters(std::string_view name,
                                                 std::string_view without) const;
    [[nodiscard]] std::string WithHeldEnds(const std::string& name) const;
    [[nodiscard]] bool Holds(std::string_view name) const;

    NameRules m_rules;
    NameTable m_taken;
    std::deque<std::string> m_mended;  ///< what the views of changed names look at
    std::vector<std::string_view> m_written;
    std::vector<Change> m_changes;
};

}  // namespace nuv
