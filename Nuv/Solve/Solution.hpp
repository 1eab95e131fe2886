/// What is known of a model after a solve: the verdict and how sure it is, values and prices in the
/// model's own sense, and how the answer was found.
///
/// Signs: a dual value is what the objective gains per unit by which the row's active side moves
/// up, a reduced cost what it gains per unit by which the variable is moved up, both in the model's
/// own sense. So in a maximisation a binding `<=` row has a dual >= 0 and a variable that rests at
/// its lower bound a reduced cost <= 0; in a minimisation both are the other way round. The arrays
/// are by variable or by row, and empty where the status has nothing to say; a number that is asked
/// for by handle is NaN then, and where the handle is of another model.
#pragma once

#include "Nuv/Certificate/Status.hpp"
#include "Nuv/Exact/Sensitivity.hpp"
#include "Nuv/Exact/StageRecord.hpp"
#include "Nuv/Model/Error.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/SinglePrecisionResult.hpp"
#include "Nuv/Solve/SolveOptions.hpp"
#include "Nuv/Solve/Uniqueness.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace nuv
{

struct Certificate;

/// One side of a row, or one bound of a variable.
struct IisMember
{
    std::variant<Variable, Row> of;  ///< of the model that was solved
    bool upper = false;              ///< its upper side or bound, not the lower
};

/// An irreducible infeasible subsystem: rows and bounds that exclude each other. A lower bound of
/// zero, which a variable has when nothing is said, stays in force and is no member.
struct Iis
{
    std::vector<IisMember> members;  ///< variables first, both as the model has them
    /// Whether the others agree without any one of them; if not, the search was ended early.
    bool minimal = false;
};

/// A vertex on the way of the core.
struct PathStep
{
    std::uint32_t phase = 0;     ///< in which it was left
    double objective = 0.0;      ///< in the model's own sense
    std::vector<double> values;  ///< by variable
};

/// The numbers of a proved solution as they are, each "p" or "p/q" in lowest terms; arrays as those
/// of the solution in doubles, and empty where these are.
struct ExactTexts
{
    std::vector<std::string> values;        ///< by variable
    std::vector<std::string> reducedCosts;  ///< by variable
    std::vector<std::string> activities;    ///< by row
    std::vector<std::string> slacks;        ///< by row; empty text for a row without sides
    std::vector<std::string> duals;         ///< by row
    std::vector<std::string> ray;           ///< by variable
};

/// What is known of one model after one solve; a value that does not refer to the model.
struct Solution
{
    /// NaN: what a number is that is not known.
    static constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

    Status status = Status::Invalid;  ///< the verdict, or that there is none
    /// Whether the verdict is proved: its certificate was checked in exact arithmetic.
    bool proved = false;
    /// Which numbers the answer is about; as it was asked for.
    CoefficientMeaning numbers = CoefficientMeaning::ShortestDecimal;
    /// Why the solve ended without a verdict, or what came after the verdict without a result.
    StopReason stopReason = StopReason::None;
    Error failure;  ///< Invalid

    /// Optimal, and of the last values where the solve was stopped: in the model's sense, with its
    /// constant; rounded once where it is proved.
    double objective = kUnknown;
    std::string exactObjective;  ///< Optimal and proved: "p" or "p/q"

    std::vector<double> values;        ///< by variable
    std::vector<double> reducedCosts;  ///< by variable; empty without duals
    std::vector<double> activities;    ///< by row: what its terms add up to
    std::vector<double> slacks;  ///< to the nearer side; negative outside, infinite without sides
    std::vector<double> duals;  ///< by row; empty where single precision was all that was asked for
    std::vector<double> ray;    ///< Unbounded: a direction by variable that improves for ever
    std::vector<double> farkas;  ///< Infeasible: a multiplier by row; their combination contradicts
    // Where nothing is proved:
    double primalViolation = 0.0;  ///< by how much `values` leave a bound, at most
    double dualViolation = 0.0;    ///< how far a reduced cost is on the wrong side of 0

    Basis basis;              ///< the last one; SolveOptions::start takes it
    Iis iis;                  ///< Infeasible
    Sensitivity sensitivity;  ///< Optimal, if it was asked for
    UniqueOptimum unique;     ///< Optimal and proved, if it was asked for

    std::optional<ExactTexts> exact;  ///< proved, if it was asked for (SolveOptions::exact)

    SinglePrecisionResult singlePrecision;  ///< what the core found on the way
    std::vector<PathStep> path;             ///< if it was asked for
    StageRecords stages;                    ///< which of them ran, and for how long
    double checkSeconds = 0.0;  ///< of wall time, of which the check of the proof took so much
    double seconds = 0.0;       ///< of wall time, for all

    /// What proves the verdict, for the minimisation form of the model; include
    /// Nuv/Certificate/Certificate.hpp to read it. Null without a proof.
    std::shared_ptr<const Certificate> certificate;

    /// What the solve came to, in words: "optimal", "stopped by the time limit", "invalid: row 'r'
    /// has a coefficient or constant that is not finite".
    [[nodiscard]] std::string Outcome() const;

    ///@{
    /// By handle; NaN where the status has no such number, and for a handle that the model did not
    /// know when it was solved.
    [[nodiscard]] double Value(Variable variable) const noexcept
    {
        return Of(values, variable, variables);
    }
    [[nodiscard]] double ReducedCost(Variable variable) const noexcept
    {
        return Of(reducedCosts, variable, variables);
    }
    [[nodiscard]] double Ray(Variable variable) const noexcept
    {
        return Of(ray, variable, variables);
    }
    [[nodiscard]] double Activity(Row row) const noexcept
    {
        return Of(activities, row, rows);
    }
    [[nodiscard]] double Slack(Row row) const noexcept
    {
        return Of(slacks, row, rows);
    }
    [[nodiscard]] double Dual(Row row) const noexcept
    {
        return Of(duals, row, rows);
    }
    [[nodiscard]] double Farkas(Row row) const noexcept
    {
        return Of(farkas, row, rows);
    }
    ///@}

    ///@{
    /// The same numbers exactly, "p" or "p/q", where they were asked for (SolveOptions::exact);
    /// empty where not, and where there is none.
    [[nodiscard]] std::string ExactValue(Variable variable) const
    {
        return Of(&ExactTexts::values, variables.Find(variable));
    }
    [[nodiscard]] std::string ExactReducedCost(Variable variable) const
    {
        return Of(&ExactTexts::reducedCosts, variables.Find(variable));
    }
    [[nodiscard]] std::string ExactRay(Variable variable) const
    {
        return Of(&ExactTexts::ray, variables.Find(variable));
    }
    [[nodiscard]] std::string ExactActivity(Row row) const
    {
        return Of(&ExactTexts::activities, rows.Find(row));
    }
    [[nodiscard]] std::string ExactSlack(Row row) const
    {
        return Of(&ExactTexts::slacks, rows.Find(row));
    }
    [[nodiscard]] std::string ExactDual(Row row) const
    {
        return Of(&ExactTexts::duals, rows.Find(row));
    }
    ///@}

    /// Basic, or where it rests in `basis`; nothing if there is no basis.
    [[nodiscard]] std::optional<BasisStatus> BasisStatusOf(Variable variable) const noexcept
    {
        return Of(basis.columns, variables.Find(variable));
    }
    /// The same of a row: AtLower and AtUpper are the sides at which its activity is.
    [[nodiscard]] std::optional<BasisStatus> BasisStatusOf(Row row) const noexcept
    {
        return Of(basis.rows, rows.Find(row));
    }

    ///@{
    /// Whose handles the model knew when it was solved.
    HandleOrigins variables;
    HandleOrigins rows;
    ///@}

private:
    [[nodiscard]] std::string Of(std::vector<std::string> ExactTexts::*texts,
                                 std::uint32_t at) const
    {
        return exact && at < ((*exact).*texts).size() ? ((*exact).*texts)[at] : std::string();
    }
    [[nodiscard]] static std::optional<BasisStatus> Of(const std::vector<BasisStatus>& status,
                                                       std::uint32_t at) noexcept
    {
        return at < status.size() ? std::optional(status[at]) : std::nullopt;
    }
    template <class Kind>
    [[nodiscard]] static double Of(const std::vector<double>& numbers, Handle<Kind> handle,
                                   const HandleOrigins& known) noexcept
    {
        const std::uint32_t at = known.Find(handle);
        return at < numbers.size() ? numbers[at] : kUnknown;
    }
};

/// The value of an expression at the values of the solution, as doubles add up; NaN if one of them
/// is not known.
[[nodiscard]] inline double Evaluate(const Expression& expression, const Solution& solution)
{
    double sum = expression.Constant();
    for (const Term& term : expression.Terms())
        sum += term.coefficient * solution.Value(term.variable);
    return sum;
}

/// Solves and proves. Never calls an answer optimal, infeasible or unbounded without a proof,
/// unless it was asked for single or double precision only.
[[nodiscard]] Solution Solve(const Model& model, const SolveOptions& options = {});

}  // namespace nuv
