#include "KxIpcSDK/Reply.h"

#include <cstdio>

#include "NetManager/ReplyFields.h"

namespace
{

bool findLine(const char* reply, const char* prefix, const char* key, const char* end, char* value,
              std::size_t size)
{
    char opening[128];
    std::snprintf(opening, sizeof opening, "%s%s=", prefix, key);
    return KxSscanf(reply, opening, end, value, static_cast<int>(size - 1)) != -1;
}

} // namespace

bool OkStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    return findLine(reply, "OK ", key, "\n", value, size);
}

bool LineStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    return findLine(reply, "", key, "\n", value, size);
}

bool CrLfStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    return findLine(reply, "", key, "\r\n", value, size);
}
