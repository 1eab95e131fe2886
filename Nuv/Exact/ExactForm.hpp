/// The numbers of a bounded form in exact terms, taken apart once, and the sums over them that an
/// exact simplex needs. The column of variable v and its cost share the scale ColumnScale(v): they
/// are integers times that power; all finite bounds are integers times BoundScale().
#pragma once

#include "Nuv/Certificate/Certificate.hpp"

#include <vector>

namespace nuv
{

class ExactForm
{
public:
    explicit ExactForm(const BoundedForm& bounded);

    /// Takes over the bounds of a variable, when the form has other ones.
    void TakeBounds(Index variable);

    const BoundedForm& form;
    SparseVectors<ExactNumber> byVariable;  ///< the columns of [A, -I]
    std::vector<ExactNumber> cost;          ///< by variable
    std::vector<ExactNumber> lower;  ///< by variable; meaningless where the bound is infinite
    std::vector<ExactNumber> upper;

    [[nodiscard]] Scale ColumnScale(Index variable) const noexcept
    {
        return m_columnScale[variable];
    }
    [[nodiscard]] Scale BoundScale() const noexcept
    {
        return m_boundScale;
    }

    /// The product of the variable's column with integers by row, divided by ColumnScale(variable).
    [[nodiscard]] Integer Dot(Index variable, const std::vector<Integer>& byRow) const;

    /// (cost * duals.denominator - column . duals.numerator) / ColumnScale(variable): the reduced
    /// cost, but for positive factors. The cost counts only if `withCost`.
    [[nodiscard]] Integer ReducedCost(Index variable, const ExactVector& duals,
                                      bool withCost) const;

    /// The reduced cost itself, to the nearest double or so.
    [[nodiscard]] double ReducedCostInDouble(Index variable, const ExactVector& duals,
                                             bool withCost) const;

private:
    /// An integer: factor * 2^shift.
    struct Multiplier
    {
        Integer factor;
        unsigned shift;
    };
    [[nodiscard]] static Multiplier Divided(const ExactNumber& number, Scale scale);
    static void AddProduct(Integer& sum, const Integer& value, const Multiplier& multiplier);

    std::vector<Scale> m_columnScale;
    SparseVectors<Multiplier> m_multipliers;  ///< byVariable / ColumnScale
    std::vector<Multiplier> m_costs;          ///< cost / ColumnScale
    Scale m_boundScale;
};

/// The sign of numerator / denominator - bound, the denominator positive. `nearby` is the bound in
/// double, which decides where sizes differ.
[[nodiscard]] int CompareToBound(const Integer& numerator, const Integer& denominator,
                                 const ExactNumber& bound, double nearby);

}  // namespace nuv
