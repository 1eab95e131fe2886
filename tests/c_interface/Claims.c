/* Claims about a model: what is so is confirmed, what is not is refuted, number by number. */
#include "Check.h"

static NuvClaimInfo InfoOf(const NuvClaim* claim)
{
    NuvClaimInfo info;
    memset(&info, 0xFF, sizeof info);
    info.size = sizeof info;
    CHECK_OK(NuvClaimGetInfo(claim, &info));
    return info;
}

/* What a solve writes with exact numbers stands without any tolerance. */
static void TestOwnResultIsConfirmed(void)
{
    NuvModel* model = MakeFactory();
    NuvSolveOptions solving;
    NuvClaimOptions options;
    NuvSolution* solution;
    NuvClaim* claim;
    NuvClaimInfo info;
    NuvText* json;
    NuvText* judgement;
    char exact[16];
    const char* code = "";
    CHECK_OK(NuvSolveOptionsInit(&solving, sizeof solving));
    solving.exact = 1;
    CHECK_OK(NuvModelSolve(model, &solving, &solution, NULL));
    CHECK_OK(NuvSolutionMakeJson(solution, &json));
    CHECK_OK(NuvClaimOptionsInit(&options, sizeof options));
    CHECK(options.tolerance == 1e-9 && options.claim == NUV_CLAIM_AsStated);
    options.tolerance = 0.0;
    CHECK_OK(NuvModelCheckClaimText(model, NuvTextGetData(json), NuvTextGetSize(json),
                                    "factory.json", &options, &claim, NULL));
    info = InfoOf(claim);
    CHECK(info.judgement == NUV_JUDGEMENT_Confirmed && info.claim == NUV_CLAIM_Optimal);
    CHECK(info.truth == NUV_STATUS_Optimal && info.evidence == NUV_EVIDENCE_Certificate);
    CHECK(info.numbers == NUV_NUMBERS_Written && info.stopReason == NUV_STOPREASON_None);
    CHECK(info.numDisagreements == 0 && info.disagreementCount == 0 && info.pivots == 0);
    CHECK(info.violation == 0.0 && info.objective == 29700.0 / 7.0);
    CHECK(info.seconds > 0.0 && info.seconds < 60.0);
    CHECK(info.optimum == 29700.0 / 7.0 && info.reserved == 0 && info.numUnnamed == 0);
    CHECK(NuvClaimGetExactOptimum(claim, exact, sizeof exact) == 8);
    CHECK(strcmp(exact, "29700/7") == 0);
    CHECK(NuvClaimGetDisagreement(claim, 0, &code) == NULL && code == NULL);
    CHECK_OK(NuvClaimMakeJson(claim, &judgement));
    CHECK(strstr(NuvTextGetData(judgement), "\"verdict\":\"confirmed\"") != NULL);
    NuvTextDestruct(judgement);
    CHECK_OK(NuvClaimMakeReport(claim, &judgement));
    CHECK(strstr(NuvTextGetData(judgement), "verdict    confirmed") != NULL);
    NuvTextDestruct(judgement);
    /* The claim outlives the model. */
    NuvModelDestruct(model);
    CHECK_OK(NuvClaimMakeJson(claim, &judgement));
    NuvTextDestruct(judgement);
    NuvClaimDestruct(claim);
    NuvTextDestruct(json);
    NuvSolutionDestruct(solution);
}

