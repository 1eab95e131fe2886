/// Integers of any size with GMP, in place of Nuv/Algebra/Integer.cpp. Most numbers of a linear
/// program, and of the exact solution of a small one, are of one word: such a number lies in the
/// object itself and costs neither memory nor a call. One that became longer keeps its memory.
#include "Nuv/Algebra/Integer.hpp"

#include <gmp.h>

#include <bit>
#include <charconv>
#include <limits>
#include <new>
#include <numeric>

namespace nuv
{
namespace
{

std::uint64_t MagnitudeOf(std::int64_t word) noexcept
{
    return word < 0 ? 0 - static_cast<std::uint64_t>(word) : static_cast<std::uint64_t>(word);
}

/// `number` is initialised while `isLong`; otherwise the value is `word`.
struct ShortOrLong
{
    mpz_t number;
    std::int64_t word;
    bool isLong = false;
};

/// A number that GMP may read for as long as this lives.
class GmpView
{
public:
    explicit GmpView(std::uint64_t magnitude, bool isNegative = false) noexcept
    {
        constexpr int kLimbs = 64 / GMP_NUMB_BITS;
        static_assert(kLimbs >= 1 && kLimbs * GMP_NUMB_BITS == 64);
        for (int k = 0; k < kLimbs; ++k)
            m_limbs[k] = static_cast<mp_limb_t>(magnitude >> (k * GMP_NUMB_BITS % 64));
        m_read = mpz_roinit_n(m_word, m_limbs, isNegative ? -kLimbs : kLimbs);
    }
    explicit GmpView(std::int64_t word) noexcept : GmpView(MagnitudeOf(word), word < 0) {}
    // same bits (-> 1): of a long number the word is not read
    explicit GmpView(const ShortOrLong& stored) noexcept : GmpView(stored.isLong ? 0 : stored.word)
    {
        if (stored.isLong)
            m_read = stored.number;
    }
    GmpView(const GmpView&) = delete;
    GmpView& operator=(const GmpView&) = delete;

