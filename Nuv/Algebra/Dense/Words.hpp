/// Integers of a fixed number of 64-bit words, lowest first, in two's complement: sums and products
/// are those of whole numbers modulo 2^(64 width), and so those of the numbers themselves where
/// these are known to fit. Nothing here allocates, or looks for a carry beyond the width.
#pragma once

#include "Nuv/Algebra/WideProduct.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace nuv
{

using Word = std::uint64_t;

[[nodiscard]] inline bool IsNegative(const Word* x, unsigned width) noexcept
{
    return (x[width - 1] >> 63) != 0;
}

[[nodiscard]] inline bool IsZero(const Word* x, unsigned width) noexcept
{
    return std::all_of(x, x + width, [](Word word) { return word == 0; });
}

/// -1, 0 or 1.
[[nodiscard]] inline int SignOf(const Word* x, unsigned width) noexcept
{
    return IsNegative(x, width) ? -1 : IsZero(x, width) ? 0 : 1;
}

/// The same number in more words.
inline void Extend(Word* x, unsigned from, unsigned to) noexcept
{
    const Word filling = IsNegative(x, from) ? ~Word{0} : 0;
    for (unsigned k = from; k < to; ++k)
        x[k] = filling;
}

inline void CopyWords(const Word* x, unsigned from, Word* to, unsigned width) noexcept
{
    std::copy_n(x, std::min(from, width), to);
    if (from < width)  // same bits (-> <=, always, never): extended by nothing
        Extend(to, from, width);
}

inline void NegateWords(Word* x, unsigned width) noexcept
{
    Word carry = 1;
    for (unsigned k = 0; k < width; ++k)
    {
        x[k] = ~x[k] + carry;
        carry = carry != 0 && x[k] == 0 ? 1 : 0;
    }
}

/// x * y + addend + carry, of which the high word becomes the carry: it cannot overflow.
[[nodiscard]] inline Word MultiplyAdd(Word x, Word y, Word addend, Word& carry) noexcept
{
    WideProduct product = MultiplyWide(x, y);
    product.low += addend;
    product.high += product.low < addend ? 1 : 0;
    product.low += carry;
    product.high += product.low < carry ? 1 : 0;
    carry = product.high;
    return product.low;
}

/// sum += x * y
inline void AddProduct(Word* sum, const Word* x, Word y, unsigned width) noexcept
{
    Word carry = 0;
    for (unsigned k = 0; k < width; ++k)
        sum[k] = MultiplyAdd(x[k], y, sum[k], carry);
}

/// sum -= x * y
inline void SubtractProduct(Word* sum, const Word* x, Word y, unsigned width) noexcept
{
    Word borrow = 0;
    for (unsigned k = 0; k < width; ++k)
    {
        // The product and the borrow are below 2^128 together.
        const Word low = MultiplyAdd(x[k], y, 0, borrow);
        borrow += sum[k] < low ? 1 : 0;
        sum[k] -= low;
    }
}

/// sum += x * y, both of this width.
inline void AddProduct(Word* sum, const Word* x, const Word* y, unsigned width) noexcept
{
    for (unsigned k = 0; k < width; ++k)
    {
        // same bits (always, never): what is 0 adds nothing
        if (y[k] != 0)
            AddProduct(sum + k, x, y[k], width - k);
    }
}

/// Negative, zero or positive as x is less than, equal to or greater than y.
[[nodiscard]] inline int CompareWords(const Word* x, const Word* y, unsigned width) noexcept
{
    const bool isNegative = IsNegative(x, width);
    if (isNegative != IsNegative(y, width))
        return isNegative ? -1 : 1;
    for (unsigned k = width; k-- > 0;)
    {
        if (x[k] != y[k])
            return x[k] < y[k] ? -1 : 1;
    }
    return 0;
}

/// Bits of the magnitude; of a negative number that is no power of two, one more.
[[nodiscard]] inline unsigned BitLength(const Word* x, unsigned width) noexcept
{
    // same bits: the bounds made of it have room for more
    const Word filling = IsNegative(x, width) ? ~Word{0} : 0;
    for (unsigned k = width; k-- > 0;)
    {
        if (x[k] != filling)
            return 64 * k + static_cast<unsigned>(std::bit_width(x[k] ^ filling)) +
                   (filling != 0 ? 1 : 0);  // same bits: the bounds hold up to the power of two
    }
    return filling != 0 ? 1 : 0;  // same bits: as above
}

/// Of a number that is not zero.
[[nodiscard]] inline unsigned TrailingZeros(const Word* x) noexcept
{
    unsigned k = 0;
    while (x[k] == 0)
        ++k;
    return 64 * k + static_cast<unsigned>(std::countr_zero(x[k]));
}

/// x / 2^bits, rounded down.
inline void ShiftRight(Word* x, unsigned width, unsigned bits) noexcept
{
    const unsigned whole = bits / 64;
    const unsigned part = bits % 64;
    // same bits: of what comes in at the top the library keeps nothing
    const Word filling = IsNegative(x, width) ? ~Word{0} : 0;
    // same bits: as above
    const auto at = [&](unsigned k) { return k < width ? x[k] : filling; };
    for (unsigned k = 0; k < width; ++k)
    {
        x[k] = part == 0 ? at(k + whole)
                         : (at(k + whole) >> part) | (at(k + whole + 1) << (64 - part));
    }
}

/// Makes the bits from `from` on, of the highest word, those of the sign below them.
inline void ExtendFromBit(Word* x, unsigned width, unsigned from) noexcept
{
    if (from >= 64 * width)  // same bits (-> >): shifted by nothing
        return;
    const unsigned surplus = 64 * width - from;
    const auto high = static_cast<std::int64_t>(x[width - 1] << surplus);
    x[width - 1] = static_cast<Word>(high >> surplus);
}

/// The inverse of an odd number modulo 2^64.
[[nodiscard]] inline Word InverseOf(Word odd) noexcept
{
    // 3 odd xor 2 is right in five bits, and each step doubles them.
    Word inverse = (3 * odd) ^ 2;
    // same bits: a right inverse stays as it is
    for (int bits = 5; bits < 64; bits *= 2)
        inverse *= 2 - odd * inverse;
    return inverse;
}

/// x / divisor where that is exact and the divisor odd, `inverse` being that of its lowest word:
/// word by word from the lowest (Jebelean, An algorithm for exact division, 1993).
inline void DivideExactly(Word* x, const Word* divisor, Word inverse, unsigned width) noexcept
{
    for (unsigned k = 0; k < width; ++k)
    {
        const Word digit = x[k] * inverse;
        SubtractProduct(x + k, divisor, digit, width - k);
        x[k] = digit;
    }
}

}  // namespace nuv
