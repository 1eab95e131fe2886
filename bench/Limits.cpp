// The worst cases of the core's containers: what they cost in time and memory. Each case runs once
// on an allocator that counts; its time is the processor's.
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "Nuv/Utils/NuvLinearProgramming.h"
#include "bench/Document.hpp"
#include "bench/Machine.hpp"
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

std::string TextOf(const char* format, double value)
{
    char text[64];
    (void)std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string MemoryText(std::uint64_t bytes)
{
    const auto value = static_cast<double>(bytes);
    return bytes < 1000000 ? TextOf("%.0f kB", value / 1e3) : TextOf("%.1f MB", value / 1e6);
}

std::string TimeText(double seconds)
{
    return seconds < 1.0 ? TextOf("%.1f ms", seconds * 1e3) : TextOf("%.2f s", seconds);
}

/// The rows of the document's table, one for each step of a case.
class Table
{
public:
    Table() : text("| what | time | held then | most until then |\n|---|---:|---:|---:|\n") {}

    /// Runs a step and says what it cost. One that fails ends the program: its figure would be
    /// none.
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
        text += "| " + what + " | " + TimeText(seconds) + " | " + MemoryText(allocator.live) +
                " | " + MemoryText(allocator.peak) + " |\n";
        std::cerr << what << ": " << TimeText(seconds) << '\n';
    }

    std::string text;
};

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
void MeasureRows(Table* table, const std::string& numbers, NuvUint stride)
{
    constexpr NuvUint count = 10000;
    CountingAllocator allocator;
    NuvLinearProgramming lp;
    NuvLinearProgrammingConstruct(&lp, 1, allocator);
    NuvPair_NuvUint__NuvFloat32 term = {1, 2.0F};
    const NuvVector_NuvPair_NuvUint__NuvFloat32 row = {nullptr, &term, &term + 1, &term + 1};
    // 7919 and 104729 are prime to the count, so that every number has its turn.
    const auto setAll = [&](NuvUint factor)
    {
        bool isDone = true;
        for (NuvUint i = 0; i != count; ++i)
            isDone = NuvLinearProgrammingSetConstraintByIndex(
                         &lp, (1 + i * factor % count) * stride, &row, 1.0F) &&
                     isDone;
        return isDone && NuvLinearProgrammingGetNumConstraints(&lp) == count;
    };
    table->Measure("10 000 rows set, " + numbers, allocator, [&] { return setAll(1); });
    table->Measure("each replaced once", allocator, [&] { return setAll(7919); });
    table->Measure("each removed", allocator,
                   [&]
                   {
                       bool isDone = true;
                       for (NuvUint i = 0; i != count; ++i)
                           isDone = NuvLinearProgrammingRemoveConstraint(
                                        &lp, (1 + i * (104729 % count) % count) * stride) &&
                                    isDone;
                       return isDone && NuvLinearProgrammingGetNumConstraints(&lp) == 0;
                   });
    NuvLinearProgrammingDestruct(&lp);
}

void MeasureLongNames(Table* table)
{
    constexpr std::size_t length = 1000000;
    constexpr NuvUint count = 10;
    CountingAllocator allocator;
    NuvLinearProgramming lp;
    NuvLinearProgrammingConstruct(&lp, count, allocator);
    std::vector<std::string> names;
    for (NuvUint i = 0; i != count; ++i)
        names.push_back(std::string(length - 1, 'n') + static_cast<char>('0' + i));
    table->Measure("10 variables given names of 1 MB that differ in the last byte", allocator,
                   [&]
                   {
                       bool isDone = true;
                       for (NuvUint i = 0; i != count; ++i)
                           isDone = Rename(&lp, i + 1, names[i]) && isDone;
                       return isDone;
                   });
    std::vector<NuvPair_NuvString__NuvFloat32> terms;
    for (const std::string& name : names)
        terms.push_back({Borrow(name), 1.0F});
    auto* const end = terms.data() + terms.size();
    const NuvVector_NuvPair_NuvString__NuvFloat32 row = {nullptr, terms.data(), end, end};
    table->Measure("a row that names all 10", allocator,
                   [&]
                   { return NuvLinearProgrammingSetConstraintByName(&lp, 1, &row, 1.0F) != 0; });
    table->Measure("an objective that names all 10, and the solve", allocator,
                   [&]
                   {
                       return NuvLinearProgrammingSetObjective(&lp, &row) &&
                              NuvLinearProgrammingSolve(&lp) ==
                                  NUV_LINEARPROGRAMMINGRESULTTYPE_Ok &&
                              NuvLinearProgrammingGetObjectiveValue(&lp) == 1.0F;
                   });
    NuvLinearProgrammingDestruct(&lp);
}

void MeasureManyVariables(Table* table)
{
    constexpr NuvUint count = 1000000;
    CountingAllocator allocator;
    NuvLinearProgramming lp;
    table->Measure("a model of 1 000 000 variables", allocator,
                   [&] { return NuvLinearProgrammingConstruct(&lp, count, allocator) != nullptr; });
    table->Measure("each given a name of its own", allocator,
                   [&]
                   {
                       bool isDone = true;
                       for (NuvUint i = 1; i <= count; ++i)
                           isDone = Rename(&lp, i, "variable " + std::to_string(i)) && isDone;
                       return isDone;
                   });
    table->Measure("replaced by 1 000 000 new ones", allocator,
                   [&] { return NuvLinearProgrammingSetNumVars(&lp, count) != 0; });
    table->Measure("destructed", allocator,
                   [&]
                   {
                       NuvLinearProgrammingDestruct(&lp);
                       return allocator.live == 0;
                   });
}

void MeasureEditing(Table* table)
{
    CountingAllocator allocator;
    table->Measure("1 000 000 random edits, compared with a plain model", allocator,
                   [&]
                   {
                       const std::string difference =
                           reference::EditAtRandom(1000000, 20, allocator);
                       std::cerr << difference;
                       return difference.empty() && allocator.live == 0;
                   });
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    if (count > 2)
    {
        std::cerr << "usage: bench_limits [DOCUMENT]\n";
        return 64;
    }
    bench::Table table;
    bench::MeasureRows(&table, "numbers 1 to 10 000", 1);
    // A table of 10 000 entries has 16 381 buckets, and a number is its own hash.
    bench::MeasureRows(&table, "all numbers in one bucket", 16381);
    bench::MeasureLongNames(&table);
    bench::MeasureManyVariables(&table);
    bench::MeasureEditing(&table);
    const std::string machine = "Measured on " + bench::ProcessorName() + ", " +
                                bench::SystemName() + ", built by " + bench::CompilerName() + ".\n";
    if (count == 2)
        return bench::RewriteBlocks(words[1], {{"machine", machine}, {"limits", table.text}}) ? 0
                                                                                              : 1;
    std::cout << machine << '\n' << table.text;
    return 0;
}
