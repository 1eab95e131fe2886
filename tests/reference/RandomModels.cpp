// The families, one function each.
#include "tests/reference/RandomModels.hpp"

#include <algorithm>
#include <array>
#include <bit>

namespace reference
{
std::uint64_t Random::Next()
{
    state += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
}

std::uint32_t Random::Below(std::uint32_t limit)
{
    return static_cast<std::uint32_t>(((Next() >> 32U) * limit) >> 32U);
}

std::int32_t Random::Between(std::int32_t first, std::int32_t last)
{
    return first + static_cast<std::int32_t>(Below(static_cast<std::uint32_t>(last - first) + 1U));
}

bool Random::Chance(std::uint32_t percent)
{
    return Below(100) < percent;
}

float Random::Symmetric(float limit)
{
    const auto bits = static_cast<std::int32_t>(Next() >> 39U) - (1 << 24);
    return static_cast<float>(bits) / 16777216.0F * limit;
}

float Random::Positive(float limit)
{
    return static_cast<float>(Next() >> 40U) / 16777216.0F * limit;
}

float Random::AnyBits()
{
    return std::bit_cast<float>(static_cast<std::uint32_t>(Next() >> 32U));
}

namespace
{
Problem EmptyModel(std::size_t rows, std::size_t columns)
{
    Problem problem;
    problem.rows = rows;
    problem.columns = columns;
    problem.A.assign(rows * columns, 0.0F);
    problem.b.assign(rows, 0.0F);
    problem.c.assign(columns, 0.0F);
    return problem;
}

Problem ProductionMix(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = EmptyModel(rows, columns);
    for (float& x : p.A)
        x = random->Positive(10.0F) + 0.125F;
    for (float& x : p.b)
        x = random->Positive(1000.0F) + 1.0F;
    for (float& x : p.c)
        x = random->Positive(20.0F);
    return p;
}

Problem MixedSigns(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = EmptyModel(rows, columns);
    for (float& x : p.A)
        x = random->Symmetric(5.0F);
    for (float& x : p.b)
        x = random->Positive(100.0F);
    for (float& x : p.c)
        x = random->Symmetric(3.0F);
    return p;
}

/// Rows of both directions around a point that satisfies them all.
Problem NeedsPhaseI(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = EmptyModel(rows, columns);
    std::vector<float> point(columns);
    for (float& x : point)
        x = random->Positive(4.0F);
    for (std::size_t i = 0; i < rows; ++i)
    {
        const bool isLower = i == 0 || random->Chance(40);
        float activity = 0.0F;
        for (std::size_t j = 0; j < columns; ++j)
        {
            const float magnitude = random->Positive(3.0F) + 0.25F;
            p.A[i * columns + j] = isLower ? -magnitude : magnitude;
            activity += p.A[i * columns + j] * point[j];
        }
        p.b[i] = activity + random->Positive(2.0F) - (isLower ? 0.5F : 0.0F);
    }
    for (float& x : p.c)
        x = random->Symmetric(6.0F);
    return p;
}

/// k workers and k tasks, each at most once; the profit is an integer.
Problem Assignment(std::size_t rows, std::size_t, Random* random)
{
    const std::size_t k = std::max<std::size_t>(1, std::min<std::size_t>(rows / 2, 10));
    Problem p = EmptyModel(2 * k, k * k);
    for (std::size_t worker = 0; worker < k; ++worker)
        for (std::size_t task = 0; task < k; ++task)
        {
            const std::size_t j = worker * k + task;
            p.A[worker * p.columns + j] = 1.0F;
            p.A[(k + task) * p.columns + j] = 1.0F;
            p.c[j] = static_cast<float>(random->Between(1, 12));
        }
    std::fill(p.b.begin(), p.b.end(), 1.0F);
    return p;
}

/// Supplies that may not be exceeded, demands that must be met, at the least cost.
Problem Transport(std::size_t rows, std::size_t, Random* random)
{
    const std::size_t sources = std::max<std::size_t>(1, std::min<std::size_t>(rows / 2, 8));
    const std::size_t sinks = std::max<std::size_t>(1, std::min<std::size_t>(rows - sources, 8));
    Problem p = EmptyModel(sources + sinks, sources * sinks);
    float total = 0.0F;
    for (std::size_t t = 0; t < sinks; ++t)
    {
        const auto demand = static_cast<float>(random->Between(0, 30));
        p.b[sources + t] = -demand;
        total += demand;
    }
    for (std::size_t s = 0; s < sources; ++s)
    {
        const float share = total / static_cast<float>(sources);
        p.b[s] = share + static_cast<float>(random->Between(0, 10));
        for (std::size_t t = 0; t < sinks; ++t)
        {
            const std::size_t j = s * sinks + t;
            p.A[s * p.columns + j] = 1.0F;
            p.A[(sources + t) * p.columns + j] = -1.0F;
            p.c[j] = -static_cast<float>(random->Between(1, 40)) / 4.0F;
        }
    }
    return p;
}

/// Nutrients that must be reached by foods at the least cost.
Problem Diet(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = EmptyModel(rows, columns);
    for (float& x : p.A)
        x = random->Chance(30) ? 0.0F : -(static_cast<float>(random->Between(1, 400)) * 0.1F);
    for (float& x : p.b)
        x = -static_cast<float>(random->Between(1, 300)) * 0.5F;
    for (float& x : p.c)
        x = -(static_cast<float>(random->Between(5, 90)) * 0.01F);
    return p;
}

Problem DegenerateTies(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = EmptyModel(rows, columns);
    for (float& x : p.A)
        x = static_cast<float>(random->Between(-1, 2));
    for (float& x : p.b)
        x = static_cast<float>(random->Between(0, 2));
    for (float& x : p.c)
        x = static_cast<float>(random->Between(-1, 3));
    return p;
}

Problem Sparse(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = EmptyModel(rows, columns);
    for (float& x : p.A)
        if (random->Chance(10))
            x = random->Symmetric(8.0F) + 2.0F;
    for (float& x : p.b)
        x = random->Chance(15) ? -random->Positive(2.0F) : random->Positive(50.0F);
    for (float& x : p.c)
        x = random->Chance(50) ? random->Symmetric(5.0F) : 0.0F;
    return p;
}

Problem EqualCoefficients(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = EmptyModel(rows, columns);
    const float value = static_cast<float>(random->Between(1, 9)) * 0.1F;
    const float rhs = static_cast<float>(random->Between(-2, 6));
    const float cost = static_cast<float>(random->Between(-1, 3));
    for (float& x : p.A)
        x = rhs < 0.0F && random->Chance(50) ? -value : value;
    std::fill(p.b.begin(), p.b.end(), rhs);
    std::fill(p.c.begin(), p.c.end(), cost);
    return p;
}

Problem ZeroRowsAndColumns(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p =
        random->Chance(50) ? MixedSigns(rows, columns, random) : NeedsPhaseI(rows, columns, random);
    for (std::size_t i = 0; i < rows; ++i)
        if (random->Chance(30))
            for (std::size_t j = 0; j < columns; ++j)
                p.A[i * columns + j] = random->Chance(50) ? 0.0F : -0.0F;
    for (std::size_t j = 0; j < columns; ++j)
        if (random->Chance(30))
            for (std::size_t i = 0; i < rows; ++i)
                p.A[i * columns + j] = random->Chance(50) ? 0.0F : -0.0F;
    for (float& x : p.b)
        if (random->Chance(20))
            x = random->Chance(50) ? 0.0F : -0.0F;
    return p;
}

/// Degenerate models on which the largest-coefficient rule is known to cycle in exact arithmetic
/// (Chvátal, Linear Programming, chapter 3; Beale 1955), with columns permuted and rows scaled.
Problem Cycling(std::size_t, std::size_t, Random* random)
{
    static const std::array<float, 12> chvatalRows = {0.5F,  -5.5F, -2.5F, 9.0F, 0.5F, -1.5F,
                                                      -0.5F, 1.0F,  1.0F,  0.0F, 0.0F, 0.0F};
    static const std::array<float, 4> chvatalCosts = {10.0F, -57.0F, -9.0F, -24.0F};
    static const std::array<float, 12> bealeRows = {0.25F,  -60.0F, -0.04F, 9.0F, 0.5F, -90.0F,
                                                    -0.02F, 3.0F,   0.0F,   0.0F, 1.0F, 0.0F};
    static const std::array<float, 4> bealeCosts = {0.75F, -150.0F, 0.02F, -6.0F};
    const bool isBeale = random->Chance(50);
    std::array<std::size_t, 4> order = {0, 1, 2, 3};
    for (std::uint32_t j = 3; j > 0; --j)
        std::swap(order[j], order[random->Below(j + 1)]);
    Problem p = EmptyModel(3, 4);
    for (std::size_t i = 0; i < 3; ++i)
    {
        const float scale = static_cast<float>(1 << random->Below(4));
        for (std::size_t j = 0; j < 4; ++j)
            p.A[i * 4 + j] = scale * (isBeale ? bealeRows : chvatalRows)[i * 4 + order[j]];
        p.b[i] = i == 2 ? scale : 0.0F;
    }
    for (std::size_t j = 0; j < 4; ++j)
        p.c[j] = (isBeale ? bealeCosts : chvatalCosts)[order[j]];
    return p;
}

/// A feasible model and one row that contradicts another.
Problem InfeasibleModel(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = ProductionMix(rows, columns, random);
    const std::size_t row = random->Below(static_cast<std::uint32_t>(rows));
    const std::size_t other = (row + 1) % rows;
    for (std::size_t j = 0; j < columns; ++j)
        p.A[row * columns + j] = rows == 1 ? 1.0F : -p.A[other * columns + j];
    p.b[row] = rows == 1 ? -1.0F : -p.b[other] - 1.0F - random->Positive(10.0F);
    return p;
}

/// A column that pays and that no row holds back.
Problem UnboundedModel(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p =
        random->Chance(50) ? MixedSigns(rows, columns, random) : NeedsPhaseI(rows, columns, random);
    const std::size_t column = random->Below(static_cast<std::uint32_t>(columns));
    for (std::size_t i = 0; i < rows; ++i)
        p.A[i * columns + column] = -random->Positive(2.0F);
    p.c[column] = 1.0F + random->Positive(4.0F);
    return p;
}

/// A power of two between 2^first and 2^last; both are exponents of normal numbers.
float PowerOfTwo(Random* random, std::int32_t first, std::int32_t last)
{
    const std::int32_t exponent = random->Between(first, last);
    return std::bit_cast<float>(static_cast<std::uint32_t>(exponent + 127) << 23U);
}

Problem ExtremeExponents(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = MixedSigns(rows, columns, random);
    const std::int32_t reach = random->Chance(50) ? 30 : 126;
    for (float& x : p.A)
        x *= PowerOfTwo(random, -reach, reach);
    for (float& x : p.b)
        x *= PowerOfTwo(random, -reach, reach);
    for (float& x : p.c)
        x *= PowerOfTwo(random, -reach, reach);
    return p;
}

/// x · scale, brought back into the finite numbers.
float ScaleFinite(float x, float scale)
{
    const float largest = std::bit_cast<float>(0x7F000000U);
    const float scaled = x * scale;
    return scaled > largest ? largest : scaled < -largest ? -largest : scaled;
}

/// Finite data whose rows and columns are scaled so far apart that infinities and NaNs arise on the
/// way, some at once and some after a few pivots.
Problem Overflowing(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = random->Chance(30) ? DegenerateTies(rows, columns, random)
                                   : NeedsPhaseI(rows, columns, random);
    const std::int32_t reach = random->Between(40, 120);
    for (std::size_t i = 0; i < rows; ++i)
    {
        const float scale = PowerOfTwo(random, -reach, reach);
        for (std::size_t j = 0; j < columns; ++j)
            p.A[i * columns + j] = ScaleFinite(p.A[i * columns + j], scale);
        p.b[i] = ScaleFinite(p.b[i], random->Chance(50) ? scale : 1.0F);
    }
    for (std::size_t j = 0; j < columns; ++j)
    {
        const float scale = PowerOfTwo(random, -reach, reach);
        for (std::size_t i = 0; i < rows; ++i)
            p.A[i * columns + j] = ScaleFinite(p.A[i * columns + j], scale);
        p.c[j] = ScaleFinite(p.c[j], scale);
    }
    return p;
}

void Sprinkle(std::vector<float>* values, std::uint32_t percent, Random* random)
{
    for (float& x : *values)
        if (random->Chance(percent))
            x = SpecialValue(random);
}

Problem Sprinkled(std::size_t rows, std::size_t columns, Random* random)
{
    static const std::array<Family, 5> plain = {Family::ProductionMix, Family::MixedSigns,
                                                Family::NeedsPhaseI, Family::DegenerateTies,
                                                Family::Sparse};
    const Family family = plain[random->Below(static_cast<std::uint32_t>(plain.size()))];
    Problem p = MakeModel(family, rows, columns, random->Next());
    const std::uint32_t percent = random->Chance(50) ? 3 : 20;
    const std::uint32_t targets = 1 + random->Below(7);
    if ((targets & 1U) != 0)
        Sprinkle(&p.A, percent, random);
    if ((targets & 2U) != 0)
        Sprinkle(&p.b, percent, random);
    if ((targets & 4U) != 0)
        Sprinkle(&p.c, percent, random);
    return p;
}
/// One to three entries a column, as in models of networks. In some models a row in ten must be
/// met, by columns that cost.
Problem VerySparse(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = EmptyModel(rows, columns);
    const std::uint32_t demands = random->Chance(50) ? 10 : 0;
    for (float& x : p.b)
        x = random->Chance(demands) ? -random->Positive(2.0F) : random->Positive(30.0F);
    for (std::size_t j = 0; j < columns; ++j)
    {
        p.c[j] = random->Symmetric(3.0F) + 1.0F;
        const std::uint32_t entries = 1 + random->Below(3);
        for (std::uint32_t k = 0; k < entries; ++k)
        {
            const std::size_t i = random->Below(static_cast<std::uint32_t>(rows));
            const float element = random->Chance(50) ? 1.0F : random->Symmetric(4.0F) + 3.0F;
            p.A[i * columns + j] = p.b[i] < 0.0F ? -element : element;
            if (p.b[i] < 0.0F)
                p.c[j] = -p.c[j];
        }
    }
    return p;
}

Problem SprinkledSparse(std::size_t rows, std::size_t columns, Random* random)
{
    Problem p = VerySparse(rows, columns, random);
    Sprinkle(&p.b, 5, random);
    Sprinkle(&p.c, 5, random);
    for (float& x : p.A)
        if (x != 0.0F && random->Chance(5))
            x = SpecialValue(random);
    return p;
}
}  // namespace

const std::vector<Family>& Families()
{
    static const std::vector<Family> all = {
        Family::ProductionMix,      Family::MixedSigns,       Family::NeedsPhaseI,
        Family::Assignment,         Family::Transport,        Family::Diet,
        Family::DegenerateTies,     Family::Sparse,           Family::EqualCoefficients,
        Family::ZeroRowsAndColumns, Family::Cycling,          Family::Infeasible,
        Family::Unbounded,          Family::ExtremeExponents, Family::Overflowing,
        Family::Sprinkled,          Family::VerySparse,       Family::SprinkledSparse};
    return all;
}

const char* NameOf(Family family)
{
    static const std::array<const char*, 18> names = {
        "ProductionMix",      "MixedSigns",       "NeedsPhaseI",
        "Assignment",         "Transport",        "Diet",
        "DegenerateTies",     "Sparse",           "EqualCoefficients",
        "ZeroRowsAndColumns", "Cycling",          "Infeasible",
        "Unbounded",          "ExtremeExponents", "Overflowing",
        "Sprinkled",          "VerySparse",       "SprinkledSparse"};
    return names[static_cast<std::size_t>(family)];
}

bool IsTame(Family family)
{
    return family != Family::ExtremeExponents && family != Family::Overflowing &&
           family != Family::Sprinkled && family != Family::SprinkledSparse;
}

float SpecialValue(Random* random)
{
    static const std::array<std::uint32_t, 24> patterns = {
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
    return std::bit_cast<float>(
        patterns[random->Below(static_cast<std::uint32_t>(patterns.size()))]);
}

Problem MakeModel(Family family, std::size_t rows, std::size_t columns, std::uint64_t seed)
{
    using Maker = Problem (*)(std::size_t, std::size_t, Random*);
    static const std::array<Maker, 18> makers = {
        ProductionMix, MixedSigns,      NeedsPhaseI,    Assignment,        Transport,
        Diet,          DegenerateTies,  Sparse,         EqualCoefficients, ZeroRowsAndColumns,
        Cycling,       InfeasibleModel, UnboundedModel, ExtremeExponents,  Overflowing,
        Sprinkled,     VerySparse,      SprinkledSparse};
    Random random(seed ^ (static_cast<std::uint64_t>(family) << 56U));
    return makers[static_cast<std::size_t>(family)](rows, columns, &random);
}
}  // namespace reference