static void TestValuesAreJudged(void)
{
    NuvModel* model = MakeFactory();
    NuvClaimOptions options;
    NuvClaim* claim;
    NuvClaimInfo info;
    const char* code = NULL;
    const double nearly[] = {150.0 / 7.0, 360.0 / 7.0};
    const double worse[] = {20.0, 50.0};
    const double outside[] = {25.0, 52.0};
    CHECK_OK(NuvModelCheckValues(model, nearly, 2, NULL, &claim, NULL));
    info = InfoOf(claim);
    CHECK(info.judgement == NUV_JUDGEMENT_Confirmed && info.claim == NUV_CLAIM_Optimal);
    CHECK(info.evidence == NUV_EVIDENCE_Solve);
    NuvClaimDestruct(claim);

    CHECK_OK(NuvModelCheckValues(model, worse, 2, NULL, &claim, NULL));
    info = InfoOf(claim);
    CHECK(info.judgement == NUV_JUDGEMENT_Refuted && info.numDisagreements == 1);
    CHECK(info.objective == 4100.0 && info.optimum == 29700.0 / 7.0 && info.violation == 0.0);
    CHECK(NuvClaimGetDisagreement(claim, 0, &code) != NULL);
    CHECK(code != NULL && strcmp(code, "claim.not-optimal") == 0);
    CHECK(NuvClaimGetDisagreement(claim, 1, NULL) == NULL);
    NuvClaimDestruct(claim);

    CHECK_OK(NuvClaimOptionsInit(&options, sizeof options));
    options.claim = NUV_CLAIM_Feasible;
    CHECK_OK(NuvModelCheckValues(model, worse, 2, &options, &claim, NULL));
    info = InfoOf(claim);
    CHECK(info.judgement == NUV_JUDGEMENT_Confirmed && info.evidence == NUV_EVIDENCE_Values);
    CHECK(isnan(info.optimum) && NuvClaimGetExactOptimum(claim, NULL, 0) == 0);
    NuvClaimDestruct(claim);

    /* wood needs 310 of 300, labour 256 of 240. */
    CHECK_OK(NuvModelCheckValues(model, outside, 2, &options, &claim, NULL));
    info = InfoOf(claim);
    CHECK(info.judgement == NUV_JUDGEMENT_Refuted && info.violation == 16.0);
    CHECK(info.disagreementCount == 2);
    NuvClaimDestruct(claim);
    NuvModelDestruct(model);
}

/* 0.1 is a tenth, or the double above it: three of them are 0.3, or more. */
static void TestMeaningOfValues(void)
{
    static const uint64_t starts[] = {0, 1};
    static const uint32_t column = 0;
    static const double three = 3.0;
    static const double side = 0.3;
    static const double tenth = 0.1;
    NuvModel* model = NuvModelConstruct();
    NuvClaimOptions options;
    NuvClaim* claim;
    CHECK_OK(NuvModelAddColumns(model, 1, NULL, NULL, NULL, NULL, 0, NULL));
    CHECK_OK(NuvModelAddRows(model, 1, NULL, &side, starts, &column, &three, NULL, 0, NULL));
    CHECK_OK(NuvClaimOptionsInit(&options, sizeof options));
    options.claim = NUV_CLAIM_Feasible;
    options.tolerance = 0.0;
    CHECK_OK(NuvModelCheckValues(model, &tenth, 1, &options, &claim, NULL));
    CHECK(InfoOf(claim).judgement == NUV_JUDGEMENT_Confirmed);
    NuvClaimDestruct(claim);
    options.numbers = NUV_NUMBERS_Stored;
    CHECK_OK(NuvModelCheckValues(model, &tenth, 1, &options, &claim, NULL));
    CHECK(InfoOf(claim).judgement == NUV_JUDGEMENT_Refuted);
    CHECK(InfoOf(claim).numbers == NUV_NUMBERS_Stored);
    NuvClaimDestruct(claim);
    NuvModelDestruct(model);
}

static int32_t Refuse(void* userData, const NuvProgress* progress)
{
    CHECK(progress->size == sizeof *progress);
    ++*(int*)userData;
    return 0;
}

