/* Bases as arrays and as MPS basis files. */
#include "Check.h"

enum
{
    Columns = 2,
    Rows = 2
};

/* Both products are made, so both rows rest at their upper sides. */
static const uint8_t optimalColumns[] = {NUV_BASISSTATUS_Basic, NUV_BASISSTATUS_Basic};
static const uint8_t optimalRows[] = {NUV_BASISSTATUS_AtUpper, NUV_BASISSTATUS_AtUpper};

static void TestBasesComeBack(void)
{
    static const char* const paths[] = {"c_interface.bas", "c_interface.bas.gz"};
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    NuvText* text;
    uint32_t numColumns;
    uint32_t numRows;
    const uint8_t* columns;
    const uint8_t* rows;
    size_t k;
    CHECK_OK(NuvModelSolve(model, NULL, &solution, NULL));
    columns = NuvSolutionGetColumnBasis(solution, &numColumns);
    rows = NuvSolutionGetRowBasis(solution, &numRows);
    CHECK(numColumns == Columns && memcmp(columns, optimalColumns, Columns) == 0);
    CHECK(numRows == Rows && memcmp(rows, optimalRows, Rows) == 0);
    for (k = 0; k < sizeof paths / sizeof *paths; ++k)
    {
        uint8_t readColumns[Columns] = {9, 9};
        uint8_t readRows[Rows] = {9, 9};
        CHECK_OK(NuvModelWriteBasis(model, paths[k], columns, numColumns, rows, numRows, NULL));
        CHECK_OK(NuvModelReadBasis(model, paths[k], readColumns, Columns, readRows, Rows, NULL));
        CHECK(memcmp(readColumns, columns, Columns) == 0 && memcmp(readRows, rows, Rows) == 0);
        (void)remove(paths[k]);
    }
    CHECK_OK(NuvModelMakeBasisText(model, columns, numColumns, rows, numRows, &text, NULL));
    CHECK(strstr(NuvTextGetData(text), "XU chairs") != NULL);
    NuvTextDestruct(text);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
}

/* A solve from the basis of its own optimum needs no pivot, wherever that basis was kept. */
static void TestBasisOfAFileIsAStart(void)
{
    static const char kept[] = "NAME factory\n XU chairs wood\n XU tables labour\nENDATA\n";
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    NuvSolveOptions options;
    NuvSolutionInfo info;
    uint8_t columns[Columns];
    uint8_t rows[Rows];
    info.size = sizeof info;
    CHECK_OK(
        NuvModelReadBasisText(model, kept, strlen(kept), NULL, columns, Columns, rows, Rows, NULL));
    CHECK(memcmp(columns, optimalColumns, Columns) == 0 && memcmp(rows, optimalRows, Rows) == 0);
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.startColumnBasis = columns;
    options.numStartColumns = Columns;
    options.startRowBasis = rows;
    options.numStartRows = Rows;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK_OK(NuvSolutionGetInfo(solution, &info));
    CHECK(info.status == NUV_STATUS_Optimal && info.proved);
    CHECK(info.singlePrecisionPivots + info.doublePivots + info.exactPivots == 0);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
}

static void TestWhatIsNoBasis(void)
{
    static const char unknown[] = "NAME factory\n XU stools wood\nENDATA\n";
    static const uint8_t none[] = {NUV_BASISSTATUS_AtLower, NUV_BASISSTATUS_AtLower};
    static const uint8_t wrong[] = {NUV_BASISSTATUS_Basic, NUV_BASISSTATUS_Free + 1};
    NuvModel* model = MakeFactory();
    NuvDiagnostics* diagnostics = NuvDiagnosticsConstruct();
    NuvDiagnostic said;
    NuvText* text = (NuvText*)(void*)model;
    uint8_t columns[] = {7, 7};
    uint8_t rows[] = {7, 7};
    said.size = sizeof said;
    CHECK(NuvModelReadBasisText(model, unknown, strlen(unknown), "a.bas", columns, Columns, rows,
                                Rows, diagnostics) == NUV_MODELRESULT_BadText);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(said.line == 2 && strcmp(said.file, "a.bas") == 0);
    CHECK(strstr(said.text, "stools") != NULL && columns[0] == 7 && rows[1] == 7);
    CHECK(NuvModelReadBasis(model, "there-is-no-such-file.bas", columns, Columns, rows, Rows,
                            diagnostics) == NUV_MODELRESULT_CannotRead);
    CHECK(NuvModelReadBasis(model, "x", columns, 1, rows, Rows, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelReadBasis(model, "x", columns, Columns, NULL, Rows, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelReadBasis(model, NULL, columns, Columns, rows, Rows, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelReadBasisText(model, NULL, 3, NULL, columns, Columns, rows, Rows, NULL) ==
          NUV_MODELRESULT_InvalidArgument);

    /* All four rest: no basis has so few basic members. */
    CHECK(NuvModelMakeBasisText(model, none, Columns, none, Rows, &text, diagnostics) ==
          NUV_MODELRESULT_CannotWrite);
    CHECK(text == NULL);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(strcmp(said.code, "basis.none") == 0);
    CHECK(NuvModelMakeBasisText(model, optimalColumns, 1, optimalRows, Rows, &text, NULL) ==
          NUV_MODELRESULT_CannotWrite);
    CHECK(NuvModelMakeBasisText(model, wrong, Columns, optimalRows, Rows, &text, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelMakeBasisText(model, NULL, Columns, optimalRows, Rows, &text, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelMakeBasisText(model, optimalColumns, Columns, optimalRows, Rows, NULL, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelWriteBasis(model, "no/such/directory.bas", optimalColumns, Columns, optimalRows,
                             Rows, diagnostics) == NUV_MODELRESULT_CannotWrite);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(strcmp(said.code, "file.unwritable") == 0);
    CHECK(NuvModelWriteBasis(model, NULL, optimalColumns, Columns, optimalRows, Rows, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    NuvDiagnosticsDestruct(diagnostics);
    NuvModelDestruct(model);
}

void TestBases(void)
{
    TestBasesComeBack();
    TestBasisOfAFileIsAStart();
    TestWhatIsNoBasis();
}
