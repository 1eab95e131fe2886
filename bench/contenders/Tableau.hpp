// The yardstick: the simplex method as one writes it by hand for a program that needs it today, a
// dense tableau in double precision under Dantzig's rule, tuned as far as it stays simple (no
// columns for basic variables, rows with a zero multiplier skipped, vectorised row updates).
#pragma once

#include <cstdint>

#include "bench/Families.hpp"

namespace bench
{
enum class Verdict
{
    Optimal,
    Unbounded,
    Infeasible,
    /// Given up at a limit, or failed.
    Stopped
};

const char* NameOf(Verdict verdict);

struct TableauResult
{
    Verdict verdict;
    double objective;
    std::uint64_t pivots;
};

/// As many pivots as no solve that ends has come near to.
inline std::uint64_t TableauLimit(const Instance& instance)
{
    return 1000 * (instance.rows + instance.columns);
}

/// Solves from the slack basis, through Phase I with one artificial variable when a right-hand side
/// is negative. Makes its own tableau, which is part of the time that it takes. Compiled as this
/// library is, for any machine of the target.
TableauResult SolveByTableau(const Instance& instance, std::uint64_t maxPivots);
/// The same source, compiled for the machine that builds it.
TableauResult SolveByNativeTableau(const Instance& instance, std::uint64_t maxPivots);
}  // namespace bench
