// What a container asks of its elements: a specialisation of nuv::Element per element type, reached
// through the functions below. Elements are records of C: moving one bit by bit to another place,
// and forgetting the old place, is always allowed (Relocate); copying one may need memory.
#pragma once

#include <stdint.h>

#include <type_traits>

#include "Nuv/Utils/NuvStdCLibInline.h"
#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
/// Elements whose bits are all there is to them.
template <class T>
concept Scalar = std::is_arithmetic_v<T>;

/// Whether an element owns nothing, so that a copy of its bits is a copy of it.
template <class T>
// NOLINTNEXTLINE(bugprone-dynamic-static-initializers): constexpr, so the compiler initialises it
inline constexpr bool kIsPlain = Scalar<T>;

template <class T>
struct Element;

template <Scalar T>
struct Element<T>
{
    static bool Construct(T* x, const T* y)
    {
        *x = *y;
        return true;
    }

    static bool ConstructInPlaceOf(T* x, const T*, const T* y)
    {
        *x = *y;
        return true;
    }

    static bool Assign(T* x, const T* y)
    {
        *x = *y;
        return true;
    }

    static void Destruct(T*) {}

    static bool Equal(const T* x, const T* y)
    {
        return *x == *y;
    }
};

/// Makes `x` a copy of `y`.
/// @return false when memory is refused; `x` then owns nothing.
template <class T>
inline bool Construct(T* x, const T* y)
{
    return Element<T>::Construct(x, y);
}

/// Makes what assigning `y` to `former` would have made of it: the allocator of `former`, the value
/// of `y`.
/// @return false when memory is refused; `x` then owns nothing.
template <class T>
inline bool ConstructInPlaceOf(T* x, const T* former, const T* y)
{
    return Element<T>::ConstructInPlaceOf(x, former, y);
}

/// @return false when memory is refused.
template <class T>
inline bool Assign(T* x, const T* y)
{
    return Element<T>::Assign(x, y);
}

template <class T>
inline void Destruct(T* x)
{
    Element<T>::Destruct(x);
}

/// For keys.
template <class T>
inline bool Equal(const T* x, const T* y)
{
    return Element<T>::Equal(x, y);
}

/// Moves the elements [first, last) to `destination`, where nothing lives. What stood there is not
/// read.
template <class T>
inline void Relocate(T* destination, const T* first, const T* last)
{
    NuvMemMove(destination, first, static_cast<NuvSizeT>(last - first) * sizeof(T));
}

template <class T>
inline void Exchange(T* x, T* y)
{
    const T former = *x;
    *x = *y;
    *y = former;
}

template <class T>
inline void Reverse(T* first, T* last)
{
    while (first < last)
        Exchange(first++, --last);
}

/// Brings the elements [middle, last) before those of [first, middle); the order within each part
/// stays.
template <class T>
inline void Rotate(T* first, T* middle, T* last)
{
    Reverse(first, middle);
    Reverse(middle, last);
    Reverse(first, last);
}

/// Whether `p` points into [first, last), also when it belongs to another block.
template <class T>
inline bool PointsInto(const T* p, const T* first, const T* last)
{
    const uintptr_t address = reinterpret_cast<uintptr_t>(p);
    return address >= reinterpret_cast<uintptr_t>(first) &&
           address < reinterpret_cast<uintptr_t>(last);
}

inline NuvBool AsNuvBool(bool value)
{
    return value ? NUV_TRUE : NUV_FALSE;
}
}  // namespace nuv
