// How much a test of random cases does. Under tools that slow a program down many times, the
// environment asks for a share of it: NUV_TEST_SHARE=10 for every tenth case. The heavy tests ask
// for more: NUV_TEST_TIMES=10 for ten times as many.
#pragma once

#include <cstdlib>

/// @return how many of `count` random cases to run; at least 1.
template <class Count>
Count ShareOf(Count count)
{
    const char* const share = std::getenv("NUV_TEST_SHARE");
    const long divisor = share ? std::strtol(share, nullptr, 10) : 1;
    const char* const times = std::getenv("NUV_TEST_TIMES");
    if (times)
        count *= static_cast<Count>(std::strtol(times, nullptr, 10));
    if (divisor <= 1)
        return count;
    const Count part = count / static_cast<Count>(divisor);
    return part > Count(1) ? part : Count(1);
}
