#include "Nuv/Algebra/Dense/WordQuotient.hpp"

#include "Nuv/Algebra/Rational.hpp"

#include <array>
#include <cmath>

namespace nuv
{
namespace
{

/// A magnitude that may grow by some powers of five.
class Magnitude
{
public:
    static constexpr unsigned kMostWords = 80;  // same bits: what has more is left to integers

    /// @return false if there are too many words.
    [[nodiscard]] bool Take(const Word* x, unsigned width, int fives) noexcept
    {
        constexpr Word kFiveTo27 = 7450580596923828125u;
        // same bits (-> >=, -> 2, -> 26, -> *): what is refused is left to integers
        if (width + static_cast<unsigned>(fives) / 27 + 1 > kMostWords)
            return false;
        m_width = width;
        std::copy_n(x, width, m_words.begin());
        if (IsNegative(x, width))
            NegateWords(m_words.data(), width);
        for (; fives >= 27; fives -= 27)  // same bits (-> >, -> 28): the last 27 one by one
            Multiply(kFiveTo27);
        Word power = 1;
        for (; fives > 0; --fives)
            power *= 5;
        Multiply(power);
        return true;
    }

    /// The highest 64 bits, the first of which is 1; `bits` are all there are, and `isExact` says
    /// whether the others are zero.
    struct LeadingBits
    {
        Word word;
        unsigned bits;
        bool isExact;
    };
    [[nodiscard]] LeadingBits Leading() const noexcept
    {
        unsigned top = m_width;
        while (m_words[top - 1] == 0)
            --top;
        const auto missing = static_cast<unsigned>(std::countl_zero(m_words[top - 1]));
        LeadingBits leading{m_words[top - 1] << missing, 64 * top - missing, true};
        unsigned whole = top - 1;
        if (missing > 0 && whole > 0)
        {
            --whole;
            leading.word |= m_words[whole] >> (64 - missing);
            leading.isExact = (m_words[whole] << missing) == 0;
        }
        leading.isExact = leading.isExact && nuv::IsZero(m_words.data(), whole);
        return leading;
    }

private:
    void Multiply(Word factor) noexcept
    {
        Word carry = 0;
        for (unsigned k = 0; k < m_width; ++k)
            m_words[k] = MultiplyAdd(m_words[k], factor, 0, carry);
        if (carry != 0)
            m_words[m_width++] = carry;
    }

    std::array<Word, kMostWords> m_words;
    unsigned m_width = 0;  // same bits: Take sets it
};

/// 2^64 + quotient or quotient, rounded to a double, where `rest` says that there is more below.
double Rounded(bool hasHighBit, Word quotient, bool rest)
{
    if (!hasHighBit)
        return static_cast<double>(quotient | (rest ? 1 : 0));
    const Word halved = (Word{1} << 63) | (quotient >> 1);
    return 2.0 * static_cast<double>(halved | (quotient & 1) | (rest ? 1 : 0));
}

double QuotientOfIntegers(const Word* numerator, unsigned width, const Word* denominator,
                          unsigned denominatorWidth, Scale scale)
{
    const Scale up{std::max(scale.two, 0), std::max(scale.five, 0)};
    return QuotientToDouble(ToInteger(numerator, width) * PowerOf(up),
                            ToInteger(denominator, denominatorWidth) * PowerOf(up - scale));
}

}  // namespace

Integer ToInteger(const Word* x, unsigned width)
{
    const bool isNegative = IsNegative(x, width);
    // A negative number is the complement of one below its magnitude.
    const Word flip = isNegative ? ~Word{0} : 0;
    while (width > 1 && (x[width - 1] ^ flip) == 0)
        --width;
    Integer result(x[width - 1] ^ flip);
    for (unsigned k = width - 1; k-- > 0;)
    {
        result <<= 64;
        result += Integer(x[k] ^ flip);
    }
    return isNegative ? -(std::move(result) + Integer(1)) : result;
}

/// The quotient of the highest 64 bits of both is within four units, in 2^-64 of its first bit, of
/// the whole quotient; where that interval rounds to one double it is the nearest one.
double QuotientToDouble(const Word* numerator, unsigned width, const Word* denominator,
                        unsigned denominatorWidth, Scale scale)
{
    constexpr Word kUncertain = 5;  // same bits: four are enough, and of more some are in vain
    if (IsZero(numerator, width))
        return 0.0;
    Magnitude top;
    Magnitude bottom;
    if (!top.Take(numerator, width, std::max(scale.five, 0)) ||
        !bottom.Take(denominator, denominatorWidth, std::max(-scale.five, 0)))
        return QuotientOfIntegers(numerator, width, denominator, denominatorWidth, scale);
    const auto [leading, topBits, isTopExact] = top.Leading();
    const auto [divisor, bottomBits, isBottomExact] = bottom.Leading();
    const int exponent = static_cast<int>(topBits) - static_cast<int>(bottomBits) + scale.two;
    const bool hasHighBit = leading >= divisor;
    const WideQuotient quotient = DivideWide(hasHighBit ? leading - divisor : leading, divisor);
    double rounded = 0.0;
    if (isTopExact && isBottomExact)
        rounded = Rounded(hasHighBit, quotient.quotient, quotient.remainder != 0);
    else
    {
        // An end that wraps around is far from the other, whose double it cannot be.
        rounded = Rounded(hasHighBit, quotient.quotient - kUncertain, true);
        if (Rounded(hasHighBit, quotient.quotient + kUncertain, true) != rounded)
            rounded = 0.0;
    }
    // same bits: integers of any size come to the same
    if (rounded == 0.0 || exponent < -1000 || exponent > 1000)
        return QuotientOfIntegers(numerator, width, denominator, denominatorWidth, scale);
    const double magnitude = std::ldexp(rounded, exponent - 64);
    return IsNegative(numerator, width) ? -magnitude : magnitude;
}

}  // namespace nuv
