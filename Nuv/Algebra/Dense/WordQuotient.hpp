/// Quotients of numbers in words as doubles, and such numbers as integers of any size.
#pragma once

#include "Nuv/Algebra/Dense/Words.hpp"
#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Algebra/Integer.hpp"

namespace nuv
{

[[nodiscard]] Integer ToInteger(const Word* x, unsigned width);

/// The double nearest to numerator / denominator times 2^scale.two 5^scale.five, ties to even; the
/// denominator is positive.
[[nodiscard]] double QuotientToDouble(const Word* numerator, unsigned width,
                                      const Word* denominator, unsigned denominatorWidth,
                                      Scale scale);

}  // namespace nuv
