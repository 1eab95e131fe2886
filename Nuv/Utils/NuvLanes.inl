// Vectors of NUV_LANES floats, so that the loops of NuvKernelLoops.inl are written once: 4, 8 or 16
// lanes where the compiler knows vectors, else a single float, which any compiler knows. Operations
// are those of the elements, lane by lane; no lane ever meets another.
#include <string.h>

#include "Nuv/Utils/NuvFloatContract.h"
#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
namespace
{
constexpr NuvSizeT lanes = NUV_LANES;

#if NUV_LANES > 1
typedef NuvFloat32 Lanes __attribute__((vector_size(4 * NUV_LANES)));
typedef NuvUint UintLanes __attribute__((vector_size(4 * NUV_LANES)));
#define NUV_LANES_INLINE __attribute__((always_inline)) inline
#else
using Lanes = NuvFloat32;
using UintLanes = NuvUint;
#define NUV_LANES_INLINE inline
#endif

template <class T, class Element>
NUV_LANES_INLINE T LoadAs(const Element* from)
{
    T x;
    memcpy(&x, from, sizeof x);
    return x;
}

NUV_LANES_INLINE Lanes Load(const NuvFloat32* from)
{
    return LoadAs<Lanes>(from);
}

NUV_LANES_INLINE void Store(NuvFloat32* to, const Lanes& x)
{
    memcpy(to, &x, sizeof x);
}

template <class T = Lanes>
NUV_LANES_INLINE T Spread(NuvFloat32 x)
{
    return x - T{};
}

/// The larger of the two, and `y` when they cannot be compared.
NUV_LANES_INLINE Lanes LargerOf(const Lanes& x, const Lanes& y)
{
    return x > y ? x : y;
}

/// The smaller of the two, and `y` when they cannot be compared.
NUV_LANES_INLINE Lanes SmallerOf(const Lanes& x, const Lanes& y)
{
    return x < y ? x : y;
}

/// Whether all lanes are zero, and none is a NaN.
NUV_LANES_INLINE bool AreZero(const Lanes& x)
{
    NuvFloat32 elements[lanes];
    Store(elements, x);
    NuvFloat32 sum = 0.0F;
    for (NuvSizeT k = 0; k != lanes; ++k)
        sum = sum + elements[k] * elements[k];
    return sum == 0.0F;
}
}  // namespace
}  // namespace nuv
