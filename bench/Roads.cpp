// What each special way of the solver gains: every instance with and without it, in turns in one
// process. A way that gains less than 5 % everywhere is to be deleted.
//
//     bench_roads [--quick]
//
// prints a line of JSON for each. Time is the minimum of the rounds, of a solve
// after the first, on a scratch allocator, with one monitor for all. The program ends with 1 unless
// every pivot, every basic value and the result are the same, to the bit, in all variants.
#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/NuvLinearProgramming.hpp"
#include "bench/Cases.hpp"
#include "bench/JsonLine.hpp"
#include "bench/Stopwatch.hpp"

namespace bench
{
namespace
{
/// What one sample is filled up to with repeated solves.
constexpr double kSampleSeconds = 1e-3;

/// How many pivots a solve has at most where the definition itself is evaluated, above so many
/// rows.
constexpr std::uint64_t kFewPivots = 20;
constexpr std::size_t kManyRows = 100;

struct Road
{
    const char* name;
    nuv::Switches with;
    nuv::Switches without;
    std::uint64_t maxPivots;
};

/// @return all on but those given.
nuv::Switches Without(std::initializer_list<bool nuv::Switches::*> ways)
{
    nuv::Switches switches;
    for (bool nuv::Switches::*const way : ways)
        switches.*way = false;
    return switches;
}

std::vector<Road> RoadsFor(const Case& which)
{
    using S = nuv::Switches;
    constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();
    return {
        {"structured", {}, Without({&S::structured}), which.rows > kManyRows ? kFewPivots : kAll},
        {"few rows", {}, Without({&S::few}), kAll},
        {"AVX-512", {}, Without({&S::avx512}), kAll},
        {"AVX2", Without({&S::avx512}), Without({&S::avx512, &S::avx2}), kAll},
        {"baseline", Without({&S::avx512, &S::avx2}), Without({&S::avx512, &S::avx2, &S::baseline}),
         kAll},
        {"column inversion", {}, Without({&S::columnInversion}), kAll},
        {"sparse pricing", {}, Without({&S::sparsePricing}), kAll},
        {"incremental sums", {}, Without({&S::incrementalSums}), kAll},
    };
}

nuv::LinearProgram BuildProgram(const Instance& instance)
{
    nuv::LinearProgram program(static_cast<NuvUint>(instance.columns));
    const auto termsOf = [&](const float* row)
    {
        std::vector<nuv::IndexedTerm> terms;
        for (std::size_t j = 0; j != instance.columns; ++j)
            if (row[j] != 0.0F)
                terms.push_back({static_cast<NuvUint>(j) + 1, row[j]});
        return terms;
    };
    for (std::size_t i = 0; i != instance.rows; ++i)
        program.SetConstraint(static_cast<NuvUint>(i) + 1,
                              termsOf(&instance.A[i * instance.columns]), instance.b[i]);
    program.SetObjective(termsOf(instance.c.data()));
    return program;
}

/// A model that is solved with one set of switches.
struct Variant
{
    nuv::Switches switches;
    nuv::LinearProgram program;
    std::uint64_t maxPivots;
    std::size_t repeats;
    double seconds;

    Variant(const nuv::Switches& which, const Instance& instance, std::uint64_t pivots)
        : switches(which),
          program((nuv::switches = which, BuildProgram(instance))),
          maxPivots(pivots),
          repeats(1),
          seconds(std::numeric_limits<double>::infinity())
    {
        nuv::switches = {};
    }

    void TakeSample()
    {
        nuv::switches = switches;
        const auto goOn = [this](const NuvLinearProgrammingPivot& pivot)
        { return pivot.number <= maxPivots; };
        const Stopwatch watch;
        for (std::size_t i = 0; i != repeats; ++i)
            (void)program.Solve(goOn);
        seconds = std::min(seconds, watch.Seconds() / static_cast<double>(repeats));
        nuv::switches = {};
    }

    /// Solves once.
    /// @return a number that all that can be seen of the solve goes into.
    std::uint64_t Hash()
    {
        nuv::switches = switches;
        std::uint64_t hash = 0xCBF29CE484222325;
        const auto mix = [&](std::uint64_t bits) { hash = (hash ^ bits) * 0x100000001B3; };
        const nuv::Verdict verdict = program.Solve(
            [&](const NuvLinearProgrammingPivot& pivot)
            {
                mix(pivot.entering);
                mix(pivot.leaving);
                for (NuvUint i = 0; i != pivot.numBasic; ++i)
                    mix(std::bit_cast<std::uint32_t>(pivot.values[i]));
                return pivot.number <= maxPivots;
            });
        mix(static_cast<std::uint64_t>(verdict));
        mix(std::bit_cast<std::uint32_t>(program.Objective()));
        nuv::switches = {};
        return hash;
    }
};

struct Effort
{
    /// For the rounds of one road on one instance.
    double seconds;
    std::size_t minRounds;
};

/// @return the time without over the time with; nothing when the two differ in a bit.
std::optional<double> Compare(const Case& which, const Instance& instance, const Road& road,
                              const Effort& effort)
{
    Variant with(road.with, instance, road.maxPivots);
    Variant without(road.without, instance, road.maxPivots);
    if (with.Hash() != without.Hash())
    {
        std::fprintf(stderr, "%s, %zu × %zu: other bits without %s\n", NameOf(which.family),
                     which.rows, which.columns, road.name);
        return std::nullopt;
    }
    for (Variant* const variant : {&with, &without})
    {
        variant->TakeSample();
        variant->repeats =
            static_cast<std::size_t>(std::clamp(kSampleSeconds / variant->seconds, 1.0, 1e4));
    }
    const Stopwatch watch;
    for (std::size_t round = 0; round < effort.minRounds || watch.Seconds() < effort.seconds;
         ++round)
    {
        with.TakeSample();
        without.TakeSample();
    }
    return without.seconds / with.seconds;
}

/// Prints a line for each way on each instance.
/// @return whether all variants had the same bits.
bool CompareAll(const Effort& effort, bool isQuick)
{
    bool isSame = true;
    for (const Case& which : kCases)
    {
        if (isQuick && !which.isQuick)
            continue;
        const Instance instance = MakeInstance(which.family, which.rows, which.columns, kCaseSeed);
        const std::string name = std::string(NameOf(which.family)) + ", " +
                                 std::to_string(which.rows) + " × " + std::to_string(which.columns);
        std::cerr << "with and without: " << name << '\n';
        for (const Road& road : RoadsFor(which))
        {
            const std::optional<double> ratio = Compare(which, instance, road, effort);
            isSame = isSame && ratio;
            JsonLine line("road");
            line.Add("instance", name).Add("name", road.name).Add("ratio", ratio.value_or(0.0));
            std::cout << line.Text() << std::flush;
        }
    }
    return isSame;
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    const bool isQuick = count > 1 && std::strcmp(words[1], "--quick") == 0;
    if (count > (isQuick ? 2 : 1))
    {
        std::cerr << "usage: bench_roads [--quick]\n";
        return 64;
    }
    const bench::Effort effort = isQuick ? bench::Effort{0.02, 3} : bench::Effort{0.2, 5};
    return bench::CompareAll(effort, isQuick) ? EXIT_SUCCESS : EXIT_FAILURE;
}
