/* Sessions: solving again gives what solving afresh gives. */
#include "Check.h"

enum
{
    Columns = 6,
    Rows = 5
};

static uint32_t CheckSameAsAfresh(NuvSolver* solver, const NuvModel* model)
{
    NuvSolution* warm = NULL;
    NuvSolution* cold = NULL;
    NuvText* certificate = NULL;
    char exact[2][64] = {"", ""};
    uint32_t status;
    CHECK_OK(NuvSolverSolve(solver, model, NULL, &warm, NULL));
    CHECK_OK(NuvModelSolve(model, NULL, &cold, NULL));
    status = (uint32_t)NuvSolutionGetStatus(warm);
    CHECK(status == (uint32_t)NuvSolutionGetStatus(cold) && NuvSolutionIsProved(warm));
    (void)NuvSolutionGetExact(warm, NUV_EXACT_Objective, 0, exact[0], sizeof exact[0]);
    (void)NuvSolutionGetExact(cold, NUV_EXACT_Objective, 0, exact[1], sizeof exact[1]);
    CHECK(strcmp(exact[0], exact[1]) == 0);
    CHECK((status == NUV_STATUS_Infeasible) == (NuvSolutionGetIis(warm, NULL) != NULL));
    CHECK_OK(NuvSolutionMakeCertificate(warm, &certificate));
    CHECK_OK(NuvModelVerify(model, NuvTextGetData(certificate), NuvTextGetSize(certificate),
                            NUV_NUMBERS_Written, NULL, NULL));
    NuvTextDestruct(certificate);
    NuvSolutionDestruct(warm);
    NuvSolutionDestruct(cold);
    return status;
}

static void AddRow(NuvModel* model, Random* random)
{
    const double lower = -4.0;
    const double upper = SmallNumber(random) + 2.0;
    const uint64_t starts[] = {0, 2};
    uint32_t columns[] = {0, 1};
    const double values[] = {SmallNumber(random), SmallNumber(random)};
    if (NuvModelGetNumColumns(model) < 2)
        return;
    columns[1] = 1 + Below(random, NuvModelGetNumColumns(model) - 1);
    CHECK_OK(NuvModelAddRows(model, 1, &lower, &upper, starts, columns, values, NULL, 0, NULL));
}

/* A third, a seventh or a ninth of something. */
static void StateExactly(NuvModel* model, Random* random)
{
    const uint32_t place = Below(random, NUV_PLACE_Entry + 1);
    const uint32_t column = Below(random, NuvModelGetNumColumns(model));
    const uint32_t row = Below(random, NuvModelGetNumRows(model));
    const int isOfRow = place >= NUV_PLACE_RowLower;
    const int isUpper = place == NUV_PLACE_RowUpper || place == NUV_PLACE_ColumnUpper;
    char text[32];
    (void)snprintf(text, sizeof text, "%d/%d", (int)Below(random, 20) - (isUpper ? 0 : 18),
                   (int[]){3, 7, 9}[Below(random, 3)]);
    CHECK_OK(NuvModelSetExact(model, place, isOfRow ? row : column, column, text, NULL));
}

static void Edit(NuvModel* model, Random* random)
{
    const uint32_t column = Below(random, NuvModelGetNumColumns(model));
    const uint32_t row = Below(random, NuvModelGetNumRows(model));
    const double lower = SmallNumber(random) - 3.0;
    const double upper = SmallNumber(random) + 3.0;
    switch (Below(random, 10))
    {
    case 0:
        CHECK_OK(NuvModelSetCosts(model, 1, &column, &upper, NULL));
        break;
    case 1:
    case 2:
        CHECK_OK(NuvModelSetRowBounds(model, 1, &row, NULL, &upper, NULL));
        break;
    case 3:
        CHECK_OK(NuvModelSetColumnBounds(model, 1, &column, &lower, &upper, NULL));
        break;
    case 4:
        CHECK_OK(NuvModelSetCoefficients(model, 1, &row, &column, &upper, NULL));
        break;
    case 5:
        AddRow(model, random);
        break;
    case 6:
        CHECK_OK(NuvModelAddColumns(model, 1, &upper, NULL, NULL, NULL, 0, NULL));
        break;
    case 7:
    case 8:
        StateExactly(model, random);
        break;
    default:
        if (NuvModelGetNumRows(model) > 2)
            CHECK_OK(NuvModelRemoveRows(model, 1, &row, NULL));
        if (NuvModelGetNumColumns(model) > 3)
            CHECK_OK(NuvModelRemoveColumns(model, 1, &column, NULL));
        break;
    }
}

