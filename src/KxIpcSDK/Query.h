// The query of a request, put together piece by piece: "&key=value&key=value".
#pragma once

#include <cstdarg>
#include <cstddef>

#include <KxIpcSDK/KxExport.h>

/// Prints behind the first `length` characters of a text of `bound` bytes; returns the new length.
std::size_t printBehind(char* text, std::size_t length, std::size_t bound, const char* format,
                        va_list arguments);

/// Holds at most Bound - 1 characters; what goes beyond is cut. Texts are added as they stand.
template <std::size_t Bound>
class BoundedQuery
{
public:
    /// "&paratest=key": asks for a value.
    void ask(const char* key) { add("&paratest=%s", key); }

    /// "&key=value"
    void number(const char* key, int value) { add("&%s=%d", key, value); }

    /// "&key=text", with as much of the field as it holds up to its terminator
    template <std::size_t Size>
    void text(const char* key, const char (&field)[Size])
    {
        add("&%s=%.*s", key, static_cast<int>(Size), field);
    }

    /// Any other form.
    void add(const char* format, ...) KX_PRINTF_LIKE(2, 3)
    {
        va_list arguments;
        va_start(arguments, format);
        length_ = printBehind(text_, length_, Bound, format, arguments);
        va_end(arguments);
    }

    /// Implicit, so that it stands where a text is asked for: `call.get(query)`.
    operator const char*() const { return text_; }

private:
    char text_[Bound] = {};
    std::size_t length_ = 0;
};

using Query = BoundedQuery<1023>;
