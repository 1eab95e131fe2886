// The block of a matrix: its size and its state, for any record of the shape {allocator, nr, nc,
// data}.
#pragma once

#include "Nuv/Templates/NuvElement.hpp"
#include "Nuv/Utils/NuvAllocatorInline.h"

namespace nuv
{
/// The number of elements in the block, formed in 32 bits by contract.
template <class Matrix>
inline NuvUint CountOf(const Matrix* x)
{
    return x->nr * x->nc;
}

template <class Matrix>
inline NuvSizeT BytesOf(const Matrix* x)
{
    return static_cast<NuvSizeT>(CountOf(x)) * sizeof(*x->data);
}

/// Whether each element of the shape has a place in the block: storage was granted and the count
/// did not wrap.
template <class Matrix>
inline bool IsStored(const Matrix* x)
{
    return x->data && static_cast<NuvSizeT>(x->nr) * x->nc == CountOf(x);
}

template <class Matrix>
inline bool AllocateStorage(Matrix* x)
{
    using Element = std::remove_pointer_t<decltype(x->data)>;
    x->data = static_cast<Element*>(NuvAllocatorAllocate(x->allocator, BytesOf(x)));
    return x->data != nullptr;
}

template <class Matrix>
inline void DeallocateStorage(Matrix* x)
{
    // same bits: a matrix without rows has no block
    if (x->nr != 0 && x->data)
        NuvAllocatorDeallocate(x->allocator, x->data, BytesOf(x));
    x->data = nullptr;
}

/// The start of a row; the index is formed in 64 bits.
template <class Matrix>
inline auto* RowOf(const Matrix* x, NuvSizeT row)
{
    return x->data + row * x->nc;
}

/// Whether [start, start + count) lies within [0, limit).
inline bool IsWithin(NuvUint start, NuvUint count, NuvUint limit)
{
    return static_cast<NuvSizeT>(start) + count <= limit;
}

inline bool HasOneZeroDimension(NuvUint rows, NuvUint cols)
{
    return (rows == 0) != (cols == 0);
}
}  // namespace nuv
