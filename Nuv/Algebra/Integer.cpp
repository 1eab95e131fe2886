/// Integers of any size with Boost, which needs no library; Gmp/Integer.cpp takes its place where
/// there is GMP.
#include "Nuv/Algebra/Integer.hpp"

#include <boost/multiprecision/cpp_int.hpp>

#include <memory>
#include <new>

namespace nuv
{
namespace
{

using Backend = boost::multiprecision::cpp_int_backend<>;
using Number = boost::multiprecision::number<Backend, boost::multiprecision::et_off>;

}  // namespace

struct Integer::Access
{
    static_assert(sizeof(Number) <= kBytes && alignof(Number) <= kAlignment);

    static Number& Of(Integer& x) noexcept
    {
        return *std::launder(reinterpret_cast<Number*>(x.m_storage));
    }
    static const Number& Of(const Integer& x) noexcept
    {
        return *std::launder(reinterpret_cast<const Number*>(x.m_storage));
    }
    template <class... Arguments>
    static void Make(Integer& x, Arguments&&... arguments)
    {
        ::new (static_cast<void*>(x.m_storage)) Number(std::forward<Arguments>(arguments)...);
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
    Access::Make(*this, number.value);
}

Integer::Integer(const std::string& digits)
{
    Access::Make(*this, digits);
}

Integer::Integer(const Integer& other)
{
    Access::Make(*this, Access::Of(other));
}

Integer::Integer(Integer&& other) noexcept
{
    Access::Make(*this, std::move(Access::Of(other)));
}

Integer& Integer::operator=(const Integer& other)
{
    Access::Of(*this) = Access::Of(other);
    return *this;
}

Integer& Integer::operator=(Integer&& other) noexcept
{
    Access::Of(*this) = std::move(Access::Of(other));
    return *this;
}

Integer::~Integer()
{
    std::destroy_at(&Access::Of(*this));
}

Integer& Integer::operator+=(const Integer& other)
{
    Access::Of(*this) += Access::Of(other);
    return *this;
}

Integer& Integer::operator-=(const Integer& other)
{
    Access::Of(*this) -= Access::Of(other);
    return *this;
}

Integer& Integer::operator*=(const Integer& other)
{
    Access::Of(*this) *= Access::Of(other);
    return *this;
}

Integer& Integer::operator/=(const Integer& other)
{
    Access::Of(*this) /= Access::Of(other);
    return *this;
}

Integer& Integer::operator%=(const Integer& other)
{
    Access::Of(*this) %= Access::Of(other);
    return *this;
}

Integer& Integer::operator<<=(std::size_t bits)
{
    Access::Of(*this) <<= bits;
    return *this;
}

Integer& Integer::operator>>=(std::size_t bits)
{
    Access::Of(*this) >>= bits;
    return *this;
}

Integer& Integer::AddProduct(const Integer& x, const Integer& y)
{
    using boost::multiprecision::default_ops::eval_multiply_add;
    eval_multiply_add(Access::Of(*this).backend(), Access::Of(x).backend(),
                      Access::Of(y).backend());
    return *this;
}

Integer& Integer::SubtractProduct(const Integer& x, const Integer& y)
{
    using boost::multiprecision::default_ops::eval_multiply_subtract;
    eval_multiply_subtract(Access::Of(*this).backend(), Access::Of(x).backend(),
                           Access::Of(y).backend());
    return *this;
}

Integer& Integer::Negate() noexcept
{
    Access::Of(*this).backend().negate();
    return *this;
}

Integer operator*(const Integer& x, const Integer& y)
{
    using boost::multiprecision::default_ops::eval_multiply;
    Integer product;
    eval_multiply(Integer::Access::Of(product).backend(), Integer::Access::Of(x).backend(),
                  Integer::Access::Of(y).backend());
    return product;
}

Integer& Integer::MultiplyByWord(std::int64_t word)
{
    Access::Of(*this) *= word;
    return *this;
}

int Integer::Sign() const noexcept
{
    return Access::Of(*this).sign();
}

int Integer::Compare(const Integer& other) const noexcept
{
    return Access::Of(*this).compare(Access::Of(other));
}

int Integer::CompareWord(std::int64_t word) const noexcept
{
    return word == 0 ? Sign() : Access::Of(*this).compare(word);
}

std::int64_t Integer::ToWord() const
{
    return static_cast<std::int64_t>(Access::Of(*this));
}

std::uint64_t Integer::LowWord() const
{
    static const Number mask(~std::uint64_t{0});  // same bits (always, never): made once or twice
    return static_cast<std::uint64_t>(Number(abs(Access::Of(*this)) & mask));
}

std::string Integer::ToString() const
{
    return Access::Of(*this).str();
}

Integer Gcd(const Integer& x, const Integer& y)
{
    using boost::multiprecision::default_ops::eval_gcd;
    Integer result;
    eval_gcd(Integer::Access::Of(result).backend(), Integer::Access::Of(x).backend(),
             Integer::Access::Of(y).backend());
    return result;
}

Integer Power(const Integer& base, unsigned exponent)
{
    Integer result;
    Integer::Access::Of(result) = boost::multiprecision::pow(Integer::Access::Of(base), exponent);
    return result;
}

void Divide(const Integer& dividend, const Integer& divisor, Integer& quotient, Integer& remainder)
{
    boost::multiprecision::divide_qr(Integer::Access::Of(dividend), Integer::Access::Of(divisor),
                                     Integer::Access::Of(quotient), Integer::Access::Of(remainder));
}

std::size_t BitLength(const Integer& value)
{
    const int sign = value.Sign();
    if (sign == 0)
        return 0;
    const Number& number = Integer::Access::Of(value);
    return boost::multiprecision::msb(sign < 0 ? Number(-number) : number) + 1;
}

std::size_t TrailingZeros(const Integer& value)
{
    const Number& number = Integer::Access::Of(value);
    return boost::multiprecision::lsb(value.Sign() < 0 ? Number(-number) : number);
}

void swap(Integer& x, Integer& y) noexcept
{
    Integer::Access::Of(x).swap(Integer::Access::Of(y));
}

}  // namespace nuv
