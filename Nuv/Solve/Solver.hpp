/// A session: a model that is solved, changed and solved again. Each solve starts from what the
/// last one left, and its answer is the same as if the model were solved for the first time: the
/// same verdict, the same optimum to the last digit, proved in the same way. Where several points
/// are optimal it may be another of them.
///
///     Solver solver(std::move(model));
///     Solution first = solver.Solve();
///     solver.SetBounds(capacity, {0, 120});
///     Solution second = solver.Solve();
///
/// Sessions share nothing: each may be used by a thread of its own. One session is used by one
/// thread at a time, and may be moved from one to another.
#pragma once

#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/Solve/SolveOptions.hpp"

#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>

namespace nuv
{

/// A model, and what its last solve left. One that was moved from is only good to be assigned to.
class Solver
{
public:
    /// Takes the model over; handles stay as they are. Take() gives it back.
    explicit Solver(Model model, SolveOptions options = {});
    ///@{
    /// Takes over the model with all that is known of it; handles stay good.
    Solver(Solver&& other) noexcept;
    Solver& operator=(Solver&& other) noexcept;
    ///@}
    Solver(const Solver&) = delete;
    Solver& operator=(const Solver&) = delete;
    ~Solver();

    /// The model as it is after all edits.
    [[nodiscard]] const Model& GetModel() const noexcept;
    /// Ends the session: the model, and an empty one stays.
    [[nodiscard]] Model Take();

    /// Of the next solve.
    [[nodiscard]] const SolveOptions& Options() const noexcept;
    /// For the solves to come. A start that they hold is for the next one only.
    void SetOptions(SolveOptions options);

    /// Solves from the last basis, or the first time as nuv::Solve does. The single-precision stage
    /// takes part in the first solve alone.
    [[nodiscard]] Solution Solve();

    // Editing ---------------------------------------------------------------
    //
    ///@{
    /// As of the model, which says what they do, return and refuse. Bounds and costs keep most of
    /// what is known of the last basis, also where no double says them; other edits the basis
    /// alone.
    template <class Name>
    requires std::is_convertible_v<const Name&, std::string_view>
        Variable AddVariable(const Name& name, Bounds bounds = {})
    {
        return AddColumn(name, 0.0, bounds, {});
    }
    Variable AddVariable(Bounds bounds = {});
    Variable AddColumn(std::string_view name, double cost, Bounds bounds,
                       std::span<const ColumnTerm> terms);
    Variable AddColumn(std::string_view name, double cost, Bounds bounds,
                       std::initializer_list<ColumnTerm> terms)
    {
        return AddColumn(name, cost, bounds, std::span(terms.begin(), terms.size()));
    }
    Variable AddColumn(double cost, Bounds bounds, std::span<const ColumnTerm> terms);
    Variable AddColumn(double cost, Bounds bounds, std::initializer_list<ColumnTerm> terms)
    {
        return AddColumn(cost, bounds, std::span(terms.begin(), terms.size()));
    }
    Row Add(std::string_view name, const Constraint& constraint);
    Row Add(const Constraint& constraint);
    void Maximize(const Expression& objective);
    void Minimize(const Expression& objective);
    bool SetBounds(Variable variable, Bounds bounds);
    bool SetBounds(Row row, Bounds bounds);
    bool SetCost(Variable variable, double cost);
    bool SetCoefficient(Row row, Variable variable, double coefficient);
    bool SetExactCost(Variable variable, std::string_view number);
    bool SetExactConstant(std::string_view number);
    bool SetExactLower(Variable variable, std::string_view number);
    bool SetExactUpper(Variable variable, std::string_view number);
    bool SetExactLower(Row row, std::string_view number);
    bool SetExactUpper(Row row, std::string_view number);
    bool SetExactCoefficient(Row row, Variable variable, std::string_view number);
    bool Remove(Row row)
    {
        return Remove(std::span<const Row>(&row, 1));
    }
    bool Remove(Variable variable)
    {
        return Remove(std::span<const Variable>(&variable, 1));
    }
    bool Remove(std::span<const Row> rows);
    bool Remove(std::span<const Variable> variables);
    ///@}

private:
    template <class Handle>
    bool TookBounds(bool isEdited, Handle handle);
    bool TookCost(bool isEdited, Variable variable);

    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace nuv
