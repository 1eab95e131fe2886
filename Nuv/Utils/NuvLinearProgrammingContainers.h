/// @file
/// The maps that hold a model and the matrices that hold its standard form. Each container is
/// stamped out once per element type; its operations and their contracts stand in the template of
/// the same name.
#ifndef NUV_UTILS_NUVLINEARPROGRAMMINGCONTAINERS_H
#define NUV_UTILS_NUVLINEARPROGRAMMINGCONTAINERS_H

#include "Nuv/Utils/NuvLinearProgrammingRecords.h"

/// @cond
// NOLINTNEXTLINE(bugprone-macro-parentheses): the name of a file
#define NUV_TEMPLATE(name) <Nuv/Templates/name.decl.h>
#include "Nuv/Utils/NuvLinearProgrammingMaps.decl.h"
#undef NUV_TEMPLATE
/// @endcond

#endif
