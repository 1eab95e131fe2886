// Small models whose solutions stand in books, and those on which a step of the method turns.
#include "Nuv/Corpus/Families.hpp"
#include "Nuv/Corpus/Makers.hpp"

#include <string.h>

namespace nuv::corpus
{
namespace
{
struct Fixed
{
    const char* name;
    uint32_t rows;
    uint32_t columns;
    float A[54];
    float b[6];
    float c[9];
};

constexpr float kInfinity = FloatOfBits(0x7F800000U);
constexpr float kNotANumber = FloatOfBits(0x7FC00000U);

constexpr Fixed kFixedModels[] = {
    // two products in three plants
    {"factory", 3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}},
    {"first-example", 2, 2, {1, 0, 1, 1}, {4, 6}, {3, 2}},
    {"three-products", 3, 3, {2, 3, 1, 4, 1, 2, 3, 4, 2}, {5, 11, 8}, {5, 4, 3}},
    {"two-phases", 3, 3, {2, -1, 2, 2, -3, 1, -1, 1, -2}, {4, -5, -1}, {1, -1, 1}},
    {"diet", 2, 2, {-1, -2, -1, -1}, {-8, -6}, {-2, -3}},
    {"infeasible", 2, 1, {-1, 1}, {-2, 1}, {1}},
    {"unbounded", 2, 2, {-1, 1, 1, -2}, {2, 3}, {1, 1}},
    {"no-pivot", 1, 2, {1, 1}, {1}, {-1, 0}},
    {"cycle-of-six",
     3,
     4,
     {0.5F, -5.5F, -2.5F, 9, 0.5F, -1.5F, -0.5F, 1, 1},
     {0, 0, 1},
     {10, -57, -9, -24}},
    // Beale 1955
    {"beale",
     3,
     4,
     {0.25F, -60, -0.04F, 9, 0.5F, -90, -0.02F, 3, 0, 0, 1, 0},
     {0, 0, 1},
     {0.75F, -150, 0.02F, -6}},
    {"transport",
     5,
     6,
     {1,  1, 1, 0, 0,  0, 0, 0,  0, 1, 1, 1,  -1, 0, 0,
      -1, 0, 0, 0, -1, 0, 0, -1, 0, 0, 0, -1, 0,  0, -1},
     {30, 40, -20, -25, -15},
     {-8, -6, -10, -9, -12, -13}},
    {"assignment",
     6,
     9,
     {1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1,
      1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1},
     {1, 1, 1, 1, 1, 1},
     {7, 4, 3, 6, 8, 5, 9, 4, 4}},
    {"game", 3, 3, {3, 2, 4, 4, 3, 2, 2, 4, 3}, {1, 1, 1}, {1, 1, 1}},
    {"blending",
     4,
     3,
     {0.3F, -0.2F, -0.1F, -0.1F, 0.25F, -0.05F, 1, 1, 1, -1, -1, -1},
     {0, 0, 120, -80},
     {2.5F, 1.75F, 2.1F}},
    // a pivot that has no reciprocal; products beyond the largest number
    {"tiny-pivot", 2, 1, {1e-39F, 1}, {1e-39F, 5}, {1}},
    {"huge-numbers", 2, 2, {1e38F, 2e38F, 3e38F, 1e38F}, {3e38F, 2e38F}, {1e20F, 1e20F}},
    // Up to here they are the first family of the self-test.
    {"nan-cost", 2, 2, {1, 1, 1, 2}, {4, 6}, {kNotANumber, 1}},
    {"infinite-side", 2, 2, {1, 1, 1, 2}, {kInfinity, 6}, {1, 1}},
    {"unbounded-phase-one", 1, 1, {-1}, {-kInfinity}, {1}},
    {"artificial-at-zero", 2, 1, {-1, 1}, {-0x1p-149F, 0}, {-1}},
    {"no-rows", 0, 2, {}, {}, {1, 1}},
};
constexpr uint32_t kNumFixedModels = sizeof kFixedModels / sizeof *kFixedModels;

/// Rows of the Hilbert matrix: every quotient is rounded.
void FillHilbert(Problem* p, uint32_t n)
{
    p->rows = n;
    p->columns = n;
    for (uint32_t i = 0; i < n; ++i)
        for (uint32_t j = 0; j < n; ++j)
            p->Row(i)[j] = 1.0F / static_cast<float>(i + j + 1);
    Fill(p->b, n, [] { return 1.0F; });
    Fill(p->c, n, [] { return 1.0F; });
}

struct Square
{
    const char* name;
    void (*fill)(Problem*, uint32_t);
    uint32_t rows;
};

constexpr Square kSquareModels[] = {{"klee-minty-3", FillKleeMinty, 3},
                                    {"klee-minty-6", FillKleeMinty, 6},
                                    {"hilbert-8", FillHilbert, 8}};
}  // namespace

uint32_t FixedModelCount()
{
    return kNumFixedModels + sizeof kSquareModels / sizeof *kSquareModels;
}

const char* MakeFixedModel(uint32_t number, Problem* p)
{
    if (number >= kNumFixedModels)
    {
        const Square& square = kSquareModels[number - kNumFixedModels];
        square.fill(p, square.rows);
        return square.name;
    }
    const Fixed& fixed = kFixedModels[number];
    p->rows = fixed.rows;
    p->columns = fixed.columns;
    memcpy(p->A, fixed.A, sizeof fixed.A);
    memcpy(p->b, fixed.b, sizeof fixed.b);
    memcpy(p->c, fixed.c, sizeof fixed.c);
    return fixed.name;
}
}  // namespace nuv::corpus
