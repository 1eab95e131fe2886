/// @file
/// The maps that hold a model and the matrices that hold its standard form; NUV_TEMPLATE as in
/// NuvLinearProgrammingTerms.decl.h.

// The variables by name.
#define NUV_SELF NuvPair_NuvString__NuvLinearProgrammingVariable
#define NUV_FIRST NuvString
#define NUV_SECOND NuvLinearProgrammingVariable
#include NUV_TEMPLATE(NuvPair)

#define NUV_SELF NuvList_NuvPair_NuvString__NuvLinearProgrammingVariable
#define NUV_ELEMENT NuvPair_NuvString__NuvLinearProgrammingVariable
#include NUV_TEMPLATE(NuvList)

#define NUV_KEY NuvString
#define NUV_VALUE NuvLinearProgrammingVariable
#include NUV_TEMPLATE(NuvUnorderedBucket)

#define NUV_SELF NuvVector_NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable
#define NUV_ELEMENT NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable
#include NUV_TEMPLATE(NuvVector)

#define NUV_KEY NuvString
#define NUV_VALUE NuvLinearProgrammingVariable
#include NUV_TEMPLATE(NuvUnordered)

// The constraints by number.
#define NUV_SELF NuvPair_NuvUint__NuvLinearProgrammingConstraint
#define NUV_FIRST NuvUint
#define NUV_SECOND NuvLinearProgrammingConstraint
#include NUV_TEMPLATE(NuvPair)

#define NUV_SELF NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraint
#define NUV_ELEMENT NuvPair_NuvUint__NuvLinearProgrammingConstraint
#include NUV_TEMPLATE(NuvList)

#define NUV_KEY NuvUint
#define NUV_VALUE NuvLinearProgrammingConstraint
#include NUV_TEMPLATE(NuvUnorderedBucket)

#define NUV_SELF NuvVector_NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint
#define NUV_ELEMENT NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint
#include NUV_TEMPLATE(NuvVector)

#define NUV_KEY NuvUint
#define NUV_VALUE NuvLinearProgrammingConstraint
#include NUV_TEMPLATE(NuvUnordered)

// The standard form.
#define NUV_SELF NuvMatrix_NuvUint
#define NUV_ELEMENT NuvUint
#include NUV_TEMPLATE(NuvMatrix)

#define NUV_SELF NuvMatrix_NuvFloat32
#define NUV_ELEMENT NuvFloat32
#include NUV_TEMPLATE(NuvMatrix)

#define NUV_SELF NuvMatrix_NuvFloat32
#define NUV_ELEMENT NuvFloat32
#include NUV_TEMPLATE(NuvMatrixReal)
