/// @file
/// The version of these headers, for the preprocessor and as text. Before 1.0 a minor version may
/// change the interface; a patch never does.
#ifndef NUV_UTILS_NUVVERSION_H
#define NUV_UTILS_NUVVERSION_H

#define NUV_VERSION_MAJOR 0
#define NUV_VERSION_MINOR 1
#define NUV_VERSION_PATCH 0
#define NUV_VERSION "0.1.0"

#endif
