#include "Nuv/SparseSimplex/ScaledForm.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

/// The power of two nearest to 1 / sqrt(smallest * largest), within what exponents allow.
double BalancingPower(double smallest, double largest)
{
    if (!(largest > 0.0))
        return 1.0;
    int low = 0;
    int high = 0;
    const double lowFraction = std::frexp(smallest, &low);
    const double highFraction = std::frexp(largest, &high);
    const int twice = low + high + (lowFraction * highFraction < 0.5 ? -1 : 0);
    return std::ldexp(1.0, std::clamp(-(twice / 2), -200, 200));
}

/// Balances vector k of `vectors`, seen through the scales of the other direction.
double BalanceOf(const SparseVectors<double>& vectors, Index k, const double* others)
{
    double smallest = std::numeric_limits<double>::infinity();
    double largest = 0.0;
    for (std::size_t at = vectors.start[k]; at < vectors.start[k + 1]; ++at)
    {
        const double magnitude = std::fabs(vectors.value[at]) * others[vectors.index[at]];
        if (magnitude == 0.0)
            continue;
        smallest = std::min(smallest, magnitude);
        largest = std::max(largest, magnitude);
    }
    return BalancingPower(smallest, largest);
}

}  // namespace

ScaledForm::ScaledForm(const BoundedForm& form) : rows(form.rows), columns(form.columns)
{
    ChooseScales(form);
    Apply(form);
}

/// After this, scale[j] is the factor of column j and scale[columns + i] that of row i.
void ScaledForm::ChooseScales(const BoundedForm& form)
{
    constexpr int kPasses = 4;
    scale.assign(form.Variables(), 1.0);
    for (int pass = 0; pass < kPasses; ++pass)
    {
        for (Index i = 0; i < rows; ++i)
            scale[columns + i] = BalanceOf(form.byRow, i, scale.data());
        for (Index j = 0; j < columns; ++j)
            scale[j] = BalanceOf(form.byColumn, j, scale.data() + columns);
    }
}

void ScaledForm::Apply(const BoundedForm& form)
{
    byColumn = form.byColumn;
    for (Index j = 0; j < columns; ++j)
    {
        for (std::size_t at = byColumn.start[j]; at < byColumn.start[j + 1]; ++at)
            byColumn.value[at] *= scale[j] * scale[columns + byColumn.index[at]];
    }
    byRow = Transposed(byColumn, rows);

    cost.assign(Variables(), 0.0);
    double smallest = std::numeric_limits<double>::infinity();
    double largest = 0.0;
    for (Index j = 0; j < columns; ++j)
    {
        cost[j] = form.cost[j] * scale[j];
        if (cost[j] == 0.0)
            continue;
        smallest = std::min(smallest, std::fabs(cost[j]));
        largest = std::max(largest, std::fabs(cost[j]));
    }
    costScale = BalancingPower(smallest, largest);
    for (double& entry : cost)
        entry *= costScale;

    // The logical of a row is the row's activity, which scales with the row.
    for (Index i = 0; i < rows; ++i)
        scale[columns + i] = 1.0 / scale[columns + i];
    lower.resize(Variables());
    upper.resize(Variables());
    for (Index v = 0; v < Variables(); ++v)
    {
        lower[v] = form.Lower(v) / scale[v];
        upper[v] = form.Upper(v) / scale[v];
    }
}

}  // namespace nuv
