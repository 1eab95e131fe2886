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
#include "Nuv/Solve/SolveOptions.hpp"

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
    CoefficientMeaning numbers =
        CoefficientMeaning::ShortestDecimal;  ///< of which; as it was asked for
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
    Iis iis;
    /// Optimal, if it was asked for; in the model's own sense.
    Sensitivity sensitivity;

    /// The certificate itself, for the minimisation form; basis and violations are there too.
    Proof proof;
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

/// Solves and proves. Never calls an answer optimal, infeasible or unbounded without a proof,
/// unless it was asked for single precision only.
[[nodiscard]] Solution Solve(const Model& model, const SolveOptions& options = {});

}  // namespace nuv
