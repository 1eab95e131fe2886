/* Models: what is put in comes out, what is refused changes nothing. */
#include "Check.h"

static void TestArraysComeBack(void)
{
    NuvModel* model = MakeFactory();
    NuvModelArrays held;
    char name[16];
    NuvText* names;

    CHECK(NuvModelGetNumColumns(model) == 2);
    CHECK(NuvModelGetNumRows(model) == 2);
    CHECK(NuvModelGetNumEntries(model) == 4);
    held.size = sizeof held;
    CHECK_OK(NuvModelGetArrays(model, &held));
    CHECK(held.size == sizeof held && held.sense == NUV_SENSE_Maximize);
    CHECK(held.layout == NUV_LAYOUT_ByRows && held.numEntries == 4 && held.constant == 0.0);
    CHECK(held.starts[0] == 0 && held.starts[1] == 2 && held.starts[2] == 4);
    CHECK(held.indices[2] == 0 && held.indices[3] == 1);
    CHECK(held.values[1] == 5.0 && held.values[2] == 4.0);
    CHECK(held.costs[1] == 70.0 && held.columnLower[0] == 0.0 && isinf(held.columnUpper[0]));
    CHECK(isinf(held.rowLower[1]) && held.rowUpper[1] == 240.0);
    CHECK(held.columnNames == NULL && held.rowNames == NULL);

    CHECK(NuvModelGetColumnName(model, 1, name, sizeof name) == 7 && strcmp(name, "tables") == 0);
    CHECK(NuvModelGetRowName(model, 1, name, 4) == 7 && strcmp(name, "lab") == 0);
    CHECK(NuvModelGetRowName(model, 1, NULL, 0) == 7);
    CHECK(NuvModelGetRowName(model, 2, name, sizeof name) == 0);
    CHECK(NuvModelFindColumn(model, "tables") == 1);
    CHECK(NuvModelFindRow(model, "labour") == 1);
    CHECK(NuvModelFindRow(model, "tables") == NUV_MODEL_NO_INDEX);
    CHECK_OK(NuvModelMakeColumnNames(model, &names));
    CHECK(NuvTextGetSize(names) == 14);
    CHECK(memcmp(NuvTextGetData(names), "chairs\0tables", 14) == 0);
    NuvTextDestruct(names);
    CHECK_OK(NuvModelMakeRowNames(model, &names));
    CHECK(NuvTextGetSize(names) == 12);
    CHECK(memcmp(NuvTextGetData(names), "wood\0labour", 12) == 0);
    NuvTextDestruct(names);
    NuvModelDestruct(model);
}

static void TestNamesAreMadeWhereNoneAreGiven(void)
{
    NuvModel* model = NuvModelConstruct();
    char name[16];
    CHECK_OK(NuvModelAddColumns(model, 3, NULL, NULL, NULL, "x3\0\0y", 6, NULL));
    CHECK(NuvModelGetColumnName(model, 1, name, sizeof name) == 3 && strcmp(name, "x2") == 0);
    CHECK_OK(NuvModelAddColumns(model, 1, NULL, NULL, NULL, NULL, 0, NULL));
    CHECK(NuvModelGetColumnName(model, 3, name, sizeof name) == 3 && strcmp(name, "x4") == 0);
    CHECK_OK(NuvModelAddRows(model, 2, NULL, NULL, NULL, NULL, NULL, NULL, 0, NULL));
    CHECK(NuvModelGetRowName(model, 1, name, sizeof name) == 3 && strcmp(name, "R2") == 0);
    NuvModelDestruct(model);
}

