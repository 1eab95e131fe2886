/// @file
/// The maps that hold a model and the matrices that hold its standard form. Each container is
/// stamped out here once per element type; its operations and their contracts stand in the template
/// of the same name.
#ifndef NUV_UTILS_NUVLINEARPROGRAMMINGCONTAINERS_H
#define NUV_UTILS_NUVLINEARPROGRAMMINGCONTAINERS_H

#include "Nuv/Utils/NuvLinearProgrammingRecords.h"

// The variables by name.
#define NUV_SELF NuvPair_NuvString__NuvLinearProgrammingVariable
#define NUV_FIRST NuvString
#define NUV_SECOND NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvPair.decl.h"

#define NUV_SELF NuvList_NuvPair_NuvString__NuvLinearProgrammingVariable
#define NUV_ELEMENT NuvPair_NuvString__NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvList.decl.h"

#define NUV_KEY NuvString
#define NUV_VALUE NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvUnorderedBucket.decl.h"

#define NUV_SELF NuvVector_NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable
#define NUV_ELEMENT NuvUnorderedBucket_NuvString__NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvVector.decl.h"

#define NUV_KEY NuvString
#define NUV_VALUE NuvLinearProgrammingVariable
#include "Nuv/Templates/NuvUnordered.decl.h"

// The constraints by number.
#define NUV_SELF NuvPair_NuvUint__NuvLinearProgrammingConstraint
#define NUV_FIRST NuvUint
#define NUV_SECOND NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvPair.decl.h"

#define NUV_SELF NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraint
#define NUV_ELEMENT NuvPair_NuvUint__NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvList.decl.h"

#define NUV_KEY NuvUint
#define NUV_VALUE NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvUnorderedBucket.decl.h"

#define NUV_SELF NuvVector_NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint
#define NUV_ELEMENT NuvUnorderedBucket_NuvUint__NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvVector.decl.h"

#define NUV_KEY NuvUint
#define NUV_VALUE NuvLinearProgrammingConstraint
#include "Nuv/Templates/NuvUnordered.decl.h"

// The standard form.
#define NUV_SELF NuvMatrix_NuvUint
#define NUV_ELEMENT NuvUint
#include "Nuv/Templates/NuvMatrix.decl.h"

#define NUV_SELF NuvMatrix_NuvFloat32
#define NUV_ELEMENT NuvFloat32
#include "Nuv/Templates/NuvMatrix.decl.h"

#define NUV_SELF NuvMatrix_NuvFloat32
#define NUV_ELEMENT NuvFloat32
#include "Nuv/Templates/NuvMatrixReal.decl.h"

#endif
