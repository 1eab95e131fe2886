/// Residues modulo a 62-bit prime, as SparseLu wants them. Values are kept in Montgomery form
/// (Montgomery 1985), x standing as x * 2^64 mod p, so that a product costs no division.
/// Invariant: a value is less than the prime.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Algebra/WideProduct.hpp"

#include <cstddef>
#include <cstdint>

namespace nuv
{

class PrimeField
{
public:
    using Value = std::uint64_t;

    static constexpr bool kIsExact = true;

    /// `prime` is odd and less than 2^62.
    explicit PrimeField(std::uint64_t prime) noexcept : m_prime(prime)
    {
        // Newton's iteration doubles the number of right low bits; an odd number is its own inverse
        // to three bits.
        m_inverse = prime;
        // same bits (-> 6, -> <=): a right inverse stays as it is
        for (int round = 0; round < 5; ++round)
            m_inverse *= 2 - prime * m_inverse;
        const std::uint64_t one = (~std::uint64_t{0} % prime) + 1;  // 2^64 mod p
        std::uint64_t square = one % prime;
        m_one = square;
        for (int bit = 0; bit < 64; ++bit)
            square = square >= prime - square ? square - (prime - square) : square + square;
        m_square = square;
        m_half = Inverse(FromWord(2));
        m_fifth = Inverse(FromWord(5));
    }

    [[nodiscard]] std::uint64_t Prime() const noexcept
    {
        return m_prime;
    }
    /// The inverse of the prime modulo 2^64, which divides exactly, word by word.
    [[nodiscard]] std::uint64_t InverseModuloWord() const noexcept
    {
        return m_inverse;
    }

    [[nodiscard]] static Value Zero() noexcept
    {
        return 0;
    }
    [[nodiscard]] Value One() const noexcept
    {
        return m_one;
    }
    [[nodiscard]] Value MinusOne() const noexcept
    {
        return m_prime - m_one;
    }
    [[nodiscard]] static bool IsZero(Value x) noexcept
    {
        return x == 0;
    }
    [[nodiscard]] static bool Negligible(Value x) noexcept
    {
        return x == 0;
    }
    [[nodiscard]] static bool MayPivot(Value x) noexcept
    {
        return x != 0;
    }
    [[nodiscard]] Value Negated(Value x) const noexcept
    {
        return x == 0 ? 0 : m_prime - x;
    }
    /// x * y / 2^64 mod p: the product of two values in Montgomery form.
    [[nodiscard]] Value Product(Value x, Value y) const noexcept
    {
        return Halved(MultiplyWide(x, y));
    }
    void SubtractProduct(Value& sum, Value x, Value y) const noexcept
    {
        const Value product = Product(x, y);
        sum = sum >= product ? sum - product : sum + (m_prime - product);
    }
    /// A sum of products that is reduced once, at its end, as high 2^64 + low. A product of two
    /// values is less than p^2 < 2^62 p, so each adds at most p / 4 to `high`: after kFold of them
    /// it is below 3 p + kFold < 2^64, and Fold takes multiples of p 2^64 away until it is below p.
    class ProductSum
    {
    public:
        static constexpr std::size_t kFold = 8;  // same bits: 11 products have room

        explicit ProductSum(const PrimeField& field) noexcept : m_field(field) {}

        void Add(Value x, Value y) noexcept
        {
            const WideProduct product = MultiplyWide(x, y);
            m_low += product.low;
            m_high += product.high + static_cast<std::uint64_t>(m_low < product.low);
        }
        /// At the latest after kFold products.
        void Fold() noexcept
        {
            const std::uint64_t prime = m_field.m_prime;
            m_high -= m_high >= 2 * prime ? 2 * prime : 0;
            m_high -= m_high >= prime ? prime : 0;
        }
        /// @return what the sum of Product(x, y) is, after Fold.
        [[nodiscard]] Value Result() const noexcept
        {
            return m_field.Halved({m_low, m_high});
        }

    private:
        const PrimeField& m_field;
        std::uint64_t m_low = 0;
        std::uint64_t m_high = 0;
    };
    [[nodiscard]] Value Sum(Value x, Value y) const noexcept
    {
        return x >= m_prime - y ? x - (m_prime - y) : x + y;
    }
    /// By Fermat: x^(p - 2).
    [[nodiscard]] Value Inverse(Value x) const noexcept
    {
        return Power(x, m_prime - 2);
    }
    [[nodiscard]] Value Power(Value x, std::uint64_t exponent) const noexcept
    {
        Value result = m_one;
        for (; exponent != 0; exponent >>= 1)
        {
            if ((exponent & 1) != 0)
                result = Product(result, x);
            x = Product(x, x);
        }
        return result;
    }

    /// The word modulo the prime, not in Montgomery form; fast for primes just below 2^62.
    [[nodiscard]] std::uint64_t Reduced(std::uint64_t word) const noexcept
    {
        word -= (word >> 62) * m_prime;  // same bits (-> /): the remainder is the same
        return word < m_prime ? word : word % m_prime;  // same bits: a remainder of what is one
    }
    [[nodiscard]] Value FromWord(std::uint64_t word) const noexcept
    {
        return Product(Reduced(word), m_square);
    }
    /// 2^128 mod p: the factor that brings a plain residue into Montgomery form.
    [[nodiscard]] std::uint64_t Square() const noexcept
    {
        return m_square;
    }
    [[nodiscard]] Value FromSigned(std::int64_t number) const noexcept
    {
        // same bits (-> <=): minus 0 is 0
        return number < 0 ? Negated(FromWord(std::uint64_t{0} - static_cast<std::uint64_t>(number)))
                          : FromWord(static_cast<std::uint64_t>(number));
    }
    [[nodiscard]] Value PowerOf(Scale scale) const noexcept
    {
        const auto power = [this](Value base, Value inverse, int exponent)
        {
            // same bits (-> <=): either to the power of 0 is 1
            return exponent < 0 ? Power(inverse, static_cast<std::uint64_t>(-exponent))
                                : Power(base, static_cast<std::uint64_t>(exponent));
        };
        const Value two = power(Sum(m_one, m_one), m_half, scale.two);
        // same bits: a factor of 1
        return scale.five == 0 ? two : Product(two, power(FromWord(5), m_fifth, scale.five));
    }
    /// The representative of least magnitude.
    [[nodiscard]] std::int64_t ToSigned(Value x) const noexcept
    {
        const std::uint64_t plain = Product(x, 1);
        return plain > m_prime / 2 ? -static_cast<std::int64_t>(m_prime - plain)
                                   : static_cast<std::int64_t>(plain);
    }

private:
    /// number / 2^64 mod p, of a number less than 2^64 p.
    [[nodiscard]] Value Halved(WideProduct number) const noexcept
    {
        const std::uint64_t cancelled = MultiplyWide(number.low * m_inverse, m_prime).high;
        return number.high >= cancelled ? number.high - cancelled
                                        : number.high + (m_prime - cancelled);
    }

    std::uint64_t m_prime;
    std::uint64_t m_inverse = 0;
    std::uint64_t m_one = 0;
    std::uint64_t m_square = 0;
    std::uint64_t m_half = 0;   ///< the inverse of two
    std::uint64_t m_fifth = 0;  ///< of five
};

}  // namespace nuv
