/// A linear form scaled for double arithmetic: rows, columns and cost are multiplied by powers of
/// two, chosen by geometric means so that entries lie around one. Powers of two change exponents
/// only, so a basis means the same before and after, and no bit of the data is lost.
#pragma once

#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <vector>

namespace nuv
{

struct ScaledForm
{
    explicit ScaledForm(const BoundedForm& form);

    [[nodiscard]] Index Variables() const noexcept
    {
        return rows + columns;
    }

    Index rows;
    Index columns;
    SparseVectors<double> byColumn;
    SparseVectors<double> byRow;
    // By variable, the logicals behind the columns.
    std::vector<double> lower;
    std::vector<double> upper;
    std::vector<double> cost;
    /// The scaled value of variable v is its value divided by scale[v].
    std::vector<double> scale;
    /// The scaled objective is the objective times this.
    double costScale = 1.0;

private:
    void ChooseScales(const BoundedForm& form);
    void Apply(const BoundedForm& form);
};

}  // namespace nuv
