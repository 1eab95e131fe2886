// Families of ties, cycles and holes: what happens there is decided by position alone.
#include "Nuv/SelfTest/Models.hpp"

#include "Nuv/SelfTest/Numbers.hpp"

namespace nuv::selftest
{

/// Small integers, and many sides that are 0.
void MakeTies(Model* model, Random* random)
{
    for (uint32_t k = 0; k < model->rows * model->columns; ++k)
        model->A[k] = Integer(random, -2, 3);
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = random->Chance(50) ? 0.0F : Integer(random, 0, 4);
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = Integer(random, -1, 2);
}

void MakeEqualCoefficients(Model* model, Random* random)
{
    const float coefficient = Positive(random, 2);
    const float side = Positive(random, 5);
    const float cost = Positive(random, 1);
    for (uint32_t k = 0; k < model->rows * model->columns; ++k)
        model->A[k] = random->Chance(90) ? coefficient : 0.0F;
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = side;
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = cost;
}

/// Every second row is the one above it, as it is or times a power of two.
void MakeRepeatedRows(Model* model, Random* random)
{
    MakeMixedSigns(model, random);
    for (uint32_t i = 1; i < model->rows; i += 2)
    {
        // Adding to the exponent's bits multiplies by a power of two.
        const uint32_t power = random->Below(4) << 23U;
        const auto times = [power](float x)
        { return x == 0.0F ? x : FloatOfBits(BitsOf(x) + power); };
        const float* const above = model->A + (i - 1) * model->columns;
        for (uint32_t j = 0; j < model->columns; ++j)
            model->A[i * model->columns + j] = times(above[j]);
        model->b[i] = times(model->b[i - 1]);
    }
}

void MakeEmptyRowsAndColumns(Model* model, Random* random)
{
    MakeTwoPhases(model, random);
    for (uint32_t i = 0; i < model->rows; ++i)
    {
        if (!random->Chance(25))
            continue;
        for (uint32_t j = 0; j < model->columns; ++j)
            model->A[i * model->columns + j] = random->Chance(50) ? 0.0F : -0.0F;
        model->b[i] = random->Chance(80) ? Positive(random, 3) : 0.0F;
    }
    for (uint32_t j = 0; j < model->columns; ++j)
    {
        if (!random->Chance(25))
            continue;
        for (uint32_t i = 0; i < model->rows; ++i)
            model->A[i * model->columns + j] = 0.0F;
        model->c[j] = Negated(Positive(random, 2));
    }
}

/// A model on which the rule of the largest coefficient cycles through six bases (Chvátal, Linear
/// Programming, chapter 3), its rows scaled by powers of two, with further columns that never
/// enter.
void MakeCycling(Model* model, Random* random)
{
    static const int8_t halves[2][4] = {{1, -11, -5, 18}, {1, -3, -1, 2}};
    static const int8_t costs[4] = {10, -57, -9, -24};
    model->rows = 3;
    model->columns = 4 + random->Below(4);
    const int32_t scale = random->Between(-3, 3);
    for (uint32_t j = 0; j < model->columns; ++j)
    {
        const bool isOwn = j < 4;
        for (uint32_t i = 0; i < 2; ++i)
            model->A[i * model->columns + j] =
                isOwn ? Dyadic(halves[i][j], scale - 1) : Integer(random, 0, 9);
        model->c[j] = isOwn ? Dyadic(costs[j], 0) : Integer(random, -200, -100);
    }
    model->A[2 * model->columns] = 1.0F;
    model->b[2] = Integer(random, 1, 9);
}

}  // namespace nuv::selftest
