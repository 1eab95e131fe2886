/// The common number goes through std::from_chars as it stands; what that does not know (a leading
/// plus, Fortran's exponents) is brought into its form.
#include "Nuv/Io/Mps/MpsNumber.hpp"

#include "Nuv/Io/NumberText.hpp"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <string>

namespace nuv::mps
{
namespace
{

/// Reads a number from the front of a text. @return where it ends; at the front if there is none.
const char* ReadDecimal(std::string_view text, Number& number) noexcept
{
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = ReadDouble(text.data(), end, number.value);
    number.fault = NumberFault::None;
    if (result.ec == std::errc::invalid_argument)
        number.fault = NumberFault::NotANumber;
    else if (result.ec == std::errc::result_out_of_range)
        number.fault =
            IsBelowDoubles(text.substr(0, static_cast<std::size_t>(result.ptr - text.data())))
                ? NumberFault::TooSmall
                : NumberFault::TooLarge;
    else if (std::isnan(number.value))
        number.fault = NumberFault::Undefined;
    return result.ptr;
}

}  // namespace

Number ReadNumber(std::string_view text) noexcept
{
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    Number number;
    const char* const stop = ReadDecimal(text, number);
    const auto read = static_cast<std::size_t>(stop - text.data());
    if (read == text.size())
        return number;
    const bool isFortran = read != 0 && (*stop == 'd' || *stop == 'D');
    number.fault = NumberFault::NotANumber;
    if (!isFortran)
        return number;
    std::string copy(text);
    copy[read] = 'e';
    if (ReadDecimal(copy, number) != copy.data() + copy.size())
        number.fault = NumberFault::NotANumber;
    return number;
}

WrittenNumber ExactNumberOf(std::string_view text, double nearest)
{
    const std::size_t letter = text.find_first_of("dD");
    if (letter == std::string_view::npos || !std::isfinite(nearest))
        return WrittenNumber(text, nearest);
    std::string decimal(text);
    decimal[letter] = 'e';
    return WrittenNumber(decimal, nearest);
}

}  // namespace nuv::mps
