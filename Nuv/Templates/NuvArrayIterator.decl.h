/// @file
/// One kind of iterator of the growable array. Needs what NuvIterator.decl.h needs. A reverse
/// position is a pointer one past the element that it denotes.
#include "Nuv/Templates/NuvIterator.decl.h"

/// A count of places, negative backwards.
typedef NuvDistanceT NUV_ITERATOR_OP(DifferenceType);

/// @return the element `n` places on.
NUV_API NUV_CONTENT* NUV_ITERATOR_OP(At)(const NUV_ITERATOR* it, NuvDistanceT n);
///@{
/// Goes `n` places on, or back.
NUV_API void NUV_ITERATOR_OP(IncrementN)(NUV_ITERATOR* it, NuvDistanceT n);
NUV_API void NUV_ITERATOR_OP(DecrementN)(NUV_ITERATOR* it, NuvDistanceT n);
///@}
/// @return the position `n` places on.
NUV_API NUV_ITERATOR NUV_ITERATOR_OP(Add)(const NUV_ITERATOR* it, NuvDistanceT n);
/// @return how many places `a` is ahead of `b`.
NUV_API NuvDistanceT NUV_ITERATOR_OP(Subtract)(const NUV_ITERATOR* a, const NUV_ITERATOR* b);

#undef NUV_ITERATOR_OP
#undef NUV_ITERATOR
#undef NUV_CONTENT
