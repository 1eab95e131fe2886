/// @file
/// What every header of the library rests on: the linkage of its functions, and the boolean.
#ifndef NUV_UTILS_NUVBASETYPES_H
#define NUV_UTILS_NUVBASETYPES_H

#include <stdint.h>

/// @cond
#if defined(_WIN32) && defined(NUV_SHARED)
#if defined(NUV_BUILDING)
#define NUV_VISIBLE __declspec(dllexport)
#else
#define NUV_VISIBLE __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define NUV_VISIBLE __attribute__((visibility("default")))
#else
#define NUV_VISIBLE
#endif
/// @endcond

/// Precedes the declaration of every exported function.
#if defined(__cplusplus)
#define NUV_API extern "C" NUV_VISIBLE
#else
#define NUV_API extern NUV_VISIBLE
#endif

/// Precedes a function that is defined in a header and exported by the library as well. One source
/// of the library asks for the exported copy by defining NUV_EMIT_INLINE; a C caller whose compiler
/// does not inline links to that copy.
#if !defined(__cplusplus)
#define NUV_INLINE inline
#elif defined(NUV_EMIT_INLINE) && defined(__GNUC__)
#define NUV_INLINE extern "C" NUV_VISIBLE __attribute__((used)) inline
#elif defined(_WIN32) && defined(NUV_SHARED) && !defined(NUV_BUILDING)
#define NUV_INLINE extern "C" inline
#else
#define NUV_INLINE extern "C" NUV_VISIBLE inline
#endif

/// A truth value: exactly NUV_FALSE or NUV_TRUE.
typedef uint8_t NuvBool;

/// The one false.
#define NUV_FALSE ((NuvBool)0)
/// The one true.
#define NUV_TRUE ((NuvBool)1)

#endif
