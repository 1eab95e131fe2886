// A test of several elements at once. It is the including source's own, so that no code made for
// one machine is ever linked into what another runs. Not installed.
#include <string.h>

#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
namespace
{
/// Whether one of the elements, of which there are 1 or an even number, is not ±0: any bit but the
/// signs, two by two.
template <NuvSizeT count>
inline bool HasNonzero(const NuvFloat32* x)
{
    if constexpr (count == 1)
        return *x != 0.0F;
    else
    {
        NuvSizeT pairs[count / 2];
        memcpy(pairs, x, sizeof pairs);
        // same bits: a zero that is taken for another number adds ±0
        NuvSizeT any = 0;
        for (const NuvSizeT pair : pairs)
            any |= pair;
        return (any & 0x7FFFFFFF7FFFFFFF) != 0;
    }
}
}  // namespace
}  // namespace nuv
