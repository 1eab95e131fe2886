/// @file
/// The scalar types. Their widths are the same on every platform, whatever the platform's own `int`
/// and `size_t` are.
#ifndef NUV_UTILS_NUVTYPES_H
#define NUV_UTILS_NUVTYPES_H

#include "Nuv/Utils/NuvBaseTypes.h"

typedef uint32_t NuvUint;
typedef int32_t NuvInt;
typedef float NuvFloat32;
/// A count of elements or bytes.
typedef uint64_t NuvSizeT;
/// A distance between two elements.
typedef int64_t NuvDistanceT;

#endif
