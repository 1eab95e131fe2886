/* Solutions: what is known of them comes out whole, and outlives the model. */
#include "Check.h"

static int IsExact(const NuvSolution* solution, uint32_t kind, uint32_t index, const char* expected)
{
    char text[64] = "";
    const uint64_t size = NuvSolutionGetExact(solution, kind, index, text, sizeof text);
    return size == strlen(expected) + 1 && strcmp(text, expected) == 0;
}

static void CheckOptimum(const NuvSolution* solution)
{
    NuvSolutionInfo info;
    uint32_t count = 0;
    info.size = sizeof info;
    CHECK_OK(NuvSolutionGetInfo(solution, &info));
    CHECK(info.status == NUV_STATUS_Optimal && info.proved && info.numColumns == 2);
    CHECK(info.numRows == 2 && info.stopReason == NUV_STOPREASON_None);
    CHECK(info.objective == NuvSolutionGetObjective(solution));
    CHECK(info.objective == 29700.0 / 7.0 && info.seconds > 0.0);
    CHECK(NuvSolutionGetStatus(solution) == NUV_STATUS_Optimal && NuvSolutionIsProved(solution));
    CHECK(NuvSolutionGetValues(solution, &count)[1] == 360.0 / 7.0 && count == 2);
    CHECK(NuvSolutionGetActivities(solution, &count)[0] == 300.0 && count == 2);
    CHECK(NuvSolutionGetSlacks(solution, &count)[1] == 0.0 && count == 2);
    CHECK(NuvSolutionGetDuals(solution, &count)[0] == 95.0 / 7.0 && count == 2);
    CHECK(NuvSolutionGetReducedCosts(solution, NULL)[0] == 0.0);
    CHECK(NuvSolutionGetColumnBasis(solution, &count)[0] == NUV_BASISSTATUS_Basic && count == 2);
    CHECK(NuvSolutionGetRowBasis(solution, &count)[1] == NUV_BASISSTATUS_AtUpper && count == 2);
    CHECK(NuvSolutionGetRay(solution, &count) == NULL && count == 0);
    CHECK(NuvSolutionGetFarkas(solution, &count) == NULL && count == 0);
    CHECK(NuvSolutionGetIis(solution, &count) == NULL && count == 0);
    CHECK(IsExact(solution, NUV_EXACT_Objective, 0, "29700/7"));
    CHECK(IsExact(solution, NUV_EXACT_Values, 0, "150/7"));
    CHECK(IsExact(solution, NUV_EXACT_Duals, 0, "95/7"));
    CHECK(IsExact(solution, NUV_EXACT_Duals, 1, "5/7"));
    CHECK(NuvSolutionGetExact(solution, NUV_EXACT_Values, 2, NULL, 0) == 0);
    CHECK(NuvSolutionGetExact(solution, NUV_EXACT_Ray, 0, NULL, 0) == 0);
}

static void TestOptimum(void)
{
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    NuvSolveOptions options;
    NuvText* text;
    uint32_t count;
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.sensitivity = 1;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    /* The solution keeps what it is about. */
    NuvModelDestruct(model);
    CheckOptimum(solution);
    CHECK(NuvSolutionGetCostRanges(solution, &count)[0] == 28.0 && count == 4);
    CHECK(NuvSolutionGetRowUpperRanges(solution, &count)[0] == 120.0 && count == 4);
    CHECK(NuvSolutionGetRowLowerRanges(solution, &count) != NULL && count == 4);
    CHECK_OK(NuvSolutionMakeExact(solution, NUV_EXACT_Values, &text));
    CHECK(NuvTextGetSize(text) == 12 && memcmp(NuvTextGetData(text), "150/7\000360/7", 12) == 0);
    NuvTextDestruct(text);
    CHECK_OK(NuvSolutionMakeJson(solution, &text));
    CHECK(strstr(NuvTextGetData(text), "\"29700/7\"") != NULL);
    CHECK(strstr(NuvTextGetData(text), "\"tables\"") != NULL);
    NuvTextDestruct(text);
    CHECK_OK(NuvSolutionMakeReport(solution, &text));
    CHECK(strstr(NuvTextGetData(text), "exactly 29700/7") != NULL);
    NuvTextDestruct(text);
    NuvSolutionDestruct(solution);
}

