// Integers of any size for WebAssembly, in place of Nuv/Algebra/Integer.cpp: that library's
// templates would be a tenth of the program. A number is a sign and a magnitude of 32-bit limbs,
// lowest first and none of them zero at the top, the first few in the object itself; products of
// two limbs are what the machine has. The algorithms are those of Knuth, The Art of Computer
// Programming, 4.3.1 and 4.5.2. Compiled apart from the rest, which calls these functions and does
// not take copies of them in.
#include "Nuv/Algebra/Integer.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

namespace nuv
{
namespace
{

using Limb = std::uint32_t;
using Size = std::uint32_t;
constexpr unsigned kLimbBits = 32;
constexpr std::uint64_t kLimbMask = 0xFFFFFFFFU;

/// @return the carry out of to[0..size).
Limb AddTo(Limb* to, const Limb* x, Size size)
{
    std::uint64_t carry = 0;
    for (Size k = 0; k < size; ++k, carry >>= kLimbBits)
        to[k] = static_cast<Limb>(carry += std::uint64_t{to[k]} + x[k]);
    return static_cast<Limb>(carry);
}

/// to = x - y, where x is not less than y and has `size` limbs. Any two may be the same.
void Difference(Limb* to, const Limb* x, Size size, const Limb* y, Size ySize)
{
    std::int64_t borrow = 0;
    for (Size k = 0; k < size; ++k, borrow >>= kLimbBits)
        to[k] = static_cast<Limb>(borrow += std::int64_t{x[k]} - (k < ySize ? y[k] : 0));
}

/// to[0..size) += x * factor. @return the carry.
Limb AddProductTo(Limb* to, const Limb* x, Size size, Limb factor)
{
    std::uint64_t carry = 0;
    for (Size k = 0; k < size; ++k, carry >>= kLimbBits)
        to[k] = static_cast<Limb>(carry += std::uint64_t{x[k]} * factor + to[k]);
    return static_cast<Limb>(carry);
}

/// to[0..size) -= x * factor. @return what is missing above.
Limb SubtractProductFrom(Limb* to, const Limb* x, Size size, Limb factor)
{
    std::uint64_t missing = 0;
    for (Size k = 0; k < size; ++k)
    {
        missing += std::uint64_t{x[k]} * factor;
        const auto low = static_cast<Limb>(missing);
        missing = (missing >> kLimbBits) + (to[k] < low ? 1 : 0);
        to[k] -= low;
    }
    return static_cast<Limb>(missing);
}

int CompareLimbs(const Limb* x, Size xSize, const Limb* y, Size ySize)
{
    if (xSize != ySize)
        return xSize < ySize ? -1 : 1;
    for (Size k = xSize; k-- > 0;)
        if (x[k] != y[k])
            return x[k] < y[k] ? -1 : 1;
    return 0;
}

}  // namespace

/// What is stored, and the work on magnitudes.
struct Integer::Access
{
    static constexpr Size kHere =
        static_cast<Size>((kBytes - sizeof(Limb*) - 3 * sizeof(Size)) / sizeof(Limb));

    Limb* block;  ///< null while the limbs are here
    Size capacity;
    Size size;  ///< 0 for zero, which is not negative
    std::uint32_t isNegative;
    Limb here[kHere];

    static Access& Of(Integer& x) noexcept
    {
        static_assert(sizeof(Access) <= kBytes && alignof(Access) <= kAlignment);
        return *std::launder(reinterpret_cast<Access*>(x.m_storage));
    }
    static const Access& Of(const Integer& x) noexcept
    {
        return *std::launder(reinterpret_cast<const Access*>(x.m_storage));
    }
    static Access& Begin(Integer& x) noexcept
    {
        auto* const made = ::new (static_cast<void*>(x.m_storage)) Access;
        made->block = nullptr;
        made->capacity = kHere;
        made->size = made->isNegative = 0;
        return *made;
    }

    [[nodiscard]] Limb* Limbs() noexcept
    {
        return block ? block : here;
    }
    [[nodiscard]] const Limb* Limbs() const noexcept
    {
        return block ? block : here;
    }

