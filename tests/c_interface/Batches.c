/* Batches of small problems, each beside the same problem solved alone. */
#include "Check.h"

enum
{
    MostRows = 6,
    MostColumns = 6,
    Count = 24
};

/* The problems of a batch and its answers. */
typedef struct Batch
{
    NuvBatch batch;
    double costs[Count][MostColumns];
    double matrix[Count][MostRows * MostColumns];
    double sides[Count][MostRows];
    double lower[Count][MostColumns];
    double upper[Count][MostColumns];
    uint32_t status[Count];
    uint8_t proved[Count];
    uint64_t pivots[Count];
    double objectives[Count];
    double values[Count * MostColumns];
    double reducedCosts[Count * MostColumns];
    double duals[Count * MostRows];
} Batch;

/* Small quarters in some batches, numbers of all digits in others. */
static double NumberOf(Random* random, int isLong)
{
    if (!isLong)
        return SmallNumber(random);
    return (double)(NextNumber(random) >> 11) * 0x1p-52 - 0.5;
}

static void Fill(Batch* all, Random* random)
{
    NuvBatch* batch = &all->batch;
    const int isLong = Below(random, 2) == 0;
    const int isFeasible = Below(random, 2) == 0;
    uint32_t entries;
    uint32_t k;
    uint32_t j;
    memset(all, 0, sizeof *all);
    CHECK_OK(NuvBatchInit(batch, sizeof *batch));
    CHECK(batch->size == sizeof *batch && batch->pivotLimit == UINT64_MAX && !batch->costs);
    batch->numbers = Below(random, 2);
    batch->count = Count;
    batch->numColumns = Below(random, MostColumns + 1);
    batch->numUpperRows = Below(random, MostRows);
    batch->numEqualRows = Below(random, 3) == 0 ? 1 : 0;
    entries = batch->numColumns * (batch->numUpperRows + batch->numEqualRows);
    for (k = 0; k < Count; ++k)
    {
        for (j = 0; j < entries; ++j)
            all->matrix[k][j] = NumberOf(random, isLong);
        for (j = 0; j < MostRows; ++j)
            all->sides[k][j] =
                isFeasible ? fabs(NumberOf(random, isLong)) : NumberOf(random, isLong);
        for (j = 0; j < MostColumns; ++j)
        {
            all->costs[k][j] = NumberOf(random, isLong);
            all->lower[k][j] = Below(random, 4) == 0 ? -(double)INFINITY : -1.0;
            all->upper[k][j] = Below(random, 2) == 0 ? (double)INFINITY : 2.0;
        }
    }
    if (Below(random, 4) != 0)
        batch->costs = all->costs[0], batch->costsStride = Below(random, 2) * MostColumns;
    batch->upperMatrix = all->matrix[0];
    batch->upperStride = Below(random, 2) * MostRows * MostColumns;
    batch->upperSides = all->sides[0];
    batch->upperSidesStride = MostRows;
    batch->equalMatrix = all->matrix[0] + batch->numColumns * batch->numUpperRows;
    batch->equalStride = MostRows * MostColumns;
    batch->equalSides = all->sides[0] + batch->numUpperRows;
    if (Below(random, 2))
        batch->columnLower = all->lower[0], batch->columnLowerStride = MostColumns;
    if (Below(random, 2))
        batch->columnUpper = all->upper[0], batch->columnUpperStride = MostColumns;
}

static void AskForAll(Batch* all)
{
    all->batch.status = all->status;
    all->batch.proved = all->proved;
    all->batch.pivots = all->pivots;
    all->batch.objectives = all->objectives;
    all->batch.values = all->values;
    all->batch.reducedCosts = all->reducedCosts;
    all->batch.duals = all->duals;
}

