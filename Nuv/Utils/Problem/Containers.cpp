// The containers of the module, stamped out: pairs first, since the others hold them.
#include "Nuv/Utils/NuvLinearProgrammingContainers.h"

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Problem/Elements.hpp"

// (1-based variable index, coefficient)
#define NUV_SELF NuvPair_NuvUint__NuvFloat32
#define NUV_FIRST NuvUint
#define NUV_SECOND NuvFloat32
#include "Nuv/Templates/NuvPair.inl"

#define NUV_SELF NuvVector_NuvPair_NuvUint__NuvFloat32
#define NUV_ELEMENT NuvPair_NuvUint__NuvFloat32
#include "Nuv/Templates/NuvVector.inl"

// (variable name, coefficient or value)
#define NUV_SELF NuvPair_NuvString__NuvFloat32
#define NUV_FIRST NuvString
#define NUV_SECOND NuvFloat32
#include "Nuv/Templates/NuvPair.inl"

#define NUV_SELF NuvVector_NuvPair_NuvString__NuvFloat32
#define NUV_ELEMENT NuvPair_NuvString__NuvFloat32
#include "Nuv/Templates/NuvVector.inl"

// The variables by name.
#define NUV_SELF NuvPair_NuvString__NuvLinearProgrammingVariable
#define NUV_FIRST NuvString
#define NUV_SECOND NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvPair.inl"

#define NUV_SELF NuvList_NuvPair_NuvString__NuvLinearProgrammingVariable
#define NUV_ELEMENT NuvPair_NuvString__NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvList.inl"

#define NUV_KEY NuvString
#define NUV_VALUE NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvUnorderedBucket.inl"

#define NUV_SELF NuvVector_NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable
#define NUV_ELEMENT NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvVector.inl"

#define NUV_KEY NuvString
#define NUV_VALUE NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvUnordered.inl"

// The constraints by number.
#define NUV_SELF NuvPair_NuvUint__NuvLinearProgrammingConstraint
#define NUV_FIRST NuvUint
#define NUV_SECOND NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvPair.inl"

#define NUV_SELF NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraint
#define NUV_ELEMENT NuvPair_NuvUint__NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvList.inl"

#define NUV_KEY NuvUint
#define NUV_VALUE NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvUnorderedBucket.inl"

#define NUV_SELF NuvVector_NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint
#define NUV_ELEMENT NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvVector.inl"

#define NUV_KEY NuvUint
#define NUV_VALUE NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvUnordered.inl"

// The standard form.
#define NUV_SELF NuvMatrix_NuvUint
#define NUV_ELEMENT NuvUint
#include "Nuv/Templates/NuvMatrix.inl"

#define NUV_SELF NuvMatrix_NuvFloat32
#define NUV_ELEMENT NuvFloat32
#include "Nuv/Templates/NuvMatrix.inl"

#define NUV_SELF NuvMatrix_NuvFloat32
#define NUV_ELEMENT NuvFloat32
#include "Nuv/Templates/NuvMatrixReal.inl"
