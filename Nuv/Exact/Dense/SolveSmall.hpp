/// The short way to an optimum of a form that is small and dense.
#pragma once

#include "Nuv/Certificate/Dense/DenseForm.hpp"
#include "Nuv/Exact/CertifiedResult.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

namespace nuv
{

/// The numbers of a form that has none beside its doubles.
void TakeForm(const BoundedForm& form, DenseForm& dense);

/// Pivots in a dense dictionary, from the start if there is one, and proves the basis in machine
/// words. Bounds do not cross. @return whether that gave an optimum with its proof; if not,
/// the result is as it was.
[[nodiscard]] bool SolveSmall(const BoundedForm& form, const Basis* start, SolveControl& control,
                              CertifiedResult& result);

}  // namespace nuv
