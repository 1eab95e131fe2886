/// Rational arithmetic as SparseLu wants it: every nonzero pivot is as good as another.
#pragma once

#include "Nuv/Algebra/Rational.hpp"

namespace nuv
{

struct RationalField
{
    using Value = Rational;

    static constexpr bool kIsExact = true;

    [[nodiscard]] static Rational Zero()
    {
        return Rational(0);
    }
    [[nodiscard]] static Rational MinusOne()
    {
        return Rational(-1);
    }
    [[nodiscard]] static bool IsZero(const Rational& x)
    {
        return x.Sign() == 0;
    }
    [[nodiscard]] static bool Negligible(const Rational& x)
    {
        return x.Sign() == 0;
    }
    [[nodiscard]] static bool MayPivot(const Rational& x)
    {
        return x.Sign() != 0;
    }
    [[nodiscard]] static Rational Inverse(const Rational& x)
    {
        return Rational(1) / x;
    }
    [[nodiscard]] static Rational Negated(const Rational& x)
    {
        return -x;
    }
    [[nodiscard]] static Rational Product(const Rational& x, const Rational& y)
    {
        return x * y;
    }
    static void SubtractProduct(Rational& sum, const Rational& x, const Rational& y)
    {
        sum -= x * y;
    }
};

}  // namespace nuv
