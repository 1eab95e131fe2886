#include "Check.h"

int checks = 0;
int failures = 0;
unsigned long long currentCase = 0;

int CasesOf(int all)
{
    const char* share = getenv("NUV_TEST_SHARE");
    const int divisor = share ? atoi(share) : 1;
    const int cases = divisor > 1 ? all / divisor : all;
    return cases > 0 ? cases : 1;
}

/* Steele, Lea and Flood's splitmix64. */
uint64_t NextNumber(Random* random)
{
    uint64_t z = random->state += UINT64_C(0x9E3779B97F4A7C15);
    z = (z ^ (z >> 30)) * UINT64_C(0xBF58476D1CE4E5B9);
    z = (z ^ (z >> 27)) * UINT64_C(0x94D049BB133111EB);
    return z ^ (z >> 31);
}

uint32_t Below(Random* random, uint32_t end)
{
    return (uint32_t)(NextNumber(random) % end);
}

double SmallNumber(Random* random)
{
    return ((double)Below(random, 25) - 12.0) / 4.0;
}

NuvModel* MakeFactory(void)
{
    static const double costs[] = {30.0, 70.0};
    static const double upper[] = {300.0, 240.0};
    static const uint64_t starts[] = {0, 2, 4};
    static const uint32_t columns[] = {0, 1, 0, 1};
    static const double coefficients[] = {2.0, 5.0, 4.0, 3.0};
    static const char variables[] = "chairs\0tables";
    static const char rows[] = "wood\0labour";
    NuvModel* model = NuvModelConstruct();
    NuvModelArrays arrays;
    CHECK(model != NULL);
    CHECK_OK(NuvModelArraysInit(&arrays, sizeof arrays));
    arrays.sense = NUV_SENSE_Maximize;
    arrays.numColumns = 2;
    arrays.numRows = 2;
    arrays.numEntries = 4;
    arrays.costs = costs;
    arrays.rowUpper = upper;
    arrays.starts = starts;
    arrays.indices = columns;
    arrays.values = coefficients;
    arrays.columnNames = variables;
    arrays.columnNamesSize = sizeof variables;
    arrays.rowNames = rows;
    arrays.rowNamesSize = sizeof rows;
    CHECK_OK(NuvModelAssignArrays(model, &arrays, NULL));
    return model;
}
