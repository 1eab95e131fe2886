/// Where variables rest, and how any list of statuses becomes a basis.
#include "Nuv/SparseSimplex/Basis.hpp"

#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <cmath>

namespace nuv
{

BasisStatus DefaultNonbasicStatus(double lower, double upper) noexcept
{
    const bool hasLower = std::isfinite(lower);
    const bool hasUpper = std::isfinite(upper);
    if (hasLower && hasUpper)
        return std::fabs(upper) < std::fabs(lower) ? BasisStatus::AtUpper : BasisStatus::AtLower;
    if (hasLower)
        return BasisStatus::AtLower;
    return hasUpper ? BasisStatus::AtUpper : BasisStatus::Free;
}

double DualInfeasibility(BasisStatus status, double reduced) noexcept
{
    switch (status)
    {
    case BasisStatus::AtLower:
        return -reduced;
    case BasisStatus::AtUpper:
        return reduced;
    case BasisStatus::Free:
        return std::fabs(reduced);
    case BasisStatus::Basic:
        break;
    }
    return -kInfinity;
}

Basis SlackBasis(const BoundedForm& form)
{
    Basis basis;
    basis.columns.resize(form.columns);
    for (Index j = 0; j < form.columns; ++j)
        basis.columns[j] = DefaultNonbasicStatus(form.columnLower[j], form.columnUpper[j]);
    basis.rows.assign(form.rows, BasisStatus::Basic);
    return basis;
}

void FitBasis(const BoundedForm& form, Basis& basis)
{
    basis.columns.resize(form.columns, BasisStatus::AtLower);
    basis.rows.resize(form.rows, BasisStatus::AtLower);
    Index basics = 0;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        BasisStatus& status = basis[v];
        if (status == BasisStatus::Basic && basics < form.rows)
        {
            ++basics;
            continue;
        }
        const bool possible = (status == BasisStatus::AtLower && std::isfinite(form.Lower(v))) ||
                              (status == BasisStatus::AtUpper && std::isfinite(form.Upper(v)));
        if (!possible)
            status = DefaultNonbasicStatus(form.Lower(v), form.Upper(v));
    }
    for (Index i = 0; i < form.rows && basics < form.rows; ++i)
    {
        if (basis.rows[i] != BasisStatus::Basic)
        {
            basis.rows[i] = BasisStatus::Basic;
            ++basics;
        }
    }
}

}  // namespace nuv
