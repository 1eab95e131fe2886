/// A smaller form with the same optimum, and the way back from a basis of it to one of the original
/// form. It works in doubles and is trusted by nobody: the basis it leads to is looked at in the
/// original form, and what is wrong with it costs pivots there.
#pragma once

#include "Nuv/SparseSimplex/Presolve/ReducibleForm.hpp"
#include "Nuv/SparseSimplex/SimplexState.hpp"

namespace nuv
{

class Presolve
{
public:
    explicit Presolve(const BoundedForm& form);

    /// Whether the form became smaller. It does not count as such if it seems to be infeasible or
    /// unbounded, which is for the simplex to find in the original form.
    [[nodiscard]] bool Reduces() const noexcept
    {
        return m_reduces;
    }
    /// Whether the form seems to be infeasible or unbounded.
    [[nodiscard]] bool FoundContradiction() const noexcept
    {
        return m_form.contradiction;
    }
    /// The smaller form. Its constant is what the original's objective, without its own constant,
    /// has lost to columns that are gone.
    [[nodiscard]] const BoundedForm& Form() const noexcept
    {
        return m_reduced;
    }
    /// The point of the original form, and its basis, that belong to those of the smaller form.
    [[nodiscard]] presolve::RestoredPoint RestorePoint(const SimplexState& state) const;
    /// The basis alone.
    [[nodiscard]] Basis Restore(const SimplexState& state) const
    {
        return RestorePoint(state).basis;
    }

private:
    void Reduce();
    void ReduceRows();
    void ReduceColumns();
    void BoundDuals();
    void BoundDualsBy(Index column);
    void BuildForm();

    presolve::ReducibleForm m_form;
    bool m_reduces = false;  // same bits: set when presolve is over
    BoundedForm m_reduced;
    std::vector<Index> m_rows;     ///< of the original, by row of the smaller form
    std::vector<Index> m_columns;  ///< and by column
    std::vector<double> m_dualLower;
    std::vector<double> m_dualUpper;
};

}  // namespace nuv
