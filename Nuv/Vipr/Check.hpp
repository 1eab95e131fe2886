/// The check of certificates, which solves nothing: it evaluates points and adds up constraints.
#pragma once

#include "Nuv/Vipr/Certificate.hpp"

#include <string>

namespace nuv::vipr
{

/// Whether both are the same linear program: the same variables by name, the same objective, the
/// same constraints, in whatever order and however labelled.
[[nodiscard]] bool IsSameProblem(const Problem& left, const Problem& right);

/// Checks that the certificate proves a verdict on its problem: infeasible, unbounded, or optimal
/// at the one value that the range consists of.
/// @return what is wrong; empty if it does.
[[nodiscard]] std::string FindDefect(const Certificate& certificate);

}  // namespace nuv::vipr
