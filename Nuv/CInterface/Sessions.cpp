// Sessions: what tells a model from the one that was solved before it goes to the solver as edits.
#include "Nuv/CInterface/Solving.hpp"
#include "Nuv/Solve/Solver.hpp"

#include <algorithm>
#include <optional>

struct NuvSolver : nuv::c::Tagged<nuv::c::Kind::Solver>
{
    std::shared_ptr<const nuv::Model> last;  ///< of which the solver has a copy
    std::optional<nuv::Solver> solver;
    nuv::Basis basis;  ///< of the last solution
};

namespace nuv::c
{
namespace
{

/// Whether both say the same of the objective's constant and of the entries of their matrices.
bool HaveSameExactEntries(const ExactNumbers& left, const ExactNumbers& right)
{
    const auto isSetByHandle = [](const auto& number)
    {
        const NumberPlace::Of of = number.first.of;
        return of != NumberPlace::Of::ObjectiveConstant && of != NumberPlace::Of::Entry;
    };
    auto a = left.begin();
    auto b = right.begin();
    for (;; ++a, ++b)
    {
        a = std::find_if_not(a, left.end(), isSetByHandle);
        b = std::find_if_not(b, right.end(), isSetByHandle);
        if (a == left.end() || b == right.end())
            return a == left.end() && b == right.end();
        if (*a != *b)
            return false;
    }
}

/// Whether two models differ in nothing but costs and bounds.
bool HaveSameRows(const Model& left, const Model& right)
{
    return left.VariableCount() == right.VariableCount() && left.RowCount() == right.RowCount() &&
           left.ObjectiveSense() == right.ObjectiveSense() &&
           left.ObjectiveConstant() == right.ObjectiveConstant() &&
           HaveSameExactEntries(left.Exact(), right.Exact()) &&
           std::ranges::equal(left.RowStarts(), right.RowStarts()) &&
           std::ranges::equal(left.Columns(), right.Columns()) &&
           std::ranges::equal(left.Coefficients(), right.Coefficients());
}

/// Whether the numbers at a place of two models are the same, also where no double says them.
bool IsSameNumber(const Model& left, const Model& right, const NumberPlace& place)
{
    const std::string* const a = left.Exact().Find(place);
    const std::string* const b = right.Exact().Find(place);
    return a && b ? *a == *b : a == b;
}

/// Gives the solver the bounds of a row or variable, if its own are others.
template <class Handle>
void TakeOverBounds(Solver& solver, const Model& model, Handle handle, Bounds held, Bounds bounds,
                    const NumberPlace& lower, const NumberPlace& upper)
{
    if (bounds.lower == held.lower && bounds.upper == held.upper &&
        IsSameNumber(model, solver.GetModel(), lower) &&
        IsSameNumber(model, solver.GetModel(), upper))
        return;
    solver.SetBounds(handle, bounds);
    if (const std::string* const text = model.Exact().Find(lower))
        solver.SetExactLower(handle, *text);
    if (const std::string* const text = model.Exact().Find(upper))
        solver.SetExactUpper(handle, *text);
}

/// Gives the solver the costs and bounds of a model with the same rows as its own.
void TakeOver(Solver& solver, const Model& model)
{
    using Of = NumberPlace::Of;
    const Model& held = solver.GetModel();
    for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
    {
        const Variable variable = held.VariableAt(j);
        TakeOverBounds(solver, model, variable, {held.VariableLower()[j], held.VariableUpper()[j]},
                       {model.VariableLower()[j], model.VariableUpper()[j]}, {Of::VariableLower, j},
                       {Of::VariableUpper, j});
        const NumberPlace cost{Of::Objective, j};
        if (model.Objective()[j] == held.Objective()[j] && IsSameNumber(model, held, cost))
            continue;
        if (const std::string* const text = model.Exact().Find(cost))
            solver.SetExactCost(variable, *text);
        else
            solver.SetCost(variable, model.Objective()[j]);
    }
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
        TakeOverBounds(solver, model, held.RowAt(i), {held.RowLower()[i], held.RowUpper()[i]},
                       {model.RowLower()[i], model.RowUpper()[i]}, {Of::RowLower, i},
                       {Of::RowUpper, i});
}

/// The basis of the last model as one of this model, as far as the two have columns and rows in
/// common: new columns rest, new rows are basic. Nothing if they have none.
std::optional<Basis> Inherited(const Model& last, const Basis& basis, const Model& model)
{
    Basis start;
    start.rows.assign(model.RowCount(), BasisStatus::Basic);
    for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
        start.columns.push_back(
            DefaultNonbasicStatus(model.VariableLower()[j], model.VariableUpper()[j]));
    bool hasCommon = false;
    for (std::uint32_t j = 0; j < basis.columns.size() && j < last.VariableCount(); ++j)
    {
        const std::uint32_t at = model.IndexOf(last.VariableAt(j));
        if (at >= start.columns.size())
            continue;
        start.columns[at] = basis.columns[j];
        hasCommon = true;
    }
    for (std::uint32_t i = 0; i < basis.rows.size() && i < last.RowCount(); ++i)
    {
        const std::uint32_t at = model.IndexOf(last.RowAt(i));
        if (at < start.rows.size())
            start.rows[at] = basis.rows[i];
    }
    return hasCommon ? std::optional(std::move(start)) : std::nullopt;
}

std::unique_ptr<NuvSolution> SolveOn(NuvSolver& session, std::shared_ptr<const Model> model,
                                     const Solving& solving)
{
    SolveOptions options = solving.Options();
    if (session.solver && HaveSameRows(*session.last, *model))
        TakeOver(*session.solver, *model);
    else
    {
        if (session.last && !options.start && options.startValues.empty())
            options.start = Inherited(*session.last, session.basis, *model);
        session.solver.emplace(*model);
    }
    session.solver->SetOptions(std::move(options));
    Solution solution = session.solver->Solve();
    Basis basis = solution.basis;
    std::unique_ptr<NuvSolution> handle =
        solving.Deliver(model, session.solver->GetModel(), std::move(solution));
    session.basis = std::move(basis);
    session.last = std::move(model);
    return handle;
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvSolver* NuvSolverConstruct(void)
{
    return Construct<NuvSolver>();
}

void NuvSolverDestruct(NuvSolver* solver)
{
    Destruct(solver);
}

NuvModelResult NuvSolverSolve(NuvSolver* solver, const NuvModel* model,
                              const NuvSolveOptions* options, NuvSolution** solution,
                              NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       Given(solution, "solution") = nullptr;
                       NuvSolver& session = Checked(solver);
                       const Solving solving(options);
                       const std::shared_ptr<const nuv::Model> held = Checked(model).model;
                       try
                       {
                           *solution = SolveOn(session, held, solving).release();
                       }
                       catch (...)
                       {
                           // What broke off in the middle of a solve is not gone on from.
                           session.solver.reset();
                           session.last.reset();
                           throw;
                       }
                   });
}
