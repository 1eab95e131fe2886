/// Whether a certificate proves what it claims of a model.
#pragma once

#include "Nuv/Model/Model.hpp"
#include "Nuv/Vipr/Certificate.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace nuv::vipr
{

struct Verification
{
    CoefficientMeaning numbers = CoefficientMeaning::ShortestDecimal;
    bool isOtherModel = false;
    std::string defect;  ///< empty if the certificate holds
    Goal goal = Goal::Infeasible;
    std::optional<Rational> objective;  ///< it holds, Range: the optimum, with the constant
};

/// Compares the problem that the certificate states with the model in these numbers, and checks the
/// proof. Solves nothing.
[[nodiscard]] Verification Verify(const Model& model, CoefficientMeaning numbers,
                                  const Certificate& certificate);

}  // namespace nuv::vipr
