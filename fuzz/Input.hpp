// The fuzzer's bytes, read as decisions. Bytes that are not there are 0, so that every input means
// something and a shorter one means less.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace fuzz
{
class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size) : at(data), left(size) {}

    bool IsEmpty() const
    {
        return left == 0;
    }

    std::uint8_t Byte()
    {
        if (left == 0)
            return 0;
        --left;
        return *at++;
    }

    /// A number below `limit`, which is from 1 to 256.
    int Below(int limit)
    {
        return Byte() % limit;
    }

    /// A number from -128 to 127.
    int Signed()
    {
        return static_cast<std::int8_t>(Byte());
    }

    /// Any bits.
    float Float()
    {
        std::uint32_t bits = 0;
        for (int i = 0; i != 4; ++i)
            bits = bits << 8 | Byte();
        return std::bit_cast<float>(bits);
    }

private:
    const std::uint8_t* at;
    std::size_t left;
};
}  // namespace fuzz
