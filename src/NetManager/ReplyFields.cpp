#include "NetManager/ReplyFields.h"

#include <algorithm>
#include <cstring>
#include <string_view>

int KxSscanf(const char* reply, const char* key, const char* terminator, char* dest, int width)
{
    if (reply == nullptr || key == nullptr || terminator == nullptr || dest == nullptr)
        return -1;
    const char* found = std::strstr(reply, key);
    if (found == nullptr)
        return -1;

    const char* value = found + std::strlen(key);
    const std::size_t room = static_cast<std::size_t>(std::max(width, 0));
    const std::size_t length = strnlen(value, room);
    const auto* stop = static_cast<const char*>(std::memchr(value, terminator[0], length));
    const std::size_t stored = stop != nullptr ? static_cast<std::size_t>(stop - value) : length;
    std::memmove(dest, value, stored);
    dest[stored] = '\0';
    return static_cast<int>(stored);
}

char* Kx_rStrstr(char* text, int length, char* needle, int needleLength)
{
    if (text == nullptr || needle == nullptr || length < 1)
        return nullptr;
    const std::size_t needleSize =
        needleLength < 1 ? std::strlen(needle) : static_cast<std::size_t>(needleLength);
    if (needleSize == 0)
        return nullptr;
    const std::string_view whole(text, static_cast<std::size_t>(length));
    const std::size_t place = whole.rfind(std::string_view(needle, needleSize));
    return place != std::string_view::npos ? text + place : nullptr;
}

int IsHisiIPC(char* model)
{
    const std::string_view name(model != nullptr ? model : "");
    return name.ends_with('B') || name.ends_with('C') || name.ends_with("-SP") ? 1 : 0;
}

int IsTiIPC(char* model)
{
    const std::string_view name(model != nullptr ? model : "");
    if (name.ends_with('A'))
        return 0;
    return 1 - IsHisiIPC(model);
}
