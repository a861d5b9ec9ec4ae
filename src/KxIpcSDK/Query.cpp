#include "KxIpcSDK/Query.h"

#include <algorithm>
#include <cstdio>

std::size_t printBehind(char* text, std::size_t length, std::size_t bound, const char* format,
                        va_list arguments)
{
    const std::size_t room = bound - length;
    const int wanted = std::vsnprintf(text + length, room, format, arguments);
    return wanted > 0 ? length + std::min(static_cast<std::size_t>(wanted), room - 1) : length;
}

template class BoundedQuery<1023>;
template class BoundedQuery<4096>;
