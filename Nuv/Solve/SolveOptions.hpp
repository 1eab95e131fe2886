/// What a solve is asked for: its limits, its stages, and what is to be found beside the verdict.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Solve/Scaling.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

namespace nuv
{

struct SolveOptions
{
    /// For all stages together, the search of a conflict and ranging included.
    SolveLimits limits;
    /// Whether the core looks for the basis that the sparse simplex starts from.
    bool useSinglePrecision = true;
    /// Whether to believe the core as it stands: there are neither duals nor reduced costs then,
    /// and nothing is proved.
    bool singlePrecisionOnly = false;
    Scaling scaling = Scaling::None;  ///< of what the core gets
    /// Which numbers the answer is about: 0.1 is one tenth, or the double next to it.
    CoefficientMeaning numbers = CoefficientMeaning::ShortestDecimal;
    /// Whether to keep the vertices that the core passes through.
    bool recordPath = false;
    /// Whether to find how far each cost and each side of a row may move.
    bool sensitivity = false;
    /// How long to look for a minimal conflict in an infeasible model, at most.
    double iisSeconds = 5.0;
};

}  // namespace nuv
