/// What is known of a model after a solve: the verdict and its proof, values and prices in the
/// model's own sense, and how the answer was found.
///
/// Signs: a dual value is what the objective gains per unit by which the row's active side moves
/// up, a reduced cost what it gains per unit by which the variable is moved up, both in the model's
/// own sense. So in a maximisation a binding `<=` row has a dual >= 0 and a variable that rests at
/// its lower bound a reduced cost <= 0; in a minimisation both are the other way round. The arrays
/// are by variable or by row, and empty where the status has nothing to say.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Exact/Iis.hpp"
#include "Nuv/Exact/Ranging.hpp"
#include "Nuv/Model/Error.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/SinglePrecisionStage.hpp"

#include <functional>
#include <string>
#include <vector>

namespace nuv
{

enum class SolveStatus : std::uint8_t
{
    Optimal,
    Infeasible,
    Unbounded,
    Stopped,  ///< by a limit or by the caller; what is known is there, none of it proved
    Invalid,  ///< the model has a failure; nothing was tried
};

/// The stages of a solve, each starting from the basis of the one before.
enum class SolveStage : std::uint8_t
{
    Float,   ///< the core, in single precision
    Double,  ///< the sparse simplex in double precision
    Exact,   ///< the check, and where needed the simplex, in rationals
};

/// Where a solve stands, before a pivot.
struct SolveProgress
{
    SolveStage stage = SolveStage::Float;
    std::uint64_t pivots = 0;  ///< of this stage
    double seconds = 0.0;      ///< since the start
    /// Of the current basis, in the model's sense; the sum of violations while there is no feasible
    /// basis; NaN where the stage does not know it.
    double objective = 0.0;
    bool feasible = false;
};

struct SolveOptions
{
    double seconds = std::numeric_limits<double>::infinity();
    /// Of the float stage; 0 asks for 50 * (rows + variables) of the lowered model.
    std::uint64_t floatPivots = 0;
    std::uint64_t doublePivots = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t exactPivots = std::numeric_limits<std::uint64_t>::max();
    bool useFloatStage = true;
    Scaling scaling = Scaling::None;
    Numbers numbers = Numbers::AsStored;
    /// Asked before each pivot if set; returning false stops the solve.
    std::function<bool(const SolveProgress&)> keepGoing;
    /// Whether to keep the vertices that the float stage passes through.
    bool recordPath = false;
    /// Whether to find how far each cost and each side of a row may move.
    bool sensitivity = false;
    /// How long to look for a minimal conflict in an infeasible model, at most.
    double conflictSeconds = 5.0;
};

/// A vertex on the way of the float stage.
struct PathStep
{
    std::uint32_t phase = 0;  ///< in which it was left
    double objective = 0.0;   ///< in the model's own sense
    std::vector<double> values;
};

struct Solution
{
    SolveStatus status = SolveStatus::Invalid;
    /// Whether the verdict is proved: its certificate was checked in exact arithmetic.
    bool proved = false;
    double objective = 0.0;
    std::string exactObjective;  ///< Optimal and proved: "p" or "p/q"

    std::vector<double> values;
    std::vector<double> reducedCosts;
    std::vector<double> activities;
    std::vector<double> duals;
    std::vector<double> ray;     ///< Unbounded: a direction by variable that improves for ever
    std::vector<double> farkas;  ///< Infeasible: a multiplier by row; their combination contradicts

    /// Infeasible: rows and bounds that exclude each other, by the index of variables of the form:
    /// columns first, then rows.
    Conflict conflict;
    /// Optimal, if it was asked for; in the model's own sense.
    Sensitivity sensitivity;

    /// The certificate itself, for the minimisation form; basis and violations are there too.
    Proof proof;
    Binary32Report binary32;
    FloatResult floatStage;
    std::vector<PathStep> path;  ///< if it was asked for
    double floatSeconds = 0.0;
    double seconds = 0.0;
    Error failure;  ///< Invalid

    [[nodiscard]] double Value(Variable variable) const noexcept
    {
        return variable.Index() < values.size() ? values[variable.Index()] : 0.0;
    }
    [[nodiscard]] double Dual(Row row) const noexcept
    {
        return row.Index() < duals.size() ? duals[row.Index()] : 0.0;
    }
};

/// Solves and proves. Never calls an answer optimal, infeasible or unbounded without a proof.
[[nodiscard]] Solution Solve(const Model& model, const SolveOptions& options = {});

}  // namespace nuv