    /// Room for so many limbs; those that are there stay.
    Limb* Reserve(Size wanted)
    {
        if (wanted <= capacity)
            return Limbs();
        const Size larger = std::max(wanted, 2 * capacity);
        auto* const fresh = new Limb[larger];
        std::memcpy(fresh, Limbs(), size * sizeof(Limb));
        delete[] block;
        capacity = larger;
        return block = fresh;
    }
    /// `limbs` limbs were written; the number ends at the highest that is not zero.
    void End(Size limbs) noexcept
    {
        const Limb* const all = Limbs();
        while (limbs != 0 && all[limbs - 1] == 0)
            --limbs;
        size = limbs;
        if (limbs == 0)
            isNegative = 0;
    }
    void SetWord(std::uint64_t magnitude, bool negative)
    {
        Limb* const to = Reserve(2);
        to[0] = static_cast<Limb>(magnitude);
        to[1] = static_cast<Limb>(magnitude >> kLimbBits);
        isNegative = negative ? 1 : 0;
        End(2);
    }
    void Set(const Access& other)
    {
        Limb* const to = Reserve(other.size);
        std::memmove(to, other.Limbs(), other.size * sizeof(Limb));
        size = other.size;
        isNegative = other.isNegative;
    }
    void Take(Access& other) noexcept
    {
        *this = other;
        other.block = nullptr;
        other.capacity = kHere;
        other.size = other.isNegative = 0;
    }
    [[nodiscard]] std::uint64_t Low() const noexcept
    {
        const Limb* const limbs = Limbs();
        return (size > 0 ? limbs[0] : 0) |
               (size > 1 ? std::uint64_t{limbs[1]} << kLimbBits : std::uint64_t{0});
    }

    /// Adds the magnitude `x` with a sign of its own. That may be in this object.
    void Add(const Access& x, bool negative)
    {
        if ((isNegative != 0) == negative || size == 0)
        {
            const Size length = std::max(size, x.size);
            Limb* const to = Reserve(length + 1);
            std::fill(to + size, to + length + 1, 0);
            Limb carry = AddTo(to, x.Limbs(), x.size);
            for (Size k = x.size; carry != 0; ++k)
                carry = ++to[k] == 0 ? 1 : 0;
            isNegative = negative ? 1 : 0;
            End(length + 1);
            return;
        }
        Limb* const to = Reserve(x.size);
        const Limb* const other = x.Limbs();
        if (CompareLimbs(to, size, other, x.size) >= 0)
        {
            Difference(to, to, size, other, x.size);
            End(size);
            return;
        }
        Difference(to, other, x.size, to, size);
        isNegative = negative ? 1 : 0;
        End(x.size);
    }

    /// This object is neither of the two.
    void SetProduct(const Access& x, const Access& y)
    {
        const Size length = x.size + y.size;
        Limb* const to = Reserve(length);
        std::fill(to, to + length, 0);
        for (Size k = 0; k < y.size; ++k)
            to[k + x.size] = AddProductTo(to + k, x.Limbs(), x.size, y.Limbs()[k]);
        isNegative = x.isNegative ^ y.isNegative;
        End(length);
    }

    /// The magnitude times a word, plus another.
    void MultiplyAdd(Limb factor, Limb addend)
    {
        Limb* const to = Reserve(size + 1);
        std::uint64_t carry = addend;
        for (Size k = 0; k < size; ++k, carry >>= kLimbBits)
            to[k] = static_cast<Limb>(carry += std::uint64_t{to[k]} * factor);
        to[size] = static_cast<Limb>(carry);
        End(size + 1);
    }
    /// The magnitude over a word. @return the remainder.
    Limb DivideByLimb(Limb divisor)
    {
        Limb* const limbs = Limbs();
        std::uint64_t rest = 0;
        for (Size k = size; k-- > 0; rest %= divisor)
        {
            rest = rest << kLimbBits | limbs[k];
            limbs[k] = static_cast<Limb>(rest / divisor);
        }
        End(size);
        return static_cast<Limb>(rest);
    }

    void ShiftLeft(std::size_t bits)
    {
        const auto limbs = static_cast<Size>(bits / kLimbBits);
        const unsigned rest = bits % kLimbBits;
        const Size length = size + limbs + 1;
        Limb* const to = Reserve(length);
        std::memmove(to + limbs, to, size * sizeof(Limb));
        std::fill(to, to + limbs, 0);
        to[length - 1] = 0;
        for (Size k = length; rest != 0 && k-- > limbs;)
            to[k] = to[k] << rest | (k > limbs ? to[k - 1] >> (kLimbBits - rest) : 0);
        End(length);
    }
    void ShiftRight(std::size_t bits)
    {
        const auto limbs = static_cast<Size>(std::min<std::size_t>(bits / kLimbBits, size));
        const unsigned rest = bits % kLimbBits;
        Limb* const to = Limbs();
        const Size length = size - limbs;
        std::memmove(to, to + limbs, length * sizeof(Limb));
        for (Size k = 0; rest != 0 && k < length; ++k)
            to[k] = to[k] >> rest | (k + 1 < length ? to[k + 1] << (kLimbBits - rest) : 0);
        End(length);
    }

