// Problems in lanes for vectors that every machine of the target has.
#include "Nuv/Utils/Batch/LaneState.h"
#include "Nuv/Utils/Batch/UnitTableau.h"

#if defined(__GNUC__) && (defined(__SSE2__) || defined(__aarch64__) || defined(__wasm_simd128__))
#define NUV_LANES 4
#define NUV_LANE_LOOPS BaselineLanes
#define NUV_UNIT_LOOPS BaselineUnitLoops
#include "Nuv/Utils/Batch/LaneStep.inl"
#include "Nuv/Utils/Batch/UnitTableau.inl"
#else
const nuv::LaneLoops* nuv::BaselineLanes()
{
    return nullptr;
}

const nuv::UnitLoops* nuv::BaselineUnitLoops()
{
    return nullptr;
}
#endif
