#include "Nuv/SelfTest/Solving.hpp"

#include "Nuv/SelfTest/Numbers.hpp"
#include "Nuv/Utils/NuvLinearProgrammingMonitor.h"
#include "Nuv/Utils/Simplex/RevisedSimplex.h"
#include "Nuv/Utils/NuvScratchAllocator.h"

#include <stdlib.h>

namespace nuv::selftest
{
namespace
{

constexpr uint32_t kPivotLimit = 300;

using Term = NuvPair_NuvUint__NuvFloat32;
using Terms = NuvVector_NuvPair_NuvUint__NuvFloat32;

struct Recorder
{
    Hash hash;
    uint32_t pivots = 0;
};

void* Take(NuvAllocator* /*allocator*/, NuvSizeT size)
{
    return malloc(static_cast<size_t>(size));
}

void Give(NuvAllocator* /*allocator*/, void* memory, NuvSizeT /*size*/)
{
    free(memory);
}

NuvBool Record(NuvLinearProgrammingMonitor* monitor, const NuvLinearProgrammingPivot* pivot)
{
    Recorder* const recorder = static_cast<Recorder*>(monitor->userData);
    if (recorder->pivots == kPivotLimit)
        return NUV_FALSE;
    ++recorder->pivots;
    recorder->hash.Add(pivot->phase);
    recorder->hash.Add(pivot->entering);
    recorder->hash.Add(pivot->leaving);
    for (NuvUint i = 0; i != pivot->numBasic; ++i)
        recorder->hash.AddFloat(pivot->values[i]);
    return NUV_TRUE;
}

/// The coefficients that are not +0, as an array over `terms`, which has room for all.
Terms TermsOf(const float* coefficients, uint32_t count, Term* terms)
{
    Term* end = terms;
    for (uint32_t j = 0; j != count; ++j)
        if (BitsOf(coefficients[j]) != 0)
            *end++ = {j + 1, coefficients[j]};
    return {nullptr, terms, end, end};
}

bool Enter(const Model& model, NuvLinearProgramming* lp)
{
    Term terms[Model::kMaxColumns];
    for (uint32_t i = 0; i != model.rows; ++i)
    {
        const Terms row = TermsOf(model.A + i * model.columns, model.columns, terms);
        if (!NuvLinearProgrammingSetConstraintByIndex(lp, i + 1, &row, model.b[i]))
            return false;
    }
    const Terms objective = TermsOf(model.c, model.columns, terms);
    NuvLinearProgrammingSetObjectiveByIndex(lp, &objective);
    return true;
}

NuvLinearProgrammingResultType SolveBy(Loops loops, NuvLinearProgramming* lp,
                                       NuvLinearProgrammingMonitor* monitor)
{
#if NUV_SELFTEST_CHOOSES_LOOPS
    if (const Kernels* const kernels = KernelsFor(loops))
    {
        SolveWatch watch = {monitor, 0, kernels};
        return SolveUnderWatch(lp, &watch);
    }
#else
    (void)loops;
#endif
    return NuvLinearProgrammingSolveMonitored(lp, monitor);
}

Outcome SolveEntered(NuvLinearProgramming* lp, Loops loops)
{
    Recorder recorder;
    NuvLinearProgrammingMonitor monitor = {Record, &recorder};
    const NuvLinearProgrammingResultType result = SolveBy(loops, lp, &monitor);
    Outcome outcome = {static_cast<uint32_t>(result), recorder.pivots, 0};
    recorder.hash.Add(outcome.status);
    if (result == NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
    {
        recorder.hash.AddFloat(NuvLinearProgrammingGetObjectiveValue(lp));
        const auto* const values = NuvLinearProgrammingGetVariableValues(lp);
        for (const auto* value = values->begin; value != values->end; ++value)
            recorder.hash.AddFloat(value->second);
    }
    outcome.hash = recorder.hash.Value();
    return outcome;
}

}  // namespace

void Hash::AddFloat(float value)
{
    const uint32_t bits = BitsOf(value);
    const bool isNotANumber = (bits & 0x7FFFFFFFU) > 0x7F800000U;
    Add(isNotANumber ? 0x7FC00000U : bits);
}

Outcome Solve(const Model& model, Loops loops)
{
    NuvAllocator heap = {Take, Give, 0, nullptr};
    NuvScratchAllocator scratch;
    NuvAllocator* const memory =
        NuvScratchAllocatorGetAllocator(NuvScratchAllocatorConstruct(&scratch, &heap));
    Outcome outcome = {NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput, 0, 0};
    NuvLinearProgramming lp;
    if (NuvLinearProgrammingConstruct(&lp, model.columns, memory) && Enter(model, &lp))
        outcome = SolveEntered(&lp, loops);
    NuvScratchAllocatorDestruct(&scratch);  // all that the model holds lies there
    return outcome;
}

}  // namespace nuv::selftest
