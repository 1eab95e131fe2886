/// Vectors of rationals over a common denominator, as the solution of a linear system has them.
#pragma once

#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Algebra/SparseMatrix.hpp"

#include <vector>

namespace nuv
{

/// Rationals over one positive denominator.
struct ExactVector
{
    std::vector<Integer> numerator;
    Integer denominator = 1;

    [[nodiscard]] Rational At(Index k) const
    {
        return Rational(numerator[k], denominator);
    }
    [[nodiscard]] double Approximately(Index k) const
    {
        return QuotientToDouble(numerator[k], denominator);
    }
};

/// @return whether the vector holds `length` numbers over a positive denominator.
[[nodiscard]] inline bool HasShape(const ExactVector& vector, Index length)
{
    return vector.numerator.size() == length && vector.denominator > 0;
}

/// Divides numerators and denominator by the largest divisor of `factor` common to all;
/// `factor` divides the denominator.
void Reduce(ExactVector& vector, Integer factor);

}  // namespace nuv