    /// Leaves the remainder of this magnitude in its place; Knuth's algorithm D. The quotient,
    /// where it is wanted, is another object, as the divisor is.
    void DivideBy(const Access& divisor, Access* quotient);
};

void Integer::Access::DivideBy(const Access& divisor, Access* quotient)
{
    const bool negativeQuotient = isNegative != divisor.isNegative;
    if (quotient)
        quotient->size = quotient->isNegative = 0;
    if (CompareLimbs(Limbs(), size, divisor.Limbs(), divisor.size) < 0)
        return;
    if (size <= 2)
    {
        const std::uint64_t dividend = Low();
        const std::uint64_t by = divisor.Low();
        if (quotient)
            quotient->SetWord(dividend / by, negativeQuotient);
        SetWord(dividend % by, isNegative != 0);
        return;
    }
    // Shifted until the divisor's highest bit is set, a digit of the quotient that is found from
    // two limbs over one, and made right by a third, is at most one too large.
    static Integer shiftedDivisor;
    Access& by = Of(shiftedDivisor);
    by.Set(divisor);
    const auto shift = static_cast<unsigned>(std::countl_zero(divisor.Limbs()[divisor.size - 1]));
    by.ShiftLeft(shift);
    const std::uint32_t sign = isNegative;
    const Size length = size;
    ShiftLeft(shift);
    const Size n = by.size;
    Limb* const u = Reserve(length + 1);
    std::fill(u + size, u + length + 1, 0);
    const Limb* const v = by.Limbs();
    const std::uint64_t first = v[n - 1];
    const std::uint64_t second = n > 1 ? v[n - 2] : 0;
    const Size digits = length + 1 - n;
    Limb* const q = quotient ? quotient->Reserve(digits) : nullptr;
    for (Size j = digits; j-- > 0;)
    {
        const std::uint64_t top = std::uint64_t{u[j + n]} << kLimbBits | u[j + n - 1];
        std::uint64_t digit = std::min(top / first, kLimbMask);
        std::uint64_t rest = top - digit * first;
        while (n > 1 && rest <= kLimbMask && digit * second > (rest << kLimbBits | u[j + n - 2]))
        {
            --digit;
            rest += first;
        }
        const Limb missing = SubtractProductFrom(u + j, v, n, static_cast<Limb>(digit));
        if (u[j + n] < missing)
        {
            --digit;
            u[j + n] += AddTo(u + j, v, n);
        }
        u[j + n] -= missing;
        if (q)
            q[j] = static_cast<Limb>(digit);
    }
    End(n);
    ShiftRight(shift);
    if (size != 0)
        isNegative = sign;
    if (!quotient)
        return;
    quotient->isNegative = negativeQuotient ? 1 : 0;
    quotient->End(digits);
}

Integer::Integer() noexcept
{
    Access::Begin(*this);
}

Integer::Integer(Signed number)
{
    const auto bits = static_cast<std::uint64_t>(number.value);
    Access::Begin(*this).SetWord(number.value < 0 ? -bits : bits, number.value < 0);
}

Integer::Integer(Unsigned number)
{
    Access::Begin(*this).SetWord(number.value, false);
}

Integer::Integer(const std::string& digits)
{
    Access& made = Access::Begin(*this);
    const bool negative = digits[0] == '-';
    for (std::size_t at = negative ? 1 : 0; at < digits.size(); ++at)
        made.MultiplyAdd(10, static_cast<Limb>(digits[at] - '0'));
    made.isNegative = negative && made.size != 0 ? 1 : 0;
}

Integer::Integer(const Integer& other)
{
    Access::Begin(*this).Set(Access::Of(other));
}

Integer::Integer(Integer&& other) noexcept
{
    Access::Begin(*this).Take(Access::Of(other));
}

Integer& Integer::operator=(const Integer& other)
{
    Access::Of(*this).Set(Access::Of(other));
    return *this;
}

Integer& Integer::operator=(Integer&& other) noexcept
{
    swap(*this, other);
    return *this;
}

Integer::~Integer()
{
    delete[] Access::Of(*this).block;
}

Integer& Integer::operator+=(const Integer& other)
{
    const Access& x = Access::Of(other);
    Access::Of(*this).Add(x, x.isNegative != 0);
    return *this;
}

Integer& Integer::operator-=(const Integer& other)
{
    const Access& x = Access::Of(other);
    Access::Of(*this).Add(x, x.isNegative == 0);
    return *this;
}

Integer& Integer::operator*=(const Integer& other)
{
    return *this = *this * other;
}

Integer& Integer::operator/=(const Integer& other)
{
    Integer quotient;
    Access::Of(*this).DivideBy(Access::Of(other), &Access::Of(quotient));
    swap(*this, quotient);
    return *this;
}

Integer& Integer::operator%=(const Integer& other)
{
    Access::Of(*this).DivideBy(Access::Of(other), nullptr);
    return *this;
}

Integer& Integer::operator<<=(std::size_t bits)
{
    Access::Of(*this).ShiftLeft(bits);
    return *this;
}

Integer& Integer::operator>>=(std::size_t bits)
{
    Access::Of(*this).ShiftRight(bits);
    return *this;
}

Integer& Integer::AddProduct(const Integer& x, const Integer& y)
{
    static Integer product;  // whose room is used again
    Access::Of(product).SetProduct(Access::Of(x), Access::Of(y));
    return *this += product;
}

Integer& Integer::SubtractProduct(const Integer& x, const Integer& y)
{
    static Integer product;
    Access::Of(product).SetProduct(Access::Of(x), Access::Of(y));
    return *this -= product;
}

Integer& Integer::Negate() noexcept
{
    Access& x = Access::Of(*this);
    x.isNegative = x.size != 0 ? 1 - x.isNegative : 0;
    return *this;
}

Integer operator*(const Integer& x, const Integer& y)
{
    Integer product;
    Integer::Access::Of(product).SetProduct(Integer::Access::Of(x), Integer::Access::Of(y));
    return product;
}

Integer& Integer::MultiplyByWord(std::int64_t word)
{
    return *this *= Integer(word);
}

int Integer::Sign() const noexcept
{
    const Access& x = Access::Of(*this);
    return x.size == 0 ? 0 : x.isNegative != 0 ? -1 : 1;
}

int Integer::Compare(const Integer& other) const noexcept
{
    const Access& x = Access::Of(*this);
    const Access& y = Access::Of(other);
    if (x.isNegative != y.isNegative)
        return x.isNegative != 0 ? -1 : 1;
    const int order = CompareLimbs(x.Limbs(), x.size, y.Limbs(), y.size);
    return x.isNegative != 0 ? -order : order;
}

int Integer::CompareWord(std::int64_t word) const noexcept
{
    return word == 0 ? Sign() : Compare(Integer(word));
}

std::int64_t Integer::ToWord() const
{
    const std::uint64_t low = LowWord();
    return static_cast<std::int64_t>(Access::Of(*this).isNegative != 0 ? -low : low);
}

std::uint64_t Integer::LowWord() const
{
    return Access::Of(*this).Low();
}

std::string Integer::ToString() const
{
    constexpr Limb kBillion = 1000000000;
    if (Access::Of(*this).size == 0)
        return "0";
    std::string reversed;
    Integer rest = *this;
    while (Access::Of(rest).size != 0)
    {
        Limb nine = Access::Of(rest).DivideByLimb(kBillion);
        const bool isLast = Access::Of(rest).size == 0;
        for (int k = 0; k < 9 && (!isLast || nine != 0); ++k, nine /= 10)
            reversed.push_back(static_cast<char>('0' + nine % 10));
    }
    if (Access::Of(*this).isNegative != 0)
        reversed.push_back('-');
    std::reverse(reversed.begin(), reversed.end());
    return reversed;
}

Integer Gcd(const Integer& x, const Integer& y)
{
    Integer a = Abs(x);
    Integer b = Abs(y);
    while (Integer::Access::Of(b).size > 2 || (b.Sign() != 0 && Integer::Access::Of(a).size > 2))
    {
        a %= b;
        swap(a, b);
    }
    std::uint64_t left = a.LowWord();
    std::uint64_t right = b.LowWord();
    if (right == 0)
        return a;
    while (right != 0)
        std::swap(left %= right, right);
    return left;
}

Integer Power(const Integer& base, unsigned exponent)
{
    Integer result = 1;
    for (unsigned bit = std::bit_floor(exponent); bit != 0; bit >>= 1)
    {
        result *= result;
        if (exponent & bit)
            result *= base;
    }
    return result;
}

void Divide(const Integer& dividend, const Integer& divisor, Integer& quotient, Integer& remainder)
{
    remainder = dividend;
    Integer::Access::Of(remainder).DivideBy(Integer::Access::Of(divisor),
                                            &Integer::Access::Of(quotient));
}

std::size_t BitLength(const Integer& value)
{
    const Integer::Access& x = Integer::Access::Of(value);
    if (x.size == 0)
        return 0;
    return std::size_t{x.size} * kLimbBits -
           static_cast<std::size_t>(std::countl_zero(x.Limbs()[x.size - 1]));
}

std::size_t TrailingZeros(const Integer& value)
{
    const Limb* limbs = Integer::Access::Of(value).Limbs();
    std::size_t zeros = 0;
    for (; *limbs == 0; ++limbs)
        zeros += kLimbBits;
    return zeros + static_cast<std::size_t>(std::countr_zero(*limbs));
}

void swap(Integer& x, Integer& y) noexcept
{
    std::swap(Integer::Access::Of(x), Integer::Access::Of(y));
}

}  // namespace nuv
