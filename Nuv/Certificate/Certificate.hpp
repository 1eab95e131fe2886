/// What proves a verdict about a bounded form, in exact numbers and without a word of how it was
/// found.
///
/// Signs, for the minimisation form of BoundedForm: duals y, one per row, and reduced costs
/// d = cost - A' y, one per column. At an optimum d_j >= 0 where x_j rests at its lower bound,
/// d_j <= 0 at its upper bound, zero in between; and in the same way y_i >= 0 where the activity of
/// row i is at rowLower, y_i <= 0 at rowUpper, zero in between. (y_i is the reduced cost of the
/// row's logical: it is what the objective gains per unit by which the active side moves up.)
///
/// A Farkas certificate is a y such that, with d = -A' y, the sum of y_i times the side of row i
/// and d_j times the bound of column j (lower for positive factors, upper for negative ones) is
/// positive: for points within the bounds that sum would be at most y . (A x) - y . (A x) = 0.
#pragma once

#include "Nuv/Algebra/ExactVector.hpp"
#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Certificate/Status.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <string>

namespace nuv
{

struct Certificate
{
    Status status = Status::Stopped;  ///< what it claims; nothing, if Stopped
    Rational objective = 0;           ///< Optimal: the optimum, with the constant
    ExactVector primal;               ///< Optimal, Unbounded: a feasible point, by column
    ExactVector dual;  ///< Optimal: the duals; Infeasible: Farkas multipliers; by row
    ExactVector ray;   ///< Unbounded: a direction that stays feasible and improves, by column
    Index contradiction = kNoIndex;  ///< Infeasible: a variable whose lower bound exceeds its upper
};

/// Checks a certificate against the form in exact arithmetic. It shares nothing with the solvers
/// but the numbers.
/// @return what is wrong; empty if the certificate proves what it claims.
[[nodiscard]] std::string CheckCertificate(const BoundedForm& form, const Certificate& certificate);

}  // namespace nuv
