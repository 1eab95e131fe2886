// The way through a solve: standard form, Phase I where a right-hand side is negative, Phase II.
#include "Nuv/Utils/Simplex/Phases.h"

NuvLinearProgrammingResultType NuvLinearProgrammingSolve(NuvLinearProgramming* lp)
{
    return NuvLinearProgrammingSolveMonitored(lp, nullptr);
}

NuvLinearProgrammingResultType
NuvLinearProgrammingSolveMonitored(NuvLinearProgramming* lp, NuvLinearProgrammingMonitor* monitor)
{
    nuv::SolveWatch watch = {monitor, 0, nuv::KernelsOfThisMachine()};
    return nuv::SolveUnderWatch(lp, &watch);
}

NuvLinearProgrammingResultType nuv::SolveUnderWatch(NuvLinearProgramming* lp, SolveWatch* watch)
{
    StandardFormFacts facts;
    if (!PrepareInputs(lp, &facts))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    if (NuvRevisedSimplexIsPhaseIRequired(lp))
    {
        const NuvLinearProgrammingResultType result = SolvePhaseI(lp, watch, &facts);
        if (result != NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
            return result;
    }
    return SolvePhaseII(lp, watch, &facts);
}
