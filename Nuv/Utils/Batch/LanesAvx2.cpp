// Problems in lanes for machines with AVX2; compiled with that instruction set switched on.
#include "Nuv/Utils/Batch/LaneState.h"
#include "Nuv/Utils/Batch/UnitTableau.h"

#if defined(__GNUC__) && defined(__AVX2__)
#define NUV_LANES 8
#define NUV_LANE_LOOPS Avx2Lanes
#define NUV_UNIT_LOOPS Avx2UnitLoops
#include "Nuv/Utils/Batch/LaneStep.inl"
#include "Nuv/Utils/Batch/UnitTableau.inl"
#else
const nuv::LaneLoops* nuv::Avx2Lanes()
{
    return nullptr;
}

const nuv::UnitLoops* nuv::Avx2UnitLoops()
{
    return nullptr;
}
#endif