    operator mpz_srcptr() const noexcept
    {
        return m_read;
    }

private:
    mp_limb_t m_limbs[64 / GMP_NUMB_BITS];  // same bits: more have room too
    mpz_t m_word;
    mpz_srcptr m_read;
};

/// Makes the number a long one, if it is not. Views of it are to be taken after this.
mpz_ptr MakeLong(ShortOrLong& x)
{
    if (!x.isLong)
    {
        mpz_init2(x.number, 128);  // same bits: in words, and 127 bits have as many
        mpz_set(x.number, GmpView(x.word));
        x.isLong = true;
    }
    return x.number;
}

std::uint64_t LowWordOf(mpz_srcptr number) noexcept
{
    std::uint64_t low = 0;
    // same bits (-> >=): a limb that is not there is 0
    for (int k = 64 / GMP_NUMB_BITS; k-- > 0;)
        low = (low << (GMP_NUMB_BITS % 64)) | mpz_getlimbn(number, k);
    return low;
}

/// Gives a number without memory the value of another.
void TakeNumber(ShortOrLong& x, mpz_srcptr number)
{
    x.isLong = mpz_sizeinbase(number, 2) > 63;
    if (x.isLong)
        mpz_init_set(x.number, number);
    else
    {
        const auto magnitude = static_cast<std::int64_t>(LowWordOf(number));
        x.word = mpz_sgn(number) < 0 ? -magnitude : magnitude;
    }
}

void SetToWord(ShortOrLong& x, std::int64_t word)
{
    if (x.isLong)
        mpz_set(x.number, GmpView(word));
    else
        x.word = word;
}

bool SumFits(std::int64_t x, std::int64_t y, std::int64_t* sum) noexcept
{
    return !__builtin_add_overflow(x, y, sum);
}

bool DifferenceFits(std::int64_t x, std::int64_t y, std::int64_t* difference) noexcept
{
    return !__builtin_sub_overflow(x, y, difference);
}

bool ProductFits(std::int64_t x, std::int64_t y, std::int64_t* product) noexcept
{
    return !__builtin_mul_overflow(x, y, product);
}

using InWords = bool (*)(std::int64_t, std::int64_t, std::int64_t*) noexcept;
using InGmp = void (*)(mpz_ptr, mpz_srcptr, mpz_srcptr);

/// x becomes what the operation makes of x and y, in words where these and the result are short.
template <InWords inWords, InGmp inGmp>
void Combine(ShortOrLong& x, const ShortOrLong& y)
{
    std::int64_t result = 0;  // same bits: set where it is read
    if (!x.isLong && !y.isLong && inWords(x.word, y.word, &result))
        x.word = result;
    else
    {
        MakeLong(x);
        inGmp(x.number, x.number, GmpView(y));
    }
}

/// The same of the sum and x · y.
template <InWords inWords, InGmp inGmp>
void CombineProduct(ShortOrLong& sum, const ShortOrLong& x, const ShortOrLong& y)
{
    std::int64_t word = 0;
    if (!sum.isLong && !x.isLong && !y.isLong && ProductFits(x.word, y.word, &word) &&
        inWords(sum.word, word, &word))
        sum.word = word;
    else
    {
        MakeLong(sum);
        inGmp(sum.number, GmpView(x), GmpView(y));
    }
}

/// The quotient of this one alone overflows.
bool IsLeastByMinusOne(std::int64_t dividend, std::int64_t divisor) noexcept
{
    return divisor == -1 && dividend == std::numeric_limits<std::int64_t>::min();
}

bool QuotientFits(std::int64_t x, std::int64_t y, std::int64_t* quotient) noexcept
{
    const bool fits = !IsLeastByMinusOne(x, y);
    *quotient = fits ? x / y : 0;  // same bits (-> 1): not read
    return fits;
}

bool RemainderFits(std::int64_t x, std::int64_t y, std::int64_t* remainder) noexcept
{
    const bool fits = !IsLeastByMinusOne(x, y);
    *remainder = fits ? x % y : 0;  // same bits (-> 1): not read
    return fits;
}

}  // namespace

struct Integer::Access
{
    static_assert(sizeof(ShortOrLong) <= kBytes && alignof(ShortOrLong) <= kAlignment);

