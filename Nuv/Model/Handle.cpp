/// What handles need seldom: a new origin, and the origin of an index that is not of the last
/// stretch.
#include "Nuv/Model/Handle.hpp"

#include <algorithm>
#include <atomic>
#include <iterator>

namespace nuv
{

std::uint32_t HandleOrigins::NewOrigin() noexcept
{
    static std::atomic<std::uint32_t> last{0};
    return ++last;
}

std::uint32_t HandleOrigins::OriginOfEarlier(std::uint32_t index) const noexcept
{
    const auto behind =
        std::upper_bound(m_stretches.begin(), m_stretches.end(), index,
                         [](std::uint32_t at, const Stretch& of) { return at < of.begin; });
    return std::prev(behind)->origin;
}

}  // namespace nuv
