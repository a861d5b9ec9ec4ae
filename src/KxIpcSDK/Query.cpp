#include "KxIpcSDK/Query.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

template <std::size_t Bound>
void BoundedQuery<Bound>::add(const char* format, ...)
{
    const std::size_t room = Bound - length_;
    va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(text_ + length_, room, format, arguments);
    va_end(arguments);
    if (wanted > 0)
        length_ += std::min(static_cast<std::size_t>(wanted), room - 1);
}

template class BoundedQuery<1023>;
template class BoundedQuery<4096>;
