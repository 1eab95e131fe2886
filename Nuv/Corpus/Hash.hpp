// The hash of whatever a solve tells.
#pragma once

#include "Nuv/Corpus/Random.hpp"

namespace nuv::corpus
{
/// FNV-1a over the bytes of 32-bit words, the lowest byte first on every machine.
class Hash
{
public:
    void Add(uint32_t word)
    {
        for (unsigned shift = 0; shift != 32; shift += 8)
            state = (state ^ ((word >> shift) & 0xFFU)) * 1099511628211U;
    }

    void Add(uint64_t word)
    {
        Add(static_cast<uint32_t>(word));
        Add(static_cast<uint32_t>(word >> 32U));
    }

    /// The bits; every NaN counts as the same one.
    void AddFloat(float value)
    {
        const uint32_t bits = BitsOf(value);
        const bool isNotANumber = (bits & 0x7FFFFFFFU) > 0x7F800000U;
        Add(isNotANumber ? 0x7FC00000U : bits);
    }

    [[nodiscard]] uint64_t Value() const
    {
        return state;
    }

private:
    uint64_t state = 14695981039346656037U;
};
}  // namespace nuv::corpus
