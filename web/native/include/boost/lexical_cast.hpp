// What the integers ask of the library of this name: their digits. It stands in for that library in
// the build for WebAssembly, where it would bring the C++ library's locales along.
#pragma once

#include <boost/throw_exception.hpp>
#include <boost/type_traits.hpp>

#include <string>
#include <type_traits>
#include <typeinfo>

namespace boost
{

class bad_lexical_cast : public std::bad_cast
{
};

template <class Target, class Source>
Target lexical_cast(const Source& source)
{
    if constexpr (std::is_integral_v<Source> && std::is_same_v<Target, std::string>)
        return std::to_string(source);
    else
        throw bad_lexical_cast();
}

}  // namespace boost
