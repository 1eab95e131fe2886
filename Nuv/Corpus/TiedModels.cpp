// Families of ties, cycles and holes: what happens there is decided by position alone.
#include "Nuv/Corpus/Families.hpp"
#include "Nuv/Corpus/Makers.hpp"

namespace nuv::corpus
{
/// Small integers, and many sides that are 0.
void MakeTies(Problem* p, Random* random)
{
    Fill(
        p, [random] { return random->Integer(-2, 3); },
        [random] { return random->Chance(50) ? 0.0F : random->Integer(0, 4); },
        [random] { return random->Integer(-1, 2); });
}

void MakeEqualCoefficients(Problem* p, Random* random)
{
    const float coefficient = Positive(random, 2);
    const float side = Positive(random, 5);
    const float cost = Positive(random, 1);
    Fill(
        p, [=] { return random->Chance(90) ? coefficient : 0.0F; }, [side] { return side; },
        [cost] { return cost; });
}

/// Every second row is the one above it, as it is or times a power of two.
void MakeRepeatedRows(Problem* p, Random* random)
{
    MakeMixedSigns(p, random);
    for (uint32_t i = 1; i < p->rows; i += 2)
    {
        // Adding to the exponent's bits multiplies by a power of two.
        const uint32_t power = random->Below(4) << 23U;
        const auto times = [power](float x)
        { return x == 0.0F ? x : FloatOfBits(BitsOf(x) + power); };
        for (uint32_t j = 0; j < p->columns; ++j)
            p->Row(i)[j] = times(p->Row(i - 1)[j]);
        p->b[i] = times(p->b[i - 1]);
    }
}

void MakeEmptyRowsAndColumns(Problem* p, Random* random)
{
    MakeTwoPhases(p, random);
    for (uint32_t i = 0; i < p->rows; ++i)
    {
        if (!random->Chance(25))
            continue;
        Fill(p->Row(i), p->columns, [random] { return random->Chance(50) ? 0.0F : -0.0F; });
        p->b[i] = random->Chance(80) ? Positive(random, 3) : 0.0F;
    }
    for (uint32_t j = 0; j < p->columns; ++j)
    {
        if (!random->Chance(25))
            continue;
        for (uint32_t i = 0; i < p->rows; ++i)
            p->Row(i)[j] = 0.0F;
        p->c[j] = Negated(Positive(random, 2));
    }
}

/// A model on which the rule of the largest coefficient cycles through six bases (Chvátal, Linear
/// Programming, chapter 3), its rows scaled by powers of two, with further columns that never
/// enter.
void MakeCycling(Problem* p, Random* random)
{
    static const int8_t kHalves[2][4] = {{1, -11, -5, 18}, {1, -3, -1, 2}};
    static const int8_t kCosts[4] = {10, -57, -9, -24};
    p->rows = 3;
    p->columns = 4 + random->Below(4);
    const int32_t scale = random->Between(-3, 3);
    for (uint32_t j = 0; j < p->columns; ++j)
    {
        const bool isOwn = j < 4;
        for (uint32_t i = 0; i < 2; ++i)
            p->Row(i)[j] = isOwn ? Dyadic(kHalves[i][j], scale - 1) : random->Integer(0, 9);
        p->c[j] = isOwn ? Dyadic(kCosts[j], 0) : random->Integer(-200, -100);
    }
    p->Row(2)[0] = 1.0F;
    p->b[2] = random->Integer(1, 9);
}
}  // namespace nuv::corpus
