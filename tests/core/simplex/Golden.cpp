// Fixed models and the hash of everything that a solve of each tells: status, the labels of all
// pivots, the bits of the values and of the objective. The hashes stand in one file and are the
// same on every machine. A hash that differs is printed as the line that the file would need.
#include <gtest/gtest.h>

#include <bit>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "Nuv/Utils/Simplex/RevisedSimplex.h"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/TestAllocator.hpp"

using namespace reference;

namespace
{
constexpr std::size_t pivotLimit = 120;
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

/// FNV-1a over the bytes of 32-bit words, the lowest byte first on every machine.
class Hash
{
public:
    void Add(std::uint32_t word)
    {
        for (unsigned shift = 0; shift != 32; shift += 8)
            state = (state ^ ((word >> shift) & 0xFFU)) * 1099511628211U;
    }

    /// The bits; every NaN counts as the same one.
    void Add(float value)
    {
        Add(std::isnan(value) ? 0x7FC00000U : std::bit_cast<std::uint32_t>(value));
    }

    std::string Text() const
    {
        char text[17];
        (void)std::snprintf(text, sizeof text, "%016" PRIx64, state);
        return text;
    }

private:
    std::uint64_t state = 14695981039346656037U;
};

std::string HashOf(const Solution& solution)
{
    Hash hash;
    hash.Add(static_cast<std::uint32_t>(solution.status));
    hash.Add(static_cast<std::uint32_t>(solution.pivots.size()));
    for (const Pivot& pivot : solution.pivots)
    {
        hash.Add(pivot.phase);
        hash.Add(pivot.entering);
        hash.Add(pivot.leaving);
    }
    for (const float value : solution.values)
        hash.Add(value);
    hash.Add(solution.objective);
    return hash.Text();
}

/// max Σ 2^(n−j) x_j under the rows that make the simplex method visit many corners (Klee and
/// Minty 1972).
Problem KleeMinty(std::size_t n)
{
    Problem p = {n, n, std::vector<float>(n * n), std::vector<float>(n), std::vector<float>(n)};
    float side = 5.0F;
    for (std::size_t i = 0; i < n; ++i, side *= 5.0F)
    {
        for (std::size_t j = 0; j < i; ++j)
            p.A[i * n + j] = static_cast<float>(std::uint64_t{1} << (i - j + 1));
        p.A[i * n + i] = 1.0F;
        p.b[i] = side;
        p.c[i] = static_cast<float>(std::uint64_t{1} << (n - 1 - i));
    }
    return p;
}

/// Rows of the Hilbert matrix: every quotient is rounded.
Problem Hilbert(std::size_t n)
{
    Problem p = {n, n, {}, std::vector<float>(n, 1.0F), std::vector<float>(n, 1.0F)};
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j)
            p.A.push_back(1.0F / static_cast<float>(i + j + 1));
    return p;
}

std::map<std::string, Problem> TextbookModels()
{
    return {{"factory", {3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}}},
            {"first-example", {2, 2, {1, 0, 1, 1}, {4, 6}, {3, 2}}},
            {"three-products", {3, 3, {2, 3, 1, 4, 1, 2, 3, 4, 2}, {5, 11, 8}, {5, 4, 3}}},
            {"two-phases", {3, 3, {2, -1, 2, 2, -3, 1, -1, 1, -2}, {4, -5, -1}, {1, -1, 1}}},
            {"diet", {2, 2, {-1, -2, -1, -1}, {-8, -6}, {-2, -3}}},
            {"infeasible", {2, 1, {-1, 1}, {-2, 1}, {1}}},
            {"unbounded", {2, 2, {-1, 1, 1, -2}, {2, 3}, {1, 1}}},
            {"no-pivot", {1, 2, {1, 1}, {1}, {-1, 0}}},
            {"klee-minty-3", KleeMinty(3)},
            {"klee-minty-6", KleeMinty(6)},
            {"hilbert-8", Hilbert(8)},
            {"cycle-of-six",
             {3,
              4,
              {0.5F, -5.5F, -2.5F, 9, 0.5F, -1.5F, -0.5F, 1, 1, 0, 0, 0},
              {0, 0, 1},
              {10, -57, -9, -24}}},
            {"beale",
             {3,
              4,
              {0.25F, -60, -0.04F, 9, 0.5F, -90, -0.02F, 3, 0, 0, 1, 0},
              {0, 0, 1},
              {0.75F, -150, 0.02F, -6}}},
            {"transport",
             {5,
              6,
              {1,  1, 1, 0, 0,  0, 0, 0,  0, 1, 1, 1,  -1, 0, 0,
               -1, 0, 0, 0, -1, 0, 0, -1, 0, 0, 0, -1, 0,  0, -1},
              {30, 40, -20, -25, -15},
              {-8, -6, -10, -9, -12, -13}}},
            {"assignment",
             {6,
              9,
              {1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1,
               1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1},
              {1, 1, 1, 1, 1, 1},
              {7, 4, 3, 6, 8, 5, 9, 4, 4}}},
            {"game", {3, 3, {3, 2, 4, 4, 3, 2, 2, 4, 3}, {1, 1, 1}, {1, 1, 1}}},
            {"blending",
             {4,
              3,
              {0.3F, -0.2F, -0.1F, -0.1F, 0.25F, -0.05F, 1, 1, 1, -1, -1, -1},
              {0, 0, 120, -80},
              {2.5F, 1.75F, 2.1F}}},
            {"tiny-pivot", {2, 1, {1e-39F, 1}, {1e-39F, 5}, {1}}},
            {"huge-numbers", {2, 2, {1e38F, 2e38F, 3e38F, 1e38F}, {3e38F, 2e38F}, {1e20F, 1e20F}}},
            {"nan-cost", {2, 2, {1, 1, 1, 2}, {4, 6}, {notANumber, 1}}},
            {"infinite-side", {2, 2, {1, 1, 1, 2}, {infinity, 6}, {1, 1}}},
            {"unbounded-phase-one", {1, 1, {-1}, {-infinity}, {1}}},
            {"artificial-at-zero", {2, 1, {-1, 1}, {-0x1p-149F, 0}, {-1}}},
            {"no-rows", {0, 2, {}, {}, {1, 1}}}};
}

