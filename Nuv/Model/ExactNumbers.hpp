/// The numbers of a model that are not what their doubles say: decimals of more digits than a
/// double holds, and quotients like 1/3. Almost every model has none, so they stand beside the
/// doubles, as text and by their place; the double in that place is near the number.
///
/// A text is an integer, a decimal or a quotient of integers: "-9007199254740993", "1.25e-3",
/// "-1/3". Where there is none, a number is the shortest decimal that reads back to its double.
#pragma once

#include <algorithm>
#include <compare>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace nuv
{

/// Which number of a model: its constant, what belongs to variable or row `at`, or the entry of row
/// `at` at variable `column`.
struct NumberPlace
{
    /// Of the objective, of a variable, of a row, or an entry of the matrix.
    enum class Of : std::uint8_t
    {
        ObjectiveConstant,
        Objective,
        VariableLower,
        VariableUpper,
        RowLower,
        RowUpper,
        Entry,
    };
    Of of = Of::ObjectiveConstant;  ///< which kind of number
    std::uint32_t at = 0;           ///< of the variable, or of the row; 0 for the constant
    std::uint32_t column = 0;       ///< of an entry, else 0
    /// By kind, then by place.
    friend auto operator<=>(const NumberPlace&, const NumberPlace&) = default;
};

/// The texts of such numbers of one model, by place.
class ExactNumbers
{
public:
    /// Whether every double of the model says it all.
    [[nodiscard]] bool Empty() const noexcept
    {
        return m_texts.empty();
    }
    /// @return null if the double there says it all.
    [[nodiscard]] const std::string* Find(const NumberPlace& place) const
    {
        if (m_texts.empty())
            return nullptr;
        const auto found = m_texts.find(place);
        return found == m_texts.end() ? nullptr : &found->second;
    }
    /// Says what the number at a place is; the double there is the caller's to set.
    void Set(const NumberPlace& place, std::string text)
    {
        m_texts.insert_or_assign(place, std::move(text));
    }
    /// Says what `others` say, which is the last to need memory for it.
    void Take(ExactNumbers&& others) noexcept
    {
        for (const auto& other : others.m_texts)
            m_texts.erase(other.first);
        m_texts.merge(others.m_texts);
    }
    /// Leaves it to the double.
    void Erase(const NumberPlace& place)
    {
        m_texts.erase(place);
    }
    /// Forgets what belongs to an objective that is replaced.
    void EraseObjective()
    {
        std::erase_if(m_texts, [](const auto& entry)
                      { return entry.first.of <= NumberPlace::Of::Objective; });
    }
    ///@{
    /// Follows a model that loses what is marked: what stays moves up.
    void RemoveRows(const std::vector<bool>& marked)
    {
        Remove(marked, [](NumberPlace& place) { return IsOfRow(place) ? &place.at : nullptr; });
    }
    void RemoveVariables(const std::vector<bool>& marked)
    {
        Remove(marked,
               [](NumberPlace& place)
               {
                   const bool isNone =
                       place.of == NumberPlace::Of::ObjectiveConstant || IsOfRow(place);
                   return place.of == NumberPlace::Of::Entry ? &place.column
                          : isNone                           ? nullptr
                                                             : &place.at;
               });
    }
    ///@}
    ///@{
    /// Each with its text, in the order of their places.
    [[nodiscard]] auto begin() const noexcept
    {
        return m_texts.begin();
    }
    [[nodiscard]] auto end() const noexcept
    {
        return m_texts.end();
    }
    ///@}
    /// Whether both say the same texts in the same places.
    friend bool operator==(const ExactNumbers&, const ExactNumbers&) = default;

private:
    static bool IsOfRow(const NumberPlace& place) noexcept
    {
        return place.of >= NumberPlace::Of::RowLower;
    }
    /// indexOf(place) points to the index that `marked` is about, or is null.
    template <class IndexOf>
    void Remove(const std::vector<bool>& marked, const IndexOf& indexOf)
    {
        std::map<NumberPlace, std::string> kept;
        for (const auto& [before, text] : m_texts)
        {
            NumberPlace place = before;
            std::uint32_t* const index = indexOf(place);
            if (index != nullptr && marked[*index])
                continue;
            if (index != nullptr)
                *index -= static_cast<std::uint32_t>(
                    std::count(marked.begin(), marked.begin() + *index, true));
            kept.emplace(place, text);
        }
        m_texts = std::move(kept);
    }

    std::map<NumberPlace, std::string> m_texts;
};

}  // namespace nuv
