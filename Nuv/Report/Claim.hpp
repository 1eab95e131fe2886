/// What a solution file says about a model: a verdict, values, and perhaps a certificate. None of
/// it is believed; CheckClaim looks.
///
/// Its decimals are taken as the model's are: for what they say, or for the double next to it. What
/// is written as a quotient of integers is that quotient. Signs are those of Solution.hpp, in the
/// model's own sense.
#pragma once

#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Exact/Iis.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"

#include <cstdint>
#include <optional>
#include <vector>

namespace nuv
{

enum class ClaimedStatus : std::uint8_t
{
    Feasible,  ///< the values keep to all rows and bounds
    Optimal,   ///< and no others are better
    Infeasible,
    Unbounded,
};

struct Claim
{
    ClaimedStatus status = ClaimedStatus::Optimal;
    nuv::CoefficientMeaning meaning =
        nuv::CoefficientMeaning::ShortestDecimal;  ///< of the claim's decimals and the model's
    std::optional<Rational> objective;
    std::optional<Rational> exactObjective;  ///< the optimum, said to be exact
    /// By variable or by row, with nothing where the file says nothing; empty if it says nothing at
    /// all of the kind.
    using Numbers = std::vector<std::optional<Rational>>;
    Numbers values;
    Numbers activities;
    Numbers duals;
    Numbers reducedCosts;
    Numbers farkas;
    Numbers ray;
    std::optional<Basis> basis;  ///< if every variable and row has its part in it
    std::vector<BoundOfVariable> iis;
};

}  // namespace nuv
