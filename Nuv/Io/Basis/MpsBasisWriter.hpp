/// Bases as MPS basis files, in the form that MpsBasisReader.hpp describes. Names must be those
/// that the model's file has.
#pragma once

#include "Nuv/Model/Error.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"

#include <string>

namespace nuv
{

/// The file, which reads back to the same basis.
/// @return or the error basis.none: the basis does not fit the model, or has another number of
/// basic columns than of nonbasic rows; or basis.name: a name with blanks is too long for its
/// columns.
[[nodiscard]] Result<std::string> WriteMpsBasis(const Model& model, const Basis& basis);

}  // namespace nuv
