// Problems in lanes in plain C++, for any compiler and any machine: one problem at a time.
#define NUV_LANES 1
#define NUV_LANE_LOOPS PlainLanes
#define NUV_UNIT_LOOPS PlainUnitLoops
#include "Nuv/Utils/Batch/LaneStep.inl"
#include "Nuv/Utils/Batch/UnitTableau.inl"
