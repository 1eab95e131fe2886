/// The numbers of a dense form as integers of two words. Row i is multiplied by 2^a 5^b with the
/// exponents of RowScale(i), the costs by CostScale(), and the bounds of columns by BoundScale();
/// none of the exponents is negative, and each is the least that makes its numbers integers.
#pragma once

#include "Nuv/Algebra/Dense/Words.hpp"
#include "Nuv/Certificate/Dense/DenseForm.hpp"

#include <vector>

namespace nuv
{

/// An integer of less than 127 bits by sign and magnitude.
struct WideInteger
{
    Word low = 0;
    Word high = 0;
    bool isNegative = false;

    [[nodiscard]] bool IsZero() const noexcept
    {
        return (low | high) == 0;
    }
    [[nodiscard]] unsigned BitLength() const noexcept
    {
        return static_cast<unsigned>(high != 0 ? 64 + std::bit_width(high) : std::bit_width(low));
    }
};

/// sum += x * y, x being of this width.
void AddProduct(Word* sum, const Word* x, const WideInteger& y, unsigned width) noexcept;
/// The number itself in two's complement.
void CopyWords(const WideInteger& x, Word* to, unsigned width) noexcept;

/// number * 2^scale.two 5^scale.five, which is an integer. @return false if it is too long.
[[nodiscard]] bool ToWideInteger(const ExactNumber& number, Scale scale, WideInteger& result);

class IntegerForm
{
public:
    /// Takes over the numbers of a form, which is referred to.
    /// @return false if one of them is too long.
    [[nodiscard]] bool Take(const DenseForm& form);

    [[nodiscard]] const DenseForm& Form() const noexcept
    {
        return *m_form;
    }
    [[nodiscard]] const WideInteger& Entry(Index row, Index column) const noexcept
    {
        return m_entries[std::size_t{row} * m_form->columns + column];
    }
    [[nodiscard]] const WideInteger& Cost(Index column) const noexcept
    {
        return m_cost[column];
    }
    /// Of a variable; those of a row's logical have the scale of the row. Zero where infinite.
    [[nodiscard]] const WideInteger& Lower(Index variable) const noexcept
    {
        return m_lower[variable];
    }
    [[nodiscard]] const WideInteger& Upper(Index variable) const noexcept
    {
        return m_upper[variable];
    }
    [[nodiscard]] Scale RowScale(Index row) const noexcept
    {
        return m_rowScale[row];
    }
    [[nodiscard]] Scale CostScale() const noexcept
    {
        return m_costScale;
    }
    [[nodiscard]] Scale BoundScale() const noexcept
    {
        return m_boundScale;
    }
    /// 2^a 5^b of BoundScale().
    [[nodiscard]] const WideInteger& BoundFactor() const noexcept
    {
        return m_boundFactor;
    }
    /// Bits of the longest number.
    [[nodiscard]] unsigned Bits() const noexcept
    {
        return m_bits;
    }

private:
    void TakeApartAll();
    [[nodiscard]] bool Scaled(const ExactNumber& number, Scale scale, WideInteger& result);

    const DenseForm* m_form = nullptr;
    std::vector<ExactNumber> m_parts;  ///< of entries, costs, lower and upper bounds
    std::vector<WideInteger> m_entries;
    std::vector<WideInteger> m_cost;
    std::vector<WideInteger> m_lower;
    std::vector<WideInteger> m_upper;
    std::vector<Scale> m_rowScale;
    Scale m_costScale;
    Scale m_boundScale;
    WideInteger m_boundFactor;
    unsigned m_bits = 0;  // same bits: Take sets it
};

}  // namespace nuv
