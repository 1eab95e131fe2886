// The float loops for machines with AVX2; compiled with that instruction set switched on.
#include "Nuv/Utils/Kernels/Kernels.h"

#if defined(__GNUC__) && defined(__AVX2__)
#define NUV_LANES 8
#define NUV_KERNELS Avx2Kernels
#include "Nuv/Utils/Kernels/Loops.inl"
#else
const nuv::Kernels* nuv::Avx2Kernels()
{
    return nullptr;
}
#endif
