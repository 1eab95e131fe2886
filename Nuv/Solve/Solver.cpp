/// Keeps a model and the session on its form in step. An edit of a bound or a cost goes to both, as
/// the number that it is; one of the matrix ends the session on the form, of which the basis stays,
/// by the places that the model has then.
#include "Nuv/Solve/Solver.hpp"

#include "Nuv/Algebra/RationalText.hpp"
#include "Nuv/Exact/CertifiedSession.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/SolveSteps.hpp"

#include <optional>
#include <utility>
#include <vector>

namespace nuv
{

struct Solver::State
{
    State(Model ofUser, SolveOptions given) : model(std::move(ofUser)), options(std::move(given)) {}

    /// Ends the session on the form; its basis waits for the next one.
    void EndSession()
    {
        if (!session)
            return;
        if (session->LastBasis())
            basis = session->LastBasis();
        session.reset();
    }
    [[nodiscard]] FormNumber NumberAt(const NumberPlace& place, double nearest) const;
    void NoteRow();
    void NoteVariable(Variable variable);
    void TakeBounds(Variable variable);
    void TakeBounds(Row row);
    void TakeCost(std::uint32_t column);
    void TakeConstant();
    void TakeObjective();
    void OpenSession(SolveControl& control, Solution& solution);

    Model model;
    SolveOptions options;
    std::unique_ptr<CertifiedSession> session;
    std::optional<Basis> basis;  ///< where there is no session
};

namespace
{

/// The statuses of what stays, when `removed` are taken out of the model.
template <class Item>
void RemoveStatuses(const Model& model, std::span<const Item> removed,
                    std::vector<BasisStatus>& statuses)
{
    std::vector<bool> isRemoved(statuses.size(), false);
    for (const Item item : removed)
    {
        if (model.IndexOf(item) < isRemoved.size())
            isRemoved[model.IndexOf(item)] = true;
    }
    std::size_t kept = 0;
    for (std::size_t at = 0; at < statuses.size(); ++at)
    {
        if (!isRemoved[at])
            statuses[kept++] = statuses[at];
    }
    statuses.resize(kept);
}

}  // namespace

/// The logical of a new row is basic: the rest of the basis stays what it was.
void Solver::State::NoteRow()
{
    EndSession();
    if (basis)
        basis->rows.push_back(BasisStatus::Basic);
}

void Solver::State::NoteVariable(Variable variable)
{
    if (!variable.Valid())
        return;
    EndSession();
    if (basis)
        basis->columns.push_back(
            DefaultNonbasicStatus(model.VariableLower().back(), model.VariableUpper().back()));
}

/// The number at a place of the model, as its form has it.
FormNumber Solver::State::NumberAt(const NumberPlace& place, double nearest) const
{
    const double sign = place.of <= NumberPlace::Of::Objective ? SignOf(model) : 1.0;
    FormNumber number = sign * nearest;
    const bool areWritten = options.numbers == CoefficientMeaning::ShortestDecimal;
    if (const std::string* const text = areWritten ? model.Exact().Find(place) : nullptr)
        number.exact = ReadRational(*text);
    if (number.exact && sign < 0.0)
        number.exact = -*number.exact;
    return number;
}

void Solver::State::TakeBounds(Variable variable)
{
    if (!session)
        return;
    using Of = NumberPlace::Of;
    const std::uint32_t at = model.IndexOf(variable);
    session->SetBounds(at, NumberAt({Of::VariableLower, at}, model.VariableLower()[at]),
                       NumberAt({Of::VariableUpper, at}, model.VariableUpper()[at]));
}

void Solver::State::TakeBounds(Row row)
{
    if (!session)
        return;
    using Of = NumberPlace::Of;
    const std::uint32_t at = model.IndexOf(row);
    session->SetBounds(model.VariableCount() + at,
                       NumberAt({Of::RowLower, at}, model.RowLower()[at]),
                       NumberAt({Of::RowUpper, at}, model.RowUpper()[at]));
}

void Solver::State::TakeCost(std::uint32_t column)
{
    if (session)
        session->SetCost(column,
                         NumberAt({NumberPlace::Of::Objective, column}, model.Objective()[column]));
}

void Solver::State::TakeConstant()
{
    if (session)
        session->SetConstant(
            NumberAt({NumberPlace::Of::ObjectiveConstant}, model.ObjectiveConstant()));
}

void Solver::State::TakeObjective()
{
    for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
        TakeCost(j);
    TakeConstant();
}

/// A session on the form as it is, from the basis that is known or else as a first solve has it.
void Solver::State::OpenSession(SolveControl& control, Solution& solution)
{
    BoundedForm form = FormOf(model, options.numbers);
    control.ReportObjectiveAs(SignOf(model), form.constant);
    if (options.start || !options.startValues.empty() || !basis)
        basis = StartOf(form, SignOf(model), options, control, solution);
    session = std::make_unique<CertifiedSession>(std::move(form), std::move(basis));
    basis.reset();
}

Solver::Solver(Model model, SolveOptions options)
    : m_state(std::make_unique<State>(std::move(model), std::move(options)))
{
}

Solver::Solver(Solver&& other) noexcept = default;
Solver& Solver::operator=(Solver&& other) noexcept = default;
Solver::~Solver() = default;

const Model& Solver::GetModel() const noexcept
{
    return m_state->model;
}

Model Solver::Take()
{
    m_state->session.reset();
    m_state->basis.reset();
    return std::exchange(m_state->model, Model());
}

const SolveOptions& Solver::Options() const noexcept
{
    return m_state->options;
}

void Solver::SetOptions(SolveOptions options)
{
    if (options.numbers != m_state->options.numbers)
        m_state->EndSession();
    m_state->options = std::move(options);
}

Solution Solver::Solve()
{
    State& state = *m_state;
    if (state.options.singlePrecisionOnly)
        return nuv::Solve(state.model, state.options);
    SolveControl control(state.options.limits);
    Solution solution = BlankSolution(state.model, state.options);
    if (!solution.failure.code.empty())
        return solution;
    if (state.options.start || !state.options.startValues.empty())
        state.EndSession();
    if (!state.session)
        state.OpenSession(control, solution);
    state.options.start.reset();
    state.options.startValues.clear();
    control.ReportObjectiveAs(SignOf(state.model), state.session->Form().constant);
    Conclude(state.model, state.session->Form(), state.options,
             state.options.doublePrecisionOnly ? state.session->SolveUnproved(control)
                                               : state.session->Solve(control),
             control, solution);
    solution.seconds = control.Seconds();
    return solution;
}

Variable Solver::AddVariable(Bounds bounds)
{
    const Variable variable = m_state->model.AddVariable(bounds);
    m_state->NoteVariable(variable);
    return variable;
}

Variable Solver::AddColumn(std::string_view name, double cost, Bounds bounds,
                           std::span<const ColumnTerm> terms)
{
    const Variable variable = m_state->model.AddColumn(name, cost, bounds, terms);
    m_state->NoteVariable(variable);
    return variable;
}

Variable Solver::AddColumn(double cost, Bounds bounds, std::span<const ColumnTerm> terms)
{
    const Variable variable = m_state->model.AddColumn(cost, bounds, terms);
    m_state->NoteVariable(variable);
    return variable;
}

Row Solver::Add(std::string_view name, const Constraint& constraint)
{
    const Row row = m_state->model.Add(name, constraint);
    if (row.Valid())
        m_state->NoteRow();
    return row;
}

Row Solver::Add(const Constraint& constraint)
{
    const Row row = m_state->model.Add(constraint);
    if (row.Valid())
        m_state->NoteRow();
    return row;
}

void Solver::Maximize(const Expression& objective)
{
    m_state->model.Maximize(objective);
    m_state->TakeObjective();
}

void Solver::Minimize(const Expression& objective)
{
    m_state->model.Minimize(objective);
    m_state->TakeObjective();
}

/// Passes on the bounds of what the model has edited, if it has.
template <class Handle>
bool Solver::TookBounds(bool isEdited, Handle handle)
{
    if (isEdited)
        m_state->TakeBounds(handle);
    return isEdited;
}

bool Solver::TookCost(bool isEdited, Variable variable)
{
    if (isEdited)
        m_state->TakeCost(m_state->model.IndexOf(variable));
    return isEdited;
}

bool Solver::SetBounds(Variable variable, Bounds bounds)
{
    return TookBounds(m_state->model.SetBounds(variable, bounds), variable);
}

bool Solver::SetBounds(Row row, Bounds bounds)
{
    return TookBounds(m_state->model.SetBounds(row, bounds), row);
}

bool Solver::SetCost(Variable variable, double cost)
{
    return TookCost(m_state->model.SetCost(variable, cost), variable);
}

bool Solver::SetCoefficient(Row row, Variable variable, double coefficient)
{
    if (!m_state->model.SetCoefficient(row, variable, coefficient))
        return false;
    m_state->EndSession();
    return true;
}

bool Solver::SetExactCost(Variable variable, std::string_view number)
{
    return TookCost(m_state->model.SetExactCost(variable, number), variable);
}

bool Solver::SetExactConstant(std::string_view number)
{
    const bool isDone = m_state->model.SetExactConstant(number);
    if (isDone)
        m_state->TakeConstant();
    return isDone;
}

bool Solver::SetExactLower(Variable variable, std::string_view number)
{
    return TookBounds(m_state->model.SetExactLower(variable, number), variable);
}

bool Solver::SetExactUpper(Variable variable, std::string_view number)
{
    return TookBounds(m_state->model.SetExactUpper(variable, number), variable);
}

bool Solver::SetExactLower(Row row, std::string_view number)
{
    return TookBounds(m_state->model.SetExactLower(row, number), row);
}

bool Solver::SetExactUpper(Row row, std::string_view number)
{
    return TookBounds(m_state->model.SetExactUpper(row, number), row);
}

bool Solver::SetExactCoefficient(Row row, Variable variable, std::string_view number)
{
    if (!m_state->model.SetExactCoefficient(row, variable, number))
        return false;
    m_state->EndSession();
    return true;
}

bool Solver::Remove(std::span<const Row> rows)
{
    m_state->EndSession();
    std::optional<Basis> basis = m_state->basis;
    if (basis)
        RemoveStatuses(m_state->model, rows, basis->rows);
    if (!m_state->model.Remove(rows))
        return false;
    m_state->basis = std::move(basis);
    return true;
}

bool Solver::Remove(std::span<const Variable> variables)
{
    m_state->EndSession();
    std::optional<Basis> basis = m_state->basis;
    if (basis)
        RemoveStatuses(m_state->model, variables, basis->columns);
    if (!m_state->model.Remove(variables))
        return false;
    m_state->basis = std::move(basis);
    return true;
}

}  // namespace nuv
