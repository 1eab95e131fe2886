// The pair, defined. Each operation goes through the fields' own, first before second.
#include "Nuv/Templates/NuvElement.hpp"
#include "Nuv/Templates/NuvTemplateBegin.h"

NUV_SELF* NUV_OP(Construct)(NUV_SELF* x, const NUV_FIRST* first, const NUV_SECOND* second)
{
    // same bits: copies of elements that own nothing cannot fail
    if (!nuv::Construct(&x->first, first))
        return nullptr;
    // same bits: copies of elements that own nothing cannot fail
    if (!nuv::Construct(&x->second, second))
    {
        nuv::Destruct(&x->first);
        return nullptr;
    }
    return x;
}

NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y)
{
    (void)nuv::Construct(&x->first, &y->first);    // unreported by contract
    (void)nuv::Construct(&x->second, &y->second);  // unreported by contract
    return x;
}

void NUV_OP(Destruct)(NUV_SELF* x)
{
    nuv::Destruct(&x->second);
    nuv::Destruct(&x->first);
}

NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y)
{
    (void)nuv::Assign(&x->first, &y->first);    // unreported by contract
    (void)nuv::Assign(&x->second, &y->second);  // unreported by contract
    return x;
}

NuvBool NUV_OP(Swap)(NUV_SELF* x, NUV_SELF* y)
{
    if (x == y)
        return NUV_TRUE;
    NUV_SELF former;
    NUV_OP(ConstructCopy)(&former, x);
    NUV_OP(Assign)(x, y);
    NUV_OP(Assign)(y, &former);
    NUV_OP(Destruct)(&former);
    return NUV_TRUE;
}

template <>
inline constexpr bool nuv::kIsPlain<NUV_SELF> =
    nuv::kIsPlain<NUV_FIRST>&& nuv::kIsPlain<NUV_SECOND>;

template <>
struct nuv::Element<NUV_SELF>
{
    static bool Construct(NUV_SELF* x, const NUV_SELF* y)
    {
        return NUV_OP(Construct)(x, &y->first, &y->second) != nullptr;
    }

    static bool ConstructInPlaceOf(NUV_SELF* x, const NUV_SELF* former, const NUV_SELF* y)
    {
        // same bits: copies of elements that own nothing cannot fail
        if (!nuv::ConstructInPlaceOf(&x->first, &former->first, &y->first))
            return false;
        // same bits: copies of elements that own nothing cannot fail
        if (nuv::ConstructInPlaceOf(&x->second, &former->second, &y->second))
            return true;
        nuv::Destruct(&x->first);
        return false;
    }

    static bool Assign(NUV_SELF* x, const NUV_SELF* y)
    {
        // same bits: copies of elements that own nothing cannot fail
        return nuv::Assign(&x->first, &y->first) && nuv::Assign(&x->second, &y->second);
    }

    static void Destruct(NUV_SELF* x)
    {
        NUV_OP(Destruct)(x);
    }
};

#include "Nuv/Templates/NuvTemplateEnd.h"
