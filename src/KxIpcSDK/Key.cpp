#include "KxIpcSDK/Key.h"

#include <cstdarg>
#include <cstdio>

Key::Key(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text_, sizeof text_, format, arguments);
    va_end(arguments);
}
