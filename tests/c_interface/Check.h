/* What the tests in C share: checks that count, seeded numbers, and the model that most of them
   begin with. A program ends with 1 if a check has failed. */
#ifndef NUV_TESTS_C_INTERFACE_CHECK_H
#define NUV_TESTS_C_INTERFACE_CHECK_H

#include "Nuv/Model/NuvModel.h"

#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

extern int checks;
extern int failures;
/* Printed with a failure, where a test has many cases. */
extern unsigned long long currentCase;

#define CHECK(condition)                                                                       \
    do                                                                                         \
    {                                                                                          \
        ++checks;                                                                              \
        if (!(condition))                                                                      \
        {                                                                                      \
            ++failures;                                                                        \
            fprintf(stderr, "%s:%d: case %llu: failed: %s\n", __FILE__, __LINE__, currentCase, \
                    #condition);                                                               \
        }                                                                                      \
    } while (0)

#define CHECK_OK(call) CHECK((call) == NUV_MODELRESULT_Ok)

/* How many of so many cases are run: all, or every NUV_TEST_SHARE-th of them under tools that
   make each slow. */
int CasesOf(int all);

typedef struct Random
{
    uint64_t state;
} Random;

uint64_t NextNumber(Random* random);
/* Below `end`, which is not 0. */
uint32_t Below(Random* random, uint32_t end);
/* One of -3, -2.75, ..., 3. */
double SmallNumber(Random* random);

/* Maximise 30 chairs + 70 tables under wood 2 chairs + 5 tables <= 300 and labour 4 chairs + 3
   tables
   <= 240. The optimum is 29700/7 at (150/7, 360/7). */
NuvModel* MakeFactory(void);

void TestModels(void);
void TestRandomModels(void);
void TestFiles(void);
void TestBases(void);
void TestClaims(void);
void TestSolutions(void);
void TestRandomSolutions(void);
void TestBatches(void);
void TestRepairs(void);
void TestSessions(void);
void TestStarts(void);
void TestWrongArguments(void);
void TestRandomCalls(void);

#endif
