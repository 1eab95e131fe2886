#include "Nuv/Solve/StageLimits.hpp"

#include <cmath>

namespace nuv
{

FloatLimits FloatLimitsOf(const SolveOptions& options, const CanonicalForm& form,
                          const SolveClock& clock, std::size_t bytes)
{
    FloatLimits limits;
    limits.bytes = bytes;
    limits.pivots = options.floatPivots != 0 ? options.floatPivots
                                             : 50 * (std::uint64_t{form.rows} + form.columns);
    limits.keepGoing = [&options, &clock](const FloatPivot& pivot)
    {
        const double seconds = clock.Seconds();
        return seconds < options.seconds &&
               (!options.keepGoing ||
                options.keepGoing({SolveStage::Float, pivot.number, seconds, std::nan(""), false}));
    };
    return limits;
}

}  // namespace nuv
