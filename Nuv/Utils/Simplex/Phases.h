// The two phases of a solve. Not installed.
#ifndef NUV_UTILS_SIMPLEX_PHASES_H
#define NUV_UTILS_SIMPLEX_PHASES_H

#include "Nuv/Utils/Simplex/SolveContext.h"
#include "Nuv/Utils/Simplex/StandardForm.h"

namespace nuv
{
/// Looks for a feasible basis, from that of the slacks, and leaves its labels in lp.
/// @return Ok, Infeasible, Unbounded, Stopped, or InvalidInput when storage is refused.
NuvLinearProgrammingResultType SolvePhaseI(NuvLinearProgramming* lp, SolveContext* context,
                                           const StandardForm* form);
/// Looks for an optimal basis, from that of lp's labels, and leaves objective and values in lp.
/// @return Ok, Unbounded, Stopped, or InvalidInput when storage is refused.
NuvLinearProgrammingResultType SolvePhaseII(NuvLinearProgramming* lp, SolveContext* context,
                                            const StandardForm* form);
/// The whole solve.
NuvLinearProgrammingResultType SolveInContext(NuvLinearProgramming* lp, SolveContext* context);
/// The whole solve of a standard form that lp's matrices hold already.
NuvLinearProgrammingResultType SolveForm(NuvLinearProgramming* lp, SolveContext* context,
                                         const StandardForm* form);
/// At least what either phase needs of its allocator at any time, for any data of the form's shape,
/// if it leaves no blocks; allocated and freed in the order of a stack.
NuvSizeT BytesOfPhases(const StandardForm* form);
}  // namespace nuv

#endif