/* Maximise x + y under x + y <= 4: each point of the side is optimal, and one dual prices it. With
   x <= 4 and y <= 4 binding too at (4, 4) under x + y <= 8, the point is alone, the duals are not.
 */
static void TestUniqueness(void)
{
    static const uint64_t starts[] = {0, 2};
    static const uint32_t columns[] = {0, 1};
    static const double ones[] = {1.0, 1.0};
    static const double sides[] = {4.0, 8.0};
    static const double upper[2][2] = {{(double)INFINITY, (double)INFINITY}, {4.0, 4.0}};
    static const uint32_t expected[2][2] = {{NUV_UNIQUENESS_NotUnique, NUV_UNIQUENESS_Unique},
                                            {NUV_UNIQUENESS_Unique, NUV_UNIQUENESS_NotUnique}};
    NuvSolveOptions options;
    NuvSolution* solution;
    size_t k;
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    CHECK(options.uniqueness == 0);
    for (k = 0; k < 2; ++k)
    {
        NuvModel* model = NuvModelConstruct();
        CHECK_OK(NuvModelAddColumns(model, 2, ones, NULL, upper[k], NULL, 0, NULL));
        CHECK_OK(NuvModelAddRows(model, 1, NULL, &sides[k], starts, columns, ones, NULL, 0, NULL));
        CHECK_OK(NuvModelSetSense(model, NUV_SENSE_Maximize));
        CHECK_OK(NuvModelSolve(model, NULL, &solution, NULL));
        CHECK(NuvSolutionGetPointUniqueness(solution) == NUV_UNIQUENESS_Unknown);
        CHECK(NuvSolutionGetDualUniqueness(solution) == NUV_UNIQUENESS_Unknown);
        NuvSolutionDestruct(solution);
        options.uniqueness = 1;
        CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
        CHECK(NuvSolutionGetPointUniqueness(solution) == expected[k][0]);
        CHECK(NuvSolutionGetDualUniqueness(solution) == expected[k][1]);
        NuvSolutionDestruct(solution);
        NuvModelDestruct(model);
    }
    CHECK(NuvSolutionGetPointUniqueness(NULL) == NUV_UNIQUENESS_Unknown);
    CHECK(NuvSolutionGetDualUniqueness(NULL) == NUV_UNIQUENESS_Unknown);
}

static void TestInfeasible(void)
{
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    NuvSolutionInfo info;
    const NuvIisMember* members;
    const double lower[] = {100.0, 1000.0};
    const uint32_t rows[] = {0, 1};
    uint32_t count = 0;
    info.size = sizeof info;
    CHECK_OK(NuvModelSetRowBounds(model, 2, rows, lower, NULL, NULL));
    CHECK_OK(NuvModelSolve(model, NULL, &solution, NULL));
    CHECK_OK(NuvSolutionGetInfo(solution, &info));
    CHECK(info.status == NUV_STATUS_Infeasible && info.proved && info.iisMinimal);
    CHECK(isnan(info.objective) && NuvSolutionGetValues(solution, &count) == NULL);
    members = NuvSolutionGetIis(solution, &count);
    CHECK(count == 2 && info.numIisMembers == 2);
    CHECK(members[0].isRow && members[0].index == 1 && members[1].isRow && members[1].index == 1);
    CHECK(members[0].isUpper + members[1].isUpper == 1);
    CHECK(NuvSolutionGetFarkas(solution, &count) != NULL || count == 0);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
}

