/// The outcome of an exact solve: a verdict, the certificate that proves it, and how it was found.
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
#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace nuv
{

enum class ProofStatus : std::uint8_t
{
    Optimal,
    Infeasible,
    Unbounded,
    Stopped,  ///< no verdict was proved before a limit was met
};

struct Proof
{
    ProofStatus status = ProofStatus::Stopped;
    /// Whether the certificate below passed CheckProof. True with every status but Stopped.
    bool proved = false;
    StopReason stopReason = StopReason::None;
    /// If the data are not a bounded form: what is wrong with them. Everything else is empty then.
    std::string defect;

    // The certificate.
    Rational objective = 0;  ///< Optimal: the exact optimum, with the constant
    ExactVector primal;      ///< Optimal, Unbounded: a feasible point, by column
    ExactVector dual;        ///< Optimal: the duals; Infeasible: Farkas multipliers; by row
    ExactVector ray;         ///< Unbounded: a direction that stays feasible and improves, by column
    Index contradiction = kNoIndex;  ///< Infeasible: a variable whose lower bound exceeds its upper

    // The same in doubles, by variable (columns, then the rows' logicals), for Stopped what the
    // last basis gives. reduced[columns + i] is the dual of row i.
    std::vector<double> value;
    std::vector<double> reduced;
    double objectiveValue = 0.0;
    double primalViolation = 0.0;  ///< Stopped: the largest violation of a bound by `value`
    double dualViolation = 0.0;    ///< Stopped: the largest wrong-signed entry of `reduced`

    Basis basis;  ///< the last basis

    // How it was found; the pivots since the control began.
    std::uint64_t doublePivots = 0;
    std::uint64_t exactPivots = 0;
    bool ranDouble = false;
    bool ranExact = false;
    double doubleSeconds = 0.0;
    double exactSeconds = 0.0;
    double checkSeconds = 0.0;
};

/// Checks the certificate against the form in exact arithmetic. It shares nothing with the solvers
/// but the numbers.
/// @return what is wrong; empty if the certificate proves proof.status.
[[nodiscard]] std::string CheckProof(const BoundedForm& form, const Proof& proof);

}  // namespace nuv
