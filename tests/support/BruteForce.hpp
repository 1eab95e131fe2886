/// The verdict on a small bounded form by enumerating all its basic solutions in fractions. It
/// shares no code and no idea with the engine: no pivoting, no duals.
#pragma once

#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <cstdint>
#include <optional>

namespace nuv::test
{

/// A fraction of machine integers, enough for a few equations of one-digit numbers.
struct Fraction
{
    std::int64_t numerator = 0;
    std::int64_t denominator = 1;
};

enum class Verdict
{
    Optimal,
    Infeasible,
    Unbounded,
};

struct BruteForceResult
{
    Verdict verdict = Verdict::Infeasible;
    Fraction objective;
};

/// All numbers of the form are small integers.
BruteForceResult SolveByEnumeration(const BoundedForm& form);

}  // namespace nuv::test