static void TestUnbounded(void)
{
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    const double upper[] = {(double)INFINITY, (double)INFINITY};
    const double* ray;
    uint32_t count;
    CHECK_OK(NuvModelSetRowBounds(model, 2, NULL, NULL, upper, NULL));
    CHECK_OK(NuvModelSolve(model, NULL, &solution, NULL));
    CHECK(NuvSolutionGetStatus(solution) == NUV_STATUS_Unbounded && NuvSolutionIsProved(solution));
    ray = NuvSolutionGetRay(solution, &count);
    CHECK(count == 2 && 30.0 * ray[0] + 70.0 * ray[1] > 0.0);
    CHECK(NuvSolutionGetExact(solution, NUV_EXACT_Ray, 1, NULL, 0) > 1);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
}

/* As written, 0.7 + 0.2 + 0.1 is 1; the doubles next to these add up to another number. */
static void TestMeaningOfNumbers(void)
{
    const char* const text = "min\n a\nst\n sum: a + b + c = 1\nbounds\n a = 0.7\n b = 0.2\n"
                             " c = 0.1\nend\n";
    NuvModel* model = NuvModelConstruct();
    NuvSolution* solution;
    NuvSolveOptions options;
    CHECK_OK(NuvModelReadText(model, text, strlen(text), NULL, NULL, NULL));
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK(NuvSolutionGetStatus(solution) == NUV_STATUS_Optimal);
    CHECK(IsExact(solution, NUV_EXACT_Objective, 0, "7/10"));
    NuvSolutionDestruct(solution);
    options.numbers = NUV_NUMBERS_Stored;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK(NuvSolutionGetStatus(solution) == NUV_STATUS_Infeasible);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
}

typedef struct Told
{
    int calls;
    int stopAfter;
    int lines;
    char last[128];
} Told;

static int32_t Watch(void* userData, const NuvProgress* progress)
{
    Told* told = userData;
    ++told->calls;
    CHECK(progress->size == sizeof *progress && progress->seconds >= 0.0);
    CHECK(progress->stage <= NUV_STAGE_Exact);
    return told->calls != told->stopAfter;
}

static void Listen(void* userData, const char* line)
{
    Told* told = userData;
    ++told->lines;
    (void)snprintf(told->last, sizeof told->last, "%s", line);
}

static void TestCallbacksAndLimits(void)
{
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    NuvSolutionInfo info;
    NuvSolveOptions options;
    NuvText* text;
    Told told = {0, 0, 0, ""};
    info.size = sizeof info;
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    CHECK(options.seconds > 1e300 && options.doublePivots == UINT64_MAX && options.keepProof);
    options.progress = Watch;
    options.log = Listen;
    options.userData = &told;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK(told.calls > 0 && told.lines >= 3);
    CHECK(strncmp(told.last, "exact: ", 7) == 0);
    NuvSolutionDestruct(solution);

    told.stopAfter = told.calls + 1;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK_OK(NuvSolutionGetInfo(solution, &info));
    CHECK(info.status == NUV_STATUS_Stopped && info.stopReason == NUV_STOPREASON_Cancelled);
    CHECK(!info.proved);
    CHECK(NuvSolutionMakeCertificate(solution, &text) == NUV_MODELRESULT_NotKnown);
    CHECK(text == NULL);
    NuvSolutionDestruct(solution);

    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.singlePrecisionPivots = options.doublePivots = options.exactPivots = 0;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK_OK(NuvSolutionGetInfo(solution, &info));
    CHECK(info.status == NUV_STATUS_Stopped && info.stopReason == NUV_STOPREASON_PivotLimit);
    NuvSolutionDestruct(solution);

    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.stages = NUV_STAGES_SinglePrecisionOnly;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK_OK(NuvSolutionGetInfo(solution, &info));
    CHECK(info.status == NUV_STATUS_Optimal && !info.proved && info.singlePrecisionPivots > 0);
    NuvSolutionDestruct(solution);
    options.stages = NUV_STAGES_WithoutProof;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK_OK(NuvSolutionGetInfo(solution, &info));
    CHECK(info.status == NUV_STATUS_Optimal && !info.proved && !NuvSolutionIsProved(solution));
    CHECK(info.primalViolation < 1e-9 && info.dualViolation < 1e-9);
    CHECK(NuvSolutionMakeCertificate(solution, &text) == NUV_MODELRESULT_NotKnown);
    CHECK(NuvSolutionGetExact(solution, NUV_EXACT_Objective, 0, NULL, 0) == 0);
    NuvSolutionDestruct(solution);
    options.stages = NUV_STAGES_WithoutProof + 1;
    CHECK(NuvModelSolve(model, &options, &solution, NULL) == NUV_MODELRESULT_InvalidArgument);
    options.stages = NUV_STAGES_WithoutSinglePrecision;
    options.keepProof = 0;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK_OK(NuvSolutionGetInfo(solution, &info));
    CHECK(info.status == NUV_STATUS_Optimal && info.proved && info.singlePrecisionPivots == 0);
    CHECK(NuvSolutionMakeCertificate(solution, &text) == NUV_MODELRESULT_NotKnown);
    CHECK(NuvSolutionMakeExact(solution, NUV_EXACT_Values, &text) == NUV_MODELRESULT_NotKnown);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
}

