/// The road from a linear form to a proved answer: the simplex in doubles from a given basis or the
/// slack basis, then the exact stage from where that one ended, then the independent check.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"

namespace nuv
{

/// Solves and proves. The proof's status is Stopped if a limit was met first; no other status is
/// reported without a certificate that CheckProof has accepted.
[[nodiscard]] Proof SolveProved(const BoundedForm& form, const Basis* start, const Limits& limits);

/// Only the exact stage, from `start` and without any pivot in doubles: for a caller whose basis is
/// good already.
[[nodiscard]] Proof ProveFrom(const BoundedForm& form, const Basis& start, const Limits& limits);

}  // namespace nuv
