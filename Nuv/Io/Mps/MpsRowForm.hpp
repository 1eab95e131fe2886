/// How MPS states the limits of a row: a type, a right-hand side and perhaps a range.
#pragma once

#include "Nuv/Model/WrittenNumber.hpp"

#include <string>

namespace nuv::mps
{

struct RowForm
{
    char type = 'E';
    WrittenNumber rightHandSide;
    std::string range;  ///< as it is written; empty if there is none
};

/// The form that reads back as these limits, exactly; lower <= upper, and if both are finite, both
/// and upper - lower are decimals. A row without limits is a G row with -1e30, which every program
/// takes for infinite.
[[nodiscard]] RowForm FormOf(const WrittenNumber& lower, const WrittenNumber& upper);

}  // namespace nuv::mps
