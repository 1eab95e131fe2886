#include "Nuv/Exact/Auxiliary.hpp"

#include "Nuv/SparseSimplex/SimplexState.hpp"
#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>
#include <utility>

namespace nuv
{
namespace
{

/// Appends `sign` times the column of `variable` of the original to the columns of the elastic
/// form.
void AppendColumn(const BoundedForm& form, Index variable, double sign,
                  SparseVectors<double>& columns, BoundedForm& elastic)
{
    AppendColumnOf(form, variable, sign, columns, elastic.exact);
    elastic.cost.push_back(1.0);
    elastic.columnLower.push_back(0.0);
    elastic.columnUpper.push_back(kInfinity);
}

void TakeCostAway(BoundedForm& form)
{
    form.constant = 0.0;
    form.exact.EraseObjective();
    std::fill(form.cost.begin(), form.cost.end(), 0.0);
}

/// [0, infinity) for a variable with a lower bound only, and so on.
void TurnIntoDirections(std::vector<double>& lower, std::vector<double>& upper, double most)
{
    for (double& bound : lower)
        bound = bound > -kInfinity ? 0.0 : -most;
    for (double& bound : upper)
        bound = bound < kInfinity ? 0.0 : most;
}

}  // namespace

AuxiliaryForm ElasticForm(ScalableForm& original, const Basis& basis)
{
    const BoundedForm& form = original.Form();
    AuxiliaryForm result{form, basis};
    BoundedForm& elastic = result.form;
    TakeCostAway(elastic);

    SimplexState state(original.Scaled(), basis);
    state.Refactorise();
    result.start = state.ExportBasis();
    SparseVectors<double> columns = form.matrix.Columns();
    for (const Index v : state.head)
    {
        const bool below = state.value[v] < state.lower[v] - tolerance::kFeasibility;
        if (!below && !(state.value[v] > state.upper[v] + tolerance::kFeasibility))
            continue;
        AppendColumn(form, v, below ? -1.0 : 1.0, columns, elastic);
        result.start[v] = below ? BasisStatus::AtLower : BasisStatus::AtUpper;
    }
    elastic.columns = static_cast<Index>(elastic.cost.size());
    elastic.matrix = SparseMatrix<double>::FromColumns(std::move(columns), elastic.rows);
    result.start.columns.resize(elastic.columns, BasisStatus::Basic);
    return result;
}

AuxiliaryForm ElasticRowsForm(const BoundedForm& form)
{
    AuxiliaryForm result{form, SlackBasis(form)};
    BoundedForm& elastic = result.form;
    TakeCostAway(elastic);
    SparseVectors<double> columns = form.matrix.Columns();
    for (Index i = 0; i < form.rows; ++i)
    {
        if (form.rowLower[i] > -kInfinity)
            AppendColumn(form, form.Logical(i), -1.0, columns, elastic);
        if (form.rowUpper[i] < kInfinity)
            AppendColumn(form, form.Logical(i), 1.0, columns, elastic);
    }
    elastic.columns = static_cast<Index>(elastic.cost.size());
    elastic.matrix = SparseMatrix<double>::FromColumns(std::move(columns), elastic.rows);
    result.start.columns.resize(elastic.columns, BasisStatus::AtLower);
    return result;
}

AuxiliaryForm RayForm(const BoundedForm& form, const Basis& basis)
{
    AuxiliaryForm result{form, basis};
    result.form.exact.Erase({FormPlace::Of::Constant});
    result.form.exact.EraseBounds();
    result.form.constant = 0.0;
    TurnIntoDirections(result.form.columnLower, result.form.columnUpper, 1.0);
    TurnIntoDirections(result.form.rowLower, result.form.rowUpper, kInfinity);
    return result;
}

}  // namespace nuv
