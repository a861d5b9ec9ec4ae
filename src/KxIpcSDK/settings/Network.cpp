// Wired network.
#include <KxIpcSDK/KxNetwork.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "KxIpcSDK/CameraCall.h"

namespace
{

bool parseDotted(const char* text, int (&parts)[4])
{
    for (int& part : parts) {
        char* end = nullptr;
        part = static_cast<int>(std::strtol(text, &end, 10));
        const bool last = &part == &parts[3];
        if (end == text || (!last && *end != '.'))
            return false;
        text = end + 1;
    }
    return true;
}

/// Reads a dotted address without leading zeros; what is no dotted address stays as the camera wrote it.
void readAddress(const OkReply& reply, const char* key, char (&field)[32])
{
    int part[4];
    if (reply.text(key, field) && parseDotted(field, part))
        std::snprintf(field, sizeof field, "%d.%d.%d.%d", part[0], part[1], part[2], part[3]);
}

} // namespace

int Kx_Ipc_GetNetwork(long userId, NetworkInfo* info)
{
    CameraCall call(userId, info);
    const OkReply reply = call.get("&paratest=dhcpenable&paratest=netip&paratest=netmask&paratest=gateway"
                                   "&paratest=dnsip&paratest=macaddress&paratest=httpport");
    if (!reply)
        return -1;
    reply.number("dhcpenable", info->dhcpenable);
    readAddress(reply, "netip", info->netip);
    readAddress(reply, "netmask", info->netmask);
    readAddress(reply, "gateway", info->gateway);
    readAddress(reply, "dnsip", info->dnsip);
    reply.text("macaddress", info->macaddress);
    reply.number("httpport", info->httpport);
    return 0;
}

int Kx_Ipc_SetNetwork(long userId, const NetworkInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    Query query;
    query.number("dhcpenable", info->dhcpenable);
    query.text("netip", info->netip);
    query.text("netmask", info->netmask);
    query.text("gateway", info->gateway);
    query.text("dnsip", info->dnsip);

    const bool dhcp = info->dhcpenable != 0;
    const bool sent = call.set(query) == 0;
    if (!sent && !dhcp)
        return -1;
    // Under DHCP a failed request counts as success: the camera may have dropped its old address before it answered.
    const std::string_view newAddress(info->netip, strnlen(info->netip, sizeof info->netip));
    const bool moved = newAddress != call.host();
    if (dhcp || moved)
        call.endSession();
    return 0;
}
