/// Asks for memory before it is needed, so that waits for several places overlap. A hint only.
#pragma once

namespace nuv
{

inline void Prefetch([[maybe_unused]] const void* place) noexcept
{
#if defined(__GNUC__)
    __builtin_prefetch(place);
#endif
}

}  // namespace nuv