static void TestFilesAndLimits(void)
{
    static const char path[] = "c_interface.sol";
    static const char said[] = "chairs 20\n";
    NuvModel* model = MakeFactory();
    NuvDiagnostics* diagnostics = NuvDiagnosticsConstruct();
    NuvDiagnostic told;
    NuvClaimOptions options;
    NuvClaim* claim = NULL;
    NuvClaimInfo info;
    FILE* file = fopen(path, "wb");
    int calls = 0;
    told.size = sizeof told;
    CHECK(file != NULL && fputs(said, file) >= 0);
    if (file)
        (void)fclose(file);
    CHECK_OK(NuvClaimOptionsInit(&options, sizeof options));
    options.progress = Refuse;
    options.userData = &calls;
    options.tolerance = 0.5;
    CHECK_OK(NuvModelCheckClaim(model, path, &options, &claim, diagnostics));
    info = InfoOf(claim);
    CHECK(info.judgement == NUV_JUDGEMENT_Undecided && info.truth == NUV_STATUS_Stopped);
    CHECK(info.stopReason == NUV_STOPREASON_Cancelled && calls == 1 && info.numUnnamed == 1);
    NuvClaimDestruct(claim);
    (void)remove(path);
    CHECK(NuvModelCheckClaim(model, path, NULL, &claim, diagnostics) == NUV_MODELRESULT_CannotRead);
    CHECK(claim == NULL);
    CHECK(NuvModelCheckClaimText(model, "stools 3", 8, "a.sol", NULL, &claim, diagnostics) ==
          NUV_MODELRESULT_BadText);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &told));
    CHECK(strcmp(told.code, "claim.unknown-variable") == 0 && told.line == 1);
    NuvDiagnosticsDestruct(diagnostics);
    NuvModelDestruct(model);
}

static void TestWhatIsNoClaim(void)
{
    NuvModel* model = MakeFactory();
    NuvClaim* claim = (NuvClaim*)(void*)model;
    NuvClaimOptions options;
    NuvClaimInfo info;
    const double values[] = {0.0, (double)NAN};
    CHECK(NuvClaimOptionsInit(&options, 8) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvClaimOptionsInit(NULL, sizeof options) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelCheckValues(model, values, 2, NULL, &claim, NULL) ==
          NUV_MODELRESULT_InvalidModel);
    CHECK(claim == NULL);
    CHECK(NuvModelCheckValues(model, values, 1, NULL, &claim, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelCheckValues(model, NULL, 2, NULL, &claim, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelCheckValues(model, values, 2, NULL, NULL, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelCheckClaim(model, NULL, NULL, &claim, NULL) == NUV_MODELRESULT_InvalidArgument);
    CHECK(NuvModelCheckClaimText(model, NULL, 1, NULL, NULL, &claim, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    CHECK_OK(NuvClaimOptionsInit(&options, sizeof options));
    options.claim = NUV_CLAIM_Infeasible;
    CHECK(NuvModelCheckValues(model, values, 2, &options, &claim, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    options.claim = NUV_CLAIM_Unbounded + 1;
    CHECK(NuvModelCheckClaimText(model, "x 1", 3, NULL, &options, &claim, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    options.claim = NUV_CLAIM_AsStated;
    options.numbers = NUV_NUMBERS_AsStated + 1;
    CHECK(NuvModelCheckClaimText(model, "x 1", 3, NULL, &options, &claim, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    options.numbers = NUV_NUMBERS_AsStated;
    options.tolerance = values[1];
    CHECK(NuvModelCheckClaimText(model, "x 1", 3, NULL, &options, &claim, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    options.tolerance = 0.0;
    options.seconds = -1.0;
    CHECK(NuvModelCheckClaimText(model, "x 1", 3, NULL, &options, &claim, NULL) ==
          NUV_MODELRESULT_InvalidArgument);
    info.size = sizeof info;
    CHECK(NuvClaimGetInfo(NULL, &info) == NUV_MODELRESULT_InvalidHandle);
    CHECK(NuvClaimGetInfo((NuvClaim*)(void*)model, &info) == NUV_MODELRESULT_InvalidHandle);
    NuvClaimDestruct(NULL);
    NuvClaimDestruct((NuvClaim*)(void*)model);
    NuvModelDestruct(model);
}

void TestClaims(void)
{
    TestOwnResultIsConfirmed();
    TestValuesAreJudged();
    TestMeaningOfValues();
    TestFilesAndLimits();
    TestWhatIsNoClaim();
}
