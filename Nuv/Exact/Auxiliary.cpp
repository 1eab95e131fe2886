#include "Nuv/Exact/Auxiliary.hpp"

#include "Nuv/SparseSimplex/SimplexState.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A violation that the simplex in doubles counts.
constexpr double kViolation = 1e-9;

/// Appends `sign` times the column of `variable`, whose logicals still follow `columns`.
void AppendColumn(BoundedForm& form, Index columns, Index variable, double sign)
{
    if (variable >= columns)
    {
        form.byColumn.Append(variable - columns, -sign);
    }
    else
    {
        for (std::size_t at = form.byColumn.start[variable]; at < form.byColumn.start[variable + 1];
             ++at)
        {
            const double value = sign * form.byColumn.value[at];
            form.byColumn.Append(form.byColumn.index[at], value);
        }
    }
    form.byColumn.Close();
    form.cost.push_back(1.0);
    form.columnLower.push_back(0.0);
    form.columnUpper.push_back(kInfinity);
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

AuxiliaryForm ElasticForm(const BoundedForm& form, const Basis& basis)
{
    AuxiliaryForm result{form, basis};
    BoundedForm& elastic = result.form;
    elastic.constant = 0.0;
    std::fill(elastic.cost.begin(), elastic.cost.end(), 0.0);

    const ScaledForm scaled(form);
    SimplexState state(scaled, basis);
    state.Refactorise();
    result.start = state.ExportBasis();
    for (const Index v : state.head)
    {
        const bool below = state.value[v] < state.lower[v] - kViolation;
        if (!below && !(state.value[v] > state.upper[v] + kViolation))
            continue;
        AppendColumn(elastic, form.columns, v, below ? -1.0 : 1.0);
        result.start[v] = below ? BasisStatus::AtLower : BasisStatus::AtUpper;
    }
    elastic.columns = static_cast<Index>(elastic.cost.size());
    elastic.byRow = Transposed(elastic.byColumn, elastic.rows);
    result.start.columns.resize(elastic.columns, BasisStatus::Basic);
    return result;
}

AuxiliaryForm RayForm(const BoundedForm& form, const Basis& basis)
{
    AuxiliaryForm result{form, basis};
    result.form.constant = 0.0;
    TurnIntoDirections(result.form.columnLower, result.form.columnUpper, 1.0);
    TurnIntoDirections(result.form.rowLower, result.form.rowUpper, kInfinity);
    return result;
}

}  // namespace nuv
