// Invariants that a function relies on, tested where the build asks for it (the CMake option
// NUV_ASSERTIONS): in debug builds and under the sanitizers. Not installed.
#ifndef NUV_UTILS_KERNELS_ASSERT_H
#define NUV_UTILS_KERNELS_ASSERT_H

#ifdef NUV_ASSERTIONS
#include <stdio.h>
#include <stdlib.h>

#define NUV_ASSERT(condition) \
    ((condition) ? static_cast<void>(0) : nuv::FailAssertion(#condition, __FILE__, __LINE__))

namespace nuv
{
[[noreturn]] inline void FailAssertion(const char* condition, const char* file, int line)
{
    (void)fprintf(stderr, "%s:%d: not so: %s\n", file, line, condition);
    abort();
}
}  // namespace nuv
#else
#define NUV_ASSERT(condition) static_cast<void>(0)
#endif

#endif
