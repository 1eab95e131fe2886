// The entries: the whole solve, and each phase by itself.
#include "Nuv/Utils/Simplex/Phases.h"

namespace nuv
{
namespace
{
using PhaseFunction = NuvLinearProgrammingResultType (*)(NuvLinearProgramming*, SolveContext*,
                                                         const StandardForm*);

NuvLinearProgrammingResultType CallPhase(PhaseFunction phase, NuvLinearProgramming* lp,
                                         NuvSizeT numArtificial)
{
    StandardForm form;
    if (!ReadStandardForm(lp, numArtificial, &form))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    SolveContext context = {nullptr, 0, KernelsOfThisMachine(), nullptr};
    return phase(lp, &context, &form);
}
}  // namespace
}  // namespace nuv

NuvLinearProgrammingResultType NuvLinearProgrammingSolve(NuvLinearProgramming* lp)
{
    return NuvLinearProgrammingSolveMonitored(lp, nullptr);
}

NuvLinearProgrammingResultType
NuvLinearProgrammingSolveMonitored(NuvLinearProgramming* lp, NuvLinearProgrammingMonitor* monitor)
{
    nuv::SolveContext context = {monitor, 0, nuv::KernelsOfThisMachine(), nullptr};
    return nuv::SolveInContext(lp, &context);
}

NuvBool NuvRevisedSimplexIsPhaseIRequired(NuvLinearProgramming* lp)
{
    // same bits: an element of a matrix without storage is 0
    const NuvUint rows = lp->b.data && lp->numConstraints <= lp->b.nr ? lp->numConstraints : 0;
    for (NuvUint i = 0; i != rows; ++i)
        if (0.0F > lp->b.data[static_cast<NuvSizeT>(i) * lp->b.nc])
            return NUV_TRUE;
    return NUV_FALSE;
}

NuvLinearProgrammingResultType NuvRevisedSimplexSolvePhaseI(NuvLinearProgramming* lp)
{
    return nuv::CallPhase(nuv::SolvePhaseI, lp, 1);
}

NuvLinearProgrammingResultType NuvRevisedSimplexSolvePhaseII(NuvLinearProgramming* lp)
{
    return nuv::CallPhase(nuv::SolvePhaseII, lp, 0);
}
