// Vectors of NUV_LANES floats, so that the loops of Loops.inl are written once: 4, 8 or 16
// lanes where the compiler knows vectors, else a single float, which any compiler knows. Operations
// are those of the elements, lane by lane; no lane ever meets another.
#include <string.h>

#include <bit>
#include <utility>

#if NUV_LANES > 4
#include <immintrin.h>
#endif

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
namespace
{
constexpr NuvSizeT kLanes = NUV_LANES;

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

NUV_LANES_INLINE void StoreUint(NuvUint* to, const UintLanes& x)
{
    memcpy(to, &x, sizeof x);
}

template <class T = Lanes>
NUV_LANES_INLINE T Broadcast(NuvFloat32 x)
{
    return x - T{};
}

NUV_LANES_INLINE UintLanes BroadcastUint(NuvUint x)
{
    return x - UintLanes{};
}

/// x, x + 1, ... in increasing lane.
NUV_LANES_INLINE UintLanes CountFrom(NuvUint x)
{
    constexpr NuvUint kNumbers[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    return LoadAs<UintLanes>(kNumbers) + x;
}

/// The larger of the two, and `y` when they cannot be compared.
template <class T>
NUV_LANES_INLINE T LargerOf(const T& x, const T& y)
{
    // same bits: of two equal numbers either will do, but for the sign of a zero, which is not
    // asked for
    return x > y ? x : y;
}

/// The smaller of the two, and `y` when they cannot be compared.
template <class T>
NUV_LANES_INLINE T SmallerOf(const T& x, const T& y)
{
    // same bits: of two equal numbers either will do, but for the sign of a zero, which is not
    // asked for
    return x < y ? x : y;
}

constexpr int AtLeastFour(int count)
{
    return count < 4 ? 4 : count;
}

#if NUV_LANES > 1
/// The lanes of x from `first` on, round and round: as many as there are indices.
template <int first, class T, int... i>
NUV_LANES_INLINE auto LanesFrom(const T& x, std::integer_sequence<int, i...>)
{
    constexpr int kCount = sizeof(T) / 4;
    return __builtin_shufflevector(x, x, ((i + first) % kCount)...);
}
#endif

/// Horizontal reduction of all lanes of x by an associative and commutative operation; of vectors
/// longer than four lanes it goes on with the halves.
template <int distance = NUV_LANES / 2, class T, class Operation>
NUV_LANES_INLINE auto Reduce(const T& x, Operation operation)
{
    if constexpr (distance == 0)
    {
        NuvUint bits;
        memcpy(&bits, &x, sizeof bits);
        return bits;
    }
    else
    {
        constexpr std::make_integer_sequence<int, AtLeastFour(distance)> kKept;
        return Reduce<distance / 2>(
            operation(LanesFrom<0>(x, kKept), LanesFrom<distance>(x, kKept)), operation);
    }
}

/// Whether all lanes are zero, and none is a NaN.
NUV_LANES_INLINE bool AreZero(const Lanes& x)
{
#if NUV_LANES == 16
    return _mm512_cmp_ps_mask(x, Lanes{}, _CMP_NEQ_UQ) == 0;
#elif NUV_LANES == 8
    return _mm256_movemask_ps(_mm256_cmp_ps(x, Lanes{}, _CMP_NEQ_UQ)) == 0;
#else
    return std::bit_cast<NuvFloat32>(
               // same bits: the lanes are 0 or NaN
               Reduce(x * x, [](const auto& y, const auto& z) { return y + z; })) == 0.0F;
#endif
}
}  // namespace
}  // namespace nuv
