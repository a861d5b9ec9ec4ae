#include "KxIpcSDK/Reply.h"

#include <cstring>

#include "KxIpcSDK/Key.h"
#include "NetManager/ReplyFields.h"

namespace
{

bool findBehind(const char* opening, const char* reply, const char* end, char* value, std::size_t size)
{
    return KxSscanf(reply, opening, end, value, static_cast<int>(size - 1)) != -1;
}

} // namespace

bool OkStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    return findBehind(Key("OK %s=", key), reply, "\n", value, size);
}

bool PlainStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    return findBehind(Key("%s=", key), reply, "\n", value, size);
}

bool CrLfStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    return findBehind(Key("%s=", key), reply, "\r", value, size);
}

bool QuotedStyle::find(const char* reply, const char* key, char* value, std::size_t size)
{
    if (!findBehind(Key("%s = '", key), reply, ";", value, size))
        return false;
    if (char* const quote = std::strrchr(value, '\''))
        *quote = '\0';
    return true;
}
