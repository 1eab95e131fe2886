/// @file
/// The C++ side of a batch: many small linear programs of one shape over spans of the caller's.
/// Nothing throws.
///
///     std::vector<float> objectives(1000);
///     nuv::BatchData data = {2, 3, 1000, A, b, c};         // A of one program: all share it
///     nuv::SolveBatch(data, {.objectives = objectives});
///
/// A program that uses oneTBB defines NUV_USE_TBB before it includes this, and has
/// nuv::SolveBatchInParallel.
#ifndef NUV_UTILS_NUVLINEARPROGRAMMINGBATCH_HPP
#define NUV_UTILS_NUVLINEARPROGRAMMINGBATCH_HPP

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <span>

#include "Nuv/Utils/NuvLinearProgrammingBatch.h"

#if defined(NUV_USE_TBB)
#include <atomic>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#endif

namespace nuv
{
/// max cᵀx, A x ≤ b, x ≥ 0, `count` times. Each span holds the numbers of one program, which all
/// then share, or those of all of them, one after the other.
struct BatchData
{
    NuvUint numVariables;           ///< n
    NuvUint numConstraints;         ///< m
    NuvSizeT count;                 ///< of programs
    std::span<const NuvFloat32> A;  ///< m × n each, row after row
    std::span<const NuvFloat32> b;  ///< m each
    std::span<const NuvFloat32> c;  ///< n each
    /// 0 stands for 100 × (m + n).
    NuvUint pivotLimit = 0;
};

/// Where answers go, see NuvLinearProgrammingBatch; what is not asked for stays empty.
struct BatchAnswers
{
    std::span<NuvUint> verdicts = {};       ///< one each
    std::span<NuvFloat32> objectives = {};  ///< one each
    std::span<NuvFloat32> values = {};      ///< n each
    std::span<NuvUint> pivots = {};         ///< one each
    std::span<NuvUint> bases = {};          ///< m each
    std::span<NuvFloat32> prices = {};      ///< m each
};

/// @cond
namespace batch
{
/// Finds whether a span is one program's or that of all.
inline bool FindStride(std::size_t size, NuvSizeT each, NuvSizeT count, NuvSizeT* stride) noexcept
{
    *stride = size == each ? 0 : each;
    return size == each || (each != 0 && size / each == count && size % each == 0);
}

template <class T>
bool Take(std::span<T> answers, NuvSizeT size, T** array) noexcept
{
    *array = answers.empty() ? nullptr : answers.data();
    return answers.empty() || answers.size() == size;
}

/// @return false when a span is not of the size that the shape asks for.
inline bool Describe(const BatchData& data, const BatchAnswers& answers,
                     NuvLinearProgrammingBatch* x) noexcept
{
    const NuvSizeT m = data.numConstraints;
    const NuvSizeT n = data.numVariables;
    x->numVars = data.numVariables;
    x->numConstraints = data.numConstraints;
    x->count = data.count;
    x->A = data.A.data();
    x->b = data.b.data();
    x->c = data.c.data();
    x->pivotLimit = data.pivotLimit;
    return FindStride(data.A.size(), m * n, data.count, &x->strideA) &&
           FindStride(data.b.size(), m, data.count, &x->strideB) &&
           FindStride(data.c.size(), n, data.count, &x->strideC) &&
           Take(answers.verdicts, data.count, &x->verdicts) &&
           Take(answers.objectives, data.count, &x->objectives) &&
           Take(answers.values, data.count * n, &x->values) &&
           Take(answers.pivots, data.count, &x->pivots) &&
           Take(answers.bases, data.count * m, &x->bases) &&
           Take(answers.prices, data.count * m, &x->prices);
}

inline bool SolveRange(const NuvLinearProgrammingBatch& batch, NuvSizeT first,
                       NuvSizeT last) noexcept
{
    const NuvSizeT size = NuvLinearProgrammingBatchWorkspaceSize(&batch);
    if (size == 0)
        return false;
    const std::unique_ptr<void, decltype(&std::free)> workspace(
        std::malloc(static_cast<std::size_t>(size)), &std::free);
    return workspace &&
           NuvLinearProgrammingBatchSolveRange(&batch, first, last, workspace.get()) != NUV_FALSE;
}
}  // namespace batch
/// @endcond

/// Solves all programs.
/// @return false, and no answers, when a span is not of the size that the shape asks for, the shape
/// cannot be solved, or memory is refused.
inline bool SolveBatch(const BatchData& data, const BatchAnswers& answers) noexcept
{
    NuvLinearProgrammingBatch x = {};
    return batch::Describe(data, answers, &x) && batch::SolveRange(x, 0, data.count);
}

#if defined(NUV_USE_TBB)
/// The same, to the bit, on the threads that oneTBB has.
inline bool SolveBatchInParallel(const BatchData& data, const BatchAnswers& answers)
{
    NuvLinearProgrammingBatch x = {};
    if (!batch::Describe(data, answers, &x))
        return false;
    std::atomic<bool> areSolved = true;
    tbb::parallel_for(tbb::blocked_range<NuvSizeT>(0, data.count, 512),
                      [&](const tbb::blocked_range<NuvSizeT>& range)
                      {
                          if (!batch::SolveRange(x, range.begin(), range.end()))
                              areSolved = false;
                      });
    return areSolved;
}
#endif
}  // namespace nuv

#endif
