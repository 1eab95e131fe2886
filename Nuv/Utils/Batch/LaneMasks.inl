// Comparisons lane by lane, choices by them, and elements picked by an index of each lane's own.
#include "Nuv/Utils/Kernels/Lanes.inl"

namespace nuv
{
namespace
{
#if NUV_LANES == 16
using Mask = __mmask16;

NUV_LANES_INLINE Mask IsEqual(Lanes x, Lanes y)
{
    return _mm512_cmp_ps_mask(x, y, _CMP_EQ_OQ);
}

NUV_LANES_INLINE Mask IsLarger(Lanes x, Lanes y)
{
    return _mm512_cmp_ps_mask(x, y, _CMP_GT_OQ);
}

NUV_LANES_INLINE Mask IsEqual(UintLanes x, UintLanes y)
{
    return _mm512_cmpeq_epu32_mask((__m512i)x, (__m512i)y);
}

NUV_LANES_INLINE Mask IsLarger(UintLanes x, UintLanes y)
{
    return _mm512_cmpgt_epu32_mask((__m512i)x, (__m512i)y);
}

NUV_LANES_INLINE Lanes Select(Mask mask, Lanes x, Lanes y)
{
    return _mm512_mask_blend_ps(mask, y, x);
}

NUV_LANES_INLINE UintLanes Select(Mask mask, UintLanes x, UintLanes y)
{
    return (UintLanes)_mm512_mask_blend_epi32(mask, (__m512i)y, (__m512i)x);
}

NUV_LANES_INLINE Mask Not(Mask mask)
{
    return static_cast<Mask>(~mask);
}

NUV_LANES_INLINE Mask And(Mask x, Mask y)
{
    return static_cast<Mask>(x & y);
}

NUV_LANES_INLINE Mask Or(Mask x, Mask y)
{
    return static_cast<Mask>(x | y);
}

NUV_LANES_INLINE NuvUint BitsOf(Mask mask)
{
    return mask;
}

NUV_LANES_INLINE Lanes Gather(const NuvFloat32* base, UintLanes index)
{
    return _mm512_mask_i32gather_ps(Lanes{}, UINT16_MAX, (__m512i)index, base, 4);
}

NUV_LANES_INLINE UintLanes Gather(const NuvUint* base, UintLanes index)
{
    return (UintLanes)_mm512_mask_i32gather_epi32(__m512i{}, UINT16_MAX, (__m512i)index, base, 4);
}
#else
using Mask = decltype(Lanes{} > Lanes{});

template <class T>
NUV_LANES_INLINE Mask IsEqual(T x, T y)
{
    return x == y;
}

template <class T>
NUV_LANES_INLINE Mask IsLarger(T x, T y)
{
    return x > y;
}

template <class T>
NUV_LANES_INLINE T Select(Mask mask, T x, T y)
{
    return mask ? x : y;
}

#if NUV_LANES == 1
NUV_LANES_INLINE Mask Not(Mask mask)
{
    return !mask;
}

NUV_LANES_INLINE Mask And(Mask x, Mask y)
{
    return x && y;
}

NUV_LANES_INLINE Mask Or(Mask x, Mask y)
{
    return x || y;
}

NUV_LANES_INLINE NuvUint BitsOf(Mask mask)
{
    return mask ? 1 : 0;
}
#else
NUV_LANES_INLINE Mask Not(Mask mask)
{
    return ~mask;
}

NUV_LANES_INLINE Mask And(Mask x, Mask y)
{
    return x & y;
}

NUV_LANES_INLINE Mask Or(Mask x, Mask y)
{
    return x | y;
}

NUV_LANES_INLINE NuvUint BitsOf(Mask mask)
{
#if NUV_LANES == 8
    return static_cast<NuvUint>(_mm256_movemask_ps((__m256)mask));
#else
    NuvUint bits = 0;
    for (NuvUint lane = 0; lane != kLanes; ++lane)
        bits |= (static_cast<NuvUint>(mask[lane]) & 1U) << lane;
    return bits;
#endif
}
#endif

template <class Vector, class Element>
NUV_LANES_INLINE Vector GatherAs(const Element* base, UintLanes index)
{
    NuvUint indices[kLanes];
    Element elements[kLanes];
    memcpy(indices, &index, sizeof indices);
    for (NuvSizeT lane = 0; lane != kLanes; ++lane)
        elements[lane] = base[indices[lane]];
    return LoadAs<Vector>(elements);
}

NUV_LANES_INLINE Lanes Gather(const NuvFloat32* base, UintLanes index)
{
#if NUV_LANES == 8
    return _mm256_i32gather_ps(base, (__m256i)index, 4);
#else
    return GatherAs<Lanes>(base, index);
#endif
}

NUV_LANES_INLINE UintLanes Gather(const NuvUint* base, UintLanes index)
{
    return GatherAs<UintLanes>(base, index);
}
#endif

NUV_LANES_INLINE UintLanes LoadUint(const NuvUint* from)
{
    return LoadAs<UintLanes>(from);
}

/// Where a truth value is true.
NUV_LANES_INLINE Mask MaskOf(const NuvUint* truths)
{
    return Not(IsEqual(LoadUint(truths), UintLanes{}));
}

/// The element of each lane at that lane's own index of an array.
template <class Element>
NUV_LANES_INLINE auto Pick(const Element* array, UintLanes index)
{
    return Gather(array, index * static_cast<NuvUint>(kLanes) + CountFrom(0));
}
}  // namespace
}  // namespace nuv
