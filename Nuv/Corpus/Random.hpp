// Random numbers and floats made of their bits.
//
// Invariant: integer arithmetic alone, but for Symmetric and Positive with a float's limit, so that
// a machine that rounds or flushes in its own way still draws the same.
#pragma once

#include <bit>

#include <stdint.h>

namespace nuv::corpus
{
constexpr uint32_t BitsOf(float value)
{
    return std::bit_cast<uint32_t>(value);
}

constexpr float FloatOfBits(uint32_t bits)
{
    return std::bit_cast<float>(bits);
}

/// Steele, Lea and Flood, Fast splittable pseudorandom number generators.
class SplitMix
{
public:
    explicit SplitMix(uint64_t seed) : state(seed) {}

    uint64_t Next()
    {
        state += 0x9E3779B97F4A7C15U;
        uint64_t z = state;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }

private:
    uint64_t state;
};

/// Vigna, An experimental exploration of Marsaglia's xorshift generators, scrambled. The models of
/// the benchmarks stay those that earlier figures were measured on.
class XorShift
{
public:
    explicit XorShift(uint64_t seed) : state(seed * 0x9E3779B97F4A7C15U + 0x632BE59BD9B4E019U)
    {
        // Seeds that differ in few bits start alike; a few steps part them.
        for (int i = 0; i < 8; ++i)
            Next();
    }

    uint64_t Next()
    {
        if (state == 0)
            state = 1;
        state ^= state >> 12U;
        state ^= state << 25U;
        state ^= state >> 27U;
        return state * 0x2545F4914F6CDD1DU;
    }

private:
    uint64_t state;
};

/// What is drawn from a generator of 64-bit numbers.
template <class Generator>
class Draws : public Generator
{
public:
    using Generator::Generator;

    /// A number below `limit`, which is above 0.
    uint32_t Below(uint32_t limit)
    {
        return static_cast<uint32_t>(((this->Next() >> 32U) * limit) >> 32U);
    }

    /// An integer between the two, both included.
    int32_t Between(int32_t first, int32_t last)
    {
        return first + static_cast<int32_t>(Below(static_cast<uint32_t>(last - first) + 1U));
    }

    /// The same as a float; what is asked for is exact in one.
    float Integer(int32_t first, int32_t last)
    {
        return static_cast<float>(Between(first, last));
    }

    /// Whether a chance of `percent` in 100 came true.
    bool Chance(uint32_t percent)
    {
        return Below(100) < percent;
    }

    /// A number in [-limit, limit) with 24 bits behind the leading one.
    float Symmetric(float limit)
    {
        const auto bits = static_cast<int32_t>(this->Next() >> 39U) - (1 << 24);
        return static_cast<float>(bits) / 16777216.0F * limit;
    }

    /// A number in [0, limit).
    float Positive(float limit)
    {
        return static_cast<float>(this->Next() >> 40U) / 16777216.0F * limit;
    }

    /// Any bit pattern: subnormals, infinities and NaNs too.
    float AnyBits()
    {
        return FloatOfBits(static_cast<uint32_t>(this->Next() >> 32U));
    }
};

using Random = Draws<SplitMix>;

/// numerator × 2^exponent, cut off behind 24 significant bits; subnormal or infinite where it must
/// be.
inline float Dyadic(int64_t numerator, int32_t exponent)
{
    const uint32_t sign = numerator < 0 ? 0x80000000U : 0U;
    uint64_t significand =
        numerator < 0 ? 0U - static_cast<uint64_t>(numerator) : static_cast<uint64_t>(numerator);
    if (significand == 0)
        return 0.0F;
    for (; significand >= (1U << 24U); significand >>= 1U)
        ++exponent;
    for (; significand < (1U << 23U); significand <<= 1U)
        --exponent;
    int32_t biased = exponent + 23 + 127;
    if (biased >= 255)
        return FloatOfBits(sign | 0x7F800000U);
    if (biased <= 0)
    {
        significand = biased < -24 ? 0U : significand >> static_cast<uint32_t>(1 - biased);
        biased = 0;
    }
    return FloatOfBits(sign | (static_cast<uint32_t>(biased) << 23U) |
                       (static_cast<uint32_t>(significand) & 0x7FFFFFU));
}

/// A number in [0, 2^exponent) with 24 random bits.
inline float Positive(Random* random, int32_t exponent)
{
    return Dyadic(static_cast<int64_t>(random->Next() >> 40U), exponent - 24);
}

/// A number in [-2^exponent, 2^exponent) with 24 random bits.
inline float Signed(Random* random, int32_t exponent)
{
    return Dyadic(static_cast<int64_t>(random->Next() >> 39U) - (1 << 24), exponent - 24);
}

/// The number with the other sign.
inline float Negated(float value)
{
    return FloatOfBits(BitsOf(value) ^ 0x80000000U);
}
}  // namespace nuv::corpus
