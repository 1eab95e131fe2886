/// The numbers of a claim against the numbers of the model, each with what it is made of, so that a
/// tolerance can be relative. All sums are exact.
#pragma once

#include "Nuv/Report/CheckClaim.hpp"

#include <string_view>

namespace nuv::claim
{

/// A sum and the largest of its terms' magnitudes, at least 1.
struct Measured
{
    Rational sum = 0;
    double scale = 1.0;

    void Add(const Rational& term);
    /// How far the sum is above `other`, as a fraction of the scale of both.
    [[nodiscard]] double Above(const Rational& other) const;
};

/// Collects disagreements about one model.
class Court
{
public:
    Court(const Model& model, const BoundedForm& form, double tolerance, ClaimReport& report)
        : m_model(model), m_form(form), m_tolerance(tolerance), m_report(report)
    {
    }

    /// Values, activities and objective as the claim has them; a variable that it does not name
    /// counts as 0. Fills in what the report says of the point.
    void JudgePoint(const Claim& claim);
    /// Duals and reduced costs at that point.
    void JudgeDuals(const Claim& claim);
    void JudgeRay(const Claim& claim);
    void JudgeFarkas(const Claim& claim);
    /// The point's objective and the claimed optimum, once the truth is known.
    void JudgeOptimum(const Claim& claim);

    void Disagree(std::string code, std::string text);

    [[nodiscard]] const std::vector<Measured>& Point() const noexcept
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
    [[nodiscard]] std::vector<Measured> Extended(const Claim::Numbers& numbers) const;
    /// -Aᵀ y by column and y by row, and with `withCost` the costs added, for the minimisation.
    [[nodiscard]] std::vector<Measured> Priced(const Claim::Numbers& multipliers, double sign,
                                               bool withCost) const;
    void JudgeBounds(Index variable);
    void JudgeStated(const std::optional<Rational>& stated, const Measured& found, const char* code,
                     std::string_view what);

    const Model& m_model;
    const BoundedForm& m_form;
    double m_tolerance;
    ClaimReport& m_report;
    std::vector<Measured> m_point;  ///< by variable of the form: columns, then rows
    Measured m_objective;           ///< in the model's sense
};

}  // namespace nuv::claim
