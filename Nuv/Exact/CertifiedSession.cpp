/// Solving again. Three ways, the cheapest first that does: the last certificate may prove the
/// verdict still; the last basis may be optimal still, which needs no more than the exact numbers
/// that the changes have made unknown; or the simplex goes on from it, the dual one where the basis
/// lost its feasibility, the primal one where it did not.
#include "Nuv/Exact/CertifiedSession.hpp"

#include "Nuv/Exact/CertifiedStages.hpp"
#include "Nuv/Exact/ExactSimplex.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/DualSimplex.hpp"
#include "Nuv/SparseSimplex/SimplexState.hpp"

#include <algorithm>
#include <utility>

namespace nuv
{
namespace
{

/// A basis whose values in doubles miss their bounds by more, or its reduced costs their signs, in
/// the scaled form, is not worth an exact look.
// same bits: one of many right choices
constexpr double kWorthALook = 1e-6;

bool IsFeasible(const SimplexState& state)
{
    return std::ranges::all_of(state.head,
                               [&](Index v)
                               {
                                   return state.value[v] >= state.lower[v] - kWorthALook &&
                                          state.value[v] <= state.upper[v] + kWorthALook;
                               });
}

void ComputeReducedCosts(SimplexState& state)
{
    std::vector<double> basicCost(state.head.size());
    for (Index k = 0; k < state.head.size(); ++k)
        basicCost[k] = state.cost[state.head[k]];
    state.ComputeReducedCosts(state.cost, basicCost);
}

bool IsDualFeasible(const SimplexState& state)
{
    for (Index v = 0; v < state.form.Variables(); ++v)
    {
        if (!state.IsFixed(v) && DualInfeasibility(state.status[v], state.reduced[v]) > kWorthALook)
            return false;
    }
    return true;
}

/// Whether these variables, as many as there are rows, are the basic ones.
bool AreBasic(const std::vector<Index>& head, const Basis& basis)
{
    return !head.empty() &&
           std::ranges::all_of(head, [&](Index v) { return basis[v] == BasisStatus::Basic; });
}

}  // namespace

CertifiedSession::CertifiedSession(BoundedForm form, std::optional<Basis> start)
    : m_form(std::move(form)), m_scalable(m_form), m_check(m_form), m_basis(std::move(start))
{
}

bool CertifiedSession::Replace(const FormPlace& place, double& held, const FormNumber& number)
{
    const Rational* const before = m_form.exact.Find(place);
    const bool isSame =
        held == number.nearest &&
        (before != nullptr ? number.exact && *number.exact == *before : !number.exact);
    held = number.nearest;
    if (number.exact)
        m_form.exact.Set(place, *number.exact);
    else
        m_form.exact.Erase(place);
    return !isSame;
}

void CertifiedSession::SetBounds(Index variable, const FormNumber& lower, const FormNumber& upper)
{
    using Of = FormPlace::Of;
    const bool isRow = m_form.IsLogical(variable);
    const Index at = isRow ? m_form.RowOf(variable) : variable;
    const bool lowerMoves = Replace({isRow ? Of::RowLower : Of::ColumnLower, at},
                                    (isRow ? m_form.rowLower : m_form.columnLower)[at], lower);
    const bool upperMoves = Replace({isRow ? Of::RowUpper : Of::ColumnUpper, at},
                                    (isRow ? m_form.rowUpper : m_form.columnUpper)[at], upper);
    if (ScaledForm* const scaled = m_scalable.Made())
        scaled->SetBounds(m_form, variable);
    m_check.TakeBounds(variable);
    if (!m_evaluation)
        return;
    m_evaluation->exact->TakeBounds(variable);
    if (!m_evaluation->hasValues)
        return;
    // Where it rests at the other bound, and where it is basic, no value depends on this one.
    const BasisStatus status = m_evaluation->resting[variable];
    if ((lowerMoves && status == BasisStatus::AtLower) ||
        (upperMoves && status == BasisStatus::AtUpper))
        m_evaluation->hasValues = false;
}

void CertifiedSession::SetCost(Index column, const FormNumber& cost)
{
    if (Replace({FormPlace::Of::Cost, column}, m_form.cost[column], cost))
        m_newCosts.push_back(column);
}

void CertifiedSession::SetConstant(const FormNumber& constant)
{
    Replace({FormPlace::Of::Constant}, m_form.constant, constant);
    m_check.TakeCosts();
}

void CertifiedSession::StartFrom(const Basis& start)
{
    m_basis = start;
}

void CertifiedSession::TakeCosts()
{
    if (m_newCosts.empty())
        return;
    if (ScaledForm* const scaled = m_scalable.Made())
        scaled->SetCost(m_form);
    m_check.TakeCosts();
    if (m_evaluation)
    {
        const ExactForm before = std::move(*m_evaluation->exact);
        m_evaluation->exact.emplace(m_form);
        KeepOfEvaluation(before);
    }
    m_newCosts.clear();
}

/// The duals depend on the costs of basic variables, the reduced cost of a nonbasic one on its own.
/// The factors are of columns times their divisors, to which the costs belong too; and reduced
/// costs are kept in the scales of their columns.
void CertifiedSession::KeepOfEvaluation(const ExactForm& before)
{
    ExactEvaluation& evaluation = *m_evaluation;
    const ExactForm& now = *evaluation.exact;
    evaluation.reducedInDouble.clear();
    const auto hasOtherDivisor = [&](Index v)
    { return now.ColumnDivisor(v) != before.ColumnDivisor(v); };
    const bool haveDivisors = !now.HasNoQuotient() || !before.HasNoQuotient();
    if (haveDivisors && std::ranges::any_of(evaluation.head, hasOtherDivisor))
        evaluation.Forget();
    std::vector<bool> isNew(m_form.columns, false);
    for (const Index column : m_newCosts)
        isNew[column] = true;
    for (const Index v : evaluation.head)
        evaluation.hasDuals = evaluation.hasDuals && (m_form.IsLogical(v) || !isNew[v]);
    // Scales and divisors of columns whose cost is the same are the same too.
    for (Index column = 0; evaluation.hasDuals && column < m_form.columns; ++column)
    {
        if (isNew[column])
            evaluation.reducedSign[column] = ExactEvaluation::kSignUnknown;
    }
}

std::shared_ptr<const CertifiedResult> CertifiedSession::Solve(SolveControl& control)
{
    const auto result = std::make_shared<CertifiedResult>();
    const std::shared_ptr<const CertifiedResult> last = std::exchange(m_last, nullptr);
    TakeCosts();
    m_stateStands = false;
    if (ProveAtSight(m_form, *result))
        return result;
    if (!m_basis)
        m_basis = SlackBasis(m_form);
    FitBasis(m_form, *m_basis);
    result->record.basis = *m_basis;
    if (last == nullptr || !StillHolds(*last, *result))
    {
        if (!LookAtBasis(control, *result))
        {
            BlockedRow blocked;
            const SimplexVerdict guess = SolveInDoubles(control, *result, blocked);
            if (!m_evaluation)
                m_evaluation.emplace(m_form);
            ProveBasis(m_scalable, *m_evaluation, guess, kRefinements, &m_check, control, *result,
                       &blocked);
        }
    }
    m_basis = result->record.basis;
    m_last = result;
    return result;
}

std::shared_ptr<const CertifiedResult> CertifiedSession::SolveUnproved(SolveControl& control)
{
    const auto result = std::make_shared<CertifiedResult>();
    m_last.reset();
    TakeCosts();
    m_stateStands = false;
    if (ProveAtSight(m_form, *result))
    {
        result->record.proved = false;
        return result;
    }
    if (!m_basis)
        m_basis = SlackBasis(m_form);
    FitBasis(m_form, *m_basis);
    BlockedRow unused;
    const SimplexVerdict verdict = SolveInDoubles(control, *result, unused);
    Believe(verdict, m_scalable, control, *result);
    m_basis = result->record.basis;
    return result;
}

/// That there is no point, or no optimum, may follow from the same numbers still. An optimum does
/// not come this way: the basis says more of it.
bool CertifiedSession::StillHolds(const CertifiedResult& last, CertifiedResult& result) const
{
    const Status status = last.certificate.status;
    // same bits (je #1 never): what is not proved does not pass the check
    if (!last.record.proved || (status != Status::Infeasible && status != Status::Unbounded) ||
        !CheckCertificate(m_form, last.certificate).empty())
        return false;
    result = last;
    result.record.basis = *m_basis;
    result.record.stages = {};
    return true;
}

SimplexState& CertifiedSession::StateOfBasis()
{
    if (std::exchange(m_stateStands, true))
        return *m_state;
    if (!m_state || !AreBasic(m_state->head, *m_basis))
    {
        m_state.emplace(m_scalable.Scaled(), *m_basis);
        m_state->Refactorise();
        return *m_state;
    }
    SimplexState& state = *m_state;
    state.lower = state.form.lower;
    state.upper = state.form.upper;
    state.cost = state.form.cost;
    for (Index v = 0; v < state.form.Variables(); ++v)
    {
        state.status[v] = (*m_basis)[v];
        state.SetToBound(v);
    }
    state.ComputeValues();
    return state;
}

/// Whether the basis seems to be optimal, as far as it is not known.
bool CertifiedSession::IsWorthALook()
{
    if (!m_evaluation || !AreBasic(m_evaluation->head, *m_basis))
        return false;
    const bool hasValues = m_evaluation->hasValues;
    if (hasValues && m_evaluation->hasDuals)
        return true;
    SimplexState& state = StateOfBasis();
    if (!IsFeasible(state))
        return false;
    if (m_evaluation->hasDuals)
        return true;
    ComputeReducedCosts(state);
    return IsDualFeasible(state);
}

bool CertifiedSession::LookAtBasis(SolveControl& control, CertifiedResult& result)
{
    if (!IsWorthALook())
        return false;
    const double begin = control.Seconds();
    ExactSimplex exact(m_scalable, *m_evaluation, *m_basis, 0, control);
    exact.ForbidPivots();
    (void)exact.Run(result);
    if (result.certificate.status == Status::Stopped && !control.IsStopped())
        return false;
    Finish(m_scalable, begin, &m_check, control, result);
    return true;
}

SimplexVerdict CertifiedSession::SolveInDoubles(SolveControl& control, CertifiedResult& result,
                                                BlockedRow& blocked)
{
    const double begin = control.Seconds();
    SimplexState& state = StateOfBasis();
    // What the dual simplex calls optimal stands on fresh factors.
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    if (!IsFeasible(state))
    {
        DualSimplex dual(state, control);
        verdict = dual.Run(DualSimplex::Start::Factorised);
        state.cost = state.form.cost;
        if (dual.Blocked() != kNoIndex)
            blocked = {state.ExportBasis(), dual.Blocked()};
    }
    if (verdict != SimplexVerdict::Optimal || !IsOptimal(state))
        verdict = nuv::SolveInDoubles(state, control, &blocked);  // by the primal simplex
    result.record.basis = state.ExportBasis();
    result.record.stages[Stage::Double].ran = true;
    result.record.stages[Stage::Double].seconds = control.Seconds() - begin;
    LogDoubles(verdict, control);
    return verdict;
}

}  // namespace nuv