static void TestCertificates(void)
{
    NuvModel* model = MakeFactory();
    NuvModel* other = MakeFactory();
    NuvDiagnostics* diagnostics = NuvDiagnosticsConstruct();
    NuvSolution* solution;
    NuvText* text;
    NuvVerification found;
    char* damaged;
    size_t size;
    const double cost = 29.0;
    found.size = sizeof found;
    CHECK_OK(NuvModelSetCosts(other, 1, NULL, &cost, NULL));
    CHECK_OK(NuvModelSolve(model, NULL, &solution, NULL));
    CHECK_OK(NuvSolutionMakeCertificate(solution, &text));
    size = (size_t)NuvTextGetSize(text);
    CHECK_OK(NuvModelVerify(model, NuvTextGetData(text), size, NUV_NUMBERS_Written, &found,
                            diagnostics));
    CHECK(found.status == NUV_STATUS_Optimal && found.objective == 29700.0 / 7.0);
    CHECK(NuvModelVerify(other, NuvTextGetData(text), size, NUV_NUMBERS_Written, &found,
                         diagnostics) == NUV_MODELRESULT_Refused);
    CHECK(NuvDiagnosticsGetCount(diagnostics) == 1);
    CHECK(NuvModelVerify(model, NuvTextGetData(text), size / 2, NUV_NUMBERS_Written, NULL, NULL) ==
          NUV_MODELRESULT_BadText);
    damaged = malloc(size);
    CHECK(damaged != NULL);
    if (damaged)
    {
        char* point;
        memcpy(damaged, NuvTextGetData(text), size);
        damaged[size - 1] = '\0';
        point = strstr(damaged, "150/7");
        CHECK(point != NULL);
        if (point)
            point[0] = '2';
        damaged[size - 1] = '\n';
        CHECK(NuvModelVerify(model, damaged, size, NUV_NUMBERS_Written, NULL, diagnostics) ==
              NUV_MODELRESULT_Refused);
    }
    free(damaged);
    NuvTextDestruct(text);
    NuvSolutionDestruct(solution);
    NuvDiagnosticsDestruct(diagnostics);
    NuvModelDestruct(model);
    NuvModelDestruct(other);
}

/* The optimum in a certificate is that of the model, whose constant may be a number of its own. */
static void TestConstantsInCertificates(void)
{
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    NuvText* text;
    NuvVerification found;
    found.size = sizeof found;
    CHECK_OK(NuvModelSetExact(model, NUV_PLACE_Constant, 0, 0, "9007199254740993/7", NULL));
    CHECK_OK(NuvModelSolve(model, NULL, &solution, NULL));
    CHECK_OK(NuvSolutionMakeCertificate(solution, &text));
    CHECK_OK(NuvModelVerify(model, NuvTextGetData(text), NuvTextGetSize(text), NUV_NUMBERS_Written,
                            &found, NULL));
    CHECK(found.objective == NuvSolutionGetObjective(solution));
    NuvTextDestruct(text);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
}

