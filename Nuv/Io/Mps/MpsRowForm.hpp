/// How MPS states the limits of a row: a type, a right-hand side and perhaps a range.
#pragma once

#include <string>

namespace nuv::mps
{

struct RowForm
{
    char type = 'E';
    double rightHandSide = 0.0;
    std::string range;  ///< as it is written; empty if there is none
};

/// The form that reads back as these limits, bit for bit; lower <= upper, and if both are finite,
/// upper - lower is. A row without limits is a G row with -1e30, which every program takes for
/// infinite.
[[nodiscard]] RowForm FormOf(double lower, double upper);

}  // namespace nuv::mps
