/// The choice of basic variables by a factorisation: columns of all variables that are away from
/// their bounds, those of rows first, and where they do not fill the basis the logicals of the rows
/// that are left without a pivot.
#include "Nuv/SparseSimplex/StartBasis.hpp"

#include "Nuv/Algebra/RealField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/SparseSimplex/ScaledForm.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

namespace nuv
{
namespace
{

/// A value is at a bound if it misses it by no more than this share of the bound and of one: a
/// point that other programs computed keeps its bounds to seven digits or so.
constexpr double kAtBound = 1e-7;

double DistanceTo(double bound, double value) noexcept
{
    return std::isinf(bound) ? kInfinity : std::fabs(value - bound) / (1.0 + std::fabs(bound));
}

/// How far the value is from the nearer bound; infinite for a variable without bounds.
double Clearance(const BoundedForm& form, Index variable, double value) noexcept
{
    return std::min(DistanceTo(form.Lower(variable), value),
                    DistanceTo(form.Upper(variable), value));
}

BasisStatus RestingPlace(const BoundedForm& form, Index variable, double value) noexcept
{
    const double toLower = DistanceTo(form.Lower(variable), value);
    const double toUpper = DistanceTo(form.Upper(variable), value);
    if (std::isnan(value) || toLower == toUpper)
        return DefaultNonbasicStatus(form.Lower(variable), form.Upper(variable));
    return toUpper < toLower ? BasisStatus::AtUpper : BasisStatus::AtLower;
}

/// The values of all variables: what is missing rests at its default place.
std::vector<double> AllValues(const BoundedForm& form, std::span<const double> point)
{
    std::vector<double> values(form.Variables(), 0.0);
    for (Index j = 0; j < form.columns; ++j)
    {
        if (j < point.size() && std::isfinite(point[j]))
            values[j] = point[j];
        else
        {
            const BasisStatus at = DefaultNonbasicStatus(form.columnLower[j], form.columnUpper[j]);
            values[j] = at == BasisStatus::AtLower   ? form.columnLower[j]
                        : at == BasisStatus::AtUpper ? form.columnUpper[j]
                                                     : 0.0;
        }
        for (const auto [row, entry] : form.matrix.Column(j))
            values[form.Logical(row)] += entry * values[j];
    }
    return values;
}

}  // namespace

Basis BasisNear(const BoundedForm& form, std::span<const double> point)
{
    const std::vector<double> values = AllValues(form, point);
    std::vector<Index> candidates;
    std::vector<double> clearance(form.Variables());
    for (Index v = 0; v < form.Variables(); ++v)
    {
        clearance[v] = Clearance(form, v, values[v]);
        const bool isGiven = form.IsLogical(v) || (v < point.size() && std::isfinite(point[v]));
        if (clearance[v] > kAtBound && isGiven)
            candidates.push_back(v);
    }
    // Logicals are independent of each other and cost nothing; among columns, those farthest from
    // their bounds are the most likely to be basic.
    std::stable_sort(candidates.begin(), candidates.end(),
                     [&](Index a, Index b)
                     {
                         if (form.IsLogical(a) != form.IsLogical(b))
                             return form.IsLogical(a);
                         return !form.IsLogical(a) && clearance[a] > clearance[b];
                     });
    candidates.resize(form.rows, kNoIndex);

    const ScaledForm scaled(form);
    SparseLu<RealField> lu;
    std::vector<Index> position;
    const auto replaced = lu.Factorise(
        Selected(scaled.matrix->byVariable, std::span<const Index>(candidates)), position);
    Basis basis;
    basis.columns.resize(form.columns);
    basis.rows.resize(form.rows);
    for (Index v = 0; v < form.Variables(); ++v)
        basis[v] = RestingPlace(form, v, values[v]);
    for (const Index v : candidates)
    {
        if (v != kNoIndex)
            basis[v] = BasisStatus::Basic;
    }
    for (const auto& [column, row] : replaced)
    {
        const Index dropped = candidates[column];
        if (dropped != kNoIndex)
            basis[dropped] = RestingPlace(form, dropped, values[dropped]);
    }
    for (const auto& [column, row] : replaced)
        basis.rows[row] = BasisStatus::Basic;
    return basis;
}

}  // namespace nuv
