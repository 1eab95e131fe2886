/// Writes models in the CPLEX-LP format. What is written reads back to the same model, bit for bit:
/// numbers are the shortest decimals that do so, and where the order in which variables first occur
/// is not that of the model, the objective names all of them, with zero coefficients.
///
/// What the format cannot hold: names with other characters or the names of sections, which are
/// changed (see WrittenNames); coefficients of 0 in rows, which are left out; the sign of a zero; a
/// limit of 1e30 and more, which the format takes for infinity. All of it is reported.
#pragma once

#include "Nuv/Io/WriteResult.hpp"
#include "Nuv/Model/Model.hpp"

#include <string>

namespace nuv
{

/// The file, or an error where the model has a failure or a limit that no file can say; warnings
/// for all that was changed.
[[nodiscard]] WriteResult WriteLp(const Model& model);

/// The text alone, to look at a model; a comment that says why, for one that the format cannot
/// hold.
[[nodiscard]] std::string ToLp(const Model& model);

}  // namespace nuv
