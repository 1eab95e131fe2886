#include "Nuv/SelfTest/Batches.hpp"

#include "Nuv/Corpus/Random.hpp"
#include "Nuv/Utils/NuvLinearProgrammingBatch.h"
#if NUV_SELFTEST_CHOOSES_LOOPS
#include "Nuv/Utils/Batch/Batch.h"
#endif

#include <stdlib.h>
#include <string.h>

namespace nuv::selftest
{
namespace
{
constexpr uint32_t kCopies = 2;

/// Memory that is given back with its owner.
class Memory
{
public:
    explicit Memory(size_t size) : bytes(malloc(size)) {}
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;
    ~Memory()
    {
        free(bytes);
    }

    template <class T>
    T* As() const
    {
        return static_cast<T*>(bytes);
    }

private:
    void* bytes;
};

/// The same bits, or both NaN.
bool IsSame(float x, float y)
{
    // same bits: a number that differs from itself is a NaN
    return corpus::BitsOf(x) == corpus::BitsOf(y) || (x != x && y != y);
}

/// The answers of a batch.
struct Answers
{
    uint32_t verdicts[kCopies];
    uint32_t pivots[kCopies];
    float objectives[kCopies];
    const float* values;
};

bool IsSame(const NuvLinearProgramming* lp, const Solved& solved, const Answers& found,
            uint32_t copy)
{
    if (found.verdicts[copy] != solved.status || found.pivots[copy] != solved.pivots)
        return false;
    if (solved.status != NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
        return true;
    bool isSame = IsSame(found.objectives[copy], NuvLinearProgrammingGetObjectiveValue(lp));
    const auto* const values = NuvLinearProgrammingGetVariableValues(lp)->begin;
    for (uint32_t j = 0; j != lp->numVars; ++j)
        isSame &= IsSame(found.values[size_t{copy} * lp->numVars + j], values[j].second);
    return isSame;
}

#if NUV_SELFTEST_CHOOSES_LOOPS
/// Follows the pivots of all copies beside those of the solve.
struct Follower
{
    BatchTrace trace;
    const Solved* solved;
    uint32_t pivots[kCopies];
    bool isDifferent[kCopies];
};

void Follow(BatchTrace* trace, NuvSizeT problem, NuvUint phase, NuvUint entering, NuvUint leaving)
{
    // The trace is the follower's first member.
    Follower* const follower = reinterpret_cast<Follower*>(trace);
    uint32_t* const pivots = &follower->pivots[problem];
    if (phase == 0)
    {
        *pivots = 0;
        follower->isDifferent[problem] = false;
        return;
    }
    const uint32_t* const labels = follower->solved->labels + size_t{3} * *pivots;
    if (*pivots >= follower->solved->pivots || labels[0] != phase || labels[1] != entering ||
        labels[2] != leaving)
        follower->isDifferent[problem] = true;
    ++*pivots;
}

InstructionSet SetOf(Loops loops)
{
    switch (loops)
    {
    case Loops::Plain:
        return InstructionSet::Plain;
    case Loops::Baseline:
        return InstructionSet::Baseline;
    case Loops::Avx2:
        return InstructionSet::Avx2;
    default:
        return InstructionSet::Avx512;
    }
}

/// @return whether the pivots are the same.
bool SolveOnWay(const NuvLinearProgrammingBatch* batch, const Solved* solved, BatchWay way)
{
    Follower follower = {{Follow}, solved, {}, {}};
    way.trace = &follower.trace;
    const Memory workspace(static_cast<size_t>(WorkspaceSize(batch, &way)));
    if (workspace.As<void>())
        SolveRange(batch, &way, 0, kCopies, workspace.As<void>());
    return !follower.isDifferent[0] && !follower.isDifferent[1];
}

/// In lanes, or in tableaus of integers where these take the problem.
/// @return whether the pivots are the same.
bool SolveByLoops(const NuvLinearProgrammingBatch* batch, const Solved* solved, Loops loops,
                  bool inTableaus)
{
    BatchWay way = {KernelsFor(loops), LanesOf(SetOf(loops)), nullptr};
    if (inTableaus)
        way.units = UnitLoopsOf(SetOf(loops));
    return SolveOnWay(batch, solved, way);
}

bool AreForTableaus(const NuvLinearProgrammingBatch* batch, Loops loops)
{
    return loops != Loops::OfThisMachine && batch->numConstraints <= kMaxUnitRows &&
           HasUnitCoefficients(batch, 0);
}
#else
bool AreForTableaus(const NuvLinearProgrammingBatch* /*batch*/, Loops /*loops*/)
{
    return false;
}
#endif

/// @return whether the pivots are the same, as far as they are known.
bool SolveBatch(const NuvLinearProgrammingBatch* batch, const Solved* solved, Loops loops,
                bool inTableaus)
{
#if NUV_SELFTEST_CHOOSES_LOOPS
    if (loops != Loops::OfThisMachine)
        return SolveByLoops(batch, solved, loops, inTableaus);
#else
    (void)solved;
    (void)loops;
    (void)inTableaus;
#endif
    const Memory workspace(static_cast<size_t>(NuvLinearProgrammingBatchWorkspaceSize(batch)));
    if (workspace.As<void>())
        NuvLinearProgrammingBatchSolve(batch, workspace.As<void>());
    return true;
}

/// Solves a batch of copies and compares the answers.
bool IsSameInBatch(const NuvLinearProgramming* lp, const Solved& solved, Loops loops,
                   NuvLinearProgrammingBatch batch, bool inTableaus)
{
    Answers found = {};
    found.values = batch.values;
    batch.verdicts = found.verdicts;
    batch.pivots = found.pivots;
    batch.objectives = found.objectives;
    bool isSame = SolveBatch(&batch, &solved, loops, inTableaus);
    for (uint32_t copy = 0; copy != kCopies; ++copy)
        isSame &= IsSame(lp, solved, found, copy);
    return isSame;
}
}  // namespace

bool IsSameInBatch(const NuvLinearProgramming* lp, const Solved& solved, Loops loops)
{
    if (solved.status == NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput)
        return true;
    const size_t m = lp->numConstraints;
    const size_t n = lp->numVars;
    const Memory coefficients(kCopies * m * n * sizeof(float));
    const Memory values(kCopies * n * sizeof(float));
    float* const A = coefficients.As<float>();
    if (!A || !values.As<float>())
        return true;
    for (size_t copy = 0; copy != kCopies; ++copy)
        for (size_t i = 0; i != m; ++i)
            memcpy(A + (copy * m + i) * n, lp->A.data + i * (n + m), n * sizeof *A);
    NuvLinearProgrammingBatch batch = {};
    batch.numVars = lp->numVars;
    batch.numConstraints = lp->numConstraints;
    batch.count = kCopies;
    batch.A = A;
    batch.strideA = m * n;
    batch.b = lp->b.data;
    batch.c = lp->c.data;
    batch.pivotLimit = solved.maxPivots;
    batch.values = values.As<float>();
    return IsSameInBatch(lp, solved, loops, batch, false) &&
           (!AreForTableaus(&batch, loops) || IsSameInBatch(lp, solved, loops, batch, true));
}
}  // namespace nuv::selftest
