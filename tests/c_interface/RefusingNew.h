/* The operator new of the test program: counts, and refuses on request. */
#ifndef NUV_TESTS_C_INTERFACE_REFUSINGNEW_H
#define NUV_TESTS_C_INTERFACE_REFUSINGNEW_H

#if defined(__cplusplus)
extern "C"
{
#endif

    typedef struct NewCounts
    {
        unsigned long long asked; /* since RefuseNew */
        unsigned long long refused;
        unsigned long long bytes; /* asked for, since RefuseNew */
        long long held;
    } NewCounts;

    /* Refuses the next `count` requests from the `from`-th on, which counts from 1; 0 refuses none.
     */
    void RefuseNew(unsigned long long from, unsigned long long count);

    NewCounts CountsOfNew(void);

#if defined(__cplusplus)
}
#endif

#endif
