/// The numbers of a form that are not what their doubles stand for: decimals of more digits than a
/// double has, and quotients. Almost every form has none, so the table is sparse and beside the
/// doubles, which remain the nearest ones or nearly so.
#pragma once

#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Algebra/SparseMatrix.hpp"

#include <compare>
#include <cstdint>
#include <map>
#include <utility>

namespace nuv
{

/// Which number of a form: the constant, the cost of column `at`, a bound of column `at`, a side of
/// row `at`, or the entry of row `at` in `column`.
struct FormPlace
{
    enum class Of : std::uint8_t
    {
        Constant,
        Cost,
        ColumnLower,
        ColumnUpper,
        RowLower,
        RowUpper,
        Entry,
    };
    Of of = Of::Constant;
    Index at = 0;
    Index column = 0;
    friend auto operator<=>(const FormPlace&, const FormPlace&) = default;
};

class ExactTable
{
public:
    [[nodiscard]] bool Empty() const noexcept
    {
        return m_numbers.empty();
    }
    /// @return null if the double there says it all.
    [[nodiscard]] const Rational* Find(const FormPlace& place) const
    {
        const auto found = m_numbers.find(place);
        return found == m_numbers.end() ? nullptr : &found->second;
    }
    void Set(const FormPlace& place, Rational number)
    {
        m_numbers.insert_or_assign(place, std::move(number));
    }
    void Erase(const FormPlace& place)
    {
        m_numbers.erase(place);
    }
    /// Forgets all costs and the constant, of a form that gets others; or all bounds and sides.
    void EraseObjective()
    {
        std::erase_if(m_numbers,
                      [](const auto& entry) { return entry.first.of <= FormPlace::Of::Cost; });
    }
    void EraseBounds()
    {
        std::erase_if(m_numbers,
                      [](const auto& entry)
                      {
                          return entry.first.of >= FormPlace::Of::ColumnLower &&
                                 entry.first.of <= FormPlace::Of::RowUpper;
                      });
    }
    [[nodiscard]] auto begin() const noexcept
    {
        return m_numbers.begin();
    }
    [[nodiscard]] auto end() const noexcept
    {
        return m_numbers.end();
    }

private:
    std::map<FormPlace, Rational> m_numbers;
};

}  // namespace nuv
