// The query of a request, put together piece by piece: "&key=value&key=value".
#pragma once

#include <cstddef>

#include <KxIpcSDK/KxExport.h>

/// Holds at most Bound - 1 characters; what goes beyond is cut. Texts are added as they stand.
template <std::size_t Bound>
class BoundedQuery
{
public:
    /// "&key=value"
    void number(const char* key, int value) { add("&%s=%d", key, value); }

    /// "&key=text", with as much of the field as it holds up to its terminator
    template <std::size_t Size>
    void text(const char* key, const char (&field)[Size])
    {
        add("&%s=%.*s", key, static_cast<int>(Size), field);
    }

    /// "&paratest=key": asks for a value.
    void ask(const char* key) { add("&paratest=%s", key); }

    /// Any other form.
    void add(const char* format, ...) KX_PRINTF_LIKE(2, 3);

    const char* c_str() const { return text_; }

private:
    char text_[Bound] = {};
    std::size_t length_ = 0;
};

extern template class BoundedQuery<1023>;
extern template class BoundedQuery<4096>;

/// Carries the settings of one call: 1022 characters.
using Query = BoundedQuery<1023>;

/// Asks for what many records of one call hold.
using LongQuery = BoundedQuery<4096>;
