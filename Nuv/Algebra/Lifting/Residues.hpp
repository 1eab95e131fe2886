/// Exact numbers modulo a prime.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/SparseMatrix.hpp"

#include <cstdint>

namespace nuv
{

/// The columns modulo a prime, entries at one place added up.
[[nodiscard]] SparseVectors<std::uint64_t> Residues(const SparseVectors<ExactNumber>& columns,
                                                    const PrimeField& field);

}  // namespace nuv
