/* What happens when there is no memory: each call says so, changes nothing, and keeps nothing.
   Every request of a whole session is refused once, alone and with all that follow it. */
#include "Check.h"
#include "RefusingNew.h"

#include <limits.h>

/* A call under a refusing operator new: done, or told that there is no memory. */
static int Done(NuvModelResult result)
{
    CHECK(result == NUV_MODELRESULT_Ok || result == NUV_MODELRESULT_NoMemory);
    CHECK(result == NUV_MODELRESULT_Ok || CountsOfNew().refused > 0);
    return result == NUV_MODELRESULT_Ok;
}

static int32_t GoOn(void* userData, const NuvProgress* progress)
{
    (void)userData;
    (void)progress;
    return 1;
}

static void Ignore(void* userData, const char* line)
{
    (void)userData;
    (void)line;
}

/* Entries that go and come: all of a call or none. */
static void EditCoefficients(NuvModel* model, NuvDiagnostics* diagnostics)
{
    static const uint32_t rows[] = {0, 1, 0, 1};
    static const uint32_t columns[] = {0, 1, 0, 1};
    static const double numbers[] = {0.0, 0.0, 1.0, 0.5};
    const uint64_t entries = NuvModelGetNumEntries(model);
    if (!Done(NuvModelSetCoefficients(model, 2, rows, columns, numbers, diagnostics)))
    {
        CHECK(NuvModelGetNumEntries(model) == entries);
        return;
    }
    CHECK(NuvModelGetNumEntries(model) == entries - 2);
    if (!Done(NuvModelSetCoefficients(model, 2, rows, columns, numbers + 2, diagnostics)))
        CHECK(NuvModelGetNumEntries(model) == entries - 2);
}

/* A number and its double come together or not at all, and the other side of a row stays. */
static void StateExactly(NuvModel* model, NuvDiagnostics* diagnostics)
{
    const char* const third = "1/3333333333333333333333333333333333333333333333";
    const uint64_t entries = NuvModelGetNumEntries(model);
    char said[8] = "";
    if (!Done(NuvModelSetExact(model, NUV_PLACE_RowLower, 1, 0, "-1/3", diagnostics)))
        return;
    if (!Done(NuvModelSetExact(model, NUV_PLACE_RowUpper, 1, 0, "10/3", diagnostics)))
        CHECK(NuvModelGetExact(model, NUV_PLACE_RowUpper, 1, 0, said, sizeof said) == 0);
    CHECK(NuvModelGetExact(model, NUV_PLACE_RowLower, 1, 0, said, sizeof said) == 5);
    CHECK(strcmp(said, "-1/3") == 0);
    (void)Done(NuvModelSetExact(model, NUV_PLACE_RowLower, 1, 0, "-10", diagnostics));
    if (!Done(NuvModelSetExact(model, NUV_PLACE_Entry, 1, 0, third, diagnostics)))
        CHECK(NuvModelGetNumEntries(model) == entries &&
              NuvModelGetExact(model, NUV_PLACE_Entry, 1, 0, NULL, 0) == 0);
}

static void State(NuvModel* model, NuvDiagnostics* diagnostics)
{
    static const double upper[] = {4.0, 6.0};
    static const uint64_t starts[] = {0, 2, 4};
    static const uint32_t rows[] = {0, 1, 0, 1};
    static const double values[] = {1.0, 1.0, 0.5, 1.0};
    static const double costs[] = {3.0, 2.0};
    static const uint64_t rowStarts[] = {0, 2};
    static const uint32_t rowColumns[] = {0, 1};
    const double one = 1.0;
    NuvModelArrays arrays;
    CHECK_OK(NuvModelArraysInit(&arrays, sizeof arrays));
    arrays.sense = NUV_SENSE_Maximize;
    arrays.numColumns = arrays.numRows = 2;
    arrays.layout = NUV_LAYOUT_ByColumns;
    arrays.numEntries = 4;
    arrays.costs = costs;
    arrays.rowUpper = upper;
    arrays.starts = starts;
    arrays.indices = rows;
    arrays.values = values;
    arrays.columnNames = "a name too long to lie in a string itself\0x";
    arrays.columnNamesSize = 44;
    if (!Done(NuvModelAssignArrays(model, &arrays, diagnostics)))
    {
        CHECK(NuvModelGetNumColumns(model) == 0 && NuvModelGetNumRows(model) == 0);
        return;
    }
    if (!Done(NuvModelAddColumns(model, 1, &one, NULL, &one, NULL, 0, diagnostics)))
        CHECK(NuvModelGetNumColumns(model) == 2);
    if (!Done(NuvModelAddRows(model, 1, NULL, upper, rowStarts, rowColumns, values, NULL, 0,
                              diagnostics)))
        CHECK(NuvModelGetNumRows(model) == 2 && NuvModelGetNumEntries(model) == 4);
    EditCoefficients(model, diagnostics);
    (void)Done(NuvModelSetCosts(model, 1, NULL, &one, diagnostics));
    (void)Done(NuvModelSetRowBounds(model, 1, NULL, NULL, &one, diagnostics));
    (void)Done(NuvModelSetExact(model, NUV_PLACE_Cost, 0, 0, "10/3", diagnostics));
    StateExactly(model, diagnostics);
    (void)Done(NuvModelSetName(model, "a name too long to lie in a string itself"));
}