static NuvModel* MakeModel(Random* random)
{
    NuvModel* model = NuvModelConstruct();
    uint32_t k;
    double upper[Columns];
    for (k = 0; k < Columns; ++k)
        upper[k] = 4.0;
    CHECK_OK(NuvModelAddColumns(model, Columns, NULL, NULL, upper, NULL, 0, NULL));
    for (k = 0; k < Rows; ++k)
        AddRow(model, random);
    CHECK_OK(NuvModelSetSense(model, Below(random, 2)));
    return model;
}

void TestSessions(void)
{
    const int cases = CasesOf(300);
    NuvSolver* solver = NuvSolverConstruct();
    int seen[3] = {0, 0, 0};
    for (currentCase = 0; currentCase < (unsigned long long)cases; ++currentCase)
    {
        Random random = {currentCase};
        /* The session goes on with another model each time. */
        NuvModel* model = MakeModel(&random);
        int step;
        for (step = 0; step < 10; ++step)
        {
            ++seen[CheckSameAsAfresh(solver, model) % 3];
            Edit(model, &random);
        }
        NuvModelDestruct(model);
    }
    currentCase = 0;
    CHECK(seen[NUV_STATUS_Optimal] > cases && seen[NUV_STATUS_Infeasible] > cases / 10);
    NuvSolverDestruct(solver);
}

/* A bound that moves while the basis stays optimal costs no pivot. */
static void TestSessionsAreWarm(void)
{
    NuvSolver* solver = NuvSolverConstruct();
    NuvModel* model = MakeFactory();
    NuvSolution* solution;
    NuvSolutionInfo info;
    const double upper = 310.0;
    info.size = sizeof info;
    CHECK_OK(NuvSolverSolve(solver, model, NULL, &solution, NULL));
    NuvSolutionDestruct(solution);
    CHECK_OK(NuvModelSetRowBounds(model, 1, NULL, NULL, &upper, NULL));
    CHECK_OK(NuvSolverSolve(solver, model, NULL, &solution, NULL));
    CHECK_OK(NuvSolutionGetInfo(solution, &info));
    CHECK(info.proved && info.objective > 29700.0 / 7.0);
    CHECK(info.singlePrecisionPivots + info.doublePivots + info.exactPivots == 0);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(model);
    NuvSolverDestruct(solver);
}

/* From the basis of its own optimum, a solve needs no pivot. */
static void TestStartsAreTaken(void)
{
    NuvModel* model = MakeFactory();
    NuvSolution* first;
    NuvSolution* second;
    NuvSolveOptions options;
    NuvSolutionInfo info;
    const double values[] = {150.0 / 7.0, 360.0 / 7.0};
    const uint8_t wrong = 4;
    info.size = sizeof info;
    CHECK_OK(NuvModelSolve(model, NULL, &first, NULL));
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.startColumnBasis = NuvSolutionGetColumnBasis(first, &options.numStartColumns);
    options.startRowBasis = NuvSolutionGetRowBasis(first, &options.numStartRows);
    CHECK_OK(NuvModelSolve(model, &options, &second, NULL));
    CHECK_OK(NuvSolutionGetInfo(second, &info));
    CHECK(info.status == NUV_STATUS_Optimal && info.proved);
    CHECK(info.singlePrecisionPivots + info.doublePivots + info.exactPivots == 0);
    NuvSolutionDestruct(second);
    NuvSolutionDestruct(first);

    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.startValues = values;
    options.numStartValues = 2;
    CHECK_OK(NuvModelSolve(model, &options, &second, NULL));
    CHECK_OK(NuvSolutionGetInfo(second, &info));
    CHECK(info.proved && info.singlePrecisionPivots + info.doublePivots == 0);
    NuvSolutionDestruct(second);
    options.startColumnBasis = &wrong;
    options.numStartColumns = 1;
    CHECK(NuvModelSolve(model, &options, &second, NULL) == NUV_MODELRESULT_InvalidArgument);
    options.startColumnBasis = NULL;
    CHECK(NuvModelSolve(model, &options, &second, NULL) == NUV_MODELRESULT_InvalidArgument);
    NuvModelDestruct(model);
}

void TestStarts(void)
{
    TestSessionsAreWarm();
    TestStartsAreTaken();
}
