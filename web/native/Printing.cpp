// All that the core prints are names of variables, "X%lu": the C library's printing, with its
// floating-point numbers and streams, would be larger than the core.
#include <stdarg.h>
#include <stddef.h>

extern "C" int vsnprintf(char* text, size_t size, const char* format, va_list arguments)
{
    char digits[20];
    int count = 0;
    unsigned long number = va_arg(arguments, unsigned long);
    do
        digits[count++] = static_cast<char>('0' + number % 10);
    while ((number /= 10) != 0);
    size_t length = 0;
    const auto put = [&](char character)
    {
        if (length + 1 < size)
            text[length] = character;
        ++length;
    };
    for (; *format != '\0' && *format != '%'; ++format)
        put(*format);
    while (count != 0)
        put(digits[--count]);
    if (size != 0)
        text[length < size ? length : size - 1] = '\0';
    return static_cast<int>(length);
}