static void Report(const NuvModel* model, const NuvSolution* solution, NuvDiagnostics* diagnostics)
{
    NuvText* text;
    uint32_t kind;
    if (Done(NuvSolutionMakeJson(solution, &text)))
        NuvTextDestruct(text);
    if (Done(NuvSolutionMakeReport(solution, &text)))
        NuvTextDestruct(text);
    for (kind = 0; kind < 5; ++kind)
    {
        const NuvModelResult result = NuvSolutionMakeExact(solution, kind, &text);
        CHECK(result == NUV_MODELRESULT_Ok || text == NULL);
        NuvTextDestruct(text);
    }
    if (Done(NuvSolutionMakeCertificate(solution, &text)))
        (void)Done(NuvModelVerify(model, NuvTextGetData(text), NuvTextGetSize(text),
                                  NUV_NUMBERS_Written, NULL, diagnostics));
    NuvTextDestruct(text);
}

static void CheckClaimOf(const NuvModel* model, const NuvSolution* solution,
                         NuvDiagnostics* diagnostics)
{
    NuvText* json;
    NuvText* basis;
    NuvClaim* claim;
    uint32_t numColumns;
    uint32_t numRows;
    const uint8_t* columns = NuvSolutionGetColumnBasis(solution, &numColumns);
    const uint8_t* rows = NuvSolutionGetRowBasis(solution, &numRows);
    uint8_t again[16];
    CHECK(numColumns + numRows <= sizeof again);
    if (Done(NuvSolutionMakeJson(solution, &json)))
    {
        if (Done(NuvModelCheckClaimText(model, NuvTextGetData(json), NuvTextGetSize(json), NULL,
                                        NULL, &claim, diagnostics)))
        {
            NuvText* report = NULL;
            (void)Done(NuvClaimMakeReport(claim, &report));
            NuvTextDestruct(report);
        }
        NuvClaimDestruct(claim);
        NuvTextDestruct(json);
    }
    if (Done(NuvModelMakeBasisText(model, columns, numColumns, rows, numRows, &basis, diagnostics)))
        (void)Done(NuvModelReadBasisText(model, NuvTextGetData(basis), NuvTextGetSize(basis), NULL,
                                         again, numColumns, again + numColumns, numRows,
                                         diagnostics));
    NuvTextDestruct(basis);
}

static void Solve(const NuvModel* model, NuvDiagnostics* diagnostics)
{
    NuvSolveOptions options;
    NuvSolution* solution;
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.sensitivity = 1;
    options.progress = GoOn;
    options.log = Ignore;
    if (!Done(NuvModelSolve(model, &options, &solution, diagnostics)))
    {
        CHECK(solution == NULL);
        return;
    }
    CHECK(NuvSolutionIsProved(solution));
    Report(model, solution, diagnostics);
    CheckClaimOf(model, solution, diagnostics);
    NuvSolutionDestruct(solution);
}

static void SolveText(NuvModel* model, const char* text, NuvDiagnostics* diagnostics)
{
    NuvText* again;
    if (!Done(NuvModelReadText(model, text, strlen(text), "a.lp", NULL, diagnostics)))
        return;
    Solve(model, diagnostics);
    if (Done(NuvModelMakeText(model, NUV_FORMAT_Mps, &again, diagnostics)))
        (void)Done(NuvModelReadText(model, NuvTextGetData(again), NuvTextGetSize(again), "a.mps",
                                    NULL, diagnostics));
    NuvTextDestruct(again);
}

/* In a session that goes on after a solve has found no memory. */
static void SolveTwice(NuvModel* model, NuvDiagnostics* diagnostics)
{
    NuvSolver* solver = NuvSolverConstruct();
    NuvSolution* solution;
    const double upper = 2.5;
    if (!solver)
        return;
    if (Done(NuvSolverSolve(solver, model, NULL, &solution, diagnostics)))
        NuvSolutionDestruct(solution);
    if (NuvModelGetNumRows(model) != 0)
        (void)Done(NuvModelSetRowBounds(model, 1, NULL, NULL, &upper, diagnostics));
    if (Done(NuvSolverSolve(solver, model, NULL, &solution, diagnostics)))
    {
        CHECK(NuvSolutionIsProved(solution));
        NuvSolutionDestruct(solution);
    }
    NuvSolverDestruct(solver);
}

static void RepairText(const NuvModel* model, NuvDiagnostics* diagnostics)
{
    NuvRepair* repair;
    NuvModel* repaired;
    if (!Done(NuvModelRepair(model, NULL, NULL, NULL, &repair, diagnostics)))
        return;
    if (Done(NuvRepairMakeModel(repair, &repaired)))
        NuvModelDestruct(repaired);
    NuvRepairDestruct(repair);
}

