/// Whether what a solution file claims is so. The truth about the model is proved in exact
/// arithmetic: by the certificate in the file if that is one, else from the file's basis, else by a
/// solve. What the file says is compared with it, number by number, and each disagreement beyond
/// the tolerance is named.
#pragma once

#include "Nuv/Model/Model.hpp"
#include "Nuv/Report/Claim.hpp"
#include "Nuv/Report/ClaimReport.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

namespace nuv
{

struct ClaimOptions
{
    /// How far off a number may be, as a fraction of the largest number that it is made of, which
    /// counts as 1 at least. 0 asks for exactness.
    double tolerance = 1e-9;
    SolveLimits limits;
};

[[nodiscard]] ClaimReport CheckClaim(const Model& model, const Claim& claim,
                                     const ClaimOptions& options);

}  // namespace nuv
