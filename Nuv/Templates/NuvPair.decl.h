/// @file
/// The pair: two fields by value. Needs NUV_SELF, NUV_FIRST and NUV_SECOND.
#include "Nuv/Templates/NuvTemplateBegin.h"

typedef struct NUV_SELF NUV_SELF;

/// Two fields by value.
struct NUV_SELF
{
    NUV_FIRST first;    ///< the key, where the pair is an entry of a map
    NUV_SECOND second;  ///< the value, where the pair is an entry of a map
};

/// Copies the two fields.
/// @return `x`, or null when a field cannot be copied; `x` then owns nothing.
NUV_API NUV_SELF* NUV_OP(Construct)(NUV_SELF* x, const NUV_FIRST* first, const NUV_SECOND* second);

/// Copies both fields of `y`. A name whose copy is refused is left empty, without a report.
/// @return `x`.
NUV_API NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y);

/// Destroys both fields.
NUV_API void NUV_OP(Destruct)(NUV_SELF* x);

/// Assigns both fields. A name whose assignment is refused keeps its value, without a report.
/// @return `x`.
NUV_API NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y);

/// Exchanges the values of two pairs. Names travel by copy, each staying on its own allocator.
/// @return true.
NUV_API NuvBool NUV_OP(Swap)(NUV_SELF* x, NUV_SELF* y);

#include "Nuv/Templates/NuvTemplateEnd.h"
