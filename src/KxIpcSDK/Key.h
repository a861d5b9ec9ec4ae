// A key that is put together: "user.7".
#pragma once

#include <KxIpcSDK/KxExport.h>

/// Holds at most 127 characters; what goes beyond is cut.
class Key
{
public:
    explicit Key(const char* format, ...) KX_PRINTF_LIKE(2, 3);

    operator const char*() const { return text_; } // implicit: that is its use, `reply.number(Key("user.%d", slot), …)`

private:
    char text_[128];
};
