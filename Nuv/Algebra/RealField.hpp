/// Double arithmetic as SparseLu wants it: what counts as zero and which pivots are safe. The
/// matrix is expected to be scaled so that its entries lie around one.
#pragma once

#include <cmath>

namespace nuv
{

struct RealField
{
    using Value = double;

    static constexpr bool kIsExact = false;
    /// A pivot is taken only if it is at least this share of the largest entry of its column, which
    /// bounds the growth of the multipliers.
    static constexpr double kThreshold = 0.1;

    [[nodiscard]] static double Zero() noexcept
    {
        return 0.0;
    }
    [[nodiscard]] static double MinusOne() noexcept
    {
        return -1.0;
    }
    [[nodiscard]] static bool IsZero(double x) noexcept
    {
        return x == 0.0;
    }
    /// What cancellation leaves behind instead of an exact zero.
    [[nodiscard]] static bool Negligible(double x) noexcept
    {
        return std::fabs(x) < 1e-14;
    }
    [[nodiscard]] static double Magnitude(double x) noexcept
    {
        return std::fabs(x);
    }
    /// Whether a column may pivot at all of which this is the largest entry.
    [[nodiscard]] static bool MayPivot(double x) noexcept
    {
        return std::fabs(x) >= 1e-10;
    }
    [[nodiscard]] static double Inverse(double x) noexcept
    {
        return 1.0 / x;
    }
    [[nodiscard]] static double Negated(double x) noexcept
    {
        return -x;
    }
    [[nodiscard]] static double Product(double x, double y) noexcept
    {
        return x * y;
    }
    static void SubtractProduct(double& sum, double x, double y) noexcept
    {
        sum -= x * y;
    }
};

}  // namespace nuv
