// The dense matrix, defined. Operations whose operand or result has no storage leave the result as
// it is.
#include "Nuv/Templates/NuvStorage.hpp"
#include "Nuv/Templates/NuvTemplateBegin.h"
#include "Nuv/Utils/Kernels/DenseAlgebra.h"

NUV_SELF* NUV_OP(ConstructDefault)(NUV_SELF* x, NuvAllocator* a)
{
    x->allocator = a;
    x->nr = 0;
    x->nc = 0;
    x->data = nullptr;
    return x;
}

NUV_SELF* NUV_OP(Construct)(NUV_SELF* x, NuvUint numRows, NuvUint numCols, NuvAllocator* a)
{
    if (nuv::HasOneZeroDimension(numRows, numCols))
        return nullptr;
    x->allocator = a;
    x->nr = numRows;
    x->nc = numCols;
    x->data = nullptr;
    return numRows == 0 || nuv::AllocateStorage(x) ? x : nullptr;
}

NUV_SELF* NUV_OP(ConstructIdentity)(NUV_SELF* x, NuvUint dimension, NuvAllocator* a)
{
    if (dimension == 0 || !NUV_OP(Construct)(x, dimension, dimension, a))
        return nullptr;
    NUV_OP(Reset)(x);
    if (nuv::IsStored(x))
        for (NuvSizeT i = 0; i != dimension; ++i)
            nuv::RowOf(x, i)[i] = NUV_ELEMENT(1);
    return x;
}

NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y)
{
    x->allocator = y->allocator;
    x->nr = y->nr;
    x->nc = y->nc;
    x->data = nullptr;
    if (y->nr == 0)
        return x;
    if (!y->data || !nuv::AllocateStorage(x))
        return nullptr;
    NuvMemCopy(x->data, y->data, nuv::BytesOf(x));
    return x;
}

NUV_SELF* NUV_OP(ConstructCopyRange)(NUV_SELF* x, const NUV_SELF* y, NuvUint sourceRow,
                                     NuvUint sourceCol, NuvUint numRows, NuvUint numCols,
                                     NuvAllocator*)
{
    if (!nuv::IsWithin(sourceRow, numRows, y->nr) || !nuv::IsWithin(sourceCol, numCols, y->nc))
        return nullptr;
    x->allocator = y->allocator;
    x->nr = numRows;
    x->nc = numCols;
    x->data = nullptr;
    if (numRows == 0)
        return x;
    if ((numCols != 0 && !nuv::IsStored(y)) || !nuv::AllocateStorage(x))
        return nullptr;
    // Of no columns nothing is read, and y may have no storage to count addresses in.
    for (NuvSizeT i = 0; numCols != 0 && i != numRows; ++i)
        NuvMemCopy(nuv::RowOf(x, i), nuv::RowOf(y, sourceRow + i) + sourceCol,
                   numCols * sizeof(NUV_ELEMENT));
    return x;
}

void NUV_OP(Reset)(NUV_SELF* x)
{
    if (x->data)
        NuvMemZero(x->data, nuv::BytesOf(x));
}

void NUV_OP(Destruct)(NUV_SELF* x)
{
    nuv::DeallocateStorage(x);
    x->nr = 0;
    x->nc = 0;
}

NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y)
{
    x->allocator = y->allocator;
    if (x == y)
        return x;
    if (x->nr != y->nr || x->nc != y->nc)
    {
        if (x->data || x->nr == 0)
            NuvAllocatorDeallocate(x->allocator, x->data, nuv::BytesOf(x));
        x->nr = y->nr;
        x->nc = y->nc;
        x->data = nullptr;
    }
    if (y->nr == 0)
        return x;
    if (!y->data || (!x->data && !nuv::AllocateStorage(x)))
        return nullptr;
    NuvMemCopy(x->data, y->data, nuv::BytesOf(x));
    return x;
}

NUV_SELF* NUV_OP(CopyRange)(NUV_SELF* x, const NUV_SELF* y, NuvUint xSourceRow, NuvUint xSourceCol,
                            NuvUint ySourceRow, NuvUint ySourceCol, NuvUint numRows,
                            NuvUint numCols)
{
    if (!nuv::IsWithin(xSourceRow, numRows, x->nr) || !nuv::IsWithin(xSourceCol, numCols, x->nc) ||
        !nuv::IsWithin(ySourceRow, numRows, y->nr) || !nuv::IsWithin(ySourceCol, numCols, y->nc))
        return nullptr;
    if (!nuv::IsStored(x) || !nuv::IsStored(y))
        return x;
    for (NuvSizeT i = 0; i != numRows; ++i)
    {
        NUV_ELEMENT* const to = nuv::RowOf(x, xSourceRow + i) + xSourceCol;
        const NUV_ELEMENT* const from = nuv::RowOf(y, ySourceRow + i) + ySourceCol;
        for (NuvSizeT j = 0; j != numCols; ++j)
            to[j] = from[j];
    }
    return x;
}

NUV_SELF* NUV_OP(Resize)(NUV_SELF* x, NuvUint rows, NuvUint cols)
{
    if (nuv::HasOneZeroDimension(rows, cols))
        return nullptr;
    if (rows == x->nr && cols == x->nc && (x->data || rows == 0))
        return x;
    nuv::DeallocateStorage(x);
    x->nr = rows;
    x->nc = cols;
    return rows == 0 || nuv::AllocateStorage(x) ? x : nullptr;
}

