// The floating-point arithmetic that the library's results rest on. Included by every source that
// computes; it refuses to compile where those results would not be the promised bits.
#ifndef NUV_UTILS_KERNELS_FLOATCONTRACT_H
#define NUV_UTILS_KERNELS_FLOATCONTRACT_H

#include <float.h>

#include <limits>

#if defined(__FAST_MATH__)
#error "The results are exact to the bit: compile without -ffast-math."
#endif

#if defined(FLT_EVAL_METHOD)
static_assert(FLT_EVAL_METHOD == 0,
              "floats are evaluated as floats (on i386: -msse2 -mfpmath=sse)");
#endif

static_assert(std::numeric_limits<float>::is_iec559, "floats are IEC 60559 binary32");
static_assert(FLT_RADIX == 2 && FLT_MANT_DIG == 24 && FLT_MAX_EXP == 128,
              "floats are IEC 60559 binary32");

#endif
