// One kind of iterator of the growable array, defined.
#include "Nuv/Templates/NuvIterator.inl"

NUV_CONTENT* NUV_ITERATOR_OP(At)(const NUV_ITERATOR* it, NuvDistanceT n)
{
    return NUV_STEP::Content(NUV_STEP::Step(*it, n));
}

void NUV_ITERATOR_OP(IncrementN)(NUV_ITERATOR* it, NuvDistanceT n)
{
    *it = NUV_STEP::Step(*it, n);
}

void NUV_ITERATOR_OP(DecrementN)(NUV_ITERATOR* it, NuvDistanceT n)
{
    *it = NUV_STEP::Step(*it, -n);
}

NUV_ITERATOR NUV_ITERATOR_OP(Add)(const NUV_ITERATOR* it, NuvDistanceT n)
{
    return NUV_STEP::Step(*it, n);
}

NuvDistanceT NUV_ITERATOR_OP(Subtract)(const NUV_ITERATOR* a, const NUV_ITERATOR* b)
{
    return NUV_STEP::Distance(*a, *b);
}

#undef NUV_ITERATOR_OP
#undef NUV_ITERATOR
#undef NUV_CONTENT
#undef NUV_STEP
