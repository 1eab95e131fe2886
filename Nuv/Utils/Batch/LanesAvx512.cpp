// Problems in lanes for machines with AVX-512; compiled with that instruction set switched on.
#include "Nuv/Utils/Batch/LaneState.h"
#include "Nuv/Utils/Batch/UnitTableau.h"

#if defined(__GNUC__) && defined(__AVX512VL__)
#define NUV_LANES 16
#define NUV_LANE_LOOPS Avx512Lanes
#define NUV_UNIT_LOOPS Avx512UnitLoops
#include "Nuv/Utils/Batch/LaneStep.inl"
#include "Nuv/Utils/Batch/UnitTableau.inl"
#else
const nuv::LaneLoops* nuv::Avx512Lanes()
{
    return nullptr;
}

const nuv::UnitLoops* nuv::Avx512UnitLoops()
{
    return nullptr;
}
#endif