static void Session(void)
{
    NuvModel* model = NuvModelConstruct();
    NuvDiagnostics* diagnostics = NuvDiagnosticsConstruct();
    NuvModel* copy = NULL;
    NuvText* text;
    CHECK((model && diagnostics) || CountsOfNew().refused > 0);
    if (model)
    {
        State(model, diagnostics);
        Solve(model, diagnostics);
        copy = NuvModelConstructCopy(model);
        CHECK(copy || CountsOfNew().refused > 0);
    }
    if (copy)
    {
        if (NuvModelGetNumRows(copy) != 0)
            (void)Done(NuvModelRemoveRows(copy, 1, NULL, diagnostics));
        SolveText(copy, "min\n x + y\nst\n c: x + y >= 3\n d: x <= 1\nbounds\n y <= 1\nend\n",
                  diagnostics);
        RepairText(copy, diagnostics);
        SolveText(copy, "max\n x + y\nst\n c: x - 2 y <= 3\nend\n", diagnostics);
        if (NuvModelReadText(copy, "min\n x y\nend", 12, NULL, NULL, diagnostics) ==
                NUV_MODELRESULT_BadText &&
            diagnostics && NuvDiagnosticsMakeText(diagnostics, &text) == NUV_MODELRESULT_Ok)
            NuvTextDestruct(text);
    }
    if (model)
        SolveTwice(model, diagnostics);
    NuvModelDestruct(copy);
    NuvModelDestruct(model);
    NuvDiagnosticsDestruct(diagnostics);
}

/* A model of so many entries in one call takes no request for each. */
static void TestRequestsOfALargeModel(void)
{
    enum
    {
        Rows = 2000,
        PerRow = 50
    };
    static uint64_t starts[Rows + 1];
    static uint32_t columns[Rows * PerRow];
    static double values[Rows * PerRow];
    NuvModel* model = NuvModelConstruct();
    NuvModelArrays arrays;
    uint32_t k;
    for (k = 0; k < Rows * PerRow; ++k)
    {
        columns[k] = (k % PerRow) * 7 + k / PerRow % 7;
        values[k] = 1.0 + k;
        starts[k / PerRow + 1] = k + 1;
    }
    CHECK_OK(NuvModelArraysInit(&arrays, sizeof arrays));
    arrays.numColumns = arrays.numRows = Rows;
    arrays.numEntries = Rows * PerRow;
    arrays.starts = starts;
    arrays.indices = columns;
    arrays.values = values;
    RefuseNew(0, 0);
    CHECK_OK(NuvModelAssignArrays(model, &arrays, NULL));
    printf("%llu requests for a model of %d rows and %d entries\n", CountsOfNew().asked, Rows,
           Rows * PerRow);
    CHECK(CountsOfNew().asked < 200);
    NuvModelDestruct(model);
}

/* Numbers and entries that are given one by one ask for memory of their own size, not for another
   model. */
static void TestEditsOneByOne(void)
{
    enum
    {
        Columns = 4000
    };
    const double one = 1.0;
    NuvModel* model = NuvModelConstruct();
    NuvModelArrays arrays;
    uint32_t column;
    const uint32_t row = 0;
    CHECK_OK(NuvModelArraysInit(&arrays, sizeof arrays));
    arrays.numColumns = Columns;
    arrays.numRows = 1;
    CHECK_OK(NuvModelAssignArrays(model, &arrays, NULL));
    RefuseNew(0, 0);
    for (column = 0; column < Columns; ++column)
        CHECK_OK(NuvModelSetExact(model, NUV_PLACE_Cost, column, 0, "1/3", NULL));
    printf("%llu bytes for %d exact costs\n", CountsOfNew().bytes, Columns);
    CHECK(CountsOfNew().bytes < 1000 * Columns);
    RefuseNew(0, 0);
    for (column = 0; column < Columns; ++column)
        CHECK_OK(NuvModelSetCoefficients(model, 1, &row, &column, &one, NULL));
    printf("%llu bytes for %d entries\n", CountsOfNew().bytes, Columns);
    CHECK(CountsOfNew().bytes < 100 * Columns);
    NuvModelDestruct(model);
}

int main(void)
{
    unsigned long long requests;
    unsigned long long at;
    unsigned long long step;
    TestRequestsOfALargeModel();
    TestEditsOneByOne();
    /* What the library makes once and keeps. */
    Session();
    RefuseNew(0, 0);
    Session();
    requests = CountsOfNew().asked;
    CHECK(requests > 500);
    /* Neighbours belong to one call mostly, and all of them take a minute. */
    step = requests / (unsigned long long)CasesOf(4500) + 1;
    for (at = 1; at <= requests; at += step)
    {
        const long long held = CountsOfNew().held;
        currentCase = at;
        RefuseNew(at, 1);
        Session();
        CHECK(CountsOfNew().refused == 1 && CountsOfNew().held == held);
        RefuseNew(at, ULLONG_MAX - at);
        Session();
        CHECK(CountsOfNew().refused >= 1 && CountsOfNew().held == held);
    }
    RefuseNew(0, 0);
    printf("each %llu-th of %llu requests refused, %d checks, %d failed\n", step, requests, checks,
           failures);
    return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
