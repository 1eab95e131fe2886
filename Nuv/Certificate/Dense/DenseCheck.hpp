/// The check of an optimum of a dense form, in integers of a fixed number of words: the conditions
/// of CheckCertificate for the same numbers in another shape.
#pragma once

#include "Nuv/Certificate/Dense/IntegerForm.hpp"

#include <vector>

namespace nuv
{

/// A point and duals over one positive denominator, each number of `width` words.
struct DenseOptimum
{
    unsigned width = 0;
    std::vector<Word> denominator;
    /// By column: the value times denominator and bound factor.
    std::vector<Word> point;
    /// By row: the dual times denominator and cost factor, divided by the factor of the row.
    std::vector<Word> dual;
};

class DenseCheck
{
public:
    /// @return whether the point is feasible and every reduced cost that is not zero belongs to a
    /// variable at the bound that its sign names.
    [[nodiscard]] bool IsOptimal(const IntegerForm& form, const DenseOptimum& optimum);

    /// Whether multipliers by row, each of `width` words and divided by the factor of its row,
    /// contradict the bounds: CheckCertificate's sum for an infeasible form.
    [[nodiscard]] bool IsInfeasible(const IntegerForm& form, unsigned width,
                                    const std::vector<Word>& multipliers);

    /// Whether the point is feasible and the ray, each number of `width` words times any positive
    /// number, a direction that stays so and improves.
    [[nodiscard]] bool IsUnbounded(const IntegerForm& form, const DenseOptimum& optimum,
                                   unsigned width, const std::vector<Word>& ray);

    // What the check of an optimum has found, of Width() words each.
    [[nodiscard]] unsigned Width() const noexcept
    {
        return m_width;
    }
    /// The activity of a row, times the factors of row and bounds and the denominator.
    [[nodiscard]] const Word* Activity(Index row) const noexcept
    {
        return m_activity.data() + static_cast<std::size_t>(row) * m_width;
    }
    /// The reduced cost of a column, times denominator and cost factor.
    [[nodiscard]] const Word* ReducedCost(Index column) const noexcept
    {
        return m_reduced.data() + static_cast<std::size_t>(column) * m_width;
    }
    /// The objective times the factors of costs and bounds and the denominator.
    [[nodiscard]] const Word* Objective() const noexcept
    {
        return m_objective.data();
    }

private:
    [[nodiscard]] bool TakeNumbers(const IntegerForm& form, const DenseOptimum& optimum);
    [[nodiscard]] const Word* ActivityOf(const IntegerForm& form, Index row);
    [[nodiscard]] bool StaysWithin(const IntegerForm& form, Index variable, const Word* rate) const;
    [[nodiscard]] bool AddToContradiction(const IntegerForm& form, Index variable,
                                          const Word* factor);
    [[nodiscard]] bool IsRowRight(const IntegerForm& form, Index row);
    [[nodiscard]] bool IsColumnRight(const IntegerForm& form, Index column);
    [[nodiscard]] bool IsPlaceRight(const IntegerForm& form, Index variable, const Word* value,
                                    const std::vector<Word>& unit, int sign);

    unsigned m_width = 0;  // same bits: each check sets it
    std::vector<Word> m_point;
    std::vector<Word> m_dual;
    std::vector<Word> m_denominator;
    std::vector<Word> m_boundDenominator;  ///< times the bound factor
    std::vector<Word> m_activity;
    std::vector<Word> m_reduced;
    std::vector<Word> m_objective;
    std::vector<Word> m_bound;
};

}  // namespace nuv
