// Seeded models for comparisons with the yardstick: families with a structure of their own, from
// well-behaved production plans to data that no one should ask a solver for.
//
// Invariant: a family, a size and a seed give the same bits on every machine. The numbers come from
// a generator of this file, and floats are made from integers by exact or single rounded steps.
#ifndef TESTS_REFERENCE_RANDOMMODELS_HPP
#define TESTS_REFERENCE_RANDOMMODELS_HPP

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tests/reference/NaiveSimplex.hpp"

namespace reference
{
/// A 64-bit generator (Steele, Lea and Flood, Fast splittable pseudorandom number generators).
class Random
{
public:
    explicit Random(std::uint64_t seed) : state(seed) {}

    std::uint64_t Next();
    /// A number below `limit`, which is above 0.
    std::uint32_t Below(std::uint32_t limit);
    /// An integer between the two, both included.
    std::int32_t Between(std::int32_t first, std::int32_t last);
    /// Whether a chance of `percent` in 100 came true.
    bool Chance(std::uint32_t percent);
    /// A number in [-limit, limit) with 24 bits behind the leading one.
    float Symmetric(float limit);
    /// A number in [0, limit).
    float Positive(float limit);
    /// Any bit pattern: subnormals, infinities and NaNs too.
    float AnyBits();

private:
    std::uint64_t state;
};

enum class Family
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

/// All families.
const std::vector<Family>& Families();
const char* NameOf(Family family);
/// Whether the family's data are finite and its results may be trusted to be finite numbers mostly.
bool IsTame(Family family);

/// A model of about rows × columns; Assignment and Transport take the nearest shape that they have,
/// Cycling its own small ones.
Problem MakeModel(Family family, std::size_t rows, std::size_t columns, std::uint64_t seed);

/// A value from the list that breaks careless arithmetic: ±0, subnormals, pivots too small to have
/// a reciprocal, the largest finite numbers, ±infinity, NaN.
float SpecialValue(Random* random);
}  // namespace reference

#endif
