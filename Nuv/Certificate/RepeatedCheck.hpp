/// The check of one certificate after another, of a form whose bounds and costs change in between.
/// It says what CheckCertificate says, and shares as little with the solvers; but it keeps the form
/// in integers, and of an optimum the conditions that hold already: those of a point that is the
/// same number for number are compared with the bounds that have changed alone, and the signs of
/// reduced costs stay with the duals that they come from. A form with numbers that its doubles do
/// not say is checked anew each time.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"

#include <string>
#include <vector>

namespace nuv
{

class RepeatedCheck
{
public:
    /// Refers to the form, whose matrix stays as it is.
    explicit RepeatedCheck(const BoundedForm& form);

    /// The form has other bounds of this variable.
    void TakeBounds(Index variable);
    /// The form has other costs, or another constant.
    void TakeCosts();

    /// @return what is wrong; empty if the certificate proves what it claims.
    [[nodiscard]] std::string Check(const Certificate& certificate);

private:
    /// A bound times the factor is numerator / denominator.
    struct Bound
    {
        bool isFinite;
        Integer numerator;
        Integer denominator;
    };

    void IncludeDenominatorOf(double number);
    [[nodiscard]] bool Fits(double number) const;
    [[nodiscard]] Integer Scaled(double number) const;
    void TakeNumbers();
    [[nodiscard]] Bound Taken(double bound) const;
    [[nodiscard]] std::string CheckOptimal(const Certificate& certificate);
    void TakePoint(const ExactVector& point);
    void TakeDuals(const ExactVector& duals);
    void Locate(Index variable);

    const BoundedForm& m_form;

    // The form times one factor, by which its coefficients and costs are integers.
    bool m_hasNumbers = false;
    Scale m_scale;
    Integer m_factor;
    SparseVectors<Integer> m_columns;
    std::vector<Integer> m_cost;
    std::vector<Bound> m_lower;  ///< by variable
    std::vector<Bound> m_upper;

    // The last point, and by variable its value times factor and denominator and where that lies.
    bool m_hasPoint = false;  // same bits: set with the numbers
    ExactVector m_point;
    std::vector<Integer> m_values;
    struct Place
    {
        bool isKnown;
        bool isWithin;
        bool onLower;
        bool onUpper;
    };
    std::vector<Place> m_place;
    bool m_hasObjective = false;  // same bits: as above
    Rational m_objective;

    // The last duals and the signs of their reduced costs by variable.
    bool m_hasDuals = false;  // same bits: as above
    ExactVector m_duals;
    std::vector<signed char> m_reducedSign;
};

}  // namespace nuv
