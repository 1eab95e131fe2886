/// @file
/// One kind of iterator of the list. Needs what NuvIterator.decl.h needs. A reverse position holds
/// the node after the one that it denotes.
#include "Nuv/Templates/NuvIterator.decl.h"

/// Makes `x` exceptional.
/// @return `x`.
NUV_API NUV_ITERATOR* NUV_ITERATOR_OP(Construct)(NUV_ITERATOR* x);

#undef NUV_ITERATOR_OP
#undef NUV_ITERATOR
#undef NUV_CONTENT