static void TestRefusedCallsChangeNothing(void)
{
    NuvModel* model = MakeFactory();
    NuvDiagnostics* diagnostics = NuvDiagnosticsConstruct();
    NuvDiagnostic said;
    const double bounds[] = {0.0, 0.0, (double)NAN};
    const uint64_t starts[] = {0, 1, 3};
    const uint32_t columns[] = {0, 1, 1};
    const double values[] = {1.0, 2.0, 3.0};
    said.size = sizeof said;

    CHECK(NuvModelAddColumns(model, 3, NULL, bounds, NULL, NULL, 0, diagnostics) ==
          NUV_MODELRESULT_InvalidModel);
    CHECK(NuvDiagnosticsGetCount(diagnostics) == 1);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(strcmp(said.code, "model.not-a-number") == 0 && said.severity == NUV_SEVERITY_Error);
    CHECK(strstr(said.text, "column 4") != NULL && said.line == 0);

    CHECK(NuvModelAddColumns(model, 2, NULL, NULL, NULL, "desks\0chairs", 13, diagnostics) ==
          NUV_MODELRESULT_InvalidModel);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(strcmp(said.code, "model.duplicate-variable") == 0);
    CHECK(NuvModelAddColumns(model, 2, NULL, NULL, NULL, "desks\0desks", 12, diagnostics) ==
          NUV_MODELRESULT_InvalidModel);
    CHECK(NuvModelAddColumns(model, 2, NULL, NULL, NULL, "desks", 6, diagnostics) ==
          NUV_MODELRESULT_InvalidArgument);

    CHECK(NuvModelAddRows(model, 2, NULL, NULL, starts, columns, values, NULL, 0, diagnostics) ==
          NUV_MODELRESULT_InvalidModel);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(strcmp(said.code, "model.repeated-entry") == 0 && strstr(said.text, "row 3") != NULL);

    CHECK(NuvModelGetNumColumns(model) == 2 && NuvModelGetNumRows(model) == 2);
    CHECK(NuvModelFindColumn(model, "desks") == NUV_MODEL_NO_INDEX);
    CHECK_OK(NuvModelAddColumns(model, 1, NULL, NULL, NULL, "desks", 6, diagnostics));
    CHECK(NuvDiagnosticsGetCount(diagnostics) == 0);
    CHECK(NuvModelFindColumn(model, "desks") == 2 && NuvModelFindColumn(model, "chairs") == 0);
    NuvDiagnosticsDestruct(diagnostics);
    NuvModelDestruct(model);
}

static void TestCopiesAreIndependent(void)
{
    NuvModel* model = MakeFactory();
    NuvModel* copy = NuvModelConstructCopy(model);
    const double cost = 31.0;
    NuvModelArrays held;
    held.size = sizeof held;
    CHECK_OK(NuvModelSetCosts(copy, 1, NULL, &cost, NULL));
    CHECK_OK(NuvModelSetName(copy, "other"));
    CHECK_OK(NuvModelGetArrays(model, &held));
    CHECK(held.costs[0] == 30.0 && strcmp(NuvModelGetName(model), "") == 0);
    NuvModelDestruct(model);
    CHECK_OK(NuvModelGetArrays(copy, &held));
    CHECK(held.costs[0] == 31.0 && strcmp(NuvModelGetName(copy), "other") == 0);
    NuvModelDestruct(copy);
}

static void TestEdits(void)
{
    NuvModel* model = MakeFactory();
    NuvModelArrays held;
    const uint32_t second = 1;
    const uint32_t rows[] = {0, 1};
    const uint32_t columns[] = {1, 0};
    const double numbers[] = {0.0, 9.0};
    held.size = sizeof held;
    CHECK_OK(NuvModelSetSense(model, NUV_SENSE_Minimize));
    CHECK_OK(NuvModelSetConstant(model, 2.5, NULL));
    CHECK_OK(NuvModelSetObjectiveName(model, "cost"));
    CHECK(strcmp(NuvModelGetObjectiveName(model), "cost") == 0);
    CHECK_OK(NuvModelSetColumnBounds(model, 1, &second, NULL, &numbers[1], NULL));
    CHECK_OK(NuvModelSetRowBounds(model, 2, NULL, numbers, NULL, NULL));
    CHECK_OK(NuvModelSetCoefficients(model, 2, rows, columns, numbers, NULL));
    CHECK_OK(NuvModelGetArrays(model, &held));
    CHECK(held.sense == NUV_SENSE_Minimize && held.constant == 2.5);
    CHECK(held.columnLower[1] == 0.0 && held.columnUpper[1] == 9.0 && isinf(held.columnUpper[0]));
    CHECK(held.rowLower[1] == 9.0 && held.rowUpper[0] == 300.0);
    CHECK(held.numEntries == 3 && held.starts[1] == 1 && held.values[1] == 9.0);
    CHECK_OK(NuvModelRemoveColumns(model, 1, NULL, NULL));
    CHECK(NuvModelGetNumColumns(model) == 1 && NuvModelGetNumEntries(model) == 1);
    CHECK(NuvModelFindColumn(model, "tables") == 0);
    CHECK_OK(NuvModelRemoveRows(model, 1, &second, NULL));
    CHECK(NuvModelGetNumRows(model) == 1 && NuvModelFindRow(model, "labour") == NUV_MODEL_NO_INDEX);
    CHECK(NuvModelGetNumEntries(model) == 0);
    NuvModelDestruct(model);
}

