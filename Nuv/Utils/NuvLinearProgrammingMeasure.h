/// @file
/// How good a point is, for a caller who wants to know: single precision, without a tolerance, may
/// miss by more than rounding.
#ifndef NUV_UTILS_NUVLINEARPROGRAMMINGMEASURE_H
#define NUV_UTILS_NUVLINEARPROGRAMMINGMEASURE_H

#include "Nuv/Utils/NuvLinearProgramming.h"

typedef struct NuvLinearProgrammingMeasurement NuvLinearProgrammingMeasurement;

/// What the values of a model's variables amount to, computed in double precision.
struct NuvLinearProgrammingMeasurement
{
    /// The most by which a row's left side is above its right-hand side, or 0.
    double rowViolation;
    /// The most by which a variable is below 0, or 0.
    double signViolation;
    /// cᵀx.
    double objective;
};

/// Measures the values that the last solve has left in the model. A number that is not one makes
/// what it enters not a number.
/// @return false when a row or the objective uses an unknown name or index.
NUV_API NuvBool NuvLinearProgrammingMeasure(const NuvLinearProgramming* lp,
                                            NuvLinearProgrammingMeasurement* measurement);

#endif
