// What the benchmarks can switch off, to measure what it gains: the ways of the solver that are
// there for their speed alone. Every result is the same without them, to the bit. In the library
// all of them are constants, which leaves no trace in its code; bench/ compiles the sources a
// second time, with NUV_SWITCHES. Not installed.
#ifndef NUV_UTILS_KERNELS_SWITCHES_H
#define NUV_UTILS_KERNELS_SWITCHES_H

namespace nuv
{
struct Switches
{
    /// The sparse inverse and the reduced costs of Simplex/, against the definition.
    bool structured = true;
    /// The dense inverse of few rows, against the sparse one.
    bool few = true;
    /// The instruction sets beyond the plain loops.
    bool avx512 = true;
    bool avx2 = true;
    bool baseline = true;
    /// Inverting column by column, against rows of a dense matrix.
    bool columnInversion = true;
    bool sparsePricing = true;
    /// Only the sums that a changed price is in.
    bool incrementalSums = true;
};

#ifdef NUV_SWITCHES
extern Switches switches;
#else
inline constexpr Switches switches;
#endif
}  // namespace nuv

#endif
