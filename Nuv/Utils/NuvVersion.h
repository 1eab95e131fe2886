/// @file
/// The version of these headers, for the preprocessor and as text. Before 1.0 a minor version may
/// change the interface; a patch never does.
#ifndef NUV_UTILS_NUVVERSION_H
#define NUV_UTILS_NUVVERSION_H

/// Rises with changes of the interface, from 1.0 on.
#define NUV_VERSION_MAJOR 0
/// Rises with additions; before 1.0 with changes too.
#define NUV_VERSION_MINOR 1
/// Rises with what no program notices but by a defect that is gone.
#define NUV_VERSION_PATCH 0
/// The three, with points between them.
#define NUV_VERSION "0.1.0"

#endif
