/// What a solve is asked for: its limits, its stages, and what is to be found beside the verdict.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Solve/Scaling.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <optional>
#include <vector>

namespace nuv
{

/// The defaults ask for a proved verdict about the numbers as they are written, without any limit.
struct SolveOptions
{
    /// For all stages together, the search of an infeasible subsystem and ranging included.
    SolveLimits limits;
    /// Where the simplex starts, by the model's places of variables and rows: the basis of an
    /// earlier solution, or any other. What does not fit the model is made to: surplus basic
    /// variables leave, missing ones are filled up, impossible resting places are corrected. The
    /// core does not look for a start then.
    std::optional<Basis> start;
    /// The same by values, one for each variable, NaN where none is known: the simplex starts from
    /// a basis near them. A start by basis comes first.
    std::vector<double> startValues;
    /// Whether the core may look for the basis that the sparse simplex starts from, which it does
    /// for small and dense models.
    bool useSinglePrecision = true;
    /// Whether to believe the core as it stands: there are neither duals nor reduced costs then,
    /// and nothing is proved.
    bool singlePrecisionOnly = false;
    /// Whether to believe the simplex in doubles, which the core may start still: the exact stage
    /// and its check are left out and nothing is proved. The solution says by how much its values
    /// and prices miss what they should keep.
    bool doublePrecisionOnly = false;
    Scaling scaling = Scaling::None;  ///< of what the core gets
    /// Which numbers the answer is about: 0.1 is one tenth, or the double next to it.
    CoefficientMeaning numbers = CoefficientMeaning::ShortestDecimal;
    /// Whether to keep the vertices that the core passes through.
    bool recordPath = false;
    /// Whether to write down the exact numbers of a proved verdict (Solution::exact).
    bool exact = false;
    /// Whether to decide if there is another optimal point, or other optimal duals.
    bool uniqueness = false;
    /// Whether to find how far each cost and each side of a row may move.
    bool sensitivity = false;
    /// How much to do to make an infeasible subsystem irreducible, at most: entries, rows and
    /// columns times pivots, so that the result is the same on every machine.
    std::uint64_t iisWork = 50'000'000;
};

}  // namespace nuv