std::map<std::string, Problem> AllModels()
{
    std::map<std::string, Problem> models = TextbookModels();
    for (const Family family : Families())
        for (const std::size_t size : {5U, 12U, 24U})
            models[std::string(NameOf(family)) + "-" + std::to_string(size)] =
                MakeModel(family, size, size + 3, 1000 + size);
    return models;
}

std::map<std::string, std::string> ReadHashes()
{
    std::map<std::string, std::string> hashes;
    std::ifstream file(NUV_TEST_GOLDEN);
    std::string name;
    std::string hash;
    while (file >> name >> hash)
        hashes[name] = hash;
    return hashes;
}

std::string FoundHash(const Problem& problem)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model(problem, allocator);
    return HashOf(model.SolveMonitored(pivotLimit));
}

TEST(Golden, EveryModelSolvesToItsHash)
{
    const std::map<std::string, std::string> hashes = ReadHashes();
    for (const auto& [name, problem] : AllModels())
    {
        const std::string found = FoundHash(problem);
        const auto expected = hashes.find(name);
        if (expected != hashes.end() && expected->second == found)
            continue;
        std::printf("%s %s\n", name.c_str(), found.c_str());
        ADD_FAILURE() << name << " hashes to " << found << ", not to "
                      << (expected == hashes.end() ? "any known value" : expected->second);
    }
}

#ifndef NUV_SHARED  // which does not export the choice of loops
TEST(Golden, EveryInstructionSetHasTheSameHashes)
{
    using nuv::InstructionSet;
    const std::map<std::string, Problem> models = AllModels();
    const std::map<std::string, std::string> hashes = ReadHashes();
    for (const InstructionSet set : {InstructionSet::Plain, InstructionSet::Baseline,
                                     InstructionSet::Avx2, InstructionSet::Avx512})
    {
        const nuv::Kernels* const kernels = nuv::KernelsOf(set);
        if (!kernels)
            continue;
        for (const auto& [name, hash] : hashes)
        {
            TestAllocator allocator;
            allocator.AcceptLeftBlocks();
            CoreModel model(models.at(name), allocator);
            Recorder recorder(pivotLimit);
            nuv::SolveWatch watch = {&recorder.monitor, 0, kernels};
            Solution solution = model.Read(nuv::SolveUnderWatch(&model.lp, &watch));
            solution.pivots = recorder.pivots;
            EXPECT_EQ(HashOf(solution), hash) << name << ", set " << static_cast<int>(set);
        }
    }
}
#endif

TEST(Golden, EveryHashHasItsModel)
{
    const std::map<std::string, Problem> models = AllModels();
    for (const auto& [name, hash] : ReadHashes())
        EXPECT_TRUE(models.contains(name)) << name;
}

TEST(Golden, TheYardstickHasTheSameHashes)
{
    TestAllocator allocator;
    for (const auto& [name, problem] : AllModels())
    {
        CoreModel model(problem, allocator);
        Solution solution = reference::Solve(model.InRowOrder(), pivotLimit);
        EXPECT_EQ(HashOf(solution), FoundHash(problem)) << name;
    }
}

TEST(Golden, AChangeOfOneBitOrOnePivotChangesTheHash)
{
    const Solution solution = reference::Solve(TextbookModels().at("factory"));
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
