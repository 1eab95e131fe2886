// A problem of a batch becomes the standard form that a model with the same rows has, and goes
// through the same phases.
#include "Nuv/Utils/Batch/SingleSolve.h"

#include <bit>

#include "Nuv/Utils/Kernels/Assert.h"
#include "Nuv/Utils/NuvStdCLibInline.h"
#include "Nuv/Utils/Simplex/Phases.h"

namespace nuv
{
namespace
{
/// Memory that is given back in the reverse order in which it was taken.
struct Stack
{
    NuvAllocator allocator;
    unsigned char* memory;
    NuvSizeT size;
    NuvSizeT used;
};

void* Push(NuvAllocator* allocator, NuvSizeT size)
{
    Stack* const stack = static_cast<Stack*>(allocator->userData);
    NUV_ASSERT(size <= stack->size - stack->used);
    void* const block = stack->memory + stack->used;
    stack->used += size;
    return block;
}

void Pop(NuvAllocator* allocator, void* block, NuvSizeT size)
{
    Stack* const stack = static_cast<Stack*>(allocator->userData);
    NUV_ASSERT(block == stack->memory + stack->used - size);
    (void)block;
    stack->used -= size;
}

/// Writes the optimum of a problem as soon as the solve has it.
struct Writer
{
    AnswerTaker taker;
    const NuvLinearProgrammingBatch* batch;
    NuvSizeT problem;
    const SolveContext* context;
};

void Take(AnswerTaker* taker, const Optimum* optimum)
{
    // The taker is the writer's first member.
    const Writer* const writer = reinterpret_cast<const Writer*>(taker);
    const BatchOptimum found = {
        optimum->objective, optimum->basic, optimum->values, optimum->prices, 1, 1};
    WriteOptimum(writer->batch, writer->problem, writer->context->pivots, &found);
}

/// Ends the solve at the limit, and tells the trace.
struct Watch
{
    NuvUint pivotLimit;
    BatchTrace* trace;
    NuvSizeT problem;
};

NuvBool BeforePivot(NuvLinearProgrammingMonitor* monitor, const NuvLinearProgrammingPivot* pivot)
{
    const Watch* const watch = static_cast<const Watch*>(monitor->userData);
    if (pivot->number > watch->pivotLimit)
        return NUV_FALSE;
    if (watch->trace)
        watch->trace->onPivot(watch->trace, watch->problem, pivot->phase, pivot->entering,
                              pivot->leaving);
    return NUV_TRUE;
}

/// Counts the numbers that are not ±0, and finds whether all are finite.
struct Facts
{
    NuvSizeT numNonzeros = 0;
    bool areFinite = true;

    void Meet(NuvFloat32 value)
    {
        constexpr NuvUint kExponent = 0x7F800000;
        numNonzeros += value != 0.0F ? 1 : 0;
        areFinite &= (std::bit_cast<NuvUint>(value) & kExponent) != kExponent;
    }
};

Facts CopyData(SingleSolve* x, const BatchData& data)
{
    const NuvSizeT m = x->batch->numConstraints;
    const NuvSizeT n = x->batch->numVars;
    Facts facts;
    for (NuvSizeT i = 0; i != m; ++i)
    {
        NuvMemCopy(x->A + i * (n + m), data.A + i * n, n * sizeof *data.A);
        for (NuvSizeT j = 0; j != n; ++j)
            facts.Meet(data.A[i * n + j]);
    }
    const NuvSizeT numNonzeros = facts.numNonzeros;
    NuvMemCopy(x->b, data.b, m * sizeof *data.b);
    NuvMemCopy(x->c, data.c, n * sizeof *data.c);
    for (NuvSizeT i = 0; i != m; ++i)
        facts.Meet(data.b[i]);
    for (NuvSizeT j = 0; j != n; ++j)
        facts.Meet(data.c[j]);
    return {numNonzeros, facts.areFinite};
}

/// The record that the phases expect: the matrices alone.
NuvLinearProgramming RecordOf(const SingleSolve* x, NuvAllocator* allocator)
{
    const NuvUint m = x->batch->numConstraints;
    const NuvUint n = x->batch->numVars;
    NuvLinearProgramming lp = {};
    lp.alloc = allocator;
    lp.numVars = n;
    lp.numConstraints = m;
    lp.A = {allocator, m, n + m, x->A};
    lp.b = {allocator, m, 1, x->b};
    lp.c = {allocator, n + m, 1, x->c};
    lp.basic = {allocator, 1, m, x->basic};
    lp.independent = {allocator, 1, n, x->independent};
    return lp;
}

void StartLabels(SingleSolve* x)
{
    const NuvUint n = x->batch->numVars;
    for (NuvUint j = 0; j != n; ++j)
        x->independent[j] = j + 1;
    for (NuvUint i = 0; i != x->batch->numConstraints; ++i)
        x->basic[i] = n + 1 + i;
}

StandardForm FormOf(const SingleSolve* x)
{
    const NuvUint m = x->batch->numConstraints;
    const NuvUint n = x->batch->numVars;
    return {m, n, x->A, x->b, x->c, false, 0, static_cast<NuvSizeT>(n) + m};
}
}  // namespace

bool HasShape(const NuvLinearProgrammingBatch* batch)
{
    const NuvSizeT m = batch->numConstraints;
    const NuvSizeT n = batch->numVars;
    return m != 0 && n != 0 && m * (1 + n + m) <= UINT32_MAX;
}

void PlaceArrays(SingleSolve* x, WorkspaceLayout* layout)
{
    const NuvSizeT m = x->batch->numConstraints;
    const NuvSizeT n = x->batch->numVars;
    layout->Place(&x->A, m * (n + m));
    layout->Place(&x->b, m);
    layout->Place(&x->c, n + m);
    layout->Place(&x->basic, m);
    layout->Place(&x->independent, n);
    const StandardForm form = FormOf(x);
    x->memorySize = BytesOfPhases(&form);
    layout->Place(&x->memory, x->memorySize);
}

void Start(SingleSolve* x)
{
    const NuvSizeT m = x->batch->numConstraints;
    const NuvSizeT n = x->batch->numVars;
    NuvMemZero(x->A, m * (n + m) * sizeof *x->A);
    for (NuvSizeT i = 0; i != m; ++i)
        x->A[i * (n + m) + n + i] = 1.0F;
    NuvMemZero(x->c, (n + m) * sizeof *x->c);
}

void Solve(SingleSolve* x, NuvSizeT problem)
{
    Stack stack = {{Push, Pop, 0, nullptr}, x->memory, x->memorySize, 0};
    stack.allocator.userData = &stack;
    Watch watch = {PivotLimitOf(x->batch), x->trace, problem};
    NuvLinearProgrammingMonitor monitor = {BeforePivot, &watch};
    Writer writer = {{Take}, x->batch, problem, nullptr};
    SolveContext context = {&monitor, 0, x->kernels, &writer.taker};
    writer.context = &context;

    const Facts facts = CopyData(x, DataOf(x->batch, problem));
    StartLabels(x);
    StandardForm form = FormOf(x);
    form.isFiniteWithUnitSlacks = facts.areFinite;
    form.maxNonzeros = facts.numNonzeros;
    NuvLinearProgramming lp = RecordOf(x, &stack.allocator);
    const NuvLinearProgrammingResultType verdict = SolveForm(&lp, &context, &form);
    NUV_ASSERT(verdict != NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
    if (verdict == NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped)
        --context.pivots;
    if (verdict != NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
        WriteVerdict(x->batch, problem, context.pivots, verdict);
}
}  // namespace nuv
