// What the readers of models ask of the library of this name; see Numbers.cpp.
#ifndef NUV_WEB_FAST_FLOAT_H
#define NUV_WEB_FAST_FLOAT_H

#include <system_error>

namespace fast_float
{

struct from_chars_result
{
    const char* ptr;
    std::errc ec;
};

from_chars_result from_chars(const char* first, const char* last, double& value);

}  // namespace fast_float

#endif
