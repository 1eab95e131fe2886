/// Sums of the numbers of a model file, which are decimals before they are doubles.
#pragma once

namespace nuv
{

/// The double next to the sum of the shortest decimals that read back to x and y, which is not
/// always the sum of the doubles: 0.1 and 0.2 make 0.3. Infinite where that is beyond doubles.
[[nodiscard]] double SumOfDecimals(double x, double y);

}  // namespace nuv
