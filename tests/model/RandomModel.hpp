/// Seeded models with everything a file format has to hold: limits and bounds of every kind,
/// numbers of every size, empty rows and columns, names short and long.
#pragma once

#include "Nuv/Model/Model.hpp"

#include <cstdint>

namespace nuv::test
{

/// The same seed gives the same model on every machine. No number is a negative zero, no row has an
/// explicit zero, and no limit reaches 1e30: formats differ about these.
[[nodiscard]] Model RandomModel(std::uint64_t seed);

}  // namespace nuv::test