/* Problem k of a batch as a model of its own. */
static NuvModel* ModelOf(const NuvBatch* batch, uint32_t k)
{
    NuvModel* model = NuvModelConstruct();
    NuvModelArrays arrays;
    uint64_t starts[MostRows + 1] = {0};
    uint32_t indices[MostRows * MostColumns];
    double values[MostRows * MostColumns];
    double rowLower[MostRows];
    double rowUpper[MostRows];
    uint32_t i;
    uint32_t j;
    CHECK_OK(NuvModelArraysInit(&arrays, sizeof arrays));
    arrays.numColumns = batch->numColumns;
    arrays.numRows = batch->numUpperRows + batch->numEqualRows;
    for (i = 0; i < arrays.numRows; ++i)
    {
        const int isUpper = i < batch->numUpperRows;
        const uint32_t row = isUpper ? i : i - batch->numUpperRows;
        const double* matrix = isUpper ? batch->upperMatrix + k * batch->upperStride
                                       : batch->equalMatrix + k * batch->equalStride;
        rowUpper[i] = isUpper ? batch->upperSides[k * batch->upperSidesStride + row]
                              : batch->equalSides[k * batch->equalSidesStride + row];
        rowLower[i] = isUpper ? -(double)INFINITY : rowUpper[i];
        for (j = 0; j < arrays.numColumns; ++j, ++arrays.numEntries)
        {
            indices[arrays.numEntries] = j;
            values[arrays.numEntries] = matrix[row * arrays.numColumns + j];
        }
        starts[i + 1] = arrays.numEntries;
    }
    arrays.costs = batch->costs ? batch->costs + k * batch->costsStride : NULL;
    arrays.columnLower =
        batch->columnLower ? batch->columnLower + k * batch->columnLowerStride : NULL;
    arrays.columnUpper =
        batch->columnUpper ? batch->columnUpper + k * batch->columnUpperStride : NULL;
    arrays.rowLower = rowLower;
    arrays.rowUpper = rowUpper;
    arrays.starts = starts;
    arrays.indices = indices;
    arrays.values = values;
    CHECK_OK(NuvModelAssignArrays(model, &arrays, NULL));
    return model;
}

static int IsNear(double left, double right)
{
    return fabs(left - right) <= 1e-9 * (1 + fabs(left) + fabs(right));
}

/* With an optimum the answer obeys its rows and bounds and the duals say the same optimum. */
static void CheckNumbers(const Batch* all, uint32_t k)
{
    const NuvBatch* batch = &all->batch;
    const uint32_t n = batch->numColumns;
    const double* x = all->values + k * n;
    const double* reduced = all->reducedCosts + k * n;
    const double* y = all->duals + k * (batch->numUpperRows + batch->numEqualRows);
    double primal = 0.0;
    double dual = 0.0;
    uint32_t i;
    uint32_t j;
    for (j = 0; j < n; ++j)
    {
        const double cost = batch->costs ? batch->costs[k * batch->costsStride + j] : 0.0;
        double priced = cost;
        primal += cost * x[j];
        dual += reduced[j] * x[j];
        for (i = 0; i < batch->numUpperRows; ++i)
            priced -= y[i] * batch->upperMatrix[k * batch->upperStride + i * n + j];
        if (batch->numEqualRows)
            priced -= y[i] * batch->equalMatrix[k * batch->equalStride + j];
        CHECK(IsNear(priced, reduced[j]));
    }
    for (i = 0; i < batch->numUpperRows; ++i)
    {
        CHECK(y[i] <= 0.0);
        dual += y[i] * batch->upperSides[k * batch->upperSidesStride + i];
    }
    if (batch->numEqualRows)
        dual += y[i] * batch->equalSides[k * batch->equalSidesStride];
    CHECK(IsNear(primal, all->objectives[k]) && IsNear(dual, all->objectives[k]));
}

static void CheckAlone(const Batch* all, uint32_t k)
{
    NuvModel* model = ModelOf(&all->batch, k);
    NuvSolveOptions options;
    NuvSolution* solution = NULL;
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.numbers = all->batch.numbers;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK(NuvSolutionGetStatus(solution) == (int32_t)all->status[k] && all->proved[k] == 1);
    if (all->status[k] == NUV_STATUS_Optimal)
    {
        /* The nearest doubles of two exact optima. */
        CHECK(NuvSolutionGetObjective(solution) == all->objectives[k]);
        CheckNumbers(all, k);
    }
    else
    {
        CHECK(isnan(all->objectives[k]));
        CHECK(all->batch.numColumns == 0 || isnan(all->values[k * all->batch.numColumns]));
    }
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
}

