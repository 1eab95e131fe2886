// Whether this machine and this build give the promised bits: a built-in corpus of models, solved
// by the core, and the hashes that their solves have on every machine. Needs the core and the C
// library alone.
//
// Without a build system, from the root of the tree, by any compiler of C++20 for any machine:
//
//     g++ -std=c++20 -O2 -ffp-contract=off -I. Nuv/{Corpus,SelfTest,Utils/*}/*.cpp -o nuv_selftest
//
// (with -fno-exceptions -fno-rtti -fno-threadsafe-statics it needs no C++ runtime; on 32-bit x86
// add -msse2 -mfpmath=sse; -mavx2 and the like belong to the sources named after them, such as
// Nuv/Utils/Kernels/Avx2.cpp, alone).
#pragma once

#include <stdint.h>
#include <stdio.h>

// A shared library keeps its loops to itself, and chooses among them.
#if defined(NUV_SHARED)
#define NUV_SELFTEST_CHOOSES_LOOPS 0
#else
#define NUV_SELFTEST_CHOOSES_LOOPS 1
#endif

namespace nuv
{
struct Kernels;

namespace corpus
{
struct Model;
}
}  // namespace nuv

namespace nuv::selftest
{
/// Which of the core's loops solve.
enum class Loops
{
    OfThisMachine,  ///< those that every solve here uses
    Plain,
    Baseline,
    Avx2,
    Avx512
};

/// Their name as an option's value: "machine", "plain", "baseline", "avx2", "avx512".
const char* NameOf(Loops loops);

/// @return whether they can be asked for in this build on this machine.
bool Has(Loops loops);

#if NUV_SELFTEST_CHOOSES_LOOPS
/// @return the loops to force, or null to leave the choice to the core.
const Kernels* KernelsFor(Loops loops);
#endif

/// What the machine does with the numbers that hosts like to change.
struct Host
{
    /// Results below the smallest normal number become 0.
    bool flushesResults;
    /// Operands below it count as 0.
    bool flushesOperands;
    bool roundsToNearest;

    [[nodiscard]] bool IsAsPromised() const
    {
        return !flushesResults && !flushesOperands && roundsToNearest;
    }
};

Host InspectHost();

struct FamilyResult
{
    uint64_t pivots;
    uint64_t hash;
};

/// Solves all models of a family.
FamilyResult RunFamily(uint32_t family, Loops loops);

/// Runs the corpus once for each of the loops, and prints a line for each family and a total.
/// @return whether the host and all hashes are as promised, and the loops are there.
bool Run(const Loops* loops, uint32_t count, FILE* out);

/// `nuv_selftest` and `nuvlp selftest`: the loops by their option's value, or all that there are
/// for "all".
/// @return 0 when all is as promised, 70 when not, 64 for a value that is not one of these.
int RunByName(const char* name, FILE* out);

/// Prints the hash of each model: to be compared, by diff, with that of another machine.
void PrintModels(Loops loops, FILE* out);
/// @return the hash that a named model has in the table.
uint64_t HashOfNamed(corpus::Model* model, Loops loops);
/// Prints the table of hashes, Nuv/Corpus/Golden.inl, as it is here.
void PrintHashes(Loops loops, FILE* out);
}  // namespace nuv::selftest
