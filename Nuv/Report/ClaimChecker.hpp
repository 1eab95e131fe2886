/// Compares the numbers of a claim with those of the model. All sums are exact; each keeps the size
/// of its terms, so that a tolerance can be relative.
#pragma once

#include "Nuv/Model/Model.hpp"
#include "Nuv/Report/ClaimReport.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuv::claim
{

/// A sum and the largest of its terms' magnitudes, at least 1.
struct ScaledSum
{
    Rational sum = 0;
    Rational scale = 1;

    void Add(const Rational& term);
    /// How far the sum is above `other`, as a fraction of the scale of both.
    [[nodiscard]] double Above(const Rational& other) const;
};

/// Collects disagreements about one model.
class ClaimChecker
{
public:
    ClaimChecker(const Model& model, const BoundedForm& form, double tolerance, ClaimReport& report)
        : m_model(model), m_form(form), m_tolerance(tolerance), m_report(report)
    {
    }

    /// Values, activities and objective as the claim has them; a variable that it does not name
    /// counts as 0. Fills in what the report says of the point.
    void CheckPoint(const Claim& claim);
    /// Duals and reduced costs at that point.
    void CheckDuals(const Claim& claim);
    void CheckRay(const Claim& claim);
    void CheckFarkas(const Claim& claim);
    /// The point's objective and the claimed optimum, once the truth is known.
    void CheckOptimum(const Claim& claim);

    void Disagree(std::string code, std::string text);

    [[nodiscard]] const std::vector<ScaledSum>& Point() const noexcept
    {
        return m_point;
    }

private:
    /// "row 'wood'" or "variable 'x'".
    [[nodiscard]] std::string NameOf(Index variable) const;
    [[nodiscard]] bool IsOff(double fraction) const
    {
        return fraction > m_tolerance;
    }
    /// The numbers, by column, and the sums of all rows over them.
    [[nodiscard]] std::vector<ScaledSum> Extended(const Claim::Numbers& numbers) const;
    /// -Aᵀ y by column and y by row, and with `withCost` the costs added, for the minimisation.
    [[nodiscard]] std::vector<ScaledSum> Priced(const Claim::Numbers& multipliers, double sign,
                                                bool withCost) const;
    void CheckBounds(Index variable);
    void CheckStated(const std::optional<Rational>& stated, const ScaledSum& found,
                     const char* code, std::string_view what);

    const Model& m_model;
    const BoundedForm& m_form;
    double m_tolerance;
    ClaimReport& m_report;
    std::vector<ScaledSum> m_point;  ///< by variable of the form: columns, then rows
    ScaledSum m_objective;           ///< in the model's sense
};

}  // namespace nuv::claim
