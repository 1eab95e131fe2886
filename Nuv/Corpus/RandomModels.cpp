// The families of models of any size, one function each.
#include "Nuv/Corpus/RandomModels.hpp"

#include "Nuv/Corpus/Makers.hpp"

namespace nuv::corpus
{
namespace
{
constexpr uint32_t Least(uint32_t x, uint32_t y)
{
    return x < y ? x : y;
}

constexpr uint32_t AtLeastOne(uint32_t x)
{
    return x == 0 ? 1 : x;
}

void ProductionMix(Problem* p, Random* random)
{
    Fill(
        p, [random] { return random->Positive(10.0F) + 0.125F; },
        [random] { return random->Positive(1000.0F) + 1.0F; },
        [random] { return random->Positive(20.0F); });
}

void MixedSigns(Problem* p, Random* random)
{
    Fill(
        p, [random] { return random->Symmetric(5.0F); },
        [random] { return random->Positive(100.0F); },
        [random] { return random->Symmetric(3.0F); });
}

/// Rows of both directions around a point that satisfies them all. The point is kept where the
/// costs will stand.
void NeedsPhaseI(Problem* p, Random* random)
{
    const float* const point = p->c;
    Fill(p->c, p->columns, [random] { return random->Positive(4.0F); });
    for (uint32_t i = 0; i < p->rows; ++i)
    {
        const bool isLower = i == 0 || random->Chance(40);
        float activity = 0.0F;
        for (uint32_t j = 0; j < p->columns; ++j)
        {
            const float magnitude = random->Positive(3.0F) + 0.25F;
            p->Row(i)[j] = isLower ? -magnitude : magnitude;
            activity += p->Row(i)[j] * point[j];
        }
        p->b[i] = activity + random->Positive(2.0F) - (isLower ? 0.5F : 0.0F);
    }
    Fill(p->c, p->columns, [random] { return random->Symmetric(6.0F); });
}

void Assignment(Problem* p, Random* random)
{
    FillAssignment(p, AtLeastOne(Least(p->rows / 2, 10)), random);
}

/// Supplies that may not be exceeded, demands that must be met, at the least cost.
void Transport(Problem* p, Random* random)
{
    const uint32_t sources = AtLeastOne(Least(p->rows / 2, 8));
    const uint32_t sinks = AtLeastOne(Least(p->rows - sources, 8));
    ShapeTransport(p, sources, sinks);
    float total = 0.0F;
    for (uint32_t t = 0; t < sinks; ++t)
    {
        const float demand = random->Integer(0, 30);
        p->b[sources + t] = -demand;
        total += demand;
    }
    for (uint32_t s = 0; s < sources; ++s)
    {
        const float share = total / static_cast<float>(sources);
        p->b[s] = share + random->Integer(0, 10);
        Fill(p->c + size_t{s} * sinks, sinks, [random] { return -random->Integer(1, 40) / 4.0F; });
    }
}

/// Nutrients that must be reached by foods at the least cost.
void Diet(Problem* p, Random* random)
{
    Fill(
        p, [random] { return random->Chance(30) ? 0.0F : -(random->Integer(1, 400) * 0.1F); },
        [random] { return -random->Integer(1, 300) * 0.5F; },
        [random] { return -(random->Integer(5, 90) * 0.01F); });
}

void DegenerateTies(Problem* p, Random* random)
{
    Fill(
        p, [random] { return random->Integer(-1, 2); }, [random] { return random->Integer(0, 2); },
        [random] { return random->Integer(-1, 3); });
}

void Sparse(Problem* p, Random* random)
{
    Fill(
        p, [random] { return random->Chance(10) ? random->Symmetric(8.0F) + 2.0F : 0.0F; },
        [random] { return random->Chance(15) ? -random->Positive(2.0F) : random->Positive(50.0F); },
        [random] { return random->Chance(50) ? random->Symmetric(5.0F) : 0.0F; });
}

void EqualCoefficients(Problem* p, Random* random)
{
    const float value = random->Integer(1, 9) * 0.1F;
    const float rhs = random->Integer(-2, 6);
    const float cost = random->Integer(-1, 3);
    Fill(
        p, [=] { return rhs < 0.0F && random->Chance(50) ? -value : value; }, [rhs] { return rhs; },
        [cost] { return cost; });
}

void ZeroRowsAndColumns(Problem* p, Random* random)
{
    (random->Chance(50) ? MixedSigns : NeedsPhaseI)(p, random);
    const auto zero = [random] { return random->Chance(50) ? 0.0F : -0.0F; };
    for (uint32_t i = 0; i < p->rows; ++i)
        if (random->Chance(30))
            Fill(p->Row(i), p->columns, zero);
    for (uint32_t j = 0; j < p->columns; ++j)
        if (random->Chance(30))
            for (uint32_t i = 0; i < p->rows; ++i)
                p->Row(i)[j] = zero();
    for (uint32_t i = 0; i < p->rows; ++i)
        if (random->Chance(20))
            p->b[i] = zero();
}

/// Degenerate models on which the largest-coefficient rule is known to cycle in exact arithmetic
/// (Chvátal, Linear Programming, chapter 3; Beale 1955), with columns permuted and rows scaled.
void Cycling(Problem* p, Random* random)
{
    static const float kRows[2][3][4] = {
        {{0.5F, -5.5F, -2.5F, 9.0F}, {0.5F, -1.5F, -0.5F, 1.0F}, {1.0F, 0.0F, 0.0F, 0.0F}},
        {{0.25F, -60.0F, -0.04F, 9.0F}, {0.5F, -90.0F, -0.02F, 3.0F}, {0.0F, 0.0F, 1.0F, 0.0F}}};
    static const float kCosts[2][4] = {{10.0F, -57.0F, -9.0F, -24.0F},
                                       {0.75F, -150.0F, 0.02F, -6.0F}};
    const uint32_t source = random->Chance(50) ? 1 : 0;
    uint32_t order[4] = {0, 1, 2, 3};
    for (uint32_t j = 3; j > 0; --j)
    {
        const uint32_t other = random->Below(j + 1);
        const uint32_t column = order[j];
        order[j] = order[other];
        order[other] = column;
    }
    p->rows = 3;
    p->columns = 4;
    for (uint32_t i = 0; i < 3; ++i)
    {
        const float scale = static_cast<float>(1U << random->Below(4));
        for (uint32_t j = 0; j < 4; ++j)
            p->Row(i)[j] = scale * kRows[source][i][order[j]];
        p->b[i] = i == 2 ? scale : 0.0F;
    }
    for (uint32_t j = 0; j < 4; ++j)
        p->c[j] = kCosts[source][order[j]];
}

/// A feasible model and one row that contradicts another.
void Infeasible(Problem* p, Random* random)
{
    ProductionMix(p, random);
    const uint32_t row = random->Below(p->rows);
    const uint32_t other = (row + 1) % p->rows;
    const bool isAlone = p->rows == 1;
    for (uint32_t j = 0; j < p->columns; ++j)
        p->Row(row)[j] = isAlone ? 1.0F : -p->Row(other)[j];
    p->b[row] = isAlone ? -1.0F : -p->b[other] - 1.0F - random->Positive(10.0F);
}

/// A column that pays and that no row holds back.
void Unbounded(Problem* p, Random* random)
{
    (random->Chance(50) ? MixedSigns : NeedsPhaseI)(p, random);
    const uint32_t column = random->Below(p->columns);
    for (uint32_t i = 0; i < p->rows; ++i)
        p->Row(i)[column] = -random->Positive(2.0F);
    p->c[column] = 1.0F + random->Positive(4.0F);
}

/// A power of two between 2^first and 2^last; both are exponents of normal numbers.
float PowerOfTwo(Random* random, int32_t first, int32_t last)
{
    const int32_t exponent = random->Between(first, last);
    return FloatOfBits(static_cast<uint32_t>(exponent + 127) << 23U);
}

void ExtremeExponents(Problem* p, Random* random)
{
    MixedSigns(p, random);
    const int32_t reach = random->Chance(50) ? 30 : 126;
    const auto scale = [=](float* values, size_t count)
    {
        for (size_t k = 0; k != count; ++k)
            values[k] *= PowerOfTwo(random, -reach, reach);
    };
    scale(p->A, p->NumCoefficients());
    scale(p->b, p->rows);
    scale(p->c, p->columns);
}

/// x · scale, brought back into the finite numbers.
float ScaleFinite(float x, float scale)
{
    const float largest = FloatOfBits(0x7F000000U);
    const float scaled = x * scale;
    return scaled > largest ? largest : scaled < -largest ? -largest : scaled;
}

/// Finite data whose rows and columns are scaled so far apart that infinities and NaNs arise on the
/// way, some at once and some after a few pivots.
void Overflowing(Problem* p, Random* random)
{
    (random->Chance(30) ? DegenerateTies : NeedsPhaseI)(p, random);
    const int32_t reach = random->Between(40, 120);
    for (uint32_t i = 0; i < p->rows; ++i)
    {
        const float scale = PowerOfTwo(random, -reach, reach);
        for (uint32_t j = 0; j < p->columns; ++j)
            p->Row(i)[j] = ScaleFinite(p->Row(i)[j], scale);
        p->b[i] = ScaleFinite(p->b[i], random->Chance(50) ? scale : 1.0F);
    }
    for (uint32_t j = 0; j < p->columns; ++j)
    {
        const float scale = PowerOfTwo(random, -reach, reach);
        for (uint32_t i = 0; i < p->rows; ++i)
            p->Row(i)[j] = ScaleFinite(p->Row(i)[j], scale);
        p->c[j] = ScaleFinite(p->c[j], scale);
    }
}

void Sprinkled(Problem* p, Random* random)
{
    static const RandomFamily kPlain[] = {RandomFamily::ProductionMix, RandomFamily::MixedSigns,
                                          RandomFamily::NeedsPhaseI, RandomFamily::DegenerateTies,
                                          RandomFamily::Sparse};
    const RandomFamily family = kPlain[random->Below(5)];
    MakeRandomModel(family, random->Next(), p);
    const uint32_t percent = random->Chance(50) ? 3 : 20;
    const uint32_t targets = 1 + random->Below(7);
    if ((targets & 1U) != 0)
        Sprinkle(p->A, p->NumCoefficients(), percent, SpecialValue, random);
    if ((targets & 2U) != 0)
        Sprinkle(p->b, p->rows, percent, SpecialValue, random);
    if ((targets & 4U) != 0)
        Sprinkle(p->c, p->columns, percent, SpecialValue, random);
}

/// One to three entries a column, as in models of networks. In some models a row in ten must be
/// met, by columns that cost.
void VerySparse(Problem* p, Random* random)
{
    const uint32_t demands = random->Chance(50) ? 10 : 0;
    Fill(p->b, p->rows,
         [=]
         { return random->Chance(demands) ? -random->Positive(2.0F) : random->Positive(30.0F); });
    for (uint32_t j = 0; j < p->columns; ++j)
    {
        p->c[j] = random->Symmetric(3.0F) + 1.0F;
        const uint32_t kEntries = 1 + random->Below(3);
        for (uint32_t k = 0; k < kEntries; ++k)
        {
            const uint32_t i = random->Below(p->rows);
            const float element = random->Chance(50) ? 1.0F : random->Symmetric(4.0F) + 3.0F;
            p->Row(i)[j] = p->b[i] < 0.0F ? -element : element;
            if (p->b[i] < 0.0F)
                p->c[j] = -p->c[j];
        }
    }
}

void SprinkledSparse(Problem* p, Random* random)
{
    VerySparse(p, random);
    Sprinkle(p->b, p->rows, 5, SpecialValue, random);
    Sprinkle(p->c, p->columns, 5, SpecialValue, random);
    for (size_t k = 0; k != p->NumCoefficients(); ++k)
        if (p->A[k] != 0.0F && random->Chance(5))
            p->A[k] = SpecialValue(random);
}

struct Entry
{
    const char* name;
    void (*make)(Problem*, Random*);
    bool isTame;
};

constexpr Entry kEntries[kNumRandomFamilies] = {{"ProductionMix", ProductionMix, true},
                                                {"MixedSigns", MixedSigns, true},
                                                {"NeedsPhaseI", NeedsPhaseI, true},
                                                {"Assignment", Assignment, true},
                                                {"Transport", Transport, true},
                                                {"Diet", Diet, true},
                                                {"DegenerateTies", DegenerateTies, true},
                                                {"Sparse", Sparse, true},
                                                {"EqualCoefficients", EqualCoefficients, true},
                                                {"ZeroRowsAndColumns", ZeroRowsAndColumns, true},
                                                {"Cycling", Cycling, true},
                                                {"Infeasible", Infeasible, true},
                                                {"Unbounded", Unbounded, true},
                                                {"ExtremeExponents", ExtremeExponents, false},
                                                {"Overflowing", Overflowing, false},
                                                {"Sprinkled", Sprinkled, false},
                                                {"VerySparse", VerySparse, true},
                                                {"SprinkledSparse", SprinkledSparse, false}};
}  // namespace

const char* NameOf(RandomFamily family)
{
    return kEntries[static_cast<uint32_t>(family)].name;
}

bool IsTame(RandomFamily family)
{
    return kEntries[static_cast<uint32_t>(family)].isTame;
}

float SpecialValue(Random* random)
{
    static const uint32_t kPatterns[] = {
        0x00000000U, 0x80000000U,  // ±0
        0x00000001U, 0x80000001U,  // the smallest subnormals
        0x007FFFFFU, 0x807FFFFFU,  // the largest subnormals
        0x00200000U, 0x001FFFFFU,  // 2^-128 has a reciprocal, the number below it has none
        0x00000400U, 0x80000400U,  // pivots whose reciprocal is infinite
        0x00800000U, 0x80800000U,  // the smallest normal numbers
        0x7F7FFFFFU, 0xFF7FFFFFU,  // the largest finite numbers
        0x7F61B1E6U, 0xFF61B1E6U,  // ±3e38
        0x7F800000U, 0xFF800000U,  // infinities
        0x7FC00000U, 0xFFC00000U,  // NaNs
        0x7FC12345U, 0x3F800000U, 0xBF800000U, 0x00000000U};
    return FloatOfBits(kPatterns[random->Below(sizeof kPatterns / sizeof *kPatterns)]);
}

void MakeRandomModel(RandomFamily family, uint64_t seed, Problem* p)
{
    Random random(seed ^ (static_cast<uint64_t>(family) << 56U));
    kEntries[static_cast<uint32_t>(family)].make(p, &random);
}
}  // namespace nuv::corpus
