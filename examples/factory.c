/* Chairs and tables: what to make of 300 units of wood and 240 hours of work, in C. */
#include "Nuv/Model/NuvModel.h"

#include <stdio.h>

static const char variables[] = "chairs\0tables", rows[] = "wood\0labour";
static const double profits[] = {30, 70}, limits[] = {300, 240};
static const uint64_t starts[] = {0, 2, 4}; /* row k is entries starts[k] to starts[k + 1] */
static const uint32_t columns[] = {0, 1, 0, 1};
static const double needs[] = {2, 5, 4, 3};

static NuvModelResult State(NuvModel* model, NuvDiagnostics* said)
{
    NuvModelResult result = NuvModelSetSense(model, NUV_SENSE_Maximize);
    if (result == NUV_MODELRESULT_Ok)
        result =
            NuvModelAddColumns(model, 2, profits, NULL, NULL, variables, sizeof variables, said);
    if (result == NUV_MODELRESULT_Ok)
        result = NuvModelAddRows(model, 2, NULL, limits, starts, columns, needs, rows, sizeof rows,
                                 said);
    return result;
}

static void Print(const NuvSolution* plan)
{
    char exact[32] = "?";
    (void)NuvSolutionGetExact(plan, NUV_EXACT_Objective, 0, exact, sizeof exact);
    printf("profit %g, exactly %s, %s\n", NuvSolutionGetObjective(plan), exact,
           NuvSolutionIsProved(plan) ? "proved" : "not proved");
    if (NuvSolutionGetStatus(plan) != NUV_STATUS_Optimal)
        return;
    printf("%g chairs and %g tables\n", NuvSolutionGetValues(plan, NULL)[0],
           NuvSolutionGetValues(plan, NULL)[1]);
    printf("one more unit of wood earns %g\n", NuvSolutionGetDuals(plan, NULL)[0]);
}

int main(void)
{
    NuvModel* model = NuvModelConstruct();
    NuvDiagnostics* said = NuvDiagnosticsConstruct();
    NuvSolution* plan = NULL;
    NuvModelResult result = State(model, said);
    if (result == NUV_MODELRESULT_Ok)
        result = NuvModelSolve(model, NULL, &plan, said);
    if (result == NUV_MODELRESULT_Ok)
        Print(plan);
    else
        printf("failed: %s\n", NuvModelGetResultName(result));
    NuvSolutionDestruct(plan);
    NuvDiagnosticsDestruct(said);
    NuvModelDestruct(model);
    return result;
}
