#include "KxIpcSDK/Reply.h"

#include <cstdio>
#include <cstring>

#include "NetManager/ReplyFields.h"

bool OkStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    char prefix[128];
    std::snprintf(prefix, sizeof prefix, "OK %s=", key);
    return KxSscanf(reply, prefix, "\n", value, static_cast<int>(size - 1)) != -1;
}

bool QuotedStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    char prefix[128];
    std::snprintf(prefix, sizeof prefix, "%s = '", key);
    if (KxSscanf(reply, prefix, ";", value, static_cast<int>(size - 1)) == -1)
        return false;
    if (char* const quote = std::strrchr(value, '\''))
        *quote = '\0';
    return true;
}
