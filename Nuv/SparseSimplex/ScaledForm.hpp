/// A bounded form scaled for double arithmetic: rows, columns and cost are multiplied by powers of
/// two, chosen by geometric means so that entries lie around one (Maros 2003). Powers
/// of two change exponents only, so a basis means the same before and after, and no bit of the data
/// is lost.
#pragma once

#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace nuv
{

/// The scaled [A, -I]. The factor of a logical is the inverse of its row's, so its column stays
/// minus the unit vector.
struct ScaledMatrix
{
    explicit ScaledMatrix(const BoundedForm& form);

    SparseVectors<double> byVariable;  ///< the columns of [A, -I]
    SparseVectors<double> byRow;       ///< the rows of A
    /// The scaled value of variable v is its value divided by scale[v].
    std::vector<double> scale;

private:
    void ChooseScales(const BoundedForm& form);
};

/// Copies share the matrix, which is what scaling costs; bounds and costs are each copy's own.
struct ScaledForm
{
    explicit ScaledForm(const BoundedForm& form);

    /// Takes over the bounds of a form with the same matrix, or those of one variable.
    void SetBounds(const BoundedForm& form);
    void SetBounds(const BoundedForm& form, Index variable);
    /// Takes over the costs.
    void SetCost(const BoundedForm& form);

    [[nodiscard]] Index Variables() const noexcept
    {
        return rows + columns;
    }
    [[nodiscard]] Index Logical(Index row) const noexcept
    {
        return columns + row;
    }
    /// The variable's column of [A, -I].
    [[nodiscard]] SparseView<double> Column(Index variable) const noexcept
    {
        return matrix->byVariable[variable];
    }
    /// A row of A, without its logical.
    [[nodiscard]] SparseView<double> Row(Index row) const noexcept
    {
        return matrix->byRow[row];
    }
    [[nodiscard]] double Scale(Index variable) const noexcept
    {
        return matrix->scale[variable];
    }

    Index rows;
    Index columns;
    std::shared_ptr<const ScaledMatrix> matrix;
    // By variable.
    std::vector<double> lower;
    std::vector<double> upper;
    std::vector<double> cost;
    /// The scaled objective is the objective times this.
    double costScale = 1.0;  // same bits: set with the costs
    /// What progress is told of the objective beside the costs, in units of the form.
    double offset = 0.0;
};

/// A form, scaled when that is first wanted: the stages of a solve share it.
class ScalableForm
{
public:
    /// Refers to the form.
    explicit ScalableForm(const BoundedForm& form) : m_form(form) {}
    /// The same for a form that was scaled already.
    ScalableForm(const BoundedForm& form, ScaledForm scaled)
        : m_form(form), m_scaled(std::move(scaled))
    {
    }
    [[nodiscard]] const BoundedForm& Form() const noexcept
    {
        return m_form;
    }
    [[nodiscard]] const ScaledForm& Scaled()
    {
        if (!m_scaled)
            m_scaled.emplace(m_form);
        return *m_scaled;
    }
    /// For one that edits the form: what is scaled already, or null.
    [[nodiscard]] ScaledForm* Made() noexcept
    {
        return m_scaled ? &*m_scaled : nullptr;
    }

private:
    const BoundedForm& m_form;
    std::optional<ScaledForm> m_scaled;
};

}  // namespace nuv
