#include "KxSearch/SearchRecord.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace
{

constexpr std::string_view nameScope = "onvif://www.onvif.org/name/";
constexpr std::string_view modelScope = "onvif://www.onvif.org/model/";
constexpr std::string_view ownModels = "KX-C";

constexpr int defaultPort = 80;
constexpr std::size_t addressBound = 63; // the last byte of the field stays free

template <std::size_t Size>
void readScope(std::string_view scopes, std::string_view prefix, char (&field)[Size])
{
    const std::size_t found = scopes.find(prefix);
    if (found == std::string_view::npos)
        return;
    const std::string_view rest = scopes.substr(found + prefix.size());
    const std::size_t length = rest.substr(0, rest.find(' ')).copy(field, Size - 1);
    field[length] = '\0';
}

} // namespace

void AddressReader::read(const char* addresses, SearchDeviceInfo& device)
{
    auto& [a, b, c, d] = octets_;
    std::sscanf(addresses, "http://%d.%d.%d.%d:%d", &a, &b, &c, &d, &port_);
    if (port_ <= 0)
        port_ = defaultPort;
    std::snprintf(device.ip, addressBound, "%d.%d.%d.%d", a, b, c, d);
    device.port = port_;
}

void readScopes(const char* scopes, SearchDeviceInfo& device)
{
    readScope(scopes, nameScope, device.name);
    readScope(scopes, modelScope, device.model);
}

bool isOwnCamera(const SearchDeviceInfo& device)
{
    return std::string_view(device.model).starts_with(ownModels);
}
