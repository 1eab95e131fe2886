#include "Nuv/Exact/Dense/SolveDense.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

std::vector<double> Taken(const double* numbers, Index count, double otherwise)
{
    return numbers != nullptr ? std::vector<double>(numbers, numbers + count)
                              : std::vector<double>(count, otherwise);
}

void AppendRows(const double* matrix, Index count, Index columns, SparseVectors<double>& rows)
{
    for (Index i = 0; i < count; ++i, matrix += columns)
    {
        for (Index j = 0; j < columns; ++j)
        {
            if (matrix[j] != 0.0)
                rows.Append(j, matrix[j]);
        }
        rows.Close();
    }
}

void Append(std::vector<double>& all, const double* numbers, std::size_t count)
{
    all.insert(all.end(), numbers, numbers + count);
}

/// The same where they may be left out.
void Append(std::vector<double>& all, const double* numbers, std::size_t count, double otherwise)
{
    if (numbers != nullptr)
        Append(all, numbers, count);
    else
        all.insert(all.end(), count, otherwise);
}

void SolveInGeneral(const DenseProblem& problem, DenseSolver::Otherwise otherwise,
                    SolveControl& control, DenseAnswer& answer)
{
    const BoundedForm form = FormOf(problem);
    const auto solve = otherwise == DenseSolver::Otherwise::Prove ? SolveCertified : SolveUnproved;
    const CertifiedResult result = solve(form, nullptr, control);
    answer.status = result.certificate.status;
    answer.proved = result.record.proved;
    if (answer.status != Status::Optimal)
        return;
    answer.objective = result.record.objectiveValue;
    const auto columns = static_cast<std::ptrdiff_t>(form.columns);
    answer.values.assign(result.record.value.begin(), result.record.value.begin() + columns);
    answer.reducedCosts.assign(result.record.reduced.begin(),
                               result.record.reduced.begin() + columns);
    answer.duals.assign(result.record.reduced.begin() + columns, result.record.reduced.end());
}

}  // namespace

BoundedForm FormOf(const DenseProblem& problem)
{
    BoundedForm form;
    form.numbers = problem.numbers;
    form.rows = problem.Rows();
    form.columns = problem.columns;
    form.cost = Taken(problem.cost, form.columns, 0.0);
    form.columnLower = Taken(problem.lower, form.columns, 0.0);
    form.columnUpper = Taken(problem.upper, form.columns, kInfinity);
    form.rowLower.assign(problem.upperRows, -kInfinity);
    form.rowLower.insert(form.rowLower.end(), problem.equalSides,
                         problem.equalSides + problem.equalRows);
    form.rowUpper.assign(problem.upperSides, problem.upperSides + problem.upperRows);
    form.rowUpper.insert(form.rowUpper.end(), problem.equalSides,
                         problem.equalSides + problem.equalRows);
    SparseVectors<double> rows;
    AppendRows(problem.upperMatrix, problem.upperRows, form.columns, rows);
    AppendRows(problem.equalMatrix, problem.equalRows, form.columns, rows);
    form.matrix = SparseMatrix<double>::FromRows(rows, form.columns);
    return form;
}

void DenseSolver::Solve(const DenseProblem& problem, std::uint64_t mostPivots, DenseAnswer& answer)
{
    SolveLimits limits;
    limits.doublePivots = mostPivots;
    limits.exactPivots = mostPivots;
    SolveControl control(std::move(limits));
    if (!SolveInWords(problem, control, answer))
        SolveInGeneral(problem, m_otherwise, control, answer);
    answer.pivots = control.Pivots(Stage::Double) + control.Pivots(Stage::Exact);
}

/// The problem as a form. @return whether its numbers make sense and no bounds cross.
bool DenseSolver::TakeForm(const DenseProblem& problem)
{
    const std::size_t columns = problem.columns;
    m_form.rows = problem.Rows();
    m_form.columns = problem.columns;
    m_form.numbers = problem.numbers;
    m_form.matrix.clear();
    Append(m_form.matrix, problem.upperMatrix, columns * problem.upperRows);
    Append(m_form.matrix, problem.equalMatrix, columns * problem.equalRows);
    m_form.cost.clear();
    Append(m_form.cost, problem.cost, columns, 0.0);
    m_form.lower.clear();
    Append(m_form.lower, problem.lower, columns, 0.0);
    Append(m_form.lower, nullptr, problem.upperRows, -kInfinity);
    Append(m_form.lower, problem.equalSides, problem.equalRows);
    m_form.upper.clear();
    Append(m_form.upper, problem.upper, columns, kInfinity);
    Append(m_form.upper, problem.upperSides, problem.upperRows);
    Append(m_form.upper, problem.equalSides, problem.equalRows);
    const auto isFinite = [](double number) { return std::isfinite(number); };
    if (!std::ranges::all_of(m_form.matrix, isFinite) ||
        !std::ranges::all_of(m_form.cost, isFinite))
        return false;
    for (Index v = 0; v < m_form.Variables(); ++v)
    {
        // A NaN compares as false.
        if (!(m_form.lower[v] <= m_form.upper[v]) || m_form.lower[v] == kInfinity ||
            m_form.upper[v] == -kInfinity)
            return false;
    }
    return true;
}

/// The dictionary in doubles and the proof in words. @return whether that was enough.
bool DenseSolver::SolveInWords(const DenseProblem& problem, SolveControl& control,
                               DenseAnswer& answer)
{
    constexpr std::uint64_t kMostEntries = 2500;
    if (std::uint64_t{problem.columns} * problem.Rows() > kMostEntries || !TakeForm(problem))
        return false;
    const DenseSimplex::End end = m_simplex.Run(m_form, control);
    if (end == DenseSimplex::End::Infeasible &&
        m_proof.ProveInfeasible(m_form, m_simplex.Status(), m_simplex.Violations()))
    {
        answer.status = Status::Infeasible;
        answer.proved = true;
        return true;
    }
    if (end == DenseSimplex::End::Unbounded &&
        m_proof.ProveUnbounded(m_form, m_simplex.Status(), m_simplex.Moving(), m_simplex.MovesUp()))
    {
        answer.status = Status::Unbounded;
        answer.proved = true;
        return true;
    }
    if (end != DenseSimplex::End::Optimal || !m_proof.ProveOptimal(m_form, m_simplex.Status()))
        return false;
    answer.status = Status::Optimal;
    answer.proved = true;
    answer.objective = m_proof.Objective();
    answer.values.resize(problem.columns);
    answer.reducedCosts.resize(problem.columns);
    answer.duals.resize(problem.Rows());
    for (Index j = 0; j < problem.columns; ++j)
    {
        answer.values[j] = m_proof.Value(j);
        answer.reducedCosts[j] = m_proof.ReducedCost(j);
    }
    for (Index i = 0; i < problem.Rows(); ++i)
        answer.duals[i] = m_proof.Dual(i);
    return true;
}

}  // namespace nuv
