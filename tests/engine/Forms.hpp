/// Small linear forms for the engine's tests: stated densely, or drawn from a seeded generator.
#pragma once

#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <cstdint>
#include <limits>
#include <vector>

namespace nuv::test
{

inline constexpr double kInf = std::numeric_limits<double>::infinity();

struct Interval
{
    double lower = 0.0;
    double upper = kInf;
};

struct DenseRow
{
    std::vector<double> coefficients;
    Interval bounds;
};

/// minimise cost . x subject to the rows; `columns` may be left out for x >= 0.
BoundedForm MakeForm(const std::vector<double>& cost, const std::vector<DenseRow>& rows,
                     const std::vector<Interval>& columns = {});

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

/// Integers in [-3, 3], bounds of all kinds, now and then bounds that cross.
BoundedForm RandomSmallForm(Random& random, Index rows, Index columns);

/// Sparse, with decimal coefficients, feasible and bounded more often than not.
BoundedForm RandomSparseForm(Random& random, Index rows, Index columns);

}  // namespace nuv::test
