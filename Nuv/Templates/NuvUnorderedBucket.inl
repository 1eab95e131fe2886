// One bucket of a map, defined: two words, copied as they are.
#include "Nuv/Templates/NuvElement.hpp"
#include "Nuv/Templates/NuvTemplateBegin.h"
#define NUV_SELF NUV_OF_KEY_AND_VALUE(NuvUnorderedBucket_)

NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y)
{
    *x = *y;
    return x;
}

void NUV_OP(Destruct)(NUV_SELF*) {}

NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y)
{
    *x = *y;
    return x;
}

NuvBool NUV_OP(Equal)(const NUV_SELF* x, const NUV_SELF* y)
{
    return nuv::AsNuvBool(x->first == y->first && x->count == y->count);
}

NuvBool NUV_OP(Less)(const NUV_SELF* x, const NUV_SELF* y)
{
    return nuv::AsNuvBool(x->count < y->count);
}

template <>
inline constexpr bool nuv::kIsPlain<NUV_SELF> = true;

template <>
struct nuv::Element<NUV_SELF>
{
    static bool Construct(NUV_SELF* x, const NUV_SELF* y)
    {
        return NUV_OP(ConstructCopy)(x, y) != nullptr;
    }

    static bool ConstructInPlaceOf(NUV_SELF* x, const NUV_SELF*, const NUV_SELF* y)
    {
        return NUV_OP(ConstructCopy)(x, y) != nullptr;
    }

    static bool Assign(NUV_SELF* x, const NUV_SELF* y)
    {
        return NUV_OP(Assign)(x, y) != nullptr;
    }

    static void Destruct(NUV_SELF* x)
    {
        NUV_OP(Destruct)(x);
    }
};

#include "Nuv/Templates/NuvTemplateEnd.h"
