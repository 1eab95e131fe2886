// The way through a solve: standard form, Phase I where a right-hand side is negative, Phase II.
#include "Nuv/Utils/NuvRevisedSimplex.h"

NuvLinearProgrammingResultType NuvLinearProgrammingSolve(NuvLinearProgramming* lp)
{
    return NuvLinearProgrammingSolveMonitored(lp, nullptr);
}

NuvLinearProgrammingResultType
NuvLinearProgrammingSolveMonitored(NuvLinearProgramming* lp, NuvLinearProgrammingMonitor* monitor)
{
    if (!NuvLinearProgrammingPrepareInputs_(lp))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    nuv::Watch watch = {monitor, 0};
    if (NuvRevisedSimplexIsPhaseIRequired(lp))
    {
        const NuvLinearProgrammingResultType result = nuv::SolvePhaseI(lp, &watch);
        if (result != NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
            return result;
    }
    return nuv::SolvePhaseII(lp, &watch);
}
