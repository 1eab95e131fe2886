// Problems in lanes for machines with AVX2; compiled with that instruction set switched on.
#include "Nuv/Utils/Batch/LaneState.h"

#if defined(__GNUC__) && defined(__AVX2__)
#define NUV_LANES 8
#define NUV_LANE_LOOPS Avx2Lanes
#include "Nuv/Utils/Batch/LaneStep.inl"
#else
const nuv::LaneLoops* nuv::Avx2Lanes()
{
    return nullptr;
}
#endif
