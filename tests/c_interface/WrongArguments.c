/* Null, foreign and senseless arguments: each has its result, and none does harm. */
#include "Check.h"

static void TestNullAndForeignHandles(void)
{
    NuvModel* model = MakeFactory();
    NuvDiagnostics* diagnostics = NuvDiagnosticsConstruct();
    uint64_t zeros[64] = {0};
    const NuvModel* const wrong[] = {NULL, (const NuvModel*)(const void*)zeros,
                                     (const NuvModel*)(const void*)diagnostics};
    NuvSolution* solution = (NuvSolution*)(void*)model;
    NuvText* text = (NuvText*)(void*)model;
    NuvClaim* claim = (NuvClaim*)(void*)model;
    NuvModelArrays arrays;
    double number = 1.0;
    uint32_t count = 7;
    size_t k;
    arrays.size = sizeof arrays;
    for (k = 0; k < sizeof wrong / sizeof *wrong; ++k)
    {
        NuvModel* bad = (NuvModel*)(uintptr_t)wrong[k];
        NuvSolution* badSolution = (NuvSolution*)(void*)bad;
        currentCase = k;
        CHECK(NuvModelConstructCopy(bad) == NULL && NuvModelGetName(bad) == NULL);
        CHECK(NuvModelGetNumColumns(bad) == 0 && NuvModelGetNumEntries(bad) == 0);
        CHECK(NuvModelFindRow(bad, "wood") == NUV_MODEL_NO_INDEX);
        CHECK(NuvModelGetColumnName(bad, 0, NULL, 0) == 0);
        CHECK(NuvModelGetArrays(bad, &arrays) == NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvModelSetSense(bad, 0) == NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvModelSetName(bad, "x") == NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvModelAddColumns(bad, 0, NULL, NULL, NULL, NULL, 0, NULL) ==
              NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvModelAddRows(bad, 0, NULL, NULL, NULL, NULL, NULL, NULL, 0, NULL) ==
              NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvModelSetCosts(bad, 0, NULL, &number, NULL) == NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvModelRead(bad, "x", NULL, NULL) == NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvModelSolve(bad, NULL, &solution, NULL) == NUV_MODELRESULT_InvalidHandle);
        CHECK(solution == NULL);
        CHECK(NuvModelMakeText(bad, 0, &text, NULL) == NUV_MODELRESULT_InvalidHandle);
        CHECK(text == NULL);
        CHECK(NuvSolutionGetStatus(badSolution) == -1 && !NuvSolutionIsProved(badSolution));
        CHECK(isnan(NuvSolutionGetObjective(badSolution)));
        CHECK(NuvSolutionGetValues(badSolution, &count) == NULL && count == 0);
        CHECK(NuvSolutionGetExact(badSolution, 0, 0, NULL, 0) == 0);
        CHECK(NuvSolutionMakeJson(badSolution, &text) == NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvSolutionGetPointUniqueness(badSolution) == NUV_UNIQUENESS_Unknown);
        CHECK(NuvSolutionGetDualUniqueness(badSolution) == NUV_UNIQUENESS_Unknown);
        CHECK(NuvModelCheckClaim(bad, "x", NULL, &claim, NULL) == NUV_MODELRESULT_InvalidHandle);
        CHECK(claim == NULL);
        CHECK(NuvModelCheckValues(bad, &number, 1, NULL, &claim, NULL) ==
              NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvClaimMakeJson((NuvClaim*)(void*)bad, &text) == NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvClaimGetDisagreement((NuvClaim*)(void*)bad, 0, NULL) == NULL);
        CHECK(NuvClaimGetExactOptimum((NuvClaim*)(void*)bad, NULL, 0) == 0);
        NuvClaimDestruct((NuvClaim*)(void*)bad);
        CHECK(NuvModelReadBasis(bad, "x", NULL, 0, NULL, 0, NULL) == NUV_MODELRESULT_InvalidHandle);
        CHECK(NuvModelWriteBasis(bad, "x", NULL, 0, NULL, 0, NULL) ==
              NUV_MODELRESULT_InvalidHandle);
        if (k != 2)
            CHECK(NuvDiagnosticsGetCount((const NuvDiagnostics*)(const void*)wrong[k]) == 0);
        CHECK(NuvTextGetData((const NuvText*)(const void*)wrong[k]) == NULL);
        NuvModelDestruct(bad);
        NuvSolutionDestruct(badSolution);
        NuvTextDestruct((NuvText*)(void*)bad);
        CHECK(NuvModelSetConstant(model, 0.0, (NuvDiagnostics*)(void*)zeros) ==
              NUV_MODELRESULT_InvalidHandle);
    }
    currentCase = 0;
    CHECK(NuvDiagnosticsGetCount(diagnostics) == 0);
    NuvDiagnosticsDestruct(diagnostics);
    NuvModelDestruct(model);
}

