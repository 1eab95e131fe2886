/// What is known of the minimisation form, said of the model: in its own sense and by its handles.
#pragma once

#include "Nuv/Exact/CertifiedResult.hpp"
#include "Nuv/Exact/Iis.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <vector>

namespace nuv
{

/// Verdict, values, prices and records, all but the certificate itself. `sign` turns the objective
/// of the form into the model's.
void SayOfModel(const BoundedForm& form, double sign, const CertifiedResult& result,
                Solution& solution);

/// The exact numbers of a proved verdict.
[[nodiscard]] ExactTexts ExactTextsOf(const BoundedForm& form, double sign,
                                      const Certificate& certificate);

/// How far each activity is from the nearer side of its row.
[[nodiscard]] std::vector<double> SlacksOf(const BoundedForm& form,
                                           const std::vector<double>& activities);

/// The ranges of the form, as ranges of the model's own costs.
[[nodiscard]] Sensitivity InSense(Sensitivity sensitivity, double sign);

[[nodiscard]] Iis ByHandle(const Model& model, const InfeasibleBounds& bounds);

}  // namespace nuv
