// The float loops for vectors that every machine of the target has. 32-bit ARM is not among them:
// its NEON does not round as IEC 60559 says.
#include "Nuv/Utils/Kernels/Kernels.h"

#if defined(__GNUC__) && (defined(__SSE2__) || defined(__aarch64__) || defined(__wasm_simd128__))
#define NUV_LANES 4
#define NUV_KERNELS BaselineKernels
#include "Nuv/Utils/Kernels/Loops.inl"
#else
const nuv::Kernels* nuv::BaselineKernels()
{
    return nullptr;
}
#endif
