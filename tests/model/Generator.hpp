/// Numbers for tests that are seeded: the same seed gives the same ones on every machine.
#pragma once

#include <cstddef>
#include <cstdint>

namespace nuv::test
{

/// A 64-bit generator (Steele, Lea and Flood, Fast splittable pseudorandom number generators).
class Generator
{
public:
    explicit Generator(std::uint64_t seed) : m_state(seed) {}
    std::uint64_t Next()
    {
        std::uint64_t z = (m_state += 0x9E3779B97F4A7C15u);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }
    /// A number below `limit`; 0 if that is 0.
    std::size_t Below(std::size_t limit)
    {
        return limit == 0 ? 0 : static_cast<std::size_t>(Next() % limit);
    }

private:
    std::uint64_t m_state;
};

}  // namespace nuv::test
