// What only matrices of real numbers have, defined.
#include "Nuv/Templates/NuvStorage.hpp"
#include "Nuv/Templates/NuvTemplateBegin.h"
#include "Nuv/Utils/Kernels/DenseAlgebra.h"

NuvBool NUV_OP(Subtract)(const NUV_SELF* x, const NUV_SELF* y, NUV_SELF* result)
{
    if (x->nr != y->nr || x->nc != y->nc)
        return NUV_FALSE;
    (void)NUV_OP(Resize)(result, x->nr, x->nc);  // unreported by contract
    if (x->data && y->data && result->data)
        for (NuvSizeT i = 0; i != nuv::CountOf(x); ++i)
            result->data[i] = x->data[i] - y->data[i];
    return NUV_TRUE;
}

NuvBool NUV_OP(Inverse)(const NUV_SELF* x, NUV_SELF* result)
{
    NUV_SELF y;
    (void)NUV_OP(ConstructCopy)(&y, x);  // a refused copy has no storage, which is tested below
    if (y.nr != y.nc)
        return NUV_FALSE;  // a copy that is not square stays behind, by contract
    bool isInverted = false;
    if (nuv::IsStored(&y) && NUV_OP(Resize)(result, y.nr, y.nc))
    {
        NUV_OP(Reset)(result);
        for (NuvSizeT i = 0; i != result->nr; ++i)
            nuv::RowOf(result, i)[i] = NUV_ELEMENT(1);
        isInverted = nuv::ReduceToIdentity(nuv::KernelsOfThisMachine(), y.data, result->data, y.nr);
    }
    NUV_OP(Destruct)(&y);
    return nuv::AsNuvBool(isInverted);
}

#include "Nuv/Templates/NuvTemplateEnd.h"
