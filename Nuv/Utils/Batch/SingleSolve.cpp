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

/// The standard form of a problem: on the caller's A where there are few rows, else on a copy that
/// has the slacks.
StandardForm FormOf(SingleSolve* x, const BatchData& data)
{
    const NuvUint m = x->batch->numConstraints;
    const NuvUint n = x->batch->numVars;
    const NuvSizeT size = static_cast<NuvSizeT>(m) * n;
    NuvMemCopy(x->c, data.c, n * sizeof *data.c);
    bool areFinite = AreFinite(data.b, m) && AreFinite(data.c, n);
    const StandardForm onData = {m, n, data.A, data.b, x->c, areFinite, 0, n, true};
    // Where there are few rows, A is looked at when the iteration starts.
    if (IsSmall(&onData))
        return onData;
    areFinite &= AreFinite(data.A, size);
    const NuvSizeT rowLength = static_cast<NuvSizeT>(n) + m;
    for (NuvSizeT i = 0; i != m; ++i)
        NuvMemCopy(x->A + i * rowLength, data.A + i * n, n * sizeof *data.A);
    return {m, n, x->A, data.b, x->c, areFinite, CountNonzeros(data.A, size), rowLength, true};
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

void StartLabels(const SingleSolve* x)
{
    const NuvUint n = x->batch->numVars;
    for (NuvUint j = 0; j != n; ++j)
        x->independent[j] = j + 1;
    for (NuvUint i = 0; i != x->batch->numConstraints; ++i)
        x->basic[i] = n + 1 + i;
}

/// Lays down what is the same for all problems: the slacks.
void Start(SingleSolve* x)
{
    x->isStarted = true;
    if (x->memorySize == 0)
        x->memorySize = MemoryOfPhases(x->batch);
    const NuvSizeT m = x->batch->numConstraints;
    const NuvSizeT n = x->batch->numVars;
    NuvMemZero(x->A, m * (n + m) * sizeof *x->A);
    for (NuvSizeT i = 0; i != m; ++i)
        x->A[i * (n + m) + n + i] = 1.0F;
    NuvMemZero(x->c, (n + m) * sizeof *x->c);
}

/// What belongs to the solve of one problem.
struct Task
{
    Stack stack;
    Watch watch;
    NuvLinearProgrammingMonitor monitor;
    Writer writer;
    SolveContext context;
    StandardForm form;
    NuvLinearProgramming lp;
};

void Begin(Task* task, SingleSolve* x, NuvSizeT problem)
{
    if (!x->isStarted)
        Start(x);
    task->stack = {{Push, Pop, 0, &task->stack}, x->memory, x->memorySize, 0};
    task->watch = {x->trace, problem};
    task->monitor = {BeforePivot, &task->watch};
    task->writer = {{Take}, x->batch, problem, &task->context};
    task->context = {x->trace ? &task->monitor : nullptr, 0, x->kernels, &task->writer.taker,
                     PivotLimitOf(x->batch)};
    StartLabels(x);
    task->form = FormOf(x, DataOf(x->batch, problem));
    task->lp = RecordOf(x, &task->form, &task->stack.allocator);
}
}  // namespace

bool HasShape(const NuvLinearProgrammingBatch* batch)
{
    const NuvSizeT m = batch->numConstraints;
    const NuvSizeT n = batch->numVars;
    return m != 0 && n != 0 && m * (1 + n + m) <= UINT32_MAX;
}

NuvSizeT MemoryOfPhases(const NuvLinearProgrammingBatch* batch)
{
    const NuvUint m = batch->numConstraints;
    const NuvUint n = batch->numVars;
    const NuvSizeT rowLength = static_cast<NuvSizeT>(n) + m;
    const StandardForm shape = {m, n, nullptr, nullptr, nullptr, true, 0, rowLength, true};
    return BytesOfPhases(&shape);
}

void PlaceArrays(SingleSolve* x, NuvSizeT memorySize, WorkspaceLayout* layout)
{
    const NuvSizeT m = x->batch->numConstraints;
    const NuvSizeT n = x->batch->numVars;
    layout->Place(m * (n + m), &x->A);
    layout->Place(n + m, &x->c);
    layout->Place(m, &x->basic);
    layout->Place(n, &x->independent);
    x->isStarted = false;
    x->memorySize = memorySize;
    layout->Place(memorySize, &x->memory);
}

