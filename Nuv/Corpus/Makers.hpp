// What the makers of models share, and those that the table of families lists.
#pragma once

#include "Nuv/Corpus/Problem.hpp"
#include "Nuv/Corpus/Random.hpp"

namespace nuv::corpus
{
/// The shape and the coefficients of a transport from sources, the first rows, to sinks.
inline void ShapeTransport(Problem* p, uint32_t sources, uint32_t sinks)
{
    p->rows = sources + sinks;
    p->columns = sources * sinks;
    for (uint32_t s = 0; s < sources; ++s)
        for (uint32_t t = 0; t < sinks; ++t)
        {
            p->Row(s)[s * sinks + t] = 1.0F;
            p->Row(sources + t)[s * sinks + t] = -1.0F;
        }
}

/// k workers and k tasks, each at most once; the profit is an integer.
inline void FillAssignment(Problem* p, uint32_t k, Random* random)
{
    p->rows = 2 * k;
    p->columns = k * k;
    for (uint32_t j = 0; j < p->columns; ++j)
    {
        p->Row(j / k)[j] = 1.0F;
        p->Row(k + j % k)[j] = 1.0F;
        p->c[j] = random->Integer(1, 12);
    }
    Fill(p->b, p->rows, [] { return 1.0F; });
}

/// max Σ 2^(n−j) x_j under n rows that make the simplex method visit many corners.
inline void FillKleeMinty(Problem* p, uint32_t n)
{
    p->rows = n;
    p->columns = n;
    int64_t side = 5;
    for (uint32_t i = 0; i < n; ++i, side *= 5)
    {
        for (uint32_t j = 0; j < i; ++j)
            p->Row(i)[j] = Dyadic(1, static_cast<int32_t>(i - j + 1));
        p->Row(i)[i] = 1.0F;
        p->b[i] = Dyadic(side, 0);
        p->c[i] = Dyadic(1, static_cast<int32_t>(n - 1 - i));
    }
}

/// Replaces some of the values, a chance of `percent` in 100 each.
inline void Sprinkle(float* values, size_t count, uint32_t percent, float (*special)(Random*),
                     Random* random)
{
    for (size_t k = 0; k != count; ++k)
        if (random->Chance(percent))
            values[k] = special(random);
}

// Ordinary data.
void MakePlan(Problem* p, Random* random);
void MakeMixedSigns(Problem* p, Random* random);
void MakeTwoPhases(Problem* p, Random* random);
void MakeCovering(Problem* p, Random* random);
void MakeTransport(Problem* p, Random* random);
void MakeAssignment(Problem* p, Random* random);
void MakeSparse(Problem* p, Random* random);
void MakeInfeasible(Problem* p, Random* random);
void MakeUnbounded(Problem* p, Random* random);
void MakeKleeMinty(Problem* p, Random* random);
void MakeQuotients(Problem* p, Random* random);

// Ties, cycles and holes.
void MakeTies(Problem* p, Random* random);
void MakeEqualCoefficients(Problem* p, Random* random);
void MakeRepeatedRows(Problem* p, Random* random);
void MakeEmptyRowsAndColumns(Problem* p, Random* random);
void MakeCycling(Problem* p, Random* random);

// Data that no one should ask a solver for.
void MakeWideExponents(Problem* p, Random* random);
void MakeOverflowing(Problem* p, Random* random);
void MakeSubnormal(Problem* p, Random* random);
void MakeSpecialValues(Problem* p, Random* random);
}  // namespace nuv::corpus