void TestSolutions(void)
{
    TestOptimum();
    TestUniqueness();
    TestInfeasible();
    TestUnbounded();
    TestMeaningOfNumbers();
    TestCallbacksAndLimits();
    TestCertificates();
    TestConstantsInCertificates();
}

enum
{
    Columns = 5,
    Rows = 4
};

static NuvModel* MakeRandom(Random* random)
{
    double costs[Columns];
    double lower[Columns];
    double upper[Columns];
    double rowUpper[Rows];
    uint64_t starts[Rows + 1] = {0};
    uint32_t columns[Rows * Columns];
    double values[Rows * Columns];
    uint32_t end = 0;
    uint32_t i;
    uint32_t j;
    NuvModel* model = NuvModelConstruct();
    for (j = 0; j < Columns; ++j)
    {
        costs[j] = SmallNumber(random);
        lower[j] = Below(random, 3) == 0 ? -1.0 : 0.0;
        upper[j] = Below(random, 3) == 0 ? 2.5 : (double)INFINITY;
    }
    for (i = 0; i < Rows; ++i)
    {
        rowUpper[i] = SmallNumber(random) + 1.0;
        for (j = 0; j < Columns; ++j)
        {
            if (Below(random, 3) == 0)
                continue;
            values[end] = SmallNumber(random);
            columns[end++] = j;
        }
        starts[i + 1] = end;
    }
    CHECK_OK(NuvModelAddColumns(model, Columns, costs, lower, upper, NULL, 0, NULL));
    CHECK_OK(NuvModelAddRows(model, Rows, NULL, rowUpper, starts, columns, values, NULL, 0, NULL));
    CHECK_OK(NuvModelSetSense(model, Below(random, 2)));
    return model;
}

/* Each verdict is proved, and the proof confirms it. */
static uint32_t CheckRandom(Random* random)
{
    NuvModel* model = MakeRandom(random);
    NuvSolution* solution;
    NuvText* text;
    NuvVerification found;
    uint32_t status;
    found.size = sizeof found;
    CHECK_OK(NuvModelSolve(model, NULL, &solution, NULL));
    status = (uint32_t)NuvSolutionGetStatus(solution);
    CHECK(status < NUV_STATUS_Stopped && NuvSolutionIsProved(solution));
    CHECK_OK(NuvSolutionMakeCertificate(solution, &text));
    CHECK_OK(NuvModelVerify(model, NuvTextGetData(text), NuvTextGetSize(text), NUV_NUMBERS_Written,
                            &found, NULL));
    CHECK(found.status == status);
    if (status == NUV_STATUS_Optimal)
        CHECK(found.objective == NuvSolutionGetObjective(solution));
    else
        CHECK(isnan(found.objective) && NuvSolutionGetValues(solution, NULL) == NULL);
    CHECK((NuvSolutionGetIis(solution, NULL) != NULL) == (status == NUV_STATUS_Infeasible));
    CHECK((NuvSolutionGetRay(solution, NULL) != NULL) == (status == NUV_STATUS_Unbounded));
    NuvTextDestruct(text);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
    return status;
}

void TestRandomSolutions(void)
{
    const int cases = CasesOf(2000);
    int seen[3] = {0, 0, 0};
    for (currentCase = 0; currentCase < (unsigned long long)cases; ++currentCase)
    {
        Random random = {currentCase};
        ++seen[CheckRandom(&random) % 3];
    }
    currentCase = 0;
    CHECK(seen[0] > cases / 20 && seen[1] > cases / 100 && seen[2] > cases / 20);
}
