// How an iterator moves: over an array or around a list's ring, forwards or backwards. The four
// kinds of a container's iterators differ by these two choices and by const alone.
#pragma once

#include <stdint.h>

#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
enum class Direction
{
    Forward,
    Reverse
};

template <Direction direction>
struct ArrayStep
{
    template <class T>
    static T* Step(T* position, NuvDistanceT n)
    {
        return direction == Direction::Forward ? position + n : position - n;
    }

    template <class T>
    static T* Next(T* position)
    {
        return Step(position, 1);
    }

    template <class T>
    static T* Previous(T* position)
    {
        return Step(position, -1);
    }

    template <class T>
    static T* Content(T* position)
    {
        return direction == Direction::Forward ? position : position - 1;
    }

    template <class T>
    static NuvDistanceT Distance(T* a, T* b)
    {
        return direction == Direction::Forward ? a - b : b - a;
    }

    template <class T>
    static bool Less(T* a, T* b)
    {
        return direction == Direction::Forward ? a < b : b < a;
    }
};

template <Direction direction, class Node>
struct RingStep
{
    template <class Link>
    static Link* Next(Link* position)
    {
        return direction == Direction::Forward ? position->next.b : position->prev.b;
    }

    template <class Link>
    static Link* Previous(Link* position)
    {
        return direction == Direction::Forward ? position->prev.b : position->next.b;
    }

    template <class Link>
    static auto* Content(Link* position)
    {
        return direction == Direction::Forward ? &reinterpret_cast<Node*>(position)->obj
                                               : &position->prev.n->obj;
    }

    static const auto* Content(const auto* position)
    {
        return direction == Direction::Forward ? &reinterpret_cast<const Node*>(position)->obj
                                               : &position->prev.n->obj;
    }

    template <class Link>
    static bool Less(const Link* a, const Link* b)
    {
        return reinterpret_cast<uintptr_t>(a) < reinterpret_cast<uintptr_t>(b);
    }
};
}  // namespace nuv
