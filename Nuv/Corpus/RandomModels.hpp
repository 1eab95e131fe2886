// Families of models of any size, for comparisons with a naive evaluation: from well-behaved
// production plans to data that no one should ask a solver for.
//
// Invariant: a family, a size and a seed give the same bits on every machine whose floats are as
// the library asks; floats are made from integers by exact or single rounded steps.
#pragma once

#include "Nuv/Corpus/Problem.hpp"
#include "Nuv/Corpus/Random.hpp"

namespace nuv::corpus
{
enum class RandomFamily : uint32_t
{
    ProductionMix,
    MixedSigns,
    NeedsPhaseI,
    Assignment,
    Transport,
    Diet,
    DegenerateTies,
    Sparse,
    EqualCoefficients,
    ZeroRowsAndColumns,
    Cycling,
    Infeasible,
    Unbounded,
    ExtremeExponents,
    Overflowing,
    Sprinkled,
    VerySparse,
    SprinkledSparse
};
inline constexpr uint32_t kNumRandomFamilies = 18;

const char* NameOf(RandomFamily family);
/// Whether the family's data are finite and its results may be trusted to be finite numbers mostly.
bool IsTame(RandomFamily family);

/// Assignment and Transport take the shape nearest to what is asked, Cycling its own small ones:
/// the arrays of a model have room for rows, columns and coefficients of these as well.
inline constexpr uint32_t kRoomForRows = 20;
inline constexpr uint32_t kRoomForColumns = 100;
inline constexpr size_t kRoomForCoefficients = 2000;

/// Makes a model of about `p`'s rows and columns; there is at least one of each.
void MakeRandomModel(RandomFamily family, uint64_t seed, Problem* p);

/// A value from the list that breaks careless arithmetic: ±0, subnormals, pivots too small to have
/// a reciprocal, the largest finite numbers, ±infinity, NaN.
float SpecialValue(Random* random);
}  // namespace nuv::corpus
