/// Doubles as text, in the one form that all writers share: the shortest decimal that reads back to
/// the same bits, whatever the locale.
#pragma once

#include <string>

namespace nuv
{

/// Appends `value`; infinities as inf and -inf.
void AppendNumber(std::string& text, double value);

[[nodiscard]] std::string NumberText(double value);

}  // namespace nuv
