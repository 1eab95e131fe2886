// The contenders of the comparison: this library, the hand-written tableau, and the libraries that
// were found when the benchmarks were configured, each behind the same two timed steps.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Nuv/Utils/NuvLinearProgramming.hpp"
#include "bench/Families.hpp"
#include "bench/Stopwatch.hpp"
#include "bench/contenders/Tableau.hpp"

namespace bench
{
/// An instance in every shape that a contender's interface asks for, made before any clock starts.
struct Input
{
    Instance instance;
    NonZeros byRow;
    NonZeros byColumn;
    /// The rows' terms one after the other, from byRow.starts[i] on, and the objective's.
    std::vector<nuv::IndexedTerm> terms;
    std::vector<nuv::IndexedTerm> objective;

    std::span<const nuv::IndexedTerm> TermsOf(std::size_t row) const
    {
        const auto first = static_cast<std::size_t>(byRow.starts[row]);
        const auto last = static_cast<std::size_t>(byRow.starts[row + 1]);
        return std::span(terms).subspan(first, last - first);
    }
};

Input MakeInput(Instance instance);

/// One building and solving of a model.
struct Run
{
    Verdict verdict;
    double objective;
    std::uint64_t pivots;
    /// Seconds.
    double building;
    double solving;
};

struct Conditions
{
    /// When to give up, as far as the library can be told, in seconds.
    double patience;
    Clock clock;
};

struct Contender
{
    /// Contenders of one name are settings of one library; the fastest counts.
    const char* name;
    const char* setting;
    /// The library's version; empty for what is built here.
    const char* (*version)();
    /// Builds the model and solves it from scratch.
    Run (*run)(const Input& input, const Conditions& conditions);
};

/// This library first, then the tableaus, then the libraries.
std::span<const Contender> Contenders();

/// Solves once under a monitor that ends the solve after so many pivots or seconds of processor
/// time.
Run CountPivots(const Input& input, std::uint64_t maxPivots, double seconds);
/// Makes a model of this library.
nuv::LinearProgram BuildProgram(const Input& input);

/// The versions of the libraries, as they tell them.
const char* GlpkVersion();
const char* ClpVersion();
const char* LpSolveVersion();

Run RunNuv(const Input& input, const Conditions& conditions);
Run RunTableau(const Input& input, const Conditions& conditions);
Run RunNativeTableau(const Input& input, const Conditions& conditions);
Run RunGlpkPrimal(const Input& input, const Conditions& conditions);
Run RunGlpkDual(const Input& input, const Conditions& conditions);
Run RunClpDefault(const Input& input, const Conditions& conditions);
Run RunClpPrimal(const Input& input, const Conditions& conditions);
Run RunLpSolveDefault(const Input& input, const Conditions& conditions);
Run RunLpSolvePrimal(const Input& input, const Conditions& conditions);
}  // namespace bench
