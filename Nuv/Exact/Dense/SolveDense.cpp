#include "Nuv/Exact/Dense/SolveDense.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"

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

void SolveDense(const DenseProblem& problem, std::uint64_t mostPivots, DenseAnswer& answer)
{
    SolveLimits limits;
    limits.doublePivots = mostPivots;
    limits.exactPivots = mostPivots;
    SolveControl control(std::move(limits));
    const BoundedForm form = FormOf(problem);
    CertifiedResult result = SolveCertified(form, nullptr, control);
    answer.status = result.certificate.status;
    answer.proved = result.record.proved;
    answer.pivots = control.Pivots(Stage::Double) + control.Pivots(Stage::Exact);
    if (answer.status != Status::Optimal)
        return;
    answer.objective = result.record.objectiveValue;
    const auto columns = static_cast<std::ptrdiff_t>(form.columns);
    answer.values.assign(result.record.value.begin(), result.record.value.begin() + columns);
    answer.reducedCosts.assign(result.record.reduced.begin(),
                               result.record.reduced.begin() + columns);
    answer.duals.assign(result.record.reduced.begin() + columns, result.record.reduced.end());
}

}  // namespace nuv
