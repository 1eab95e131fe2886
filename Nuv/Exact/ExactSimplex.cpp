/// The evaluation of a basis, and the choice of what to do about one that is not optimal.
#include "Nuv/Exact/ExactSimplex.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

ExactSimplex::ExactSimplex(ScalableForm& form, ExactEvaluation& evaluation, const Basis& start,
                           int rounds, SolveControl& control)
    : m_scalable(form),
      m_form(form.Form()),
      m_control(control),
      m_evaluation(evaluation),
      m_exact(*evaluation.exact),
      m_factors(evaluation.factors),
      m_rounds(rounds),
      m_values(evaluation.values),
      m_duals(evaluation.duals)
{
    Basis basis = start;
    FitBasis(m_form, basis);
    m_status.resize(m_form.Variables());
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        m_status[v] = basis[v];
        if (m_status[v] == BasisStatus::Basic)
            m_head.push_back(v);
    }
}

SimplexVerdict ExactSimplex::Run(CertifiedResult& proof)
{
    std::optional<Status> ended;
    while (!ended)
        ended = Factorise() ? Step() : Status::Stopped;
    proof.record.basis.columns.assign(m_status.begin(), m_status.begin() + m_form.columns);
    proof.record.basis.rows.assign(m_status.begin() + m_form.columns, m_status.end());
    proof.certificate.status = *ended;
    if (*ended == Status::Optimal)
    {
        WritePoint(proof.certificate.primal);
        proof.certificate.dual = m_duals;
        proof.certificate.objective = Objective(proof.certificate.primal);
    }
    else if (*ended == Status::Infeasible)
        WriteFarkas(proof.certificate.dual);
    else if (*ended == Status::Unbounded)
    {
        WritePoint(proof.certificate.primal);
        WriteRay(proof.certificate.ray);
    }
    if (*ended != Status::Stopped)
        WriteDoubles(proof);
    return m_hint;
}

/// One look at the basis: how it ends the solve, or the pivot that its feasibility calls for.
std::optional<Status> ExactSimplex::Step()
{
    if (!ComputeValues())
        return Status::Stopped;
    const bool feasible = !FindViolations();
    if (!ComputeDuals(false))
        return Status::Stopped;
    const bool dualFeasible = IsDualFeasible();
    if (feasible && dualFeasible)
        return Status::Optimal;
    if (!m_mayPivot)
        return Status::Stopped;
    // What seems infeasible or unbounded is for an auxiliary LP to prove.
    if (m_rounds > 0 && Refine())
        return m_hint == SimplexVerdict::Optimal ? std::nullopt : std::optional(Status::Stopped);
    if (m_onlyRefines)
        return Status::Stopped;
    if (feasible)
        return PrimalStep(false);
    if (dualFeasible)
        return DualStep();
    if (!ComputeDuals(true))
        return Status::Stopped;
    return PrimalStep(true);
}

/// @return whether there is a basis, or a suspicion, worth looking at.
bool ExactSimplex::Refine()
{
    if (!m_refinement)
        m_refinement.emplace(m_exact, m_scalable.Scaled());
    --m_rounds;
    std::vector<BasisStatus> status;
    const ExactBasis basis{m_status, m_head, m_values, m_duals};
    BlockedRow blocked;
    SimplexVerdict verdict = m_refinement->Run(basis, m_control, status, blocked);
    if (verdict == SimplexVerdict::Infeasible && m_refinement->EnlargeEquation(blocked, m_control))
        verdict = m_refinement->Run(basis, m_control, status, blocked);
    if (verdict == SimplexVerdict::Infeasible || verdict == SimplexVerdict::Unbounded)
        m_hint = verdict;
    else if (verdict == SimplexVerdict::Stopped || status == m_status)
    {
        m_rounds = 0;
        return false;
    }
    m_status = std::move(status);
    m_head.clear();
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        if (m_status[v] == BasisStatus::Basic)
            m_head.push_back(v);
    }
    return true;
}

/// Factorises, unless the factors stand; a singular basis is repaired, what was dropped from it
/// rests at a bound.
bool ExactSimplex::Factorise()
{
    std::vector<bool> isBasic(m_form.Variables(), false);
    for (const Index variable : m_head)
        isBasic[variable] = true;
    // Both are lists of as many different variables.
    // same bits: factors that are made again solve the same
    if (m_evaluation.head.size() == m_head.size() && !m_head.empty() &&
        std::ranges::all_of(m_evaluation.head, [&](Index variable) { return isBasic[variable]; }))
    {
        m_head = m_evaluation.head;
        return !m_control.IsStopped();
    }
    m_evaluation.Forget();
    const std::vector<Index> dropped = m_factors.Factorise(m_head);
    for (const Index variable : dropped)
        m_status[variable] = DefaultNonbasicStatus(m_form.Lower(variable), m_form.Upper(variable));
    for (const Index variable : m_head)
        m_status[variable] = BasisStatus::Basic;
    m_evaluation.head = m_head;
    return !m_control.IsStopped();
}

const Rational& ExactSimplex::NonbasicValue(Index variable) const noexcept
{
    static const Rational kZero;
    switch (m_status[variable])
    {
    case BasisStatus::AtLower:
        return m_exact.lower[variable];
    case BasisStatus::AtUpper:
        return m_exact.upper[variable];
    default:
        return kZero;
    }
}

