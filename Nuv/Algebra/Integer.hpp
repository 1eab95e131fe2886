/// Integers of any size. The arithmetic is GMP's where the build has it (NUV_USE_GMP) and Boost's
/// own otherwise, behind a source for each, so that no other file has to parse either or know which
/// it is: the same numbers and the same strings come from both.
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace nuv
{

class Integer
{
public:
    Integer() noexcept;
    template <std::signed_integral Number>
    Integer(Number value) : Integer(Signed{value})
    {
    }
    template <std::unsigned_integral Number>
    Integer(Number value) : Integer(Unsigned{value})
    {
    }
    /// From decimal digits, a minus sign before them if there is one.
    explicit Integer(const std::string& digits);
    Integer(const Integer& other);
    Integer(Integer&& other) noexcept;
    Integer& operator=(const Integer& other);
    Integer& operator=(Integer&& other) noexcept;
    ~Integer();

    Integer& operator+=(const Integer& other);
    Integer& operator-=(const Integer& other);
    Integer& operator*=(const Integer& other);
    /// Rounds towards zero.
    Integer& operator/=(const Integer& other);
    /// Has the sign of the dividend.
    Integer& operator%=(const Integer& other);
    Integer& operator<<=(std::size_t bits);
    /// Of a number that is not negative.
    Integer& operator>>=(std::size_t bits);
    /// *this += x * y, without the product as a number of its own.
    Integer& AddProduct(const Integer& x, const Integer& y);
    Integer& SubtractProduct(const Integer& x, const Integer& y);
    Integer& Negate() noexcept;

    friend Integer operator+(Integer x, const Integer& y)
    {
        return std::move(x += y);
    }
    friend Integer operator-(Integer x, const Integer& y)
    {
        return std::move(x -= y);
    }
    friend Integer operator*(const Integer& x, const Integer& y);
    template <std::signed_integral Number>
    friend Integer operator*(Integer x, Number y)
    {
        return std::move(x.MultiplyByWord(y));
    }
    friend Integer operator/(Integer x, const Integer& y)
    {
        return std::move(x /= y);
    }
    friend Integer operator%(Integer x, const Integer& y)
    {
        return std::move(x %= y);
    }
    friend Integer operator<<(Integer x, std::size_t bits)
    {
        return std::move(x <<= bits);
    }
    friend Integer operator-(Integer x) noexcept
    {
        return std::move(x.Negate());
    }

    friend bool operator==(const Integer& x, const Integer& y) noexcept
    {
        return x.Compare(y) == 0;
    }
    friend std::strong_ordering operator<=>(const Integer& x, const Integer& y) noexcept
    {
        return x.Compare(y) <=> 0;
    }
    template <std::signed_integral Number>
    friend bool operator==(const Integer& x, Number y) noexcept
    {
        return x.CompareWord(y) == 0;
    }
    template <std::signed_integral Number>
    friend std::strong_ordering operator<=>(const Integer& x, Number y) noexcept
    {
        return x.CompareWord(y) <=> 0;
    }

    /// -1, 0 or 1.
    [[nodiscard]] int Sign() const noexcept;
    /// Negative, zero or positive as this is less than, equal to or greater than the other.
    [[nodiscard]] int Compare(const Integer& other) const noexcept;
    /// The number itself; it fits.
    [[nodiscard]] std::int64_t ToWord() const;
    /// The magnitude modulo 2^64.
    [[nodiscard]] std::uint64_t LowWord() const;
    [[nodiscard]] std::string ToString() const;

    friend Integer Gcd(const Integer& x, const Integer& y);
    friend Integer Power(const Integer& base, unsigned exponent);
    /// dividend = quotient * divisor + remainder, rounded towards zero. The results are other
    /// objects than the arguments.
    friend void Divide(const Integer& dividend, const Integer& divisor, Integer& quotient,
                       Integer& remainder);
    /// Bits of the magnitude; 0 for zero.
    friend std::size_t BitLength(const Integer& value);
    /// Trailing zero bits of the magnitude; the value is not zero.
    friend std::size_t TrailingZeros(const Integer& value);
    friend void swap(Integer& x, Integer& y) noexcept;

private:
    struct Signed
    {
        std::int64_t value;
    };
    struct Unsigned
    {
        std::uint64_t value;
    };
    struct Access;  // to what is stored

    explicit Integer(Signed number);
    explicit Integer(Unsigned number);
    Integer& MultiplyByWord(std::int64_t word);
    [[nodiscard]] int CompareWord(std::int64_t word) const noexcept;

    // Room for the number of either library, which the sources assert to be enough: what includes
    // this need not know which one it is.
    static constexpr std::size_t kBytes = 32;
    static constexpr std::size_t kAlignment = 16;
    alignas(kAlignment) std::byte m_storage[kBytes];
};

[[nodiscard]] Integer Gcd(const Integer& x, const Integer& y);
[[nodiscard]] Integer Power(const Integer& base, unsigned exponent);
void Divide(const Integer& dividend, const Integer& divisor, Integer& quotient, Integer& remainder);
[[nodiscard]] std::size_t BitLength(const Integer& value);
[[nodiscard]] std::size_t TrailingZeros(const Integer& value);

[[nodiscard]] inline Integer Abs(Integer value)
{
    return value.Sign() < 0 ? std::move(value.Negate()) : std::move(value);
}

[[nodiscard]] inline Integer LeastCommonMultiple(const Integer& x, const Integer& y)
{
    return x / Gcd(x, y) * y;
}

}  // namespace nuv
