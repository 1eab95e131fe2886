// The float loops in plain C++, for any compiler and any machine.
#define NUV_LANES 1
#define NUV_KERNELS PlainKernels
#include "Nuv/Utils/Kernels/Loops.inl"
