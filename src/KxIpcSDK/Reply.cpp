#include "KxIpcSDK/Reply.h"

#include <cstdio>

#include "NetManager/ReplyFields.h"

namespace
{

bool findValue(const char* reply, const char* mark, const char* key, const char* lineEnd, char* value,
               std::size_t size)
{
    char prefix[128];
    std::snprintf(prefix, sizeof prefix, "%s%s=", mark, key);
    return KxSscanf(reply, prefix, lineEnd, value, static_cast<int>(size - 1)) != -1;
}

} // namespace

bool OkStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    return findValue(reply, "OK ", key, "\n", value, size);
}

bool IniStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    return findValue(reply, "", key, "\n", value, size);
}

bool CrLfIniStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    return findValue(reply, "", key, "\r", value, size);
}
