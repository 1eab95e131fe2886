/// Pseudo-random numbers for cases that are drawn: the same on every machine for the same seed.
#pragma once

#include <cstdint>

namespace nuv::test
{

/// xorshift64*: the same numbers everywhere.
class Random
{
public:
    explicit Random(std::uint64_t seed) : m_state(seed * 0x9E3779B97F4A7C15u + 1) {}
    std::uint64_t Next()
    {
        m_state ^= m_state >> 12;
        m_state ^= m_state << 25;
        m_state ^= m_state >> 27;
        return m_state * 0x2545F4914F6CDD1Du;
    }
    /// Uniform enough in [low, high].
    int Between(int low, int high)
    {
        return low + static_cast<int>((Next() >> 33) % static_cast<std::uint64_t>(high - low + 1));
    }
    bool OneIn(int chances)
    {
        return Between(1, chances) == 1;
    }

private:
    std::uint64_t m_state;
};

}  // namespace nuv::test
