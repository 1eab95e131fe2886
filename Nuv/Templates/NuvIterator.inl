// What every kind of iterator can do, defined. Besides NUV_ITERATOR and NUV_CONTENT it needs
// NUV_STEP, how the kind moves.
#define NUV_ITERATOR_OP(name) NUV_JOIN(NUV_ITERATOR, name)

void NUV_ITERATOR_OP(Destruct)(NUV_ITERATOR*) {}

NUV_ITERATOR* NUV_ITERATOR_OP(ConstructCopy)(NUV_ITERATOR* x, const NUV_ITERATOR* y)
{
    *x = *y;
    return x;
}

NUV_ITERATOR* NUV_ITERATOR_OP(ConstructExceptional)(NUV_ITERATOR* x)
{
    *x = nullptr;
    return x;
}

NuvBool NUV_ITERATOR_OP(IsExceptional)(const NUV_ITERATOR* x)
{
    return nuv::AsNuvBool(*x == nullptr);
}

NUV_ITERATOR* NUV_ITERATOR_OP(Assign)(NUV_ITERATOR* x, const NUV_ITERATOR* y)
{
    *x = *y;
    return x;
}

NuvBool NUV_ITERATOR_OP(Swap)(NUV_ITERATOR* x, NUV_ITERATOR* y)
{
    nuv::Exchange(x, y);
    return NUV_TRUE;
}

NuvBool NUV_ITERATOR_OP(Equal)(const NUV_ITERATOR* a, const NUV_ITERATOR* b)
{
    return nuv::AsNuvBool(*a == *b);
}

NuvBool NUV_ITERATOR_OP(Less)(const NUV_ITERATOR* a, const NUV_ITERATOR* b)
{
    return nuv::AsNuvBool(NUV_STEP::Less(*a, *b));
}

NUV_CONTENT* NUV_ITERATOR_OP(ContentOf)(const NUV_ITERATOR* it)
{
    return NUV_STEP::Content(*it);
}

const NUV_ELEMENT* NUV_ITERATOR_OP(ContentOfConst)(const NUV_ITERATOR* it)
{
    return NUV_STEP::Content(*it);
}

void NUV_ITERATOR_OP(Increment)(NUV_ITERATOR* it)
{
    *it = NUV_STEP::Next(*it);
}

void NUV_ITERATOR_OP(Decrement)(NUV_ITERATOR* it)
{
    *it = NUV_STEP::Previous(*it);
}
