/// Products of numbers to the base of a prime, modulo a power of it, in machine words: for numbers
/// of up to some hundred digits that costs less than putting the factors together first.
#pragma once

#include "Nuv/Algebra/Integer.hpp"
#include "Nuv/Algebra/PrimeField.hpp"

#include <cstdint>
#include <vector>

namespace nuv
{

class PadicProduct
{
public:
    /// Beyond so many digits schoolbook multiplication is the slower way.
    static constexpr std::size_t kMostDigits = 128;  // same bits: the same by either way

    explicit PadicProduct(const PrimeField& field) : m_field(field) {}

    /// What to multiply by from now on: a positive number, modulo p^count.
    void SetFactor(const Integer& factor, std::size_t count);
    /// How many digits of the factor are known.
    [[nodiscard]] std::size_t Count() const noexcept
    {
        return m_factor.size();
    }

    /// The factor times the number whose digits, of magnitude less than p / 2, are digits[0],
    /// digits[stride], ...: its residue of least magnitude modulo p^count, `count` at most Count().
    /// @return false if that is too near to half of p^count to be told.
    [[nodiscard]] bool Multiply(const std::int64_t* digits, std::size_t stride, std::size_t count,
                                Integer& residue);

private:
    void TakeDigits(const std::int64_t* digits, std::size_t stride, std::size_t count);
    void MultiplyDigits();
    void Negate() noexcept;
    void ToWords();

    PrimeField m_field;
    std::vector<std::uint64_t> m_factor;  ///< digits, not negative, lowest first, and so the others
    std::vector<std::uint64_t> m_digits;
    std::vector<std::uint64_t> m_product;
    std::vector<std::uint64_t> m_words;
};

}  // namespace nuv
