/* The C interface of the model layer, from C. */
#include "Check.h"

int main(void)
{
    TestModels();
    TestRandomModels();
    TestFiles();
    TestBases();
    TestClaims();
    TestSolutions();
    TestRandomSolutions();
    TestBatches();
    TestRepairs();
    TestSessions();
    TestStarts();
    TestWrongArguments();
    TestRandomCalls();
    printf("%d checks, %d failed\n", checks, failures);
    return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