static void TestSizesOfRecords(void)
{
    struct
    {
        NuvSolveOptions options;
        uint64_t later;
    } longer;
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    NuvSolutionInfo info;
    NuvDiagnostic said;
    CHECK(NuvSolveOptionsInit(&longer.options, 8) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvSolveOptionsInit(&longer.options, UINT32_MAX) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvSolveOptionsInit(NULL, sizeof longer.options) == NUV_MODELRESULT_InvalidArgument);
    /* Of a later version: fine as long as it asks for nothing more. */
    longer.later = 1;
    CHECK_OK(NuvSolveOptionsInit(&longer.options, sizeof longer));
    CHECK(longer.options.size == sizeof longer && longer.later == 0);
    CHECK_OK(NuvModelSolve(model, &longer.options, &solution, NULL));
    NuvSolutionDestruct(solution);
    longer.later = 1;
    CHECK(NuvModelSolve(model, &longer.options, &solution, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(solution == NULL);
    CHECK_OK(NuvModelSolve(model, NULL, &solution, NULL));
    info.size = sizeof info - 8;
    CHECK(NuvSolutionGetInfo(solution, &info) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvSolutionGetInfo(solution, NULL) == NUV_MODELRESULT_InvalidArgument);
    said.size = sizeof said;
    CHECK(NuvDiagnosticsGet(NULL, 0, &said) == NUV_MODELRESULT_InvalidHandle);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
}

static void TestWrongNumbers(void)
{
    NuvModel* model = MakeFactory();
    NuvSolveOptions options;
    NuvSolution* solution;
    NuvText* text;
    const double nan = (double)NAN;
    const uint32_t second = 2;
    const uint64_t decreasing[] = {0, 2, 1};
    const uint64_t late[] = {1, 2};
    CHECK(NuvModelSetSense(model, 2) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelSetConstant(model, nan, NULL) == NUV_MODELRESULT_InvalidModel);
    CHECK(NuvModelSetCosts(model, 1, NULL, &nan, NULL) == NUV_MODELRESULT_InvalidModel);
    CHECK(NuvModelSetCosts(model, 1, NULL, NULL, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelSetCosts(model, 1, &second, &nan, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelSetCosts(model, 3, NULL, &nan, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelSetColumnBounds(model, 1, NULL, &nan, NULL, NULL) ==
          NUV_MODELRESULT_InvalidModel);
    CHECK(NuvModelRemoveRows(model, 1, &second, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelAddRows(model, 2, NULL, NULL, decreasing, &second, &nan, NULL, 0, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelAddRows(model, 1, NULL, NULL, late, &second, &nan, NULL, 0, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelAddColumns(model, UINT32_MAX, NULL, NULL, NULL, NULL, 0, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelMakeText(model, 5, &text, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.seconds = nan;
    CHECK(NuvModelSolve(model, &options, &solution, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.stages = NUV_STAGES_WithoutProof + 1;
    CHECK(NuvModelSolve(model, &options, &solution, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelSolve(model, NULL, NULL, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelGetResultName(11) == NULL && NuvModelGetResultName(-1) == NULL);
    CHECK(strcmp(NuvModelGetResultName(NUV_MODELRESULT_Internal), "Internal") == 0);
    NuvModelDestruct(model);
}

void TestWrongArguments(void)
{
    TestNullAndForeignHandles();
    TestSizesOfRecords();
    TestWrongNumbers();
}

/* Numbers as a confused caller might have them. */
static double AnyNumber(Random* random)
{
    static const double odd[] = {0.0,         -0.0,  (double)INFINITY, -(double)INFINITY,
                                 (double)NAN, 1e308, -1e-308,          1e30};
    return Below(random, 4) == 0 ? odd[Below(random, 8)] : SmallNumber(random);
}

typedef struct Arguments
{
    uint32_t count;
    uint64_t starts[5];
    uint32_t rows[8];
    uint32_t columns[8];
    double numbers[8];
    double others[8];
} Arguments;

static void MakeArguments(Arguments* made, Random* random)
{
    uint32_t k;
    made->count = Below(random, 5);
    made->starts[0] = Below(random, 20) == 0;
    for (k = 1; k < 5; ++k)
        made->starts[k] = Below(random, 10) == 0 ? Below(random, 8) : made->starts[k - 1] + 1;
    for (k = 0; k < 8; ++k)
    {
        made->rows[k] = Below(random, 6);
        made->columns[k] = Below(random, 6);
        made->numbers[k] = AnyNumber(random);
        made->others[k] = AnyNumber(random);
    }
}

/* One call with arguments that may be anything, but for arrays that are too short. */
static NuvModelResult CallAnything(NuvModel* model, const Arguments* given, Random* random)
{
    const double* numbers = Below(random, 6) ? given->numbers : NULL;
    const double* others = Below(random, 6) ? given->others : NULL;
    const uint32_t* columns = Below(random, 6) ? given->columns : NULL;
    const uint32_t* rows = Below(random, 6) ? given->rows : NULL;
    static const char someNames[] = "a\0b\0\0c\0d";
    const char* names = Below(random, 3) ? NULL : someNames;
    const uint64_t size = names ? sizeof someNames - Below(random, 4) : Below(random, 8) == 0;
    switch (Below(random, 8))
    {
    case 0:
        return NuvModelAddColumns(model, given->count, numbers, others, NULL, names, size, NULL);
    case 1:
        return NuvModelAddRows(model, given->count, numbers, others, given->starts, columns,
                               given->numbers, names, size, NULL);
    case 2:
        return NuvModelSetCosts(model, given->count, columns, numbers, NULL);
    case 3:
        return NuvModelSetColumnBounds(model, given->count, columns, numbers, others, NULL);
    case 4:
        return NuvModelSetRowBounds(model, given->count, rows, numbers, others, NULL);
    case 5:
        return NuvModelSetCoefficients(model, given->count, rows, columns, numbers, NULL);
    case 6:
        return NuvModelRemoveColumns(model, given->count / 2, columns, NULL);
    default:
        return NuvModelRemoveRows(model, given->count / 2, rows, NULL);
    }
}

/* Whatever was asked for, the model is one that can be written, and solved to a proof. */
void TestRandomCalls(void)
{
    const int cases = CasesOf(5000);
    int refused = 0;
    int taken = 0;
    for (currentCase = 0; currentCase < (unsigned long long)cases; ++currentCase)
    {
        Random random = {currentCase};
        NuvModel* model = NuvModelConstruct();
        NuvSolution* solution = NULL;
        NuvSolveOptions options;
        NuvText* text = NULL;
        int step;
        for (step = 0; step < 10; ++step)
        {
            Arguments arguments;
            NuvModelResult result;
            MakeArguments(&arguments, &random);
            result = CallAnything(model, &arguments, &random);
            CHECK(result == NUV_MODELRESULT_Ok || result == NUV_MODELRESULT_InvalidArgument ||
                  result == NUV_MODELRESULT_InvalidModel);
            if (result == NUV_MODELRESULT_Ok)
                ++taken;
            else
                ++refused;
        }
        CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
        options.doublePivots = options.exactPivots = 200;
        CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
        CHECK(NuvSolutionIsProved(solution) ||
              NuvSolutionGetStatus(solution) == NUV_STATUS_Stopped);
        CHECK_OK(NuvSolutionMakeJson(solution, &text));
        NuvTextDestruct(text);
        NuvSolutionDestruct(solution);
        NuvModelDestruct(model);
    }
    currentCase = 0;
    CHECK(taken > 2 * cases && refused > cases);
}
