/// Row by row, from what is known so far, and again while that brings new bounds.
#include "Nuv/SparseSimplex/Presolve/ImpliedBounds.hpp"

#include <cmath>

namespace nuv
{
namespace
{

/// Of the activity of a row, seen from one side: the least that its columns allow, as far as their
/// bounds are finite, and how many are not.
struct LeastActivity
{
    double sum = 0.0;
    int endless = 0;
};

LeastActivity LeastActivityOf(SparseView<double> row, double sign, const std::vector<double>& lower,
                              const std::vector<double>& upper)
{
    LeastActivity least;
    for (const auto [column, entry] : row)
    {
        // same bits (-> >=): a bound times 0 adds nothing
        const double bound = sign * entry > 0.0 ? lower[column] : upper[column];
        if (std::isinf(bound))
            ++least.endless;
        else
            least.sum += sign * entry * bound;
    }
    return least;
}

/// With the least activity of the others, sign * row <= limit bounds each column on one side.
/// @return whether one that had no bound there has one now.
bool BoundColumnsBy(SparseView<double> row, double sign, double limit, std::vector<double>& lower,
                    std::vector<double>& upper)
{
    // Larger ones leave a value too few digits behind the point.
    constexpr double kLargest = 1e6;
    // By so much of its size a bound is beyond what the row implies, rounding and tolerances
    // included.
    constexpr double kBeyond = 0.01;
    if (std::isinf(limit))
        return false;
    const LeastActivity least = LeastActivityOf(row, sign, lower, upper);
    if (least.endless > 1)
        return false;
    bool found = false;
    for (const auto [column, entry] : row)
    {
        const double factor = sign * entry;
        const bool grows = factor > 0.0;  // same bits (-> >=): an entry is not 0
        const double own = grows ? lower[column] : upper[column];
        double& implied = grows ? upper[column] : lower[column];
        if (!std::isinf(implied) || (least.endless == 1 && !std::isinf(own)))
            continue;
        const double others = std::isinf(own) ? least.sum : least.sum - factor * own;
        const double bound = (limit - others) / factor;
        if (!(std::fabs(bound) < kLargest))
            continue;
        const double margin = kBeyond * (1.0 + std::fabs(bound));
        implied = grows ? bound + margin : bound - margin;
        found = true;
    }
    return found;
}

}  // namespace

void BoxImplied(const ScaledForm& form, std::vector<double>& lower, std::vector<double>& upper)
{
    constexpr int kPasses = 5;
    const std::vector<double> statedLower = lower;
    const std::vector<double> statedUpper = upper;
    bool found = true;
    for (int pass = 0; pass < kPasses && found; ++pass)
    {
        found = false;
        for (Index i = 0; i < form.rows; ++i)
        {
            const Index logical = form.Logical(i);
            const bool above = BoundColumnsBy(form.Row(i), 1.0, upper[logical], lower, upper);
            const bool below = BoundColumnsBy(form.Row(i), -1.0, -lower[logical], lower, upper);
            found = found || above || below;
        }
    }
    // One bound alone is no box, and a variable that rests on it would be where no point is.
    for (Index j = 0; j < form.columns; ++j)
    {
        if (std::isinf(lower[j]) || std::isinf(upper[j]))
        {
            lower[j] = statedLower[j];
            upper[j] = statedUpper[j];
        }
    }
}

}  // namespace nuv
