/// The elastic program of a model as a model that anybody can read and solve, and the proof of its
/// optimum: that no smaller change than a repair's makes the model feasible (Chinneck, Feasibility
/// and Infeasibility in Optimization, 2008, chapter 6).
///
/// Every side of a row and every bound that may move is a row of its own,
///
///     a . x + short >= lower      or      a . x - over <= upper,      short, over >= 0,
///
/// and the sum of all shorts and overs, each times its weight, is minimised. What stays is stated
/// as in the model. The variables and rows of the former are called short_NAME and over_NAME, with
/// underscores behind where that is taken.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/FeasibilityRepair.hpp"

#include <vector>

namespace nuv
{

struct ElasticModel
{
    Model model;
    /// Of the model's computational form; the status is Optimal, Infeasible, or Stopped without a
    /// proof.
    Certificate certificate;
};

/// `form` is that of `model`, and `repair` what FindRepair gave for it with these weights.
[[nodiscard]] ElasticModel ElasticModelOf(const Model& model, const BoundedForm& form,
                                          const std::vector<double>& weights,
                                          const FeasibilityRepair& repair);

}  // namespace nuv
