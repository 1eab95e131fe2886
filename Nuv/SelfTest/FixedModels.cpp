// Small models whose solutions stand in books.
#include "Nuv/SelfTest/Models.hpp"

#include <string.h>

namespace nuv::selftest
{
namespace
{

struct Fixed
{
    uint32_t rows;
    uint32_t columns;
    float A[54];
    float b[6];
    float c[9];
};

const Fixed kFixed[] = {
    // two products in three plants; two rows; three products
    {3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}},
    {2, 2, {1, 0, 1, 1}, {4, 6}, {3, 2}},
    {3, 3, {2, 3, 1, 4, 1, 2, 3, 4, 2}, {5, 11, 8}, {5, 4, 3}},
    // two phases; a diet; an infeasible and an unbounded model; one that needs no pivot
    {3, 3, {2, -1, 2, 2, -3, 1, -1, 1, -2}, {4, -5, -1}, {1, -1, 1}},
    {2, 2, {-1, -2, -1, -1}, {-8, -6}, {-2, -3}},
    {2, 1, {-1, 1}, {-2, 1}, {1}},
    {2, 2, {-1, 1, 1, -2}, {2, 3}, {1, 1}},
    {1, 2, {1, 1}, {1}, {-1, 0}},
    // a cycle of six bases; Beale 1955
    {3, 4, {0.5F, -5.5F, -2.5F, 9, 0.5F, -1.5F, -0.5F, 1, 1}, {0, 0, 1}, {10, -57, -9, -24}},
    {3,
     4,
     {0.25F, -60, -0.04F, 9, 0.5F, -90, -0.02F, 3, 0, 0, 1, 0},
     {0, 0, 1},
     {0.75F, -150, 0.02F, -6}},
    // a transport; an assignment
    {5,
     6,
     {1,  1, 1, 0, 0,  0, 0, 0,  0, 1, 1, 1,  -1, 0, 0,
      -1, 0, 0, 0, -1, 0, 0, -1, 0, 0, 0, -1, 0,  0, -1},
     {30, 40, -20, -25, -15},
     {-8, -6, -10, -9, -12, -13}},
    {6,
     9,
     {1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1,
      1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1},
     {1, 1, 1, 1, 1, 1},
     {7, 4, 3, 6, 8, 5, 9, 4, 4}},
    // a matrix game; a blend; a pivot that has no reciprocal; products beyond the largest number
    {3, 3, {3, 2, 4, 4, 3, 2, 2, 4, 3}, {1, 1, 1}, {1, 1, 1}},
    {4,
     3,
     {0.3F, -0.2F, -0.1F, -0.1F, 0.25F, -0.05F, 1, 1, 1, -1, -1, -1},
     {0, 0, 120, -80},
     {2.5F, 1.75F, 2.1F}},
    {2, 1, {1e-39F, 1}, {1e-39F, 5}, {1}},
    {2, 2, {1e38F, 2e38F, 3e38F, 1e38F}, {3e38F, 2e38F}, {1e20F, 1e20F}},
};

}  // namespace

uint32_t FixedModelCount()
{
    return sizeof kFixed / sizeof *kFixed;
}

void MakeFixedModel(uint32_t number, Model* model)
{
    const Fixed& fixed = kFixed[number];
    model->rows = fixed.rows;
    model->columns = fixed.columns;
    memcpy(model->A, fixed.A, sizeof fixed.A);
    memcpy(model->b, fixed.b, sizeof fixed.b);
    memcpy(model->c, fixed.c, sizeof fixed.c);
}

}  // namespace nuv::selftest
