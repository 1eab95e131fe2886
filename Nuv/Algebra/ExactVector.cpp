#include "Nuv/Algebra/ExactVector.hpp"

namespace nuv
{

void Reduce(ExactVector& vector, Integer factor)
{
    for (const Integer& numerator : vector.numerator)
    {
        // same bits: a division by 1
        if (factor == 1)
            return;
        // same bits: every number divides 0
        if (numerator != 0)
            factor = Gcd(factor, numerator);
    }
    vector.denominator /= factor;
    for (Integer& numerator : vector.numerator)
        numerator /= factor;
}

}  // namespace nuv