void Solve(SingleSolve* x, NuvSizeT problem)
{
    Task task;
    Begin(&task, x, problem);
    const NuvLinearProgrammingResultType verdict = SolveForm(&task.lp, &task.context, &task.form);
    NUV_ASSERT(verdict != NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
    if (verdict != NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
        WriteVerdict(x->batch, problem, task.context.pivots, verdict);
}

// Several in turns --------------------------------------------------------------------------------

namespace
{
/// A problem with few rows and without Phase I, whose steps are made between those of others: what
/// one step waits for, those of others do not.
struct Turn
{
    SingleSolve* single;
    Task task;
    Iteration it;
    SmallIteration steps;
    Entering entering;
    Leaving leaving;
    bool isActive;
    bool isFinite;
    bool hasPivot;
};

bool TryStart(Turn* x)
{
    if (!IsSmall(&x->task.form) || NuvRevisedSimplexIsPhaseIRequired(&x->task.lp))
        return false;
    WorkspaceLayout layout(x->single->memory);
    PlaceArrays(&x->it, &x->task.context, &x->task.form, Phase::II, &layout);
    PlaceArrays(&x->steps, &x->it, &layout);
    Initialise(&x->it, &x->task.lp);
    return TryStart(&x->steps, &x->it);
}

/// Begins the next problem that is solved in turns, or leaves the turn idle.
void Refill(Turn* x, NuvSizeT* next, NuvSizeT last)
{
    x->hasPivot = false;
    for (x->isActive = false; !x->isActive && *next != last; ++*next)
    {
        Begin(&x->task, x->single, *next);
        x->isActive = TryStart(x);
        if (!x->isActive)
            Solve(x->single, *next);
    }
}

/// Decides on the pivot that was chosen.
/// @return whether the problem is at its end.
bool Decide(Turn* x)
{
    const NuvLinearProgrammingBatch* const batch = x->single->batch;
    const NuvSizeT problem = x->task.watch.problem;
    Iteration* const it = &x->it;
    if (x->isFinite)
    {
        if (x->entering.reducedCost == 0.0F)
        {
            const BatchOptimum found = {ComputeObjective(it), it->basic, it->basicValues,
                                        it->prices,           1,         1};
            WriteOptimum(batch, problem, x->task.context.pivots, &found);
            return true;
        }
        x->leaving = ChooseLeaving(&x->steps, it);
        if (!x->leaving.exists)
        {
            WriteVerdict(batch, problem, x->task.context.pivots,
                         NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded);
            return true;
        }
    }
    if (!x->isFinite || !FormEta(&x->steps, it, x->leaving.row))
    {
        if (x->single->trace)
            x->single->trace->onPivot(x->single->trace, problem, 0, 0, 0);
        Solve(x->single, problem);
        return true;
    }
    x->hasPivot = ReportPivot(it, &x->entering, &x->leaving);
    if (!x->hasPivot)
        WriteVerdict(batch, problem, x->task.context.pivots,
                     NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped);
    return !x->hasPivot;
}
}  // namespace

void SolveInTurns(SingleSolve* singles, NuvSizeT first, NuvSizeT last)
{
    Turn turns[kMaxTurns];
    for (Turn& turn : turns)
    {
        turn.single = singles++;
        Refill(&turn, &first, last);
    }
    for (bool isAnyActive = turns[0].isActive; isAnyActive;)
    {
        isAnyActive = false;
        for (Turn& turn : turns)
            if (turn.isActive)
                turn.entering = ChooseEntering(&turn.steps, &turn.it);
        for (Turn& turn : turns)
            if (turn.isActive)
                turn.isFinite = ComputeValuesAndDirection(&turn.steps, &turn.it, &turn.entering);
        for (Turn& turn : turns)
            if (turn.isActive && Decide(&turn))
                Refill(&turn, &first, last);
        for (Turn& turn : turns)
        {
            isAnyActive |= turn.isActive;
            if (!turn.hasPivot)
                continue;
            ExchangeLabels(&turn.it, turn.entering.position, turn.leaving.row);
            Update(&turn.steps, &turn.it, turn.leaving.row);
            turn.it.hasPivoted = true;
        }
    }
}
}  // namespace nuv
