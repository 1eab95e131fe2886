// A rank-1 update of all lines of a dense matrix and one or two combinations of them, in one pass
// over the lines for each few vectors of their length, whose sums wait in registers. Lanes.inl
// stands before this.
#include "Nuv/Utils/Kernels/Kernels.h"

namespace nuv
{
namespace
{
/// So many vectors of each line, from element `first` on.
template <bool hasUpdate, bool hasTwo, NuvSizeT count>
NUV_LANES_INLINE void UpdateStripe(const DenseUpdate& p, NuvSizeT first)
{
    Lanes update[count] = {};
    Lanes sumsX[count] = {};
    Lanes sumsY[count] = {};
    UintLanes elements[count] = {};
    if constexpr (hasUpdate)
        for (NuvSizeT v = 0; v != count; ++v)
        {
            update[v] = Load(p.update + first + v * kLanes);
            elements[v] = CountFrom(static_cast<NuvUint>(first + v * kLanes));
        }
    const UintLanes cleared = BroadcastUint(p.cleared);
    for (NuvSizeT l = 0; l != p.count; ++l)
    {
        NuvFloat32* const line = p.lines + l * p.length + first;
        const Lanes multiplier = Broadcast(hasUpdate ? p.multipliers[l] : 0.0F);
        const Lanes x = Broadcast(p.x[l]);
        const Lanes y = Broadcast(hasTwo ? p.y[l] : 0.0F);
        for (NuvSizeT v = 0; v != count; ++v)
        {
            Lanes part = Load(line + v * kLanes);
            if constexpr (hasUpdate)
            {
                part = (elements[v] != cleared ? part : Lanes{}) + multiplier * update[v];
                Store(line + v * kLanes, part);
            }
            sumsX[v] = sumsX[v] + x * part;
            if constexpr (hasTwo)
                sumsY[v] = sumsY[v] + y * part;
        }
    }
    for (NuvSizeT v = 0; v != count; ++v)
    {
        Store(p.sumsX + first + v * kLanes, sumsX[v]);
        if constexpr (hasTwo)
            Store(p.sumsY + first + v * kLanes, sumsY[v]);
    }
}

template <bool hasUpdate, bool hasTwo, NuvSizeT count>
void UpdateStripes(const DenseUpdate& p, NuvSizeT first)
{
    for (; p.length - first >= count * kLanes; first += count * kLanes)
        UpdateStripe<hasUpdate, hasTwo, count>(p, first);
    if constexpr (count != 1)
        UpdateStripes<hasUpdate, hasTwo, count / 2>(p, first);
}

void UpdateDensely(const DenseUpdate* update)
{
    const DenseUpdate& p = *update;
    if (p.update && p.y)
        UpdateStripes<true, true, 4>(p, 0);
    else if (p.update)
        UpdateStripes<true, false, 4>(p, 0);
    else if (p.y)
        UpdateStripes<false, true, 4>(p, 0);
    else
        UpdateStripes<false, false, 4>(p, 0);
}
}  // namespace
}  // namespace nuv
