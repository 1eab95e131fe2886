/// MPS basis files: which variables and rows of a model are basic, and where the others rest.
///
/// Every column rests at its lower bound and every row is basic, unless a line says otherwise:
/// - `XU column row`: the column is basic in the place of the row, whose activity is at its upper
///   side; `XL column row`: the same, the activity being at the lower side;
/// - `UL column`: the column rests at its upper bound; `LL column`: at its lower bound;
/// - `BS name`: the column or row is basic.
///
/// A column or row without the bound that is meant rests at the other one, or at zero if it has
/// none. Words are separated by blanks; a name that holds blanks stands in the columns of fixed
/// MPS.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuv
{

/// A basis that was read, or why there is none.
struct BasisReadResult
{
    /// By the places of the model's variables and rows; empty if there was an error.
    std::optional<Basis> basis;
    std::vector<Diagnostic> diagnostics;  ///< in the order of their places
};

/// Reads the basis of a model; `file` is what messages call the text.
[[nodiscard]] BasisReadResult ReadMpsBasis(std::string_view text, const std::string& file,
                                           const Model& model);

}  // namespace nuv
