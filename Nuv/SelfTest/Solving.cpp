#include "Nuv/SelfTest/Solving.hpp"

#include "Nuv/Corpus/Families.hpp"
#include "Nuv/Corpus/Hash.hpp"
#include "Nuv/SelfTest/Batches.hpp"
#include "Nuv/Utils/NuvLinearProgrammingMonitor.h"
#include "Nuv/Utils/NuvScratchAllocator.h"
#include "Nuv/Utils/Simplex/Phases.h"

#include <stdlib.h>

namespace nuv::selftest
{
namespace
{
using corpus::Hash;
using corpus::Problem;
using Term = NuvPair_NuvUint__NuvFloat32;
using Terms = NuvVector_NuvPair_NuvUint__NuvFloat32;

struct Recorder
{
    uint32_t maxPivots;
    uint32_t pivots;
    Hash hash;
    /// Phase, entering and leaving label of each pivot.
    uint32_t labels[3 * kPivotLimit];
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
    if (recorder->pivots == recorder->maxPivots)
        return NUV_FALSE;
    uint32_t* const labels = &recorder->labels[size_t{3} * recorder->pivots];
    ++recorder->pivots;
    labels[0] = pivot->phase;
    labels[1] = pivot->entering;
    labels[2] = pivot->leaving;
    for (int k = 0; k != 3; ++k)
        recorder->hash.Add(labels[k]);
    for (NuvUint i = 0; i != pivot->numBasic; ++i)
        recorder->hash.AddFloat(pivot->values[i]);
    return NUV_TRUE;
}

/// The coefficients that are not +0, as an array over `terms`, which has room for all.
Terms TermsOf(const float* coefficients, uint32_t count, Term* terms)
{
    Term* end = terms;
    for (uint32_t j = 0; j != count; ++j)
        if (corpus::BitsOf(coefficients[j]) != 0)
            *end++ = {j + 1, coefficients[j]};
    return {nullptr, terms, end, end};
}

bool Enter(const Problem& problem, NuvLinearProgramming* lp)
{
    Term terms[corpus::Model::kMaxColumns];
    for (uint32_t i = 0; i != problem.rows; ++i)
    {
        const Terms row = TermsOf(problem.Row(i), problem.columns, terms);
        if (!NuvLinearProgrammingSetConstraintByIndex(lp, i + 1, &row, problem.b[i]))
            return false;
    }
    const Terms objective = TermsOf(problem.c, problem.columns, terms);
    NuvLinearProgrammingSetObjectiveByIndex(lp, &objective);
    return true;
}

NuvLinearProgrammingResultType SolveBy(Loops loops, NuvLinearProgramming* lp,
                                       NuvLinearProgrammingMonitor* monitor)
{
#if NUV_SELFTEST_CHOOSES_LOOPS
    if (const Kernels* const kernels = KernelsFor(loops))
    {
        SolveContext context = {monitor, 0, kernels, nullptr};
        return SolveInContext(lp, &context);
    }
#else
    (void)loops;
#endif
    return NuvLinearProgrammingSolveMonitored(lp, monitor);
}

void AddResults(const NuvLinearProgramming* lp, const Recorder& recorder, Outcome* outcome)
{
    Hash hash = recorder.hash;
    Hash answer;
    hash.Add(outcome->status);
    answer.Add(outcome->status);
    answer.Add(recorder.pivots);
    for (uint32_t k = 0; k != 3 * recorder.pivots; ++k)
        answer.Add(recorder.labels[k]);
    const bool isOptimal = outcome->status == NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
    const float objective = NuvLinearProgrammingGetObjectiveValue(lp);
    if (isOptimal)
        hash.AddFloat(objective);
    const auto* const values = NuvLinearProgrammingGetVariableValues(lp);
    for (const auto* value = values->begin; value != values->end; ++value)
    {
        if (isOptimal)
            hash.AddFloat(value->second);
        answer.AddFloat(value->second);
    }
    answer.AddFloat(objective);
    outcome->hash = hash.Value();
    outcome->hashOfAnswer = answer.Value();
}
}  // namespace

Outcome Solve(const Problem& problem, Loops loops, uint32_t maxPivots)
{
    NuvAllocator heap = {Take, Give, 0, nullptr};
    NuvScratchAllocator scratch;
    NuvAllocator* const memory =
        NuvScratchAllocatorGetAllocator(NuvScratchAllocatorConstruct(&scratch, &heap));
    Outcome outcome = {NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput, 0, 0, 0};
    NuvLinearProgramming lp;
    if (NuvLinearProgrammingConstruct(&lp, problem.columns, memory) && Enter(problem, &lp))
    {
        Recorder recorder;
        recorder.maxPivots = maxPivots;
        recorder.pivots = 0;
        NuvLinearProgrammingMonitor monitor = {Record, &recorder};
        outcome.status = static_cast<uint32_t>(SolveBy(loops, &lp, &monitor));
        outcome.pivots = recorder.pivots;
        AddResults(&lp, recorder, &outcome);
        if (!IsSameInBatch(&lp, {outcome.status, recorder.pivots, recorder.labels, maxPivots},
                           loops))
            outcome.hash = outcome.hashOfAnswer = 0;
    }
    NuvScratchAllocatorDestruct(&scratch);  // all that the model holds lies there
    return outcome;
}
}  // namespace nuv::selftest
