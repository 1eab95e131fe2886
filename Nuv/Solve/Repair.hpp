/// The least change of an infeasible model that makes it feasible: by how much sides of rows and
/// bounds of variables have to move, exactly, and proved to be the least in all.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Certificate/Status.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace nuv
{

struct Certificate;

/// What a unit of change of a row's sides or of a variable's bounds counts for: 1 if nothing is
/// said. Infinity says that they stay.
struct RepairWeight
{
    std::variant<Variable, Row> of;  ///< of the model
    double weight = 1.0;             ///< positive
};

/// What a repair may change and how long it may take.
struct RepairOptions
{
    SolveLimits limits;  ///< of the whole repair
    /// Which numbers the model is made of; see SolveOptions.
    CoefficientMeaning numbers = CoefficientMeaning::ShortestDecimal;
    /// Whether to make the proof of it for others to check: RepairResult::elastic and certificate.
    bool certificate = false;
    std::vector<RepairWeight> weights;  ///< of what is named twice the last one counts
};

/// One side of a row, or one bound of a variable, and where it has to go.
struct RepairChange
{
    std::variant<Variable, Row> of;  ///< of the model
    bool upper = false;              ///< its upper side or bound, not the lower
    double from = 0.0;               ///< as it is
    /// The double nearest to exactTo; of stored numbers the next one that is wide enough.
    double to = 0.0;
    double amount = 0.0;      ///< how far that is
    std::string exactTo;      ///< "p" or "p/q"
    std::string exactAmount;  ///< positive
};

/// What a repair came to.
struct RepairResult
{
    /// Optimal: the changes are known, none for a model that is feasible as it stands; Infeasible:
    /// what has to stay excludes itself; Stopped by a limit; Invalid, see `failure`.
    Status status = Status::Invalid;
    /// Whether it was checked in exact arithmetic that no smaller change does, or none at all.
    bool proved = false;
    /// As it was asked for.
    CoefficientMeaning numbers = CoefficientMeaning::ShortestDecimal;
    StopReason stopReason = StopReason::None;  ///< Stopped
    Error failure;                             ///< Invalid

    std::vector<RepairChange> changes;  ///< variables first, both as the model has them
    double total = std::numeric_limits<double>::quiet_NaN();  ///< Optimal: weights times amounts
    std::string exactTotal;                                   ///< "p" or "p/q"

    /// Optimal: the model with the changes, each to the number itself; of stored numbers, where no
    /// double says it, to the next one that is wide enough.
    std::optional<Model> model;

    /// Proved, if it was asked for: the program whose optimum is `total`, as a model with a row and
    /// a variable for each side and bound that may move; docs/certificates.md shows one.
    std::optional<Model> elastic;
    /// Proved, if it was asked for: that this is its optimum, or that it is infeasible, as of a
    /// solution of `elastic`. Null else.
    std::shared_ptr<const Certificate> certificate;
};

/// What a repair came to, in words: "feasible as it stands", "repaired", "stopped by the time
/// limit".
[[nodiscard]] std::string Outcome(const RepairResult& repair);

/// The sum of weights times amounts is least. A lower bound of zero, which a variable has when
/// nothing is said, stays. Fails with the code repair.unknown where a weight is of something that
/// is not of the model, and with repair.weight where it is not positive.
[[nodiscard]] RepairResult Repair(const Model& model, const RepairOptions& options = {});

}  // namespace nuv
