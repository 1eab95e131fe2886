#include "Nuv/Algebra/Lifting/PadicProduct.hpp"

#include <algorithm>

namespace nuv
{
namespace
{

/// A sum of products of digits, three words: of fewer than 2^64 products of numbers below 2^62.
struct WideSum
{
    std::uint64_t low = 0;
    std::uint64_t middle = 0;
    std::uint64_t high = 0;

    void Add(std::uint64_t x, std::uint64_t y) noexcept
    {
        const WideProduct product = MultiplyWide(x, y);
        low += product.low;
        const std::uint64_t upper = product.high + static_cast<std::uint64_t>(low < product.low);
        middle += upper;
        high += static_cast<std::uint64_t>(middle < upper);
    }
    [[nodiscard]] std::uint64_t Modulo(const PrimeField& field) const noexcept
    {
        // The product with 2^128 in Montgomery form is that with 2^64.
        std::uint64_t rest = field.Reduced(high);
        rest = field.Sum(field.Product(rest, field.Square()), field.Reduced(middle));
        return field.Sum(field.Product(rest, field.Square()), field.Reduced(low));
    }
    /// Subtracts the remainder and divides by the prime, word by word from below.
    void Divide(std::uint64_t remainder, const PrimeField& field) noexcept
    {
        std::uint64_t borrow = remainder;
        for (std::uint64_t* const word : {&low, &middle, &high})
        {
            const auto under = static_cast<std::uint64_t>(*word < borrow);
            *word = (*word - borrow) * field.InverseModuloWord();
            borrow = MultiplyWide(*word, field.Prime()).high + under;
        }
    }
};

}  // namespace

void PadicProduct::SetFactor(const Integer& factor, std::size_t count)
{
    const Integer prime(m_field.Prime());
    m_factor.clear();
    Integer rest = factor;
    Integer quotient;
    Integer digit;
    while (m_factor.size() < count)
    {
        Divide(rest, prime, quotient, digit);
        m_factor.push_back(digit.LowWord());
        swap(rest, quotient);
    }
}

bool PadicProduct::Multiply(const std::int64_t* digits, std::size_t stride, std::size_t count,
                            Integer& residue)
{
    TakeDigits(digits, stride, count);
    MultiplyDigits();
    // A number whose highest digit is above the middle of its range is above the middle of its own.
    const std::uint64_t middle = m_field.Prime() / 2;
    const std::uint64_t top = m_product.back();
    if (top == middle)
        return false;
    if (top > middle)
        Negate();
    ToWords();
    residue = 0;
    for (std::size_t w = m_words.size(); w-- > 0;)
    {
        residue <<= 64;
        residue += Integer(m_words[w]);
    }
    if (top > middle)
        residue.Negate();
    return true;
}

/// Digits that are negative borrow from the next one; the last may, as p^count is 0.
void PadicProduct::TakeDigits(const std::int64_t* digits, std::size_t stride, std::size_t count)
{
    m_digits.resize(count);
    std::int64_t borrow = 0;
    for (std::size_t k = 0; k < count; ++k, digits += stride)
    {
        const std::int64_t digit = *digits - borrow;
        borrow = digit < 0 ? 1 : 0;
        m_digits[k] = static_cast<std::uint64_t>(digit) + (digit < 0 ? m_field.Prime() : 0);
    }
}

void PadicProduct::MultiplyDigits()
{
    m_product.resize(m_digits.size());
    WideSum sum;
    for (std::size_t k = 0; k < m_product.size(); ++k)
    {
        for (std::size_t i = 0; i <= k; ++i)
            sum.Add(m_factor[i], m_digits[k - i]);
        m_product[k] = sum.Modulo(m_field);
        sum.Divide(m_product[k], m_field);
    }
}

/// p^count minus the product, which is not 0.
void PadicProduct::Negate() noexcept
{
    auto digit = std::ranges::find_if(m_product, [](std::uint64_t k) { return k != 0; });
    *digit = m_field.Prime() - *digit;
    for (++digit; digit != m_product.end(); ++digit)
        *digit = m_field.Prime() - 1 - *digit;
}

/// From the base p to the base 2^64, by Horner's rule.
void PadicProduct::ToWords()
{
    m_words.clear();
    for (std::size_t k = m_product.size(); k-- > 0;)
    {
        std::uint64_t carry = m_product[k];
        for (std::uint64_t& word : m_words)
        {
            const WideProduct product = MultiplyWide(word, m_field.Prime());
            word = product.low + carry;
            carry = product.high + static_cast<std::uint64_t>(word < carry);
        }
        // same bits: a word of zeros in front
        if (carry != 0)
            m_words.push_back(carry);
    }
}

}  // namespace nuv
