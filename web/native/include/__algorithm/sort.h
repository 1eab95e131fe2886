// The C++ library's sort, a fraction of its size: few things are sorted here. Up to sixteen members
// are sorted by insertion, which leaves equal ones in their order, as the libraries of the native
// programs do; more by a heap. This stands before the library's own header, whose sorts all go
// through this function: of two that fit, the constrained one is called.
#ifndef NUV_WEB_ALGORITHM_SORT_H
#define NUV_WEB_ALGORITHM_SORT_H

#include <__algorithm/partial_sort.h>
#include <__config>
#include <__utility/swap.h>

_LIBCPP_BEGIN_NAMESPACE_STD

template <class Policy, class Iterator, class Compare>
requires true constexpr void __sort_impl(Iterator first, Iterator last, Compare& compare)
{
    if (last - first > 16)
    {
        std::__partial_sort<Policy>(first, last, last, compare);
        return;
    }
    for (Iterator next = first; next != last; ++next)
        for (Iterator at = next; at != first && compare(*at, *(at - 1)); --at)
            std::swap(*at, *(at - 1));
}

_LIBCPP_END_NAMESPACE_STD

#include_next <__algorithm/sort.h>

#endif
