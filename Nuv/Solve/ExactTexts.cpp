/// The numbers of a certificate said of the model, in its own sense, and those that follow from
/// them: activities, slacks and reduced costs.
#include "Nuv/Solve/ModelTerms.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

/// The distance to the nearer side, negative outside; empty without sides.
std::string SlackText(const BoundedForm& form, Index logical, const Rational& activity)
{
    const bool hasLower = std::isfinite(form.Lower(logical));
    const bool hasUpper = std::isfinite(form.Upper(logical));
    if (!hasLower && !hasUpper)
        return "";
    const Rational above = hasLower ? activity - form.ExactLower(logical) : Rational(0);
    const Rational below = hasUpper ? form.ExactUpper(logical) - activity : Rational(0);
    if (hasLower && hasUpper)
        return ToString(std::min(above, below));
    return ToString(hasLower ? above : below);
}

void SayPoint(const BoundedForm& form, const ExactVector& point, ExactTexts& texts)
{
    for (Index j = 0; j < form.columns; ++j)
        texts.values.push_back(ToString(point.At(j)));
    for (Index i = 0; i < form.rows; ++i)
    {
        Rational activity(0);
        for (const auto [column, entry] : form.matrix.Row(i))
        {
            if (point.numerator[column] != 0)
                activity += form.ExactEntry(i, column, entry) * Rational(point.numerator[column]);
        }
        activity /= Rational(point.denominator);
        texts.activities.push_back(ToString(activity));
        texts.slacks.push_back(SlackText(form, form.Logical(i), activity));
    }
}

void SayDuals(const BoundedForm& form, bool negate, const ExactVector& duals, ExactTexts& texts)
{
    const auto inSense = [negate](const Rational& number)
    { return ToString(negate ? Rational(-number) : number); };
    for (Index i = 0; i < form.rows; ++i)
        texts.duals.push_back(inSense(duals.At(i)));
    for (Index j = 0; j < form.columns; ++j)
    {
        Rational priced(0);
        for (const auto [row, entry] : form.matrix.Column(j))
        {
            if (duals.numerator[row] != 0)
                priced += form.ExactEntry(row, j, entry) * Rational(duals.numerator[row]);
        }
        priced /= Rational(duals.denominator);
        texts.reducedCosts.push_back(inSense(form.ExactCost(j) - priced));
    }
}

}  // namespace

ExactTexts ExactTextsOf(const BoundedForm& form, double sign, const Certificate& certificate)
{
    ExactTexts texts;
    if (certificate.status == Status::Optimal)
    {
        SayPoint(form, certificate.primal, texts);
        SayDuals(form, sign < 0.0, certificate.dual, texts);
    }
    if (certificate.status == Status::Unbounded)
        for (Index j = 0; j < form.columns; ++j)
            texts.ray.push_back(ToString(certificate.ray.At(j)));
    return texts;
}

}  // namespace nuv
