/// A model as the problem that a certificate states.
#pragma once

#include "Nuv/Model/Model.hpp"
#include "Nuv/Vipr/Certificate.hpp"

namespace nuv::vipr
{

/// Which constraints the sides of a bound or row have become; an equation is both, an infinite side
/// is none and names the first.
struct Sides
{
    std::size_t lower = 0;
    std::size_t upper = 0;
};

/// The bounds, lower before upper, then the rows, in the model's order; infinite sides are left
/// out, two equal ones are one equation. The objective's constant has no place in a certificate.
struct Statement
{
    Problem problem;
    std::vector<Sides> sides;  ///< by variable, then by row
};

/// The number at a place of a model, whose double is `value`.
[[nodiscard]] Rational NumberAt(const Model& model, CoefficientMeaning numbers,
                                const NumberPlace& place, double value);

[[nodiscard]] Statement StatementOf(const Model& model, CoefficientMeaning numbers);

}  // namespace nuv::vipr
