// The worst cases of the core's containers: what they cost in time and memory, a line of JSON each.
// Each case runs once on an allocator that counts; its time is the processor's.
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "Nuv/Utils/NuvLinearProgramming.h"
#include "bench/JsonLine.hpp"
#include "bench/Stopwatch.hpp"
#include "tests/reference/RandomEditing.hpp"
#include "tests/reference/RandomModels.hpp"

namespace bench
{
namespace
{
/// malloc and free, counting bytes.
class CountingAllocator
{
public:
    operator NuvAllocator*()
    {
        return &callbacks;
    }

    std::uint64_t live = 0;
    std::uint64_t peak = 0;

private:
    static CountingAllocator& Self(NuvAllocator* allocator)
    {
        return *static_cast<CountingAllocator*>(allocator->userData);
    }

    static void* Take(NuvAllocator* allocator, NuvSizeT size)
    {
        CountingAllocator& self = Self(allocator);
        self.live += size;
        self.peak = std::max(self.peak, self.live);
        return std::malloc(size);
    }

    static void Give(NuvAllocator* allocator, void* memory, NuvSizeT size)
    {
        Self(allocator).live -= size;
        std::free(memory);
    }

    NuvAllocator callbacks = {Take, Give, std::numeric_limits<NuvSizeT>::max(), this};
};

/// Runs a step, and prints what it cost. One that fails ends the program: its figure would be none.
void Measure(const std::string& what, CountingAllocator& allocator,
             const std::function<bool()>& step)
{
    const Stopwatch watch;
    const bool isDone = step();
    const double seconds = watch.Seconds();
    if (!isDone)
    {
        std::cerr << what << ": failed\n";
        std::exit(EXIT_FAILURE);
    }
    JsonLine line("limit");
    line.Add("what", what).Add("seconds", seconds);
    std::cout << line.Add("held", allocator.live).Add("most", allocator.peak).Text() << std::flush;
}

/// A name's record over the characters of `text`; the library only reads it.
NuvString Borrow(const std::string& text)
{
    return {nullptr, const_cast<char*>(text.c_str()), text.size(), text.size()};
}

bool Rename(NuvLinearProgramming* lp, NuvUint index, const std::string& name)
{
    const NuvString record = Borrow(name);
    return NuvLinearProgrammingSetVariableInfo(
               lp, index, &record, NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32) == NUV_TRUE;
}

/// Sets 10 000 rows of one term under the multiples of `stride`, replaces them in another order and
/// removes them in a third.
void MeasureRows(const std::string& numbers, NuvUint stride)
{
    constexpr NuvUint kCount = 10000;
    CountingAllocator allocator;
    NuvLinearProgramming lp;
    NuvLinearProgrammingConstruct(&lp, 1, allocator);
    NuvPair_NuvUint__NuvFloat32 term = {1, 2.0F};
    const NuvVector_NuvPair_NuvUint__NuvFloat32 row = {nullptr, &term, &term + 1, &term + 1};
    // 7919 and 104729 are prime to the count, so that every number has its turn.
    const auto setAll = [&](NuvUint factor)
    {
        bool isDone = true;
        for (NuvUint i = 0; i != kCount; ++i)
            isDone = NuvLinearProgrammingSetConstraintByIndex(
                         &lp, (1 + i * factor % kCount) * stride, &row, 1.0F) &&
                     isDone;
        return isDone && NuvLinearProgrammingGetNumConstraints(&lp) == kCount;
    };
    Measure("10 000 rows set, " + numbers, allocator, [&] { return setAll(1); });
    Measure("each replaced once", allocator, [&] { return setAll(7919); });
    Measure("each removed", allocator,
            [&]
            {
                bool isDone = true;
                for (NuvUint i = 0; i != kCount; ++i)
                    isDone = NuvLinearProgrammingRemoveConstraint(
                                 &lp, (1 + i * (104729 % kCount) % kCount) * stride) &&
                             isDone;
                return isDone && NuvLinearProgrammingGetNumConstraints(&lp) == 0;
            });
    NuvLinearProgrammingDestruct(&lp);
}

void MeasureLongNames()
{
    constexpr std::size_t kLength = 1000000;
    constexpr NuvUint kCount = 10;
    CountingAllocator allocator;
    NuvLinearProgramming lp;
    NuvLinearProgrammingConstruct(&lp, kCount, allocator);
    std::vector<std::string> names;
    for (NuvUint i = 0; i != kCount; ++i)
        names.push_back(std::string(kLength - 1, 'n') + static_cast<char>('0' + i));
    Measure("10 variables given names of 1 MB that differ in the last byte", allocator,
            [&]
            {
                bool isDone = true;
                for (NuvUint i = 0; i != kCount; ++i)
                    isDone = Rename(&lp, i + 1, names[i]) && isDone;
                return isDone;
            });
    std::vector<NuvPair_NuvString__NuvFloat32> terms;
    for (const std::string& name : names)
        terms.push_back({Borrow(name), 1.0F});
    auto* const end = terms.data() + terms.size();
    const NuvVector_NuvPair_NuvString__NuvFloat32 row = {nullptr, terms.data(), end, end};
    Measure("a row that names all 10", allocator,
            [&] { return NuvLinearProgrammingSetConstraintByName(&lp, 1, &row, 1.0F) != 0; });
    Measure("an objective that names all 10, and the solve", allocator,
            [&]
            {
                return NuvLinearProgrammingSetObjective(&lp, &row) &&
                       NuvLinearProgrammingSolve(&lp) == NUV_LINEARPROGRAMMINGRESULTTYPE_Ok &&
                       NuvLinearProgrammingGetObjectiveValue(&lp) == 1.0F;
            });
    NuvLinearProgrammingDestruct(&lp);
}

void MeasureManyVariables()
{
    constexpr NuvUint kCount = 1000000;
    CountingAllocator allocator;
    NuvLinearProgramming lp;
    Measure("a model of 1 000 000 variables", allocator,
            [&] { return NuvLinearProgrammingConstruct(&lp, kCount, allocator) != nullptr; });
    Measure("each given a name of its own", allocator,
            [&]
            {
                bool isDone = true;
                for (NuvUint i = 1; i <= kCount; ++i)
                    isDone = Rename(&lp, i, "variable " + std::to_string(i)) && isDone;
                return isDone;
            });
    Measure("replaced by 1 000 000 new ones", allocator,
            [&] { return NuvLinearProgrammingSetNumVars(&lp, kCount) != 0; });
    Measure("destructed", allocator,
            [&]
            {
                NuvLinearProgrammingDestruct(&lp);
                return allocator.live == 0;
            });
}

void MeasureEditing()
{
    CountingAllocator allocator;
    Measure("1 000 000 random edits, compared with a plain model", allocator,
            [&]
            {
                const std::string difference = reference::EditAtRandom(1000000, 20, allocator);
                std::cerr << difference;
                return difference.empty() && allocator.live == 0;
            });
}
}  // namespace
}  // namespace bench

int main()
{
    bench::MeasureRows("numbers 1 to 10 000", 1);
    // A table of 10 000 entries has 16 381 buckets, and a number is its own hash.
    bench::MeasureRows("all numbers in one bucket", 16381);
    bench::MeasureLongNames();
    bench::MeasureManyVariables();
    bench::MeasureEditing();
}