/* One third is one third, and 2^53 + 1 is odd. */
static void TestNumbersThatNoDoubleSays(void)
{
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    NuvSolveOptions options;
    NuvModelArrays held;
    NuvText* text;
    char said[32];
    const double upper = 240.0;
    held.size = sizeof held;
    CHECK(NuvModelGetExact(model, NUV_PLACE_Cost, 0, 0, said, sizeof said) == 0);
    CHECK_OK(NuvModelSetExact(model, NUV_PLACE_Cost, 0, 0, "1/3", NULL));
    CHECK_OK(NuvModelSetExact(model, NUV_PLACE_Cost, 1, 0, "0.25", NULL));
    CHECK_OK(NuvModelSetExact(model, NUV_PLACE_RowLower, 1, 0, "-1/7", NULL));
    CHECK_OK(NuvModelSetExact(model, NUV_PLACE_RowUpper, 1, 0, "9007199254740993", NULL));
    CHECK_OK(NuvModelSetExact(model, NUV_PLACE_Entry, 0, 1, "5/3", NULL));
    CHECK(NuvModelGetExact(model, NUV_PLACE_Cost, 0, 0, said, sizeof said) == 4);
    CHECK(strcmp(said, "1/3") == 0);
    CHECK(NuvModelGetExact(model, NUV_PLACE_Cost, 1, 0, NULL, 0) == 0);
    CHECK(NuvModelGetExact(model, NUV_PLACE_RowLower, 1, 0, NULL, 0) == 5);
    CHECK(NuvModelGetExact(model, NUV_PLACE_Entry, 0, 1, said, 2) == 4 && strcmp(said, "5") == 0);
    CHECK_OK(NuvModelGetArrays(model, &held));
    CHECK(held.costs[0] == 1.0 / 3.0 && held.costs[1] == 0.25);
    CHECK(held.values[1] == 5.0 / 3.0 && held.rowUpper[1] == 9007199254740992.0);
    CHECK(NuvModelSetExact(model, NUV_PLACE_Cost, 0, 0, "a third", NULL) ==
          NUV_MODELRESULT_InvalidModel);
    CHECK(NuvModelSetExact(model, NUV_PLACE_Cost, 0, 0, "1e999", NULL) ==
          NUV_MODELRESULT_InvalidModel);
    CHECK(NuvModelSetExact(model, NUV_PLACE_Cost, 2, 0, "1", NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelSetExact(model, NUV_PLACE_Entry + 1, 0, 0, "1", NULL) ==
          NUV_MODELRESULT_InvalidArgument);

    /* Wood binds, 2 chairs + 5/3 tables <= 300: 150 chairs at 1/3, or 180 tables at 1/4. */
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.exact = 1;
    CHECK_OK(NuvModelSolve(model, &options, &solution, NULL));
    CHECK(NuvSolutionGetExact(solution, NUV_EXACT_Objective, 0, said, sizeof said) == 3);
    CHECK(strcmp(said, "50") == 0);
    CHECK(NuvSolutionGetExact(solution, NUV_EXACT_ReducedCosts, 1, said, sizeof said) == 6);
    CHECK(strcmp(said, "-1/36") == 0);
    CHECK(NuvSolutionGetExact(solution, NUV_EXACT_Slacks, 1, said, sizeof said) != 0);
    CHECK(strcmp(said, "4201/7") == 0);
    CHECK_OK(NuvSolutionMakeExact(solution, NUV_EXACT_Activities, &text));
    CHECK(NuvTextGetSize(text) == 8 && memcmp(NuvTextGetData(text), "300\000600", 8) == 0);
    NuvTextDestruct(text);
    NuvSolutionDestruct(solution);

    CHECK_OK(NuvModelSetRowBounds(model, 2, NULL, NULL, (const double[]){300.0, upper}, NULL));
    CHECK(NuvModelGetExact(model, NUV_PLACE_RowUpper, 1, 0, NULL, 0) == 0);
    NuvModelDestruct(model);
}

void TestModels(void)
{
    TestNumbersThatNoDoubleSays();
    TestArraysComeBack();
    TestNamesAreMadeWhereNoneAreGiven();
    TestRefusedCallsChangeNothing();
    TestCopiesAreIndependent();
    TestEdits();
}
