/// @file
/// The arrays of coefficients that rows are given in. Each container is stamped out once per
/// element type, declared or defined as NUV_TEMPLATE(name) names the template's header or its
/// source.

// (1-based variable index, coefficient)
#define NUV_SELF NuvPair_NuvUint__NuvFloat32
#define NUV_FIRST NuvUint
#define NUV_SECOND NuvFloat32
#include NUV_TEMPLATE(NuvPair)

#define NUV_SELF NuvVector_NuvPair_NuvUint__NuvFloat32
#define NUV_ELEMENT NuvPair_NuvUint__NuvFloat32
#include NUV_TEMPLATE(NuvVector)

// (variable name, coefficient or value)
#define NUV_SELF NuvPair_NuvString__NuvFloat32
#define NUV_FIRST NuvString
#define NUV_SECOND NuvFloat32
#include NUV_TEMPLATE(NuvPair)

#define NUV_SELF NuvVector_NuvPair_NuvString__NuvFloat32
#define NUV_ELEMENT NuvPair_NuvString__NuvFloat32
#include NUV_TEMPLATE(NuvVector)
