// Families of models for the benchmarks, each with a known optimum's existence built in, so that
// every contender has work to do and an answer to agree on.
//
// Invariant: a family, a shape and a seed give the same numbers on every machine, and every number
// is an integer that binary32 holds exactly, so that solvers in single and double precision are
// asked the same question.
#pragma once

#include "Nuv/Corpus/Problem.hpp"

namespace nuv::corpus
{
enum class BenchmarkFamily : uint32_t
{
    /// All data positive: few pivots for the size.
    Positive,
    /// Coefficients and costs of both signs under one budget row: many pivots for the size.
    MixedSigns,
    /// Rows of both directions around a point that satisfies them all.
    PhaseI,
    /// Workers and tasks, each at most once: two ones per column, degenerate throughout.
    Assignment,
    /// Supplies and demands along some of the possible routes, at the least cost: needs Phase I.
    Transport,
    /// A few products that share resources.
    ProductionMix,
    /// Nutrients that foods must reach at the least cost: every row needs Phase I.
    Diet,
    /// One coefficient in ten, under one budget row.
    Sparse,
    /// As MixedSigns, with right-hand sides that leave no ties.
    NonDegenerate
};
inline constexpr uint32_t kNumBenchmarkFamilies = 9;

const char* NameOf(BenchmarkFamily family);

/// Makes a model of exactly `p`'s rows and columns, which are at least 2 of each.
void MakeBenchmarkModel(BenchmarkFamily family, uint64_t seed, Problem* p);
}  // namespace nuv::corpus
