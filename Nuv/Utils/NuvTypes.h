/// @file
/// The scalar types. Their widths are the same on every platform, whatever the platform's own `int`
/// and `size_t` are.
#ifndef NUV_UTILS_NUVTYPES_H
#define NUV_UTILS_NUVTYPES_H

#include "Nuv/Utils/NuvBaseTypes.h"

/// Numbers of variables and constraints, 32 bits wide.
typedef uint32_t NuvUint;
/// A number with a sign, 32 bits wide.
typedef int32_t NuvInt;
/// binary32 of IEC 60559.
typedef float NuvFloat32;
/// A count of elements or bytes.
typedef uint64_t NuvSizeT;
/// A distance between two elements.
typedef int64_t NuvDistanceT;

#endif
