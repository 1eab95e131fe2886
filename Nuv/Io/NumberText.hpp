/// Doubles as text, whatever the locale. All writers share one form, the shortest decimal that
/// reads back to the same bits; all readers take the nearest double.
#pragma once

#include <charconv>
#include <string>
#include <string_view>

namespace nuv
{

struct WrittenNumber;

/// Appends `value`; infinities as inf and -inf.
void AppendNumber(std::string& text, double value);

[[nodiscard]] std::string NumberText(double value);
/// The shortest text that says the number: a decimal, or where there is none a quotient.
[[nodiscard]] std::string NumberText(const WrittenNumber& number);

/// std::from_chars for doubles, also where the standard library has none yet.
std::from_chars_result ReadDouble(const char* first, const char* last, double& value) noexcept;

/// Of a decimal that ReadDouble says is out of range: whether it is too small, not too large.
[[nodiscard]] bool IsBelowDoubles(std::string_view text) noexcept;

}  // namespace nuv
