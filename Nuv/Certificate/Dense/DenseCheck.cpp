#include "Nuv/Certificate/Dense/DenseCheck.hpp"

#include <cmath>

namespace nuv
{
namespace
{

void ExtendAll(const std::vector<Word>& from, unsigned width, std::vector<Word>& to,
               unsigned toWidth)
{
    const std::size_t count = from.size() / width;
    to.resize(count * toWidth);
    for (std::size_t k = 0; k < count; ++k)
        CopyWords(from.data() + k * width, width, to.data() + k * toWidth, toWidth);
}

}  // namespace

bool DenseCheck::IsOptimal(const IntegerForm& form, const DenseOptimum& optimum)
{
    if (!TakeNumbers(form, optimum))
        return false;
    for (Index i = 0; i < form.Form().rows; ++i)
    {
        if (!IsRowRight(form, i))
            return false;
    }
    for (Index j = 0; j < form.Form().columns; ++j)
    {
        if (!IsColumnRight(form, j))
            return false;
    }
    return true;
}

/// The point is feasible, and the ray leaves no finite bound behind and improves.
bool DenseCheck::IsUnbounded(const IntegerForm& form, const DenseOptimum& optimum, unsigned width,
                             const std::vector<Word>& ray)
{
    const Index rows = form.Form().rows;
    const Index columns = form.Form().columns;
    if (ray.size() != std::size_t{columns} * width || !TakeNumbers(form, optimum))
        return false;
    for (Index i = 0; i < rows; ++i)
    {
        if (!IsPlaceRight(form, columns + i, ActivityOf(form, i), m_boundDenominator, 0))
            return false;
    }
    for (Index j = 0; j < columns; ++j)
    {
        if (!IsPlaceRight(form, j, m_point.data() + std::size_t{j} * m_width, m_denominator, 0))
            return false;
    }
    // From here on the point is the ray.
    m_width = width + (form.Bits() + 33 + 63) / 64;
    ExtendAll(ray, width, m_point, m_width);
    m_activity.assign(std::size_t{rows} * m_width, 0);
    m_objective.assign(m_width, 0);
    for (Index i = 0; i < rows; ++i)
    {
        if (!StaysWithin(form, columns + i, ActivityOf(form, i)))
            return false;
    }
    for (Index j = 0; j < columns; ++j)
    {
        const Word* const rate = m_point.data() + std::size_t{j} * m_width;
        if (!StaysWithin(form, j, rate))
            return false;
        AddProduct(m_objective.data(), rate, form.Cost(j), m_width);
    }
    return SignOf(m_objective.data(), m_width) < 0;
}

bool DenseCheck::StaysWithin(const IntegerForm& form, Index variable, const Word* rate) const
{
    const int sign = SignOf(rate, m_width);
    return sign == 0 ||
           std::isinf(sign > 0 ? form.Form().upper[variable] : form.Form().lower[variable]);
}

/// @return whether the numbers have the right shape.
bool DenseCheck::TakeNumbers(const IntegerForm& form, const DenseOptimum& optimum)
{
    const Index rows = form.Form().rows;
    const Index columns = form.Form().columns;
    const unsigned width = optimum.width;
    if (optimum.denominator.size() != width ||
        optimum.point.size() != std::size_t{columns} * width ||
        optimum.dual.size() != std::size_t{rows} * width ||
        SignOf(optimum.denominator.data(), width) <= 0)
        return false;
    // A sum of as many products as there are rows or columns, each with one number of the form, and
    // the denominator with two of them: 32 bits count the terms, one is the sign.
    m_width = width + (2 * form.Bits() + 33 + 63) / 64;
    ExtendAll(optimum.point, width, m_point, m_width);
    ExtendAll(optimum.dual, width, m_dual, m_width);
    ExtendAll(optimum.denominator, width, m_denominator, m_width);
    m_boundDenominator.assign(m_width, 0);
    AddProduct(m_boundDenominator.data(), m_denominator.data(), form.BoundFactor(), m_width);
    m_bound.resize(m_width);
    m_activity.assign(std::size_t{rows} * m_width, 0);
    m_reduced.assign(std::size_t{columns} * m_width, 0);
    m_objective.assign(m_width, 0);
    return true;
}

/// Each variable counts with its factor, that of a column being minus the product of its entries
/// with the multipliers, times the bound that the factor's sign names.
bool DenseCheck::IsInfeasible(const IntegerForm& form, unsigned width,
                              const std::vector<Word>& multipliers)
{
    const Index rows = form.Form().rows;
    const Index columns = form.Form().columns;
    if (multipliers.size() != std::size_t{rows} * width)
        return false;
    // Of each variable a product with two numbers of the form, summed twice.
    m_width = width + (2 * form.Bits() + 65 + 63) / 64;
    ExtendAll(multipliers, width, m_dual, m_width);
    m_objective.assign(m_width, 0);
    m_bound.resize(m_width);
    m_point.resize(m_width);
    for (Index i = 0; i < rows; ++i)
    {
        // The bounds of columns have one more factor, the others are given it.
        std::fill(m_point.begin(), m_point.end(), 0);
        AddProduct(m_point.data(), m_dual.data() + std::size_t{i} * m_width, form.BoundFactor(),
                   m_width);
        if (!AddToContradiction(form, columns + i, m_point.data()))
            return false;
    }
    for (Index j = 0; j < columns; ++j)
    {
        std::fill(m_point.begin(), m_point.end(), 0);
        for (Index i = 0; i < rows; ++i)
        {
            // same bits (always, never): what is 0 adds nothing
            if (!form.Entry(i, j).IsZero())
                AddProduct(m_point.data(), m_dual.data() + std::size_t{i} * m_width,
                           form.Entry(i, j), m_width);
        }
        NegateWords(m_point.data(), m_width);
        if (!AddToContradiction(form, j, m_point.data()))
            return false;
    }
    return SignOf(m_objective.data(), m_width) > 0;
}

/// @return whether the bound that it takes is there.
bool DenseCheck::AddToContradiction(const IntegerForm& form, Index variable, const Word* factor)
{
    const int sign = SignOf(factor, m_width);
    if (sign == 0)
        return true;
    const bool isLower = sign > 0;
    if (!std::isfinite(isLower ? form.Form().lower[variable] : form.Form().upper[variable]))
        return false;
    AddProduct(m_objective.data(), factor, isLower ? form.Lower(variable) : form.Upper(variable),
               m_width);
    return true;
}

/// The activity is the sum of entries times point, the dual the reduced cost of the logical.
const Word* DenseCheck::ActivityOf(const IntegerForm& form, Index row)
{
    const Index columns = form.Form().columns;
    Word* const activity = m_activity.data() + std::size_t{row} * m_width;
    for (Index j = 0; j < columns; ++j)
    {
        // same bits (always, never): what is 0 adds nothing
        if (!form.Entry(row, j).IsZero())
            AddProduct(activity, m_point.data() + std::size_t{j} * m_width, form.Entry(row, j),
                       m_width);
    }
    return activity;
}

bool DenseCheck::IsRowRight(const IntegerForm& form, Index row)
{
    const int sign = SignOf(m_dual.data() + std::size_t{row} * m_width, m_width);
    return IsPlaceRight(form, form.Form().columns + row, ActivityOf(form, row), m_boundDenominator,
                        sign);
}

bool DenseCheck::IsColumnRight(const IntegerForm& form, Index column)
{
    Word* const reduced = m_reduced.data() + std::size_t{column} * m_width;
    for (Index i = 0; i < form.Form().rows; ++i)
    {
        // same bits (always, never): what is 0 adds nothing
        if (!form.Entry(i, column).IsZero())
            AddProduct(reduced, m_dual.data() + std::size_t{i} * m_width, form.Entry(i, column),
                       m_width);
    }
    NegateWords(reduced, m_width);
    AddProduct(reduced, m_denominator.data(), form.Cost(column), m_width);
    const Word* const value = m_point.data() + std::size_t{column} * m_width;
    AddProduct(m_objective.data(), value, form.Cost(column), m_width);
    return IsPlaceRight(form, column, value, m_denominator, SignOf(reduced, m_width));
}

/// Whether the value is within its bounds, which count in units of `unit`, and at the one that the
/// sign of the reduced cost names.
bool DenseCheck::IsPlaceRight(const IntegerForm& form, Index variable, const Word* value,
                              const std::vector<Word>& unit, int sign)
{
    const auto order = [&](const WideInteger& bound)
    {
        std::fill(m_bound.begin(), m_bound.end(), 0);
        AddProduct(m_bound.data(), unit.data(), bound, m_width);
        return CompareWords(value, m_bound.data(), m_width);
    };
    bool isAtLower = false;
    bool isAtUpper = false;
    if (std::isfinite(form.Form().lower[variable]))
    {
        const int toLower = order(form.Lower(variable));
        if (toLower < 0)
            return false;
        isAtLower = toLower == 0;
    }
    if (std::isfinite(form.Form().upper[variable]))
    {
        const int toUpper = order(form.Upper(variable));
        if (toUpper > 0)
            return false;
        isAtUpper = toUpper == 0;
    }
    return sign == 0 || (sign > 0 ? isAtLower : isAtUpper);
}

}  // namespace nuv
