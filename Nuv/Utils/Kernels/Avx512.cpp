// The float loops for machines with AVX-512; compiled with that instruction set switched on.
#include "Nuv/Utils/Kernels/Kernels.h"

#if defined(__GNUC__) && defined(__AVX512VL__)
#define NUV_LANES 16
#define NUV_KERNELS Avx512Kernels
#include "Nuv/Utils/Kernels/Loops.inl"
#else
const nuv::Kernels* nuv::Avx512Kernels()
{
    return nullptr;
}
#endif
