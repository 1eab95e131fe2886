/// @file
/// Opens a template. A template is a header that is included once per instantiation; macros only
/// name its parameters:
///   NUV_SELF                 the instantiation's name, which every operation's name begins with
///   NUV_ELEMENT              the element type of an array, list or matrix
///   NUV_FIRST, NUV_SECOND    the field types of a pair
///   NUV_KEY, NUV_VALUE       the types of a map
/// NuvTemplateEnd.h forgets the parameters again.
#include "Nuv/Utils/NuvAllocator.h"
#include "Nuv/Utils/NuvTypes.h"

#if !defined(NUV_JOIN)
/// @cond
#define NUV_JOIN_(a, b) a##b
#define NUV_JOIN(a, b) NUV_JOIN_(a, b)
/// @endcond
#endif

/// The exported name of an operation of the instantiation.
#define NUV_OP(name) NUV_JOIN(NUV_SELF, name)

/// The name of a type that goes with the same element.
#define NUV_OF_ELEMENT(prefix) NUV_JOIN(prefix, NUV_ELEMENT)
/// The same of a key and a value.
#define NUV_OF_KEY_AND_VALUE(prefix) NUV_JOIN(NUV_JOIN(prefix, NUV_KEY), NUV_JOIN(__, NUV_VALUE))
