// Models with names, and the hash of everything that a solve of each tells: status, the labels of
// all pivots, the bits of the values and of the objective. The hashes stand in one table and are
// the same on every machine. A hash that differs is printed as the line that the table would need.
#include <gtest/gtest.h>

#include <bit>
#include <cinttypes>
#include <cstdio>
#include <set>
#include <string>

#include "Nuv/Corpus/Families.hpp"
#include "Nuv/Corpus/Hash.hpp"
#include "Nuv/SelfTest/SelfTest.hpp"
#include "Nuv/SelfTest/Solving.hpp"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/TestAllocator.hpp"

using nuv::selftest::Loops;
using reference::Solution;
using reference::Status;

namespace
{
/// The hash of a named model's solve, over what the yardstick or the core found.
std::uint64_t HashOf(const Solution& solution)
{
    nuv::corpus::Hash hash;
    hash.Add(static_cast<std::uint32_t>(solution.status));
    hash.Add(static_cast<std::uint32_t>(solution.pivots.size()));
    for (const reference::Pivot& pivot : solution.pivots)
        for (const std::uint32_t word : {pivot.phase, pivot.entering, pivot.leaving})
            hash.Add(word);
    for (const float value : solution.values)
        hash.AddFloat(value);
    hash.AddFloat(solution.objective);
    return hash.Value();
}

/// Calls `visit(name, model)` for each named model.
template <class Visit>
void ForEachNamed(Visit visit)
{
    for (std::uint32_t i = 0; i != nuv::corpus::NamedModelCount(); ++i)
    {
        nuv::corpus::Model model;
        const nuv::corpus::Name name = MakeNamedModel(i, &model);
        visit(std::string(name.text), &model);
    }
}

TEST(Golden, EveryModelSolvesToItsHashOnEveryInstructionSet)
{
    for (const Loops loops :
         {Loops::OfThisMachine, Loops::Plain, Loops::Baseline, Loops::Avx2, Loops::Avx512})
        ForEachNamed(
            [loops](const std::string& name, nuv::corpus::Model* model)
            {
                const std::uint64_t expected = nuv::corpus::GoldenHash(name.c_str());
                const std::uint64_t found = Has(loops) ? HashOfNamed(model, loops) : expected;
                EXPECT_EQ(found, expected) << name << ", set " << NameOf(loops);
                if (found != expected)
                    std::printf("{\"%s\", 0x%016" PRIX64 "U},\n", name.c_str(), found);
            });
}

TEST(Golden, EveryHashHasItsModelOrFamily)
{
    std::set<std::string> names;
    for (std::uint32_t i = 0; i != nuv::corpus::FamilyCount(); ++i)
        names.insert(nuv::corpus::FamilyAt(i).name);
    // A family's name may be a model's as well: its hash would stand for both.
    std::size_t count = names.size();
    ForEachNamed(
        [&](const std::string& name, nuv::corpus::Model*)
        {
            names.insert(name);
            ++count;
        });
    EXPECT_EQ(names.size(), count);
    EXPECT_EQ(nuv::corpus::GoldenCount(), count);
    for (std::uint32_t i = 0; i != nuv::corpus::GoldenCount(); ++i)
        EXPECT_EQ(names.erase(nuv::corpus::GoldenAt(i).name), 1U);
}

TEST(Golden, TheYardstickHasTheSameHashes)
{
    TestAllocator allocator;
    ForEachNamed(
        [&](const std::string& name, nuv::corpus::Model* model)
        {
            reference::CoreModel entered(reference::ProblemOf(model->View()), allocator);
            const Solution solution =
                reference::Solve(entered.InRowOrder(), nuv::selftest::kPivotLimitOfNamed);
            EXPECT_EQ(HashOf(solution), nuv::corpus::GoldenHash(name.c_str())) << name;
        });
}

TEST(Golden, AChangeOfOneBitOrOnePivotChangesTheHash)
{
    const Solution solution = reference::Solve({3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}});
    Solution other = solution;
    other.values[0] = 2.0F;
    EXPECT_NE(HashOf(solution), HashOf(other));
    other = solution;
    other.pivots[1].leaving = 3;
    EXPECT_NE(HashOf(solution), HashOf(other));
    other = solution;
    other.objective = std::bit_cast<float>(std::bit_cast<std::uint32_t>(other.objective) + 1U);
    EXPECT_NE(HashOf(solution), HashOf(other));
    other = solution;
    other.status = Status::Unbounded;
    EXPECT_NE(HashOf(solution), HashOf(other));
}
}  // namespace
