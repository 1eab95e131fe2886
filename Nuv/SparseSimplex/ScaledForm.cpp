/// Geometric scaling: alternately each row and each column is divided by the geometric mean of its
/// smallest and its largest entry, rounded to a power of two. In the end each row is divided by its
/// largest entry alone: no unit of a column then changes the row by much more than one, and the
/// dual simplex, which compares the violations of rows, finds them in like measures.
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
    int low = 0;   // same bits: set below
    int high = 0;  // same bits: set below
    const double lowFraction = std::frexp(smallest, &low);
    const double highFraction = std::frexp(largest, &high);
    const int twice = low + high + (lowFraction * highFraction < 0.5 ? -1 : 0);
    // same bits (-> 199, -> 201): as far as any scale goes
    return std::ldexp(1.0, std::clamp(-(twice / 2), -200, 200));
}

struct Magnitudes
{
    double smallest = kInfinity;
    double largest = 0.0;
};

/// Of the entries of a row or column that are not zero, seen through the scales of the other
/// direction.
Magnitudes MagnitudesOf(SparseView<double> vector, const double* others)
{
    Magnitudes found;
    for (const auto [other, entry] : vector)
    {
        const double magnitude = std::fabs(entry) * others[other];
        if (magnitude == 0.0)
            continue;
        found.smallest = std::min(found.smallest, magnitude);
        found.largest = std::max(found.largest, magnitude);
    }
    return found;
}

double BalanceOf(SparseView<double> vector, const double* others)
{
    const auto [smallest, largest] = MagnitudesOf(vector, others);
    return BalancingPower(smallest, largest);
}

}  // namespace

ScaledMatrix::ScaledMatrix(const BoundedForm& form)
{
    ChooseScales(form);
    byVariable = ColumnsWithLogicals<double>(
        form, [&](Index variable, Index row, double entry)
        { return entry * (scale[variable] * scale[form.Logical(row)]); });
    byRow = Mapped<double>(form.matrix.Rows(), [&](Index row, Index column, double entry)
                           { return entry * (scale[column] * scale[form.Logical(row)]); });
    for (Index i = 0; i < form.rows; ++i)
    {
        // The logical of a row is the row's activity, which scales with the row.
        scale[form.Logical(i)] = 1.0 / scale[form.Logical(i)];
        byVariable.value[byVariable.start[form.Logical(i)]] = -1.0;
    }
}

/// After this, scale[j] is the factor of column j and scale[columns + i] that of row i.
void ScaledMatrix::ChooseScales(const BoundedForm& form)
{
    constexpr int kPasses = 4;
    scale.assign(form.Variables(), 1.0);
    for (int pass = 0; pass < kPasses; ++pass)
    {
        for (Index i = 0; i < form.rows; ++i)
            scale[form.Logical(i)] = BalanceOf(form.matrix.Row(i), scale.data());
        for (Index j = 0; j < form.columns; ++j)
            scale[j] = BalanceOf(form.matrix.Column(j), scale.data() + form.columns);
    }
    for (Index i = 0; i < form.rows; ++i)
    {
        const double largest = MagnitudesOf(form.matrix.Row(i), scale.data()).largest;
        scale[form.Logical(i)] = BalancingPower(largest, largest);
    }
}

ScaledForm::ScaledForm(const BoundedForm& form)
    : rows(form.rows), columns(form.columns), matrix(std::make_shared<const ScaledMatrix>(form))
{
    SetCost(form);
    SetBounds(form);
}

void ScaledForm::SetCost(const BoundedForm& form)
{
    cost.assign(Variables(), 0.0);
    double smallest = kInfinity;
    double largest = 0.0;
    for (Index j = 0; j < columns; ++j)
    {
        cost[j] = form.cost[j] * Scale(j);
        if (cost[j] == 0.0)
            continue;
        smallest = std::min(smallest, std::fabs(cost[j]));
        largest = std::max(largest, std::fabs(cost[j]));
    }
    costScale = BalancingPower(smallest, largest);
    for (double& entry : cost)
        entry *= costScale;
}

void ScaledForm::SetBounds(const BoundedForm& form)
{
    lower.resize(Variables());
    upper.resize(Variables());
    for (Index v = 0; v < Variables(); ++v)
        SetBounds(form, v);
}

void ScaledForm::SetBounds(const BoundedForm& form, Index variable)
{
    lower[variable] = form.Lower(variable) / Scale(variable);
    upper[variable] = form.Upper(variable) / Scale(variable);
}

}  // namespace nuv
