/// From a bounded form to a proved answer: the simplex in doubles from a given basis or
/// the slack basis, then the exact stage from where that one ended, then the independent check.
#pragma once

#include "Nuv/Exact/CertifiedResult.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

namespace nuv
{

/// Solves and proves. The proof's status is Stopped if the control ended it first; no other status
/// is reported without a certificate that CheckCertificate has accepted.
[[nodiscard]] CertifiedResult SolveCertified(const BoundedForm& form, const Basis* start,
                                             SolveControl& control);

/// The simplex in doubles alone, whose verdict is believed: nothing is proved, whatever the status.
[[nodiscard]] CertifiedResult SolveUnproved(const BoundedForm& form, const Basis* start,
                                            SolveControl& control);

/// Only the exact stage, from `start` and without any pivot in doubles: for a caller whose basis is
/// good already.
[[nodiscard]] CertifiedResult SolveExactly(const BoundedForm& form, const Basis& start,
                                           SolveControl& control);

/// No pivot at all: Optimal if the basis is that, Stopped otherwise.
[[nodiscard]] CertifiedResult CertifyBasis(const BoundedForm& form, const Basis& basis,
                                           SolveControl& control);

}  // namespace nuv
