// Problems in lanes for machines with AVX-512; compiled with that instruction set switched on.
#include "Nuv/Utils/Batch/LaneState.h"

#if defined(__GNUC__) && defined(__AVX512VL__)
#define NUV_LANES 16
#define NUV_LANE_LOOPS Avx512Lanes
#include "Nuv/Utils/Batch/LaneStep.inl"
#else
const nuv::LaneLoops* nuv::Avx512Lanes()
{
    return nullptr;
}
#endif
