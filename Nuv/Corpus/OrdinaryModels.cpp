// Families of ordinary data: plans, transports, two phases, verdicts.
#include "Nuv/Corpus/Families.hpp"
#include "Nuv/Corpus/Makers.hpp"

namespace nuv::corpus
{
namespace
{
/// A row around a point of small integers, in units of 2^-20: its activity there, and its bits.
int64_t FillRow(Problem* p, uint32_t row, const int32_t* point, bool isLower, Random* random)
{
    int64_t activity = 0;
    for (uint32_t j = 0; j < p->columns; ++j)
    {
        const auto magnitude = static_cast<int64_t>(random->Next() >> 42U) + (1 << 18);
        const int64_t coefficient = isLower ? -magnitude : magnitude;
        p->Row(row)[j] = Dyadic(coefficient, -20);
        activity += coefficient * point[j];
    }
    return activity;
}
}  // namespace

/// All data positive.
void MakePlan(Problem* p, Random* random)
{
    Fill(
        p, [random] { return Positive(random, 3); }, [random] { return Positive(random, 10); },
        [random] { return Positive(random, 4); });
}

void MakeMixedSigns(Problem* p, Random* random)
{
    Fill(
        p, [random] { return Signed(random, 2); }, [random] { return Positive(random, 7); },
        [random] { return Signed(random, 1); });
}

/// Rows of both directions around a point that satisfies them all.
void MakeTwoPhases(Problem* p, Random* random)
{
    int32_t point[Model::kMaxColumns];
    for (uint32_t j = 0; j < p->columns; ++j)
        point[j] = random->Between(0, 7);
    for (uint32_t i = 0; i < p->rows; ++i)
    {
        const bool isLower = i == 0 || random->Chance(40);
        const int64_t activity = FillRow(p, i, point, isLower, random);
        p->b[i] = Dyadic(activity + static_cast<int64_t>(random->Next() >> 44U), -20);
    }
    Fill(p->c, p->columns, [random] { return Signed(random, 2); });
}

/// Needs that must be reached at the least cost.
void MakeCovering(Problem* p, Random* random)
{
    Fill(
        p, [random] { return random->Chance(70) ? Negated(Positive(random, 2)) : 0.0F; },
        [random] { return Negated(Positive(random, 6)); },
        [random] { return Negated(Positive(random, 3)); });
}

/// Supplies that may not be exceeded, demands that must be met.
void MakeTransport(Problem* p, Random* random)
{
    const uint32_t sources = 1 + p->rows % 7;
    const uint32_t sinks = 1 + p->columns % 9;
    ShapeTransport(p, sources, sinks);
    int32_t total = 0;
    for (uint32_t t = 0; t < sinks; ++t)
    {
        const int32_t demand = random->Between(0, 30);
        p->b[sources + t] = Dyadic(-demand, 0);
        total += demand;
    }
    for (uint32_t s = 0; s < sources; ++s)
    {
        p->b[s] = Dyadic(total / static_cast<int32_t>(sources) + random->Between(0, 10), 0);
        for (uint32_t t = 0; t < sinks; ++t)
            p->c[s * sinks + t] = Dyadic(-random->Between(1, 40), -2);
    }
}

void MakeAssignment(Problem* p, Random* random)
{
    FillAssignment(p, 1 + p->rows % 8, random);
}

/// Few coefficients in a row, and sides of both signs.
void MakeSparse(Problem* p, Random* random)
{
    for (uint32_t i = 0; i < p->rows; ++i)
    {
        const bool isLower = random->Chance(25);
        for (uint32_t n = random->Below(4) + 1; n != 0; --n)
        {
            const float coefficient = Positive(random, 3);
            p->Row(i)[random->Below(p->columns)] = isLower ? Negated(coefficient) : coefficient;
        }
        p->b[i] = isLower ? Negated(Positive(random, 2)) : Positive(random, 8);
    }
    Fill(p->c, p->columns, [random] { return Signed(random, 3); });
}

/// One row asks for more than another one gives.
void MakeInfeasible(Problem* p, Random* random)
{
    p->rows = p->rows == 1 ? 2 : p->rows;
    MakeTwoPhases(p, random);
    const uint32_t row = random->Below(p->rows);
    const uint32_t other = (row + 1) % p->rows;
    for (uint32_t j = 0; j < p->columns; ++j)
        p->Row(other)[j] = Negated(p->Row(row)[j]);
    const int64_t demand = random->Between(600, 800);
    p->b[row] = random->Integer(-500, 500);
    p->b[other] = Dyadic(-demand, 0);
}

/// One column that costs nothing and is worth something.
void MakeUnbounded(Problem* p, Random* random)
{
    MakeMixedSigns(p, random);
    const uint32_t column = random->Below(p->columns);
    for (uint32_t i = 0; i < p->rows; ++i)
        p->Row(i)[column] = Negated(Positive(random, 1));
    p->c[column] = Positive(random, -6);
}

/// The rows that make the simplex method visit many corners (Klee and Minty 1972), up to 7 of them,
/// with a random one scaled.
void MakeKleeMinty(Problem* p, Random* random)
{
    FillKleeMinty(p, 1 + p->rows % 7);
    const uint32_t row = random->Below(p->rows);
    const int64_t factor = random->Between(2, 9);
    for (uint32_t j = 0; j < row; ++j)
        p->Row(row)[j] = Dyadic(factor, static_cast<int32_t>(row - j + 1));
    p->Row(row)[row] = Dyadic(factor, 0);
    int64_t scaled = factor;
    for (uint32_t i = 0; i <= row; ++i)
        scaled *= 5;
    p->b[row] = Dyadic(scaled, 0);
}

/// Quotients of small integers: nothing is exact.
void MakeQuotients(Problem* p, Random* random)
{
    const auto quotient = [random]
    { return Dyadic((int64_t{1} << 40U) * random->Between(1, 9) / random->Between(1, 9), -40); };
    Fill(p, quotient, quotient, quotient);
}
}  // namespace nuv::corpus
