// The containers of the module, stamped out: those of terms first, since the others hold them.
#include "Nuv/Utils/NuvLinearProgrammingContainers.h"

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Problem/Elements.hpp"

// NOLINTNEXTLINE(bugprone-macro-parentheses): the name of a file
#define NUV_TEMPLATE(name) <Nuv/Templates/name.inl>
#include "Nuv/Utils/NuvLinearProgrammingTerms.decl.h"

#include "Nuv/Utils/NuvLinearProgrammingMaps.decl.h"
