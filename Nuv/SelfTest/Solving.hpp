// One model of the corpus, solved by the core, and the hash of all that the solve tells.
#pragma once

#include "Nuv/SelfTest/Models.hpp"
#include "Nuv/SelfTest/SelfTest.hpp"

namespace nuv::selftest
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
    void AddFloat(float value);

    [[nodiscard]] uint64_t Value() const
    {
        return state;
    }

private:
    uint64_t state = 14695981039346656037U;
};

struct Outcome
{
    /// The result's number in the core's interface; 1, invalid input, also for refused memory.
    uint32_t status;
    uint32_t pivots;
    /// Over each pivot's phase, labels and values of the basis, then the status, and after an
    /// optimum the objective and the values.
    uint64_t hash;
};

/// Solves, and stops before one pivot more than any model of the corpus needs that does not cycle.
Outcome Solve(const Model& model, Loops loops);

}  // namespace nuv::selftest