/* Cut into other ranges, and without the arrays that may be left out, the answers are the same. */
static void CheckRanges(Batch* all, Random* random)
{
    static Batch again;
    const uint32_t cut = Below(random, Count + 1);
    again = *all;
    memset(again.status, 0xFF, sizeof again.status);
    AskForAll(&again);
    again.batch.pivots = NULL;
    again.batch.reducedCosts = NULL;
    CHECK_OK(NuvModelSolveBatch(&again.batch, cut, Count, NULL));
    CHECK(cut == 0 || again.status[cut - 1] == UINT32_MAX);
    CHECK_OK(NuvModelSolveBatch(&again.batch, 0, cut, NULL));
    CHECK(memcmp(again.status, all->status, sizeof all->status) == 0);
    CHECK(memcmp(again.proved, all->proved, sizeof all->proved) == 0);
    CHECK(memcmp(again.values, all->values, sizeof all->values) == 0);
    CHECK(memcmp(again.duals, all->duals, sizeof all->duals) == 0);
    CHECK(memcmp(again.objectives, all->objectives, sizeof all->objectives) == 0);
}

static void TestRandomBatches(void)
{
    const int cases = CasesOf(200);
    static Batch all;
    uint32_t seen[4] = {0};
    uint32_t k;
    for (currentCase = 0; currentCase < (unsigned long long)cases; ++currentCase)
    {
        Random random = {currentCase + 1000};
        Fill(&all, &random);
        AskForAll(&all);
        CHECK_OK(NuvModelSolveBatch(&all.batch, 0, Count, NULL));
        for (k = 0; k < Count; ++k)
        {
            CHECK(all.status[k] < 3);
            ++seen[all.status[k] & 3];
            CheckAlone(&all, k);
        }
        CheckRanges(&all, &random);
    }
    currentCase = 0;
    /* Of all 200 cases, more than 100 answers of each kind; of fewer, as large a share. */
    for (k = 0; k < 3; ++k)
        CHECK(cases < 20 || 2 * seen[k] > (uint32_t)cases);
}

/* Problems without meaning, without an end and without a point do not touch those between them. */
static void TestStages(void)
{
    /* One of the entries has more digits than a few words hold. */
    const double costs[] = {-1, -1};
    const double rows[] = {1, 7.3e-40, 1, 1};
    const double sides[] = {4, 6};
    uint32_t status;
    uint8_t proved;
    double objective;
    NuvBatch batch;
    CHECK_OK(NuvBatchInit(&batch, sizeof batch));
    CHECK(batch.stages == NUV_STAGES_All);
    batch.numColumns = 2, batch.numUpperRows = 2, batch.count = 1;
    batch.costs = costs, batch.upperMatrix = rows, batch.upperSides = sides;
    batch.status = &status, batch.proved = &proved, batch.objectives = &objective;
    CHECK_OK(NuvModelSolveBatch(&batch, 0, 1, NULL));
    CHECK(status == NUV_STATUS_Optimal && proved == 1 && objective == -6);
    batch.stages = NUV_STAGES_WithoutProof;
    CHECK_OK(NuvModelSolveBatch(&batch, 0, 1, NULL));
    CHECK(status == NUV_STATUS_Optimal && proved == 0 && IsNear(objective, -6));
}

