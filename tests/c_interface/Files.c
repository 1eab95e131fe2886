/* Models out of texts and files, and back. */
#include "Check.h"

static const char factoryText[] = "maximize profit: 30 chairs + 70 tables\n"
                                  "subject to\n"
                                  " wood: 2 chairs + 5 tables <= 300\n"
                                  " labour: 4 chairs + 3 tables <= 240\n"
                                  "end\n";

static void CheckIsFactory(const NuvModel* model)
{
    NuvSolution* solution = NULL;
    char exact[16];
    CHECK_OK(NuvModelSolve(model, NULL, &solution, NULL));
    CHECK(NuvSolutionGetExact(solution, NUV_EXACT_Objective, 0, exact, sizeof exact) == 8);
    CHECK(strcmp(exact, "29700/7") == 0);
    NuvSolutionDestruct(solution);
}

static void TestTextsComeBack(void)
{
    static const uint32_t formats[] = {NUV_FORMAT_ByContent, NUV_FORMAT_Lp, NUV_FORMAT_Mps,
                                       NUV_FORMAT_MpsFixed, NUV_FORMAT_MpsFree};
    NuvModel* model = NuvModelConstruct();
    NuvModel* again = NuvModelConstruct();
    NuvText* text;
    size_t k;
    CHECK_OK(NuvModelReadText(model, factoryText, strlen(factoryText), "factory.lp", NULL, NULL));
    CHECK(strcmp(NuvModelGetObjectiveName(model), "profit") == 0);
    for (k = 0; k < sizeof formats / sizeof *formats; ++k)
    {
        NuvReadOptions options;
        CHECK_OK(NuvModelMakeText(model, formats[k], &text, NULL));
        CHECK(NuvTextGetData(text)[NuvTextGetSize(text)] == '\0');
        CHECK_OK(NuvReadOptionsInit(&options, sizeof options));
        options.format = formats[k];
        CHECK_OK(NuvModelReadText(again, NuvTextGetData(text), NuvTextGetSize(text), NULL, &options,
                                  NULL));
        NuvTextDestruct(text);
        CheckIsFactory(again);
    }
    NuvModelDestruct(model);
    NuvModelDestruct(again);
}

static void TestFilesComeBack(void)
{
    static const char* const paths[] = {"c_interface.lp", "c_interface.mps", "c_interface.mps.gz"};
    NuvModel* model = MakeFactory();
    NuvModel* again = NuvModelConstruct();
    size_t k;
    for (k = 0; k < sizeof paths / sizeof *paths; ++k)
    {
        FILE* file;
        unsigned char start[2] = {0, 0};
        CHECK_OK(NuvModelWrite(model, paths[k], NUV_FORMAT_ByContent, NULL));
        CHECK_OK(NuvModelRead(again, paths[k], NULL, NULL));
        CheckIsFactory(again);
        file = fopen(paths[k], "rb");
        CHECK(file != NULL && fread(start, 1, 2, file) == 2);
        CHECK((start[0] == 0x1F && start[1] == 0x8B) == (k == 2));
        if (file)
            (void)fclose(file);
        (void)remove(paths[k]);
    }
    NuvModelDestruct(model);
    NuvModelDestruct(again);
}

static void TestWhatCannotBeRead(void)
{
    NuvModel* model = MakeFactory();
    NuvDiagnostics* diagnostics = NuvDiagnosticsConstruct();
    NuvDiagnostic said;
    NuvText* text;
    const char* const broken = "minimize\n x\nsubject to\n c1: x + <= 3\nend\n";
    const char* const integers = "min\n x\nst\n c: x >= 1\ngeneral\n x\nend\n";
    NuvReadOptions options;
    said.size = sizeof said;
    CHECK(NuvModelReadText(model, broken, strlen(broken), "broken.lp", NULL, diagnostics) ==
          NUV_MODELRESULT_BadText);
    CHECK(NuvDiagnosticsGetCount(diagnostics) >= 1);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(said.line == 4 && said.column > 1 && strcmp(said.file, "broken.lp") == 0);
    CHECK(strncmp(said.code, "lp.", 3) == 0 && strstr(said.excerpt, "c1: x + <= 3") != NULL);
    CHECK_OK(NuvDiagnosticsMakeText(diagnostics, &text));
    CHECK(strstr(NuvTextGetData(text), "broken.lp:4:") != NULL);
    NuvTextDestruct(text);

    CHECK(NuvModelRead(model, "there-is-no-such-file.lp", NULL, diagnostics) ==
          NUV_MODELRESULT_CannotRead);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(strcmp(said.code, "file.missing") == 0);
    CHECK(NuvModelReadText(model, "\x1F\x8Bnothing", 9, NULL, NULL, diagnostics) ==
          NUV_MODELRESULT_BadText);
    CHECK(NuvModelWrite(model, "no/such/directory.lp", NUV_FORMAT_Lp, diagnostics) ==
          NUV_MODELRESULT_CannotWrite);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(strcmp(said.code, "file.unwritable") == 0);
    CheckIsFactory(model);

    CHECK(NuvModelReadText(model, integers, strlen(integers), NULL, NULL, NULL) ==
          NUV_MODELRESULT_BadText);
    CHECK_OK(NuvReadOptionsInit(&options, sizeof options));
    options.relax = 1;
    CHECK_OK(NuvModelReadText(model, integers, strlen(integers), NULL, &options, diagnostics));
    CHECK(NuvDiagnosticsGetCount(diagnostics) >= 1);
    CHECK_OK(NuvDiagnosticsGet(diagnostics, 0, &said));
    CHECK(said.severity == NUV_SEVERITY_Warning);
    NuvDiagnosticsDestruct(diagnostics);
    NuvModelDestruct(model);
}

void TestFiles(void)
{
    TestTextsComeBack();
    TestFilesComeBack();
    TestWhatCannotBeRead();
}
