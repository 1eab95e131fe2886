/// Whether two models are the same: names, order, and the bits of every number.
#pragma once

#include "Nuv/Model/Model.hpp"

#include <string>

namespace nuv::test
{

/// What is first found to differ between two models, or "" if nothing does. The order of the
/// coefficients within a row does not count, since a format by columns does not keep it.
[[nodiscard]] std::string Difference(const Model& left, const Model& right);

}  // namespace nuv::test