static void TestUnequalMembers(void)
{
    /* minimise -x - 2 y; x + y <= side, x - y = 0 */
    const double costs[] = {-1, -2};
    const double upperMatrix[][2] = {{1, 1}, {1, (double)NAN}, {1, 1}, {-1, -1}, {1, 1}, {1, 1}};
    const double sides[] = {4, 4, 5, 4, -2, -(double)INFINITY};
    const double equalMatrix[] = {1, -1};
    const double zero = 0;
    const uint32_t expected[] = {NUV_STATUS_Optimal,   NUV_STATUS_Invalid,    NUV_STATUS_Optimal,
                                 NUV_STATUS_Unbounded, NUV_STATUS_Infeasible, NUV_STATUS_Invalid};
    uint32_t status[6];
    uint8_t proved[6];
    uint64_t pivots[6];
    double values[12];
    double duals[12];
    NuvBatch batch;
    uint32_t k;
    CHECK_OK(NuvBatchInit(&batch, sizeof batch));
    batch.numColumns = 2, batch.numUpperRows = 1, batch.numEqualRows = 1, batch.count = 6;
    batch.costs = costs;
    batch.upperMatrix = upperMatrix[0], batch.upperStride = 2;
    batch.upperSides = sides, batch.upperSidesStride = 1;
    batch.equalMatrix = equalMatrix;
    batch.equalSides = &zero;
    batch.status = status, batch.proved = proved, batch.pivots = pivots;
    batch.values = values, batch.duals = duals;
    CHECK_OK(NuvModelSolveBatch(&batch, 0, 6, NULL));
    for (k = 0; k < 6; ++k)
    {
        currentCase = k;
        CHECK(status[k] == expected[k]);
        CHECK(proved[k] == (expected[k] != NUV_STATUS_Invalid));
        CHECK(isnan(values[2 * k]) == (expected[k] != NUV_STATUS_Optimal));
        CHECK(isnan(duals[2 * k + 1]) == (expected[k] != NUV_STATUS_Optimal));
    }
    currentCase = 0;
    CHECK(values[0] == 2 && values[1] == 2 && values[4] == 2.5 && values[5] == 2.5);
    CHECK(duals[0] == -1.5 && duals[1] == 0.5 && pivots[0] > 0);
    batch.pivotLimit = 0;
    CHECK_OK(NuvModelSolveBatch(&batch, 2, 3, NULL));
    CHECK(status[2] == NUV_STATUS_Stopped && proved[2] == 0 && isnan(values[4]) && pivots[2] == 0);
    CHECK(status[0] == NUV_STATUS_Optimal && values[0] == 2);
}

static void TestWrongBatches(void)
{
    const double number = 1.0;
    NuvBatch batch;
    NuvBatch good;
    NuvDiagnostics* diagnostics = NuvDiagnosticsConstruct();
    CHECK(NuvBatchInit(NULL, sizeof batch) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvBatchInit(&batch, 8) == NUV_MODELRESULT_InvalidArgument);
    CHECK_OK(NuvBatchInit(&good, sizeof good));
    good.numColumns = good.numUpperRows = good.numEqualRows = 1;
    good.count = 3;
    good.upperMatrix = good.upperSides = good.equalMatrix = good.equalSides = &number;
    CHECK_OK(NuvModelSolveBatch(&good, 0, 3, diagnostics));
    CHECK_OK(NuvModelSolveBatch(&good, 3, 3, diagnostics));
    CHECK(NuvModelSolveBatch(NULL, 0, 0, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelSolveBatch(&good, 2, 1, diagnostics) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvDiagnosticsGetCount(diagnostics) == 1);
    CHECK(NuvModelSolveBatch(&good, 0, 4, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelSolveBatch(&good, 0, 1, (NuvDiagnostics*)(void*)&batch) ==
          NUV_MODELRESULT_InvalidHandle);
    batch = good, batch.size = 8;
    CHECK(NuvModelSolveBatch(&batch, 0, 1, NULL) == NUV_MODELRESULT_InvalidArgument);
    batch = good, batch.numbers = 2;
    CHECK(NuvModelSolveBatch(&batch, 0, 1, NULL) == NUV_MODELRESULT_InvalidArgument);
    batch = good, batch.stages = NUV_STAGES_SinglePrecisionOnly;
    CHECK(NuvModelSolveBatch(&batch, 0, 1, NULL) == NUV_MODELRESULT_InvalidArgument);
    batch = good, batch.upperMatrix = NULL;
    CHECK(NuvModelSolveBatch(&batch, 0, 1, NULL) == NUV_MODELRESULT_InvalidArgument);
    batch = good, batch.equalSides = NULL;
    CHECK(NuvModelSolveBatch(&batch, 0, 1, NULL) == NUV_MODELRESULT_InvalidArgument);
    batch = good, batch.numColumns = UINT32_MAX;
    CHECK(NuvModelSolveBatch(&batch, 0, 1, NULL) == NUV_MODELRESULT_InvalidArgument);
    /* Without columns there is no matrix. */
    batch = good, batch.numColumns = 0, batch.upperMatrix = batch.equalMatrix = NULL;
    CHECK_OK(NuvModelSolveBatch(&batch, 0, 1, NULL));
    NuvDiagnosticsDestruct(diagnostics);
}

void TestBatches(void)
{
    TestRandomBatches();
    TestUnequalMembers();
    TestStages();
    TestWrongBatches();
}
