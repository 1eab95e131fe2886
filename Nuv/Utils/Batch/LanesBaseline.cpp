// Problems in lanes for vectors that every machine of the target has.
#include "Nuv/Utils/Batch/LaneState.h"

#if defined(__GNUC__) && (defined(__SSE2__) || defined(__aarch64__) || defined(__wasm_simd128__))
#define NUV_LANES 4
#define NUV_LANE_LOOPS BaselineLanes
#include "Nuv/Utils/Batch/LaneStep.inl"
#else
const nuv::LaneLoops* nuv::BaselineLanes()
{
    return nullptr;
}
#endif
