// What the tests of the float loops share: the instruction sets, and random numbers.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "Nuv/Utils/Kernels/Kernels.h"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/Effort.hpp"

using nuv::InstructionSet;
using nuv::Kernels;
using reference::IsSame;
using reference::Random;

using Floats = std::vector<float>;

inline constexpr InstructionSet kAllSets[] = {InstructionSet::Plain, InstructionSet::Baseline,
                                              InstructionSet::Avx2, InstructionSet::Avx512};

class KernelTest : public testing::TestWithParam<InstructionSet>
{
protected:
    void SetUp() override
    {
        kernels = nuv::KernelsOf(GetParam());
        if (!kernels)
            GTEST_SKIP() << "not on this machine";
    }

    /// Small integers, so that there are ties and zeros; or any numbers, special ones among them.
    float Draw(bool isWild)
    {
        if (isWild && random.Chance(10))
            return reference::SpecialValue(&random);
        return isWild ? random.Symmetric(4.0F) : static_cast<float>(random.Between(-2, 2));
    }

    Floats Vector(std::size_t length, bool isWild)
    {
        Floats x(length);
        for (float& element : x)
            element = Draw(isWild);
        return x;
    }

    /// A length in whole tiles, up to so many.
    std::size_t Tiles(std::uint32_t most)
    {
        return Kernels::kTile * (1 + random.Below(most));
    }

    Random random{0x1A4E5};
    const Kernels* kernels = nullptr;
};
