// Families of data that no one should ask a solver for: what comes out is still the same
// everywhere.
#include "Nuv/SelfTest/Models.hpp"

#include "Nuv/SelfTest/Numbers.hpp"

namespace nuv::selftest
{
namespace
{

/// ±0, subnormals, pivots too small to have a reciprocal, the largest numbers, infinities, NaN.
float SpecialValue(Random* random)
{
    static const uint32_t patterns[] = {
        0x00000000U, 0x80000000U,  // ±0
        0x00000001U, 0x80000001U,  // the smallest subnormals
        0x007FFFFFU, 0x807FFFFFU,  // the largest subnormals
        0x00200000U, 0x001FFFFFU,  // 2^-128 has a reciprocal, the number below it has none
        0x00800000U, 0x80800000U,  // the smallest normal numbers
        0x7F7FFFFFU, 0xFF7FFFFFU,  // the largest finite numbers
        0x7F800000U, 0xFF800000U,  // infinities
        0x7FC00000U, 0x3F800000U};
    return FloatOfBits(patterns[random->Below(sizeof patterns / sizeof *patterns)]);
}

void Sprinkle(float* values, uint32_t count, uint32_t percent, Random* random)
{
    for (uint32_t k = 0; k < count; ++k)
        if (random->Chance(percent))
            values[k] = SpecialValue(random);
}

}  // namespace

/// Every number of a size of its own.
void MakeWideExponents(Model* model, Random* random)
{
    for (uint32_t k = 0; k < model->rows * model->columns; ++k)
        model->A[k] = Signed(random, random->Between(-40, 40));
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = Positive(random, random->Between(-40, 40));
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = Signed(random, random->Between(-40, 40));
}

/// Products and sums beyond the largest number.
void MakeOverflowing(Model* model, Random* random)
{
    for (uint32_t k = 0; k < model->rows * model->columns; ++k)
        model->A[k] = Signed(random, random->Between(50, 127));
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = Signed(random, random->Between(90, 127));
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = Signed(random, random->Between(60, 127));
}

/// Data and results around the smallest normal number.
void MakeSubnormal(Model* model, Random* random)
{
    for (uint32_t k = 0; k < model->rows * model->columns; ++k)
        model->A[k] = Signed(random, random->Between(-3, 3));
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = Positive(random, random->Between(-135, -120));
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = Signed(random, random->Between(-135, -120));
}

void MakeSpecialValues(Model* model, Random* random)
{
    MakeTwoPhases(model, random);
    Sprinkle(model->A, model->rows * model->columns, 4, random);
    Sprinkle(model->b, model->rows, 6, random);
    Sprinkle(model->c, model->columns, 6, random);
}

}  // namespace nuv::selftest
