/// The computational form of a model: the same rows, columns and numbers, for minimisation.
#pragma once

#include "Nuv/Model/Model.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"

namespace nuv
{

/// @return the form; a model to be maximised has its costs and constant negated. With stored
/// doubles what the model says beside its doubles is left out.
[[nodiscard]] BoundedForm FormOf(const Model& model,
                                 CoefficientMeaning numbers = CoefficientMeaning::StoredDouble);

}  // namespace nuv
