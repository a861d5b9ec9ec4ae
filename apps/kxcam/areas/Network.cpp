// The wired network. A set can make the camera leave the address it was reached at.
#include <KxIpcSDK/KxNetwork.h>

#include "Area.h"
#include "Session.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    field<&NetworkInfo::dhcpenable>("dhcpenable", "1: address by DHCP, 0: static"),
    field<&NetworkInfo::netip>("netip", "IPv4 address"),
    field<&NetworkInfo::netmask>("netmask", "subnet mask"),
    field<&NetworkInfo::gateway>("gateway", "default gateway"),
    field<&NetworkInfo::dnsip>("dnsip", "DNS server"),
    readOnly(field<&NetworkInfo::httpport>("httpport", "HTTP port; changed with `kxcam set ports`")),
    readOnly(field<&NetworkInfo::macaddress>("macaddress", "MAC address")),
};

std::string loginAt(Target target, const std::string& host)
{
    target.host = host;
    return "Log in there: " + target.commandLine() + " get network";
}

std::string moved(const void* before, const void* wanted, const Target& target)
{
    const auto& old = *static_cast<const NetworkInfo*>(before);
    const auto& now = *static_cast<const NetworkInfo*>(wanted);
    if (now.dhcpenable != 0 && old.dhcpenable == 0)
        return "The camera now takes its address from the DHCP server, which lists it under the MAC "
               "address " +
               std::string(old.macaddress) + ". " + loginAt(target, "ADDRESS");
    const std::string_view address = now.netip;
    if (now.dhcpenable == 0 && address != old.netip && address != target.host)
        return "The camera now has the address " + std::string(now.netip) + ". " + loginAt(target, now.netip);
    return "";
}

} // namespace

extern constinit const Area networkArea = makeArea<Kx_Ipc_GetNetwork, Kx_Ipc_SetNetwork>(
    "network", "wired network: DHCP, address, gateway, DNS", fields,
    {.whenNotKept = "With dhcpenable=1 the DHCP server decides on the addresses.", .moved = moved});

} // namespace kxcam