NuvBool NUV_OP(Swap)(NUV_SELF* x, NUV_SELF* y)
{
    if (x->nr != y->nr || x->nc != y->nc)
        return NUV_FALSE;
    NUV_SELF former;
    (void)NUV_OP(ConstructCopy)(&former, x);  // unreported by contract, like the two assignments
    (void)NUV_OP(Assign)(x, y);
    (void)NUV_OP(Assign)(y, &former);
    NUV_OP(Destruct)(&former);
    return NUV_TRUE;
}

NuvBool NUV_OP(SwapRow)(NUV_SELF* x, NUV_SELF* y, NuvUint rowX, NuvUint rowY)
{
    if (x->nc != y->nc || rowX >= x->nr || rowY >= y->nr)
        return NUV_FALSE;
    if (!nuv::IsStored(x) || !nuv::IsStored(y))
        return NUV_TRUE;
    for (NuvSizeT j = 0; j != x->nc; ++j)
        nuv::Exchange(nuv::RowOf(x, rowX) + j, nuv::RowOf(y, rowY) + j);
    return NUV_TRUE;
}

NuvBool NUV_OP(SwapColumn)(NUV_SELF* x, NUV_SELF* y, NuvUint columnX, NuvUint columnY)
{
    if (x->nr != y->nr || columnX >= x->nc || columnY >= y->nc)
        return NUV_FALSE;
    if (!nuv::IsStored(x) || !nuv::IsStored(y))
        return NUV_TRUE;
    for (NuvSizeT i = 0; i != x->nr; ++i)
        nuv::Exchange(nuv::RowOf(x, i) + columnX, nuv::RowOf(y, i) + columnY);
    return NUV_TRUE;
}

NUV_ELEMENT NUV_OP(At)(const NUV_SELF* x, NuvUint row, NuvUint col)
{
    return x->data ? x->data[row * x->nc + col] : NUV_ELEMENT(0);
}

void NUV_OP(SetVal)(NUV_SELF* x, NuvUint row, NuvUint col, NUV_ELEMENT val)
{
    if (x->data)
        x->data[row * x->nc + col] = val;
}

NuvUint NUV_OP(GetNumRows)(const NUV_SELF* x)
{
    return x->nr;
}

NuvUint NUV_OP(GetNumColumns)(const NUV_SELF* x)
{
    return x->nc;
}

NuvAllocator* NUV_OP(GetAllocator)(const NUV_SELF* x)
{
    return x->allocator;
}

NuvBool NUV_OP(Equal)(const NUV_SELF* x, const NUV_SELF* y)
{
    if (x->nr != y->nr || x->nc != y->nc)
        return NUV_FALSE;
    if (!x->data || !y->data)
        return nuv::AsNuvBool(x->data == y->data);
    return NuvMemEqual(x->data, y->data, nuv::BytesOf(x));
}

NuvBool NUV_OP(Less)(const NUV_SELF*, const NUV_SELF*)
{
    return NUV_FALSE;
}

NuvBool NUV_OP(Add)(const NUV_SELF* x, const NUV_SELF* y, NUV_SELF* result)
{
    if (x->nr != y->nr || x->nc != y->nc)
        return NUV_FALSE;
    (void)NUV_OP(Resize)(result, x->nr, x->nc);  // unreported by contract
    if (x->data && y->data && result->data)
        for (NuvSizeT i = 0; i != nuv::CountOf(x); ++i)
            result->data[i] = x->data[i] + y->data[i];
    return NUV_TRUE;
}

NuvBool NUV_OP(Multiply)(const NUV_SELF* x, const NUV_SELF* y, NUV_SELF* result)
{
    if (x->nc != y->nr)
        return NUV_FALSE;
    (void)NUV_OP(Resize)(result, x->nr, y->nc);  // unreported by contract
    if (!nuv::IsStored(result))
        return NUV_TRUE;
    if (x->nc != 0 && (!nuv::IsStored(x) || !nuv::IsStored(y)))
        return NUV_TRUE;
    nuv::Multiply(x->data, y->data, result->data, x->nr, x->nc, y->nc);
    return NUV_TRUE;
}

NuvBool NUV_OP(MultiplyScalar)(const NUV_SELF* x, NUV_ELEMENT y, NUV_SELF* result)
{
    (void)NUV_OP(Resize)(result, x->nr, x->nc);  // unreported by contract
    if (x->data && result->data)
        for (NuvSizeT i = 0; i != nuv::CountOf(x); ++i)
            result->data[i] = x->data[i] * y;
    return NUV_TRUE;
}

NuvBool NUV_OP(Transpose)(const NUV_SELF* x, NUV_SELF* result)
{
    (void)NUV_OP(Resize)(result, x->nc, x->nr);  // unreported by contract
    if (!nuv::IsStored(x) || !nuv::IsStored(result))
        return NUV_TRUE;
    for (NuvSizeT i = 0; i != x->nr; ++i)
        for (NuvSizeT j = 0; j != x->nc; ++j)
            nuv::RowOf(result, j)[i] = nuv::RowOf(x, i)[j];
    return NUV_TRUE;
}

void NUV_OP(Dump)(const NUV_SELF*, const char*, unsigned int) {}

#include "Nuv/Templates/NuvTemplateEnd.h"
