/// The computational form of a model: the same rows, columns and numbers, for minimisation.
#pragma once

#include "Nuv/Model/LinearForm.hpp"
#include "Nuv/Model/Model.hpp"

namespace nuv
{

/// @return the form; a model to be maximised has its costs and constant negated.
[[nodiscard]] LinearForm FormOf(const Model& model);

}  // namespace nuv
