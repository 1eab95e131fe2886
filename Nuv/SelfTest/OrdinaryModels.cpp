// Families of ordinary data: plans, transports, two phases, verdicts.
#include "Nuv/SelfTest/Models.hpp"

#include "Nuv/SelfTest/Numbers.hpp"

namespace nuv::selftest
{
namespace
{

/// A row around a point of small integers, in units of 2^-20: its activity there, and its bits.
int64_t FillRow(Model* model, uint32_t row, const int32_t* point, bool isLower, Random* random)
{
    int64_t activity = 0;
    for (uint32_t j = 0; j < model->columns; ++j)
    {
        const auto magnitude = static_cast<int64_t>(random->Next() >> 42U) + (1 << 18);
        const int64_t coefficient = isLower ? -magnitude : magnitude;
        model->A[row * model->columns + j] = Dyadic(coefficient, -20);
        activity += coefficient * point[j];
    }
    return activity;
}

}  // namespace

/// All data positive.
void MakePlan(Model* model, Random* random)
{
    for (uint32_t k = 0; k < model->rows * model->columns; ++k)
        model->A[k] = Positive(random, 3);
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = Positive(random, 10);
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = Positive(random, 4);
}

void MakeMixedSigns(Model* model, Random* random)
{
    for (uint32_t k = 0; k < model->rows * model->columns; ++k)
        model->A[k] = Signed(random, 2);
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = Positive(random, 7);
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = Signed(random, 1);
}

/// Rows of both directions around a point that satisfies them all.
void MakeTwoPhases(Model* model, Random* random)
{
    int32_t point[Model::kMaxColumns];
    for (uint32_t j = 0; j < model->columns; ++j)
        point[j] = random->Between(0, 7);
    for (uint32_t i = 0; i < model->rows; ++i)
    {
        const bool isLower = i == 0 || random->Chance(40);
        const int64_t activity = FillRow(model, i, point, isLower, random);
        model->b[i] = Dyadic(activity + static_cast<int64_t>(random->Next() >> 44U), -20);
    }
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = Signed(random, 2);
}

/// Needs that must be reached at the least cost.
void MakeCovering(Model* model, Random* random)
{
    for (uint32_t k = 0; k < model->rows * model->columns; ++k)
        if (random->Chance(70))
            model->A[k] = Negated(Positive(random, 2));
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = Negated(Positive(random, 6));
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = Negated(Positive(random, 3));
}

/// Supplies that may not be exceeded, demands that must be met.
void MakeTransport(Model* model, Random* random)
{
    const uint32_t sources = 1 + model->rows % 7;
    const uint32_t sinks = 1 + model->columns % 9;
    model->rows = sources + sinks;
    model->columns = sources * sinks;
    int32_t total = 0;
    for (uint32_t t = 0; t < sinks; ++t)
    {
        const int32_t demand = random->Between(0, 30);
        model->b[sources + t] = Dyadic(-demand, 0);
        total += demand;
    }
    for (uint32_t s = 0; s < sources; ++s)
    {
        model->b[s] = Dyadic(total / static_cast<int32_t>(sources) + random->Between(0, 10), 0);
        for (uint32_t t = 0; t < sinks; ++t)
        {
            const uint32_t j = s * sinks + t;
            model->A[s * model->columns + j] = 1.0F;
            model->A[(sources + t) * model->columns + j] = -1.0F;
            model->c[j] = Dyadic(-random->Between(1, 40), -2);
        }
    }
}

/// k workers and k tasks, each at most once.
void MakeAssignment(Model* model, Random* random)
{
    const uint32_t k = 1 + model->rows % 8;
    model->rows = 2 * k;
    model->columns = k * k;
    for (uint32_t worker = 0; worker < k; ++worker)
        for (uint32_t task = 0; task < k; ++task)
        {
            const uint32_t j = worker * k + task;
            model->A[worker * model->columns + j] = 1.0F;
            model->A[(k + task) * model->columns + j] = 1.0F;
            model->c[j] = Integer(random, 1, 12);
        }
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = 1.0F;
}

/// Few coefficients in a row, and sides of both signs.
void MakeSparse(Model* model, Random* random)
{
    for (uint32_t i = 0; i < model->rows; ++i)
    {
        const bool isLower = random->Chance(25);
        for (uint32_t n = random->Below(4) + 1; n != 0; --n)
        {
            const float coefficient = Positive(random, 3);
            model->A[i * model->columns + random->Below(model->columns)] =
                isLower ? Negated(coefficient) : coefficient;
        }
        model->b[i] = isLower ? Negated(Positive(random, 2)) : Positive(random, 8);
    }
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = Signed(random, 3);
}

/// One row asks for more than another one gives.
void MakeInfeasible(Model* model, Random* random)
{
    model->rows = model->rows == 1 ? 2 : model->rows;
    MakeTwoPhases(model, random);
    const uint32_t row = random->Below(model->rows);
    const uint32_t other = (row + 1) % model->rows;
    for (uint32_t j = 0; j < model->columns; ++j)
        model->A[other * model->columns + j] = Negated(model->A[row * model->columns + j]);
    const int64_t demand = random->Between(600, 800);
    model->b[row] = Dyadic(random->Between(-500, 500), 0);
    model->b[other] = Dyadic(-demand, 0);
}

/// One column that costs nothing and is worth something.
void MakeUnbounded(Model* model, Random* random)
{
    MakeMixedSigns(model, random);
    const uint32_t column = random->Below(model->columns);
    for (uint32_t i = 0; i < model->rows; ++i)
        model->A[i * model->columns + column] = Negated(Positive(random, 1));
    model->c[column] = Positive(random, -6);
}

/// The rows that make the simplex method visit many corners (Klee and Minty 1972), up to 7 of them,
/// with a random one scaled.
void MakeKleeMinty(Model* model, Random* random)
{
    const uint32_t n = 1 + model->rows % 7;
    model->rows = n;
    model->columns = n;
    int64_t side = 5;
    for (uint32_t i = 0; i < n; ++i, side *= 5)
    {
        for (uint32_t j = 0; j < i; ++j)
            model->A[i * n + j] = Dyadic(1, static_cast<int32_t>(i - j + 1));
        model->A[i * n + i] = 1.0F;
        model->b[i] = Dyadic(side, 0);
        model->c[i] = Dyadic(1, static_cast<int32_t>(n - 1 - i));
    }
    const uint32_t row = random->Below(n);
    const int64_t factor = random->Between(2, 9);
    for (uint32_t j = 0; j < row; ++j)
        model->A[row * n + j] = Dyadic(factor, static_cast<int32_t>(row - j + 1));
    model->A[row * n + row] = Dyadic(factor, 0);
    int64_t scaled = factor;
    for (uint32_t i = 0; i <= row; ++i)
        scaled *= 5;
    model->b[row] = Dyadic(scaled, 0);
}

/// Quotients of small integers: nothing is exact.
void MakeQuotients(Model* model, Random* random)
{
    const auto quotient = [random]
    { return Dyadic((int64_t{1} << 40U) * random->Between(1, 9) / random->Between(1, 9), -40); };
    for (uint32_t k = 0; k < model->rows * model->columns; ++k)
        model->A[k] = quotient();
    for (uint32_t i = 0; i < model->rows; ++i)
        model->b[i] = quotient();
    for (uint32_t j = 0; j < model->columns; ++j)
        model->c[j] = quotient();
}

}  // namespace nuv::selftest
