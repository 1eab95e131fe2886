/* Repairs of infeasible models, and their proofs. */
#include "Check.h"

/* The certificate is one of the elastic program, whose optimum is the total; NaN: there is none. */
static void CheckProofOfRepair(const NuvRepair* repair, double total)
{
    NuvModel* elastic;
    NuvText* text;
    NuvVerification found;
    found.size = sizeof found;
    CHECK_OK(NuvRepairMakeElasticModel(repair, &elastic));
    CHECK_OK(NuvRepairMakeCertificate(repair, &text));
    CHECK_OK(NuvModelVerify(elastic, NuvTextGetData(text), NuvTextGetSize(text),
                            NUV_NUMBERS_Written, &found, NULL));
    if (isnan(total))
        CHECK(found.status == NUV_STATUS_Infeasible);
    else
        CHECK(found.status == NUV_STATUS_Optimal && found.objective == total);
    NuvTextDestruct(text);
    NuvModelDestruct(elastic);
}

/* labour wants 1000 hours and has 240: it is the cheapest to change, unless it has to stay. */
void TestRepairs(void)
{
    NuvModel* model = MakeFactory();
    NuvModel* repaired;
    NuvRepair* repair;
    NuvRepairInfo info;
    NuvSolution* solution;
    const NuvRepairChange* changes;
    NuvSolveOptions options;
    NuvText* text;
    uint32_t count;
    char exact[16];
    const double most = 5.0;
    const double lower[] = {-(double)INFINITY, 1000.0};
    const double upper[] = {300.0, (double)INFINITY};
    const double stays[] = {(double)INFINITY, (double)INFINITY};
    const double negative[] = {1.0, -1.0};
    info.size = sizeof info;
    CHECK_OK(NuvModelSetColumnBounds(model, 1, NULL, NULL, &most, NULL));
    CHECK_OK(NuvModelSetRowBounds(model, 2, NULL, lower, upper, NULL));
    CHECK_OK(NuvModelRepair(model, stays, NULL, NULL, &repair, NULL));
    CHECK_OK(NuvRepairGetInfo(repair, &info));
    CHECK(info.status == NUV_STATUS_Optimal && info.proved && info.numChanges == 1);
    changes = NuvRepairGetChanges(repair, &count);
    CHECK(count == 1 && changes[0].isRow && changes[0].index == 1 && !changes[0].isUpper);
    CHECK(changes[0].from == 1000.0 && changes[0].to == 194.0 && changes[0].amount == 806.0);
    CHECK(info.total == 806.0);
    CHECK(NuvRepairGetExact(repair, 0, exact, sizeof exact) == 4 && strcmp(exact, "194") == 0);
    CHECK(NuvRepairGetExact(repair, NUV_MODEL_NO_INDEX, exact, 3) == 4 && strcmp(exact, "80") == 0);
    CHECK(NuvRepairGetExact(repair, 1, NULL, 0) == 0);
    CHECK_OK(NuvRepairMakeModel(repair, &repaired));
    CheckProofOfRepair(repair, 806.0);
    NuvRepairDestruct(repair);
    CHECK_OK(NuvModelSolve(repaired, NULL, &solution, NULL));
    CHECK(NuvSolutionGetStatus(solution) == NUV_STATUS_Optimal);
    NuvSolutionDestruct(solution);
    NuvModelDestruct(repaired);

    CHECK_OK(NuvModelRepair(model, stays, stays, NULL, &repair, NULL));
    CHECK_OK(NuvRepairGetInfo(repair, &info));
    CHECK(info.status == NUV_STATUS_Infeasible && isnan(info.total));
    CHECK(NuvRepairGetChanges(repair, &count) == NULL && count == 0);
    CHECK(NuvRepairMakeModel(repair, &repaired) == NUV_MODELRESULT_NotKnown && repaired == NULL);
    CheckProofOfRepair(repair, (double)NAN);
    NuvRepairDestruct(repair);
    CHECK_OK(NuvSolveOptionsInit(&options, sizeof options));
    options.keepProof = 0;
    CHECK_OK(NuvModelRepair(model, stays, stays, &options, &repair, NULL));
    CHECK(NuvRepairMakeCertificate(repair, &text) == NUV_MODELRESULT_NotKnown && text == NULL);
    CHECK(NuvRepairMakeElasticModel(repair, &repaired) == NUV_MODELRESULT_NotKnown);
    CHECK(repaired == NULL);
    CHECK(NuvRepairMakeCertificate(repair, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvRepairMakeElasticModel(repair, NULL) == NUV_MODELRESULT_InvalidArgument);
    NuvRepairDestruct(repair);
    CHECK(NuvRepairMakeCertificate(NULL, &text) == NUV_MODELRESULT_InvalidHandle);
    CHECK(NuvRepairMakeElasticModel(NULL, &repaired) == NUV_MODELRESULT_InvalidHandle);
    CHECK(NuvModelRepair(model, negative, NULL, NULL, &repair, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(repair == NULL);
    CHECK(NuvModelRepair(NULL, NULL, NULL, NULL, &repair, NULL) == NUV_MODELRESULT_InvalidHandle);
    CHECK(NuvRepairGetInfo(NULL, &info) == NUV_MODELRESULT_InvalidHandle);
    NuvRepairDestruct((NuvRepair*)(void*)model);
    NuvModelDestruct(model);
}
