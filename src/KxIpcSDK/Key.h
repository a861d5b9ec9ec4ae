// A key that is put together: "user.7".
#pragma once

#include <KxIpcSDK/KxExport.h>

/// Holds at most 127 characters; what goes beyond is cut.
class Key
{
public:
    explicit Key(const char* format, ...) KX_PRINTF_LIKE(2, 3);

    /// Implicit, so that it stands where a text is asked for: `reply.number(Key("user.%d", slot), …)`.
    operator const char*() const { return text_; }

private:
    char text_[128];
};
