/// fmt as a source of this build: the bodies of its functions, and those of its templates that the
/// library would have instantiated.
#include <fmt/format-inl.h>

namespace fmt::v9::detail
{

template auto dragonbox::to_decimal(float) noexcept -> dragonbox::decimal_fp<float>;
template auto dragonbox::to_decimal(double) noexcept -> dragonbox::decimal_fp<double>;
template locale_ref::locale_ref(const std::locale&);
template auto locale_ref::get<std::locale>() const -> std::locale;
template auto thousands_sep_impl(locale_ref) -> thousands_sep_result<char>;
template auto decimal_point_impl(locale_ref) -> char;
template void buffer<char>::append(const char*, const char*);
template void vformat_to(buffer<char>&, string_view, basic_format_args<buffer_context<char>>,
                         locale_ref);

}  // namespace fmt::v9::detail
