/// What is known of one basis of a form in exact numbers: its factors, the values of its basic
/// variables, its duals. It outlives the solve that found it, and what an edit of the form leaves
/// true of it need not be computed again:
///
///  - the factors depend on the columns of the basic variables alone,
///  - the values on these and on where the nonbasic variables rest,
///  - the duals on these and on the costs of the basic variables.
#pragma once

#include "Nuv/Exact/ExactFactors.hpp"
#include "Nuv/Exact/ExactForm.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"

#include <optional>
#include <vector>

namespace nuv
{

class ExactEvaluation
{
public:
    explicit ExactEvaluation(const BoundedForm& form) : exact(std::in_place, form), factors(*exact)
    {
    }
    ExactEvaluation(const ExactEvaluation&) = delete;
    ExactEvaluation& operator=(const ExactEvaluation&) = delete;

    /// Nothing is known any more but the form.
    void Forget() noexcept
    {
        head.clear();
        hasValues = false;
        hasDuals = false;
    }

    /// In place, where the factors see it, when the form has other numbers.
    std::optional<ExactForm> exact;
    ExactFactors factors;
    std::vector<Index> head;  ///< the basic variable at each position; empty without factors
    bool hasValues = false;   // same bits: set with the factors
    ExactVector values;       ///< of the basic variables, by position
    std::vector<BasisStatus> resting;   ///< by variable, what the values are for
    std::vector<double> valueInDouble;  ///< by position; empty until asked for
    bool hasDuals = false;              // same bits: set with the factors
    ExactVector duals;                  ///< of the true cost, by row
    /// With the duals, the signs of the reduced costs by variable, as far as they were asked for.
    std::vector<signed char> reducedSign;
    static constexpr signed char kSignUnknown = 2;
    std::vector<Integer> reduced;         ///< where the sign is known, ExactForm::ReducedCost
    std::vector<double> reducedInDouble;  ///< by variable; empty until asked for
};

}  // namespace nuv
