/// @file
/// Watching a solve, and ending it: pivot and time limits, progress, cancelling and cycle detection
/// build on this.
#ifndef NUV_UTILS_NUVLINEARPROGRAMMINGMONITOR_H
#define NUV_UTILS_NUVLINEARPROGRAMMINGMONITOR_H

#include "Nuv/Utils/NuvLinearProgramming.h"

typedef struct NuvLinearProgrammingPivot NuvLinearProgrammingPivot;

/// A pivot that is about to be made. Labels are column numbers of A, from 1; 0 is the artificial
/// variable of Phase I. The arrays are borrowed for the time of the call.
struct NuvLinearProgrammingPivot
{
    /// 1 or 2.
    NuvUint phase;
    /// The pivot's number within the solve, over both phases, from 1.
    NuvUint number;
    /// The label that becomes basic.
    NuvUint entering;
    /// The label that it takes the place of.
    NuvUint leaving;
    /// The rows, m: the length of the two arrays.
    NuvUint numBasic;
    /// The labels of the basis before the pivot, by row.
    const NuvUint* basic;
    /// The values of the basic variables before the pivot, by row.
    const NuvFloat32* values;
};

typedef struct NuvLinearProgrammingMonitor NuvLinearProgrammingMonitor;

/// Who is asked before each pivot.
struct NuvLinearProgrammingMonitor
{
    /// Called before each pivot.
    /// @return true to go on, false to end the solve.
    NuvBool (*beforePivot)(NuvLinearProgrammingMonitor* monitor,
                           const NuvLinearProgrammingPivot* pivot);
    /// The caller's own; the library does not read it.
    void* userData;
};

/// Solves as NuvLinearProgrammingSolve does, to the same bits, and calls the monitor before each
/// pivot. A null monitor is none.
/// @return as NuvLinearProgrammingSolve, or Stopped when the monitor ended the solve; objective and
/// values are then those of an earlier solve.
NUV_API NuvLinearProgrammingResultType
NuvLinearProgrammingSolveMonitored(NuvLinearProgramming* lp, NuvLinearProgrammingMonitor* monitor);

#endif
