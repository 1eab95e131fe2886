// The monitor that ends solves.
#include "Nuv/Utils/NuvPivotLimit.h"

#include <bit>

namespace
{
/// Fowler, Noll and Vo's hash, a word at a time.
uint64_t Add(uint64_t hash, NuvUint word)
{
    return (hash ^ word) * 0x100000001B3U;
}

/// Once may be chance: the order of the other variables, on which ties turn, is not known here.
constexpr NuvUint kReturnsOfACircle = 3;

/// Of the phase, the labels by row and the bits of their values.
uint64_t HashOf(const NuvLinearProgrammingPivot* pivot)
{
    uint64_t hash = Add(0xCBF29CE484222325U, pivot->phase);
    for (NuvUint i = 0; i != pivot->numBasic; ++i)
    {
        hash = Add(hash, pivot->basic[i]);
        hash = Add(hash, std::bit_cast<NuvUint>(pivot->values[i]));
    }
    return hash;
}

NuvBool BeforePivot(NuvLinearProgrammingMonitor* monitor, const NuvLinearProgrammingPivot* pivot)
{
    // The monitor is the limit's first member.
    NuvPivotLimit* const x = reinterpret_cast<NuvPivotLimit*>(monitor);
    const uint64_t basis = HashOf(pivot);
    if (pivot->number == 1)
    {
        x->hasCycled = NUV_FALSE;
        x->returns = 0;
        x->next = 1;
    }
    else if (basis == x->basis)
        ++x->returns;
    if (x->returns == kReturnsOfACircle)
        x->hasCycled = NUV_TRUE;
    x->pivots = pivot->number - 1;
    if (x->hasCycled || x->pivots >= x->limit)
        return NUV_FALSE;
    x->pivots = pivot->number;
    if (pivot->number == x->next)
    {
        x->basis = basis;
        x->returns = 0;
        x->next = x->next > UINT32_MAX / 2 ? 0 : 2 * x->next;
    }
    return NUV_TRUE;
}
}  // namespace

NuvLinearProgrammingMonitor* NuvPivotLimitConstruct(NuvPivotLimit* x, NuvUint limit)
{
    *x = {{BeforePivot, nullptr}, limit, 0, NUV_FALSE, 0, 0, 1};
    return &x->monitor;
}
