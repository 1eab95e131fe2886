// The variables of a model by name. Not installed.
#ifndef NUV_UTILS_PROBLEM_VARIABLES_H
#define NUV_UTILS_PROBLEM_VARIABLES_H

#include "Nuv/Utils/NuvLinearProgramming.h"

namespace nuv
{
/// @return the variable of that name, or null when there is none.
const NuvLinearProgrammingVariable* FindVariable(const NuvLinearProgramming* lp,
                                                 const NuvString* name);
}  // namespace nuv

#endif
