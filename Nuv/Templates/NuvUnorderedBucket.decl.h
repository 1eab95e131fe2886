/// @file
/// One bucket of a map: where its run of entries begins, and how long the run is. Needs NUV_KEY and
/// NUV_VALUE.
#include "Nuv/Templates/NuvTemplateBegin.h"
#define NUV_SELF NUV_OF_KEY_AND_VALUE(NuvUnorderedBucket_)
#define NUV_LIST NUV_OF_KEY_AND_VALUE(NuvList_NuvPair_)

typedef struct NUV_SELF NUV_SELF;

/// A run of entries in the map's list.
struct NUV_SELF
{
    /// The first entry of the run; the end of the map's list while the bucket is empty.
    NUV_JOIN(NUV_LIST, Iterator) first;
    /// How many entries the run has.
    NuvSizeT count;
};

/// @return `x`.
NUV_API NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y);
/// Does nothing: a bucket owns nothing.
NUV_API void NUV_OP(Destruct)(NUV_SELF* x);
/// @return `x`.
NUV_API NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y);
/// @return whether both fields are equal.
NUV_API NuvBool NUV_OP(Equal)(const NUV_SELF* x, const NUV_SELF* y);
/// @return whether the run of `x` is shorter.
NUV_API NuvBool NUV_OP(Less)(const NUV_SELF* x, const NUV_SELF* y);

#undef NUV_LIST
#include "Nuv/Templates/NuvTemplateEnd.h"