    static ShortOrLong& Of(Integer& x) noexcept
    {
        return *std::launder(reinterpret_cast<ShortOrLong*>(x.m_storage));
    }
    static const ShortOrLong& Of(const Integer& x) noexcept
    {
        return *std::launder(reinterpret_cast<const ShortOrLong*>(x.m_storage));
    }
    static ShortOrLong& Make(Integer& x, std::int64_t word = 0) noexcept
    {
        return *::new (static_cast<void*>(x.m_storage)) ShortOrLong{{}, word};
    }
};

Integer::Integer() noexcept
{
    Access::Make(*this);
}

Integer::Integer(Signed number)
{
    Access::Make(*this, number.value);
}

Integer::Integer(Unsigned number)
{
    TakeNumber(Access::Make(*this), GmpView(number.value));
}

Integer::Integer(const std::string& digits)
{
    ShortOrLong& made = Access::Make(*this);
    const char* const end = digits.data() + digits.size();
    if (std::from_chars(digits.data(), end, made.word).ec == std::errc())
        return;
    mpz_init_set_str(made.number, digits.c_str(), 10);
    made.isLong = true;
}

Integer::Integer(const Integer& other)
{
    const ShortOrLong& from = Access::Of(other);
    ShortOrLong& made = Access::Make(*this, from.word);
    if (from.isLong)
        TakeNumber(made, from.number);
}

Integer::Integer(Integer&& other) noexcept
{
    std::swap(Access::Make(*this), Access::Of(other));
}

Integer& Integer::operator=(const Integer& other)
{
    // same bits: a number given itself
    if (this == &other)
        return *this;
    ShortOrLong& to = Access::Of(*this);
    const ShortOrLong& from = Access::Of(other);
    if (!from.isLong)
        SetToWord(to, from.word);
    else if (to.isLong)
        mpz_set(to.number, from.number);
    else
        TakeNumber(to, from.number);
    return *this;
}

Integer& Integer::operator=(Integer&& other) noexcept
{
    std::swap(Access::Of(*this), Access::Of(other));
    return *this;
}

Integer::~Integer()
{
    if (Access::Of(*this).isLong)
        mpz_clear(Access::Of(*this).number);
}

Integer& Integer::operator+=(const Integer& other)
{
    Combine<SumFits, mpz_add>(Access::Of(*this), Access::Of(other));
    return *this;
}

Integer& Integer::operator-=(const Integer& other)
{
    Combine<DifferenceFits, mpz_sub>(Access::Of(*this), Access::Of(other));
    return *this;
}

Integer& Integer::operator*=(const Integer& other)
{
    Combine<ProductFits, mpz_mul>(Access::Of(*this), Access::Of(other));
    return *this;
}

Integer& Integer::operator/=(const Integer& other)
{
    Combine<QuotientFits, mpz_tdiv_q>(Access::Of(*this), Access::Of(other));
    return *this;
}

Integer& Integer::operator%=(const Integer& other)
{
    Combine<RemainderFits, mpz_tdiv_r>(Access::Of(*this), Access::Of(other));
    return *this;
}

Integer& Integer::operator<<=(std::size_t bits)
{
    ShortOrLong& x = Access::Of(*this);
    // same bits (-> <=, -> 64): by 63 bits and more, 0 alone stays within a word
    if (!x.isLong && bits < 63 && MagnitudeOf(x.word) >> (63 - bits) == 0)
        x.word *= std::int64_t{1} << bits;
    else
    {
        MakeLong(x);
        mpz_mul_2exp(x.number, x.number, bits);
    }
    return *this;
}

Integer& Integer::operator>>=(std::size_t bits)
{
    ShortOrLong& x = Access::Of(*this);
    if (x.isLong)
        mpz_tdiv_q_2exp(x.number, x.number, bits);
    else
        x.word = bits < 63 ? x.word >> bits : 0;
    return *this;
}

Integer& Integer::AddProduct(const Integer& x, const Integer& y)
{
    CombineProduct<SumFits, mpz_addmul>(Access::Of(*this), Access::Of(x), Access::Of(y));
    return *this;
}

Integer& Integer::SubtractProduct(const Integer& x, const Integer& y)
{
    CombineProduct<DifferenceFits, mpz_submul>(Access::Of(*this), Access::Of(x), Access::Of(y));
    return *this;
}

Integer& Integer::Negate() noexcept
{
    ShortOrLong& x = Access::Of(*this);
    if (!x.isLong && x.word != std::numeric_limits<std::int64_t>::min())
        x.word = -x.word;
    else
    {
        MakeLong(x);
        mpz_neg(x.number, x.number);
    }
    return *this;
}

Integer operator*(const Integer& x, const Integer& y)
{
    const ShortOrLong& left = Integer::Access::Of(x);
    const ShortOrLong& right = Integer::Access::Of(y);
    Integer result;
    ShortOrLong& product = Integer::Access::Of(result);
    if (left.isLong || right.isLong || __builtin_mul_overflow(left.word, right.word, &product.word))
    {
        mpz_init(product.number);
        product.isLong = true;
        mpz_mul(product.number, GmpView(left), GmpView(right));
    }
    return result;
}

Integer& Integer::MultiplyByWord(std::int64_t word)
{
    ShortOrLong& x = Access::Of(*this);
    std::int64_t product = 0;
    if (!x.isLong && !__builtin_mul_overflow(x.word, word, &product))
        x.word = product;
    else
    {
        MakeLong(x);
        mpz_mul(x.number, x.number, GmpView(word));
    }
    return *this;
}

int Integer::Sign() const noexcept
{
    const ShortOrLong& x = Access::Of(*this);
    return x.isLong ? mpz_sgn(x.number) : (x.word > 0) - (x.word < 0);
}

int Integer::Compare(const Integer& other) const noexcept
{
    const ShortOrLong& y = Access::Of(other);
    return y.isLong ? mpz_cmp(GmpView(Access::Of(*this)), y.number) : CompareWord(y.word);
}

int Integer::CompareWord(std::int64_t word) const noexcept
{
    const ShortOrLong& x = Access::Of(*this);
    if (!x.isLong)
        return (x.word > word) - (x.word < word);
    // same bits: the comparison says what the sign says
    return word == 0 ? mpz_sgn(x.number) : mpz_cmp(x.number, GmpView(word));
}

std::int64_t Integer::ToWord() const
{
    const ShortOrLong& x = Access::Of(*this);
    if (!x.isLong)
        return x.word;
    const std::uint64_t low = LowWordOf(x.number);
    return static_cast<std::int64_t>(mpz_sgn(x.number) < 0 ? 0 - low : low);
}

std::uint64_t Integer::LowWord() const
{
    const ShortOrLong& x = Access::Of(*this);
    return x.isLong ? LowWordOf(x.number) : MagnitudeOf(x.word);
}

std::string Integer::ToString() const
{
    const ShortOrLong& x = Access::Of(*this);
    if (!x.isLong)
        return std::to_string(x.word);
    // The size may be one too large; a sign and the end of the string come on top.
    std::string text(mpz_sizeinbase(x.number, 10) + 2, '\0');  // same bits (-> 3): more room
    mpz_get_str(text.data(), 10, x.number);
    text.resize(text.find('\0'));
    return text;
}

Integer Gcd(const Integer& x, const Integer& y)
{
    const ShortOrLong& left = Integer::Access::Of(x);
    const ShortOrLong& right = Integer::Access::Of(y);
    if (!left.isLong && !right.isLong)
        return Integer(std::gcd(MagnitudeOf(left.word), MagnitudeOf(right.word)));
    Integer result;
    mpz_gcd(MakeLong(Integer::Access::Of(result)), GmpView(left), GmpView(right));
    return result;
}

Integer Power(const Integer& base, unsigned exponent)
{
    Integer result;
    mpz_pow_ui(MakeLong(Integer::Access::Of(result)), GmpView(Integer::Access::Of(base)), exponent);
    return Integer(result);  // a copy, which may be of one word
}

void Divide(const Integer& dividend, const Integer& divisor, Integer& quotient, Integer& remainder)
{
    const ShortOrLong& x = Integer::Access::Of(dividend);
    const ShortOrLong& y = Integer::Access::Of(divisor);
    ShortOrLong& q = Integer::Access::Of(quotient);
    ShortOrLong& r = Integer::Access::Of(remainder);
    if (!x.isLong && !y.isLong && !IsLeastByMinusOne(x.word, y.word))
    {
        SetToWord(q, x.word / y.word);
        SetToWord(r, x.word % y.word);
    }
    else
        mpz_tdiv_qr(MakeLong(q), MakeLong(r), GmpView(x), GmpView(y));
}

std::size_t BitLength(const Integer& value)
{
    const ShortOrLong& x = Integer::Access::Of(value);
    if (!x.isLong)
        return static_cast<std::size_t>(std::bit_width(MagnitudeOf(x.word)));
    return mpz_sgn(x.number) == 0 ? 0 : mpz_sizeinbase(x.number, 2);
}

std::size_t TrailingZeros(const Integer& value)
{
    const ShortOrLong& x = Integer::Access::Of(value);
    return x.isLong ? mpz_scan1(x.number, 0)
                    : static_cast<std::size_t>(std::countr_zero(MagnitudeOf(x.word)));
}

void swap(Integer& x, Integer& y) noexcept
{
    std::swap(Integer::Access::Of(x), Integer::Access::Of(y));
}

}  // namespace nuv
