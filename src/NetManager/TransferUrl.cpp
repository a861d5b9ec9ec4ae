#include "NetManager/TransferUrl.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

bool parse_url(const char* url, char (&host)[urlHostSize], int& port, const char*& path)
{
    static constexpr char scheme[] = "http://";
    if (url == nullptr || std::sscanf(url, "http://%255[^/:]", host) != 1)
        return false;
    const char* rest = url + std::strlen(scheme);
    rest += std::strcspn(rest, "/:");
    char* end = nullptr;
    const long number = *rest == ':' ? std::strtol(rest + 1, &end, 10) : 0;
    port = end != nullptr && end != rest + 1 ? static_cast<int>(number) : 80;
    const char* slash = std::strchr(rest, '/');
    path = slash != nullptr ? slash : "/";
    return true;
}
