// A problem of a batch becomes the standard form that a model with the same rows has, and goes
// through the same phases.
#include "Nuv/Utils/Batch/SingleSolve.h"

#include <bit>

#include "Nuv/Utils/Kernels/Assert.h"
#include "Nuv/Utils/NuvStdCLibInline.h"
#include "Nuv/Utils/Simplex/Phases.h"
#include "Nuv/Utils/Simplex/SmallIteration.h"

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

/// Tells the trace.
struct Watch
{
    BatchTrace* trace;
    NuvSizeT problem;
};

NuvBool BeforePivot(NuvLinearProgrammingMonitor* monitor, const NuvLinearProgrammingPivot* pivot)
{
    const Watch* const watch = static_cast<const Watch*>(monitor->userData);
    watch->trace->onPivot(watch->trace, watch->problem, pivot->phase, pivot->entering,
                          pivot->leaving);
    return NUV_TRUE;
}

bool AreFinite(const NuvFloat32* x, NuvSizeT count)
{
    constexpr NuvUint kExponent = 0x7F800000;
    NuvUint numInfinite = 0;
    for (NuvSizeT i = 0; i != count; ++i)
        numInfinite |= (std::bit_cast<NuvUint>(x[i]) & kExponent) == kExponent ? 1U : 0U;
    return numInfinite == 0;
}

/// Counts the numbers that are not ±0.
NuvSizeT CountNonzeros(const NuvFloat32* x, NuvSizeT count)
{
    NuvSizeT numNonzeros = 0;
    for (NuvSizeT i = 0; i != count; ++i)
        numNonzeros += x[i] != 0.0F ? 1 : 0;
    return numNonzeros;
}

/// The standard form of a problem: on the caller's A where there are few rows, else on a copy that
/// has the slacks.
StandardForm FormOf(SingleSolve* x, const BatchData& data)
{
    const NuvUint m = x->batch->numConstraints;
    const NuvUint n = x->batch->numVars;
    const NuvSizeT size = static_cast<NuvSizeT>(m) * n;
    NuvMemCopy(x->c, data.c, n * sizeof *data.c);
    bool areFinite = AreFinite(data.b, m) && AreFinite(data.c, n);
    const StandardForm onData = {m, n, data.A, data.b, x->c, areFinite, 0, n};
    // Where there are few rows, A is looked at when the iteration starts.
    if (IsSmall(&onData))
        return onData;
    areFinite &= AreFinite(data.A, size);
    const NuvSizeT rowLength = static_cast<NuvSizeT>(n) + m;
    for (NuvSizeT i = 0; i != m; ++i)
        NuvMemCopy(x->A + i * rowLength, data.A + i * n, n * sizeof *data.A);
    return {m, n, x->A, data.b, x->c, areFinite, CountNonzeros(data.A, size), rowLength};
}

/// The record that the phases expect: labels and right-hand sides.
NuvLinearProgramming RecordOf(const SingleSolve* x, const StandardForm* form,
                              NuvAllocator* allocator)
{
    const NuvUint m = x->batch->numConstraints;
    const NuvUint n = x->batch->numVars;
    NuvLinearProgramming lp = {};
    lp.alloc = allocator;
    lp.numVars = n;
    lp.numConstraints = m;
    lp.b = {allocator, m, 1, const_cast<NuvFloat32*>(form->b)};
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
    layout->Place(&x->c, n + m);
    layout->Place(&x->basic, m);
    layout->Place(&x->independent, n);
    const StandardForm shape = {
        x->batch->numConstraints, x->batch->numVars, nullptr, nullptr, nullptr, true, 0, n + m};
    x->memorySize = BytesOfPhases(&shape);
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
    Watch watch = {x->trace, problem};
    NuvLinearProgrammingMonitor monitor = {BeforePivot, &watch};
    Writer writer = {{Take}, x->batch, problem, nullptr};
    SolveContext context = {x->trace ? &monitor : nullptr, 0, x->kernels, &writer.taker,
                            PivotLimitOf(x->batch)};
    writer.context = &context;

    StartLabels(x);
    const StandardForm form = FormOf(x, DataOf(x->batch, problem));
    NuvLinearProgramming lp = RecordOf(x, &form, &stack.allocator);
    const NuvLinearProgrammingResultType verdict = SolveForm(&lp, &context, &form);
    NUV_ASSERT(verdict != NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
    if (verdict != NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
        WriteVerdict(x->batch, problem, context.pivots, verdict);
}
}  // namespace nuv
