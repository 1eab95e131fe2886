/// @file
/// A ready monitor for solves that must come to an end: it stops one that makes too many pivots or
/// goes round in a circle. A degenerate model may cycle, and a solve by itself has no limit.
///
///     NuvPivotLimit limit;
///     NuvLinearProgrammingSolveMonitored(&lp, NuvPivotLimitConstruct(&limit, 10000));
#ifndef NUV_UTILS_NUVPIVOTLIMIT_H
#define NUV_UTILS_NUVPIVOTLIMIT_H

#include "Nuv/Utils/NuvLinearProgrammingMonitor.h"

typedef struct NuvPivotLimit NuvPivotLimit;

/// Serves one solve after the other.
struct NuvPivotLimit
{
    /// What NuvPivotLimitConstruct answers.
    NuvLinearProgrammingMonitor monitor;
    /// A solve is stopped before one pivot more than this.
    NuvUint limit;
    /// The pivots that the last solve has made.
    NuvUint pivots;
    /// Whether it was stopped for a circle: a basis came back three times with the same values, to
    /// the bit.
    NuvBool hasCycled;
    /// The basis whose return is watched for, by a hash (R. P. Brent, An improved Monte Carlo
    /// factorization algorithm).
    uint64_t basis;
    /// How often it came back.
    NuvUint returns;
    /// The pivot at which the next one takes its place.
    NuvUint next;
};

/// Makes a limit of so many pivots over both phases.
/// @return the monitor to solve with; its `userData` is not used.
NUV_API NuvLinearProgrammingMonitor* NuvPivotLimitConstruct(NuvPivotLimit* x, NuvUint limit);

#endif
