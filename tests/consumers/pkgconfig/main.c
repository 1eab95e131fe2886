// A user's program in C11: maximise 3x + 2y under x <= 4 and x + y <= 6. It must print 16 at (4,
// 2), and it fails when the library does not find exactly that.
#include "Nuv/Utils/NuvLinearProgramming.h"
#include "Nuv/Utils/NuvScratchAllocator.h"

#include <stdio.h>
#include <stdlib.h>

static void* Allocate(NuvAllocator* allocator, NuvSizeT size)
{
    (void)allocator;
    return malloc((size_t)size);
}

static void Deallocate(NuvAllocator* allocator, void* memory, NuvSizeT size)
{
    (void)allocator;
    (void)size;
    free(memory);
}

static NuvBool Append(NuvVector_NuvPair_NuvUint__NuvFloat32* terms, NuvUint index, NuvFloat32 value)
{
    NuvPair_NuvUint__NuvFloat32 term;
    term.first = index;
    term.second = value;
    return NuvVector_NuvPair_NuvUint__NuvFloat32PushBack(terms, &term);
}

static NuvBool EnterModel(NuvLinearProgramming* lp, NuvAllocator* allocator)
{
    NuvVector_NuvPair_NuvUint__NuvFloat32 terms;
    NuvBool entered = 1;
    NuvVector_NuvPair_NuvUint__NuvFloat32ConstructDefault(&terms, allocator);

    entered = entered && Append(&terms, 1, 1.0f);
    entered = entered && NuvLinearProgrammingSetConstraintByIndex(lp, 1, &terms, 4.0f);
    entered = entered && Append(&terms, 2, 1.0f);
    entered = entered && NuvLinearProgrammingSetConstraintByIndex(lp, 2, &terms, 6.0f);

    NuvVector_NuvPair_NuvUint__NuvFloat32Clear(&terms);
    entered = entered && Append(&terms, 1, 3.0f) && Append(&terms, 2, 2.0f);
    NuvLinearProgrammingSetObjectiveByIndex(lp, &terms);

    NuvVector_NuvPair_NuvUint__NuvFloat32Destruct(&terms);
    return entered;
}

int main(void)
{
    NuvAllocator upstream = {Allocate, Deallocate, (NuvSizeT)-1, NULL};
    NuvScratchAllocator scratch;
    NuvAllocator* allocator;
    NuvLinearProgramming lp;
    int right = 0;

    // Takes back what the solve leaves with its allocator.
    NuvScratchAllocatorConstruct(&scratch, &upstream);
    allocator = NuvScratchAllocatorGetAllocator(&scratch);
    if (NuvLinearProgrammingConstruct(&lp, 2, allocator))
    {
        if (EnterModel(&lp, allocator) &&
            NuvLinearProgrammingSolve(&lp) == NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
        {
            const NuvPair_NuvString__NuvFloat32* values =
                NuvLinearProgrammingGetVariableValues(&lp)->begin;
            const NuvFloat32 objective = NuvLinearProgrammingGetObjectiveValue(&lp);
            printf("%g at (%g, %g)\n", (double)objective, (double)values[0].second,
                   (double)values[1].second);
            right = objective == 16.0f && values[0].second == 4.0f && values[1].second == 2.0f;
        }
        NuvLinearProgrammingDestruct(&lp);
    }
    NuvScratchAllocatorDestruct(&scratch);
    return right ? EXIT_SUCCESS : EXIT_FAILURE;
}
