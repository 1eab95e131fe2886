// One kind of iterator of the list, defined.
#include "Nuv/Templates/NuvIterator.inl"

NUV_ITERATOR* NUV_ITERATOR_OP(Construct)(NUV_ITERATOR* x)
{
    return NUV_ITERATOR_OP(ConstructExceptional)(x);
}

#undef NUV_ITERATOR_OP
#undef NUV_ITERATOR
#undef NUV_CONTENT
#undef NUV_STEP