/// B x_B = -N x_N, where the products on the right are summed as integers with one scale.
bool ExactSimplex::ComputeValues()
{
    // same bits: computed again they are the same
    if (m_evaluation.hasValues && m_evaluation.resting == m_status)
        return true;
    Scale lowest;
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        // same bits: a lower scale is right too
        if (NonbasicValue(v).Sign() != 0)
            lowest.LowerTo(m_exact.ColumnScale(v));
    }
    ScaledVector right{std::vector<Integer>(m_form.rows), lowest, m_exact.BoundDivisor()};
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        const Rational& value = NonbasicValue(v);
        // same bits (always, never): what is 0 adds nothing
        if (value.Sign() == 0)
            continue;
        Integer scaled = m_exact.ScaledBound(value);
        // same bits (always, never, -> 0): a factor of 1
        if (!m_exact.HasNoQuotient())
            scaled /= m_exact.ColumnDivisor(v);
        for (const auto [row, entry] : m_exact.byVariable[v])
            right.value[row].SubtractProduct(Scaled(entry, -lowest), scaled);
    }
    m_evaluation.hasValues = m_factors.SolveForward(right, m_values, m_control);
    m_evaluation.resting = m_status;
    m_evaluation.valueInDouble.clear();
    return m_evaluation.hasValues;
}

/// B' y = c_B; in phase one c_B is -1 for a violated lower bound and +1 for a violated upper one.
bool ExactSimplex::ComputeDuals(bool phaseOne)
{
    // same bits: computed again they are the same
    if (m_evaluation.hasDuals && !phaseOne)
        return true;
    m_evaluation.hasDuals = false;
    m_evaluation.reducedSign.assign(m_form.Variables(), ExactEvaluation::kSignUnknown);
    m_evaluation.reduced.resize(m_form.Variables());
    m_evaluation.reducedInDouble.clear();
    ScaledVector right{std::vector<Integer>(m_form.rows), {}, 1};
    if (phaseOne)
    {
        for (Index k = 0; k < m_form.rows; ++k)
            right.value[k] = static_cast<int>(m_violation[k]);
        return m_factors.SolveBackward(right, m_duals, m_control);
    }
    for (const Index v : m_head)
        IncludeDenominator(m_exact.cost[v], right.divisor);
    for (Index k = 0; k < m_form.rows; ++k)
    {
        const Rational& cost = m_exact.cost[m_head[k]];
        // same bits (always, never): what is 0 adds nothing
        if (cost.Sign() != 0)
            right.value[k] = cost.Numerator() * (right.divisor / cost.Denominator());
    }
    m_evaluation.hasDuals = m_factors.SolveBackward(right, m_duals, m_control);
    return m_evaluation.hasDuals;
}

/// Of the true cost: whether no nonbasic variable improves it.
bool ExactSimplex::IsDualFeasible()
{
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        if (m_status[v] == BasisStatus::Basic || m_form.IsFixed(v))
            continue;
        signed char& sign = m_evaluation.reducedSign[v];
        // same bits: computed again it is the same
        if (sign == ExactEvaluation::kSignUnknown)
        {
            m_evaluation.reduced[v] = m_exact.ReducedCost(v, m_duals, true);
            sign = static_cast<signed char>(m_evaluation.reduced[v].Sign());
        }
        if (ImprovingDirection(v, sign) != 0)
            return false;
    }
    return true;
}

bool ExactSimplex::FindViolations()
{
    m_violation.assign(m_form.rows, 0);
    bool any = false;
    for (Index k = 0; k < m_form.rows; ++k)
    {
        const Index v = m_head[k];
        const double lower = m_form.Lower(v);
        const double upper = m_form.Upper(v);
        const Integer& numerator = m_values.numerator[k];
        const Integer& denominator = m_values.denominator;
        if (std::isfinite(lower) &&
            CompareToBound(numerator, denominator, m_exact.lower[v], lower) < 0)
            m_violation[k] = -1;
        else if (std::isfinite(upper) &&
                 CompareToBound(numerator, denominator, m_exact.upper[v], upper) > 0)
            m_violation[k] = 1;
        any = any || m_violation[k] != 0;
    }
    return any;
}

/// +1 or -1 if moving a nonbasic variable that is not fixed up or down improves, 0 if neither does:
/// by the sign of its reduced cost.
int ExactSimplex::ImprovingDirection(Index variable, int sign) const
{
    if (m_status[variable] == BasisStatus::AtLower)
        return sign < 0 ? 1 : 0;
    if (m_status[variable] == BasisStatus::AtUpper)
        return sign > 0 ? -1 : 0;
    return -sign;
}

void ExactSimplex::Exchange(Index position, Index entering, bool atUpper)
{
    m_evaluation.Forget();
    m_status[m_head[position]] = atUpper ? BasisStatus::AtUpper : BasisStatus::AtLower;
    m_status[entering] = BasisStatus::Basic;
    m_head[position] = entering;
}

void ExactSimplex::NoteStep(bool degenerate)
{
    m_degenerate = degenerate ? m_degenerate + 1 : 0;  // same bits (-> 1, -> 2): of the patience
    m_control.CountPivot(Stage::Exact);
}

}  // namespace nuv
