/// A hash of words that is the same everywhere.
#pragma once

#include <cstdint>

namespace nuv::test
{

/// Fowler, Noll and Vo's.
class Hash
{
public:
    void Add(std::uint64_t word)
    {
        for (int byte = 0; byte < 8; ++byte)
            m_value = (m_value ^ ((word >> (8 * byte)) & 0xFF)) * 0x100000001B3u;
    }
    [[nodiscard]] std::uint64_t Value() const
    {
        return m_value;
    }

private:
    std::uint64_t m_value = 0xCBF29CE484222325u;
};

}  // namespace nuv::test
