/// A model as one line of text.
#pragma once

#include "Nuv/Model/Model.hpp"

#include <string>

namespace nuv::test
{

/// The normal form that tests compare models in: "max 5 + 3 x + 2 y; c1: -inf <= 1 x + 1 y <= 4; 0
/// <= x <= inf; ..."
std::string Written(const Model& model);

}  // namespace nuv::test
