/// A solve by the float stage alone: what the core says of a model in single precision, believed as
/// it stands. Nothing of it is proved, and it may be wrong; it shows what the core does.
#pragma once

#include "Nuv/Solve/Solution.hpp"

namespace nuv
{

/// Solves in single precision. Limits, scaling and keepGoing are taken from `options`; without
/// useFloatStage the limit is 0 pivots. There are neither duals nor reduced costs, and `proved` is
/// false. A solve that ends without a verdict is Stopped, and `floatStage` says why.
[[nodiscard]] Solution SolveInFloats(const Model& model, const SolveOptions& options = {});

}  // namespace nuv
