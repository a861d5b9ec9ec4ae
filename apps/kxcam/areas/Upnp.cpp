// Two pairs of calls make this area: the announcement switch and the port mapping.
#include <cstring>

#include <KxIpcSDK/KxNetwork.h>
#include <KxIpcSDK/KxSdk.h>

#include "Area.h"

namespace kxcam
{
namespace
{

struct Upnp : UpnpInfo
{
    std::uint8_t scanupnp;
};

template <auto Member>
constexpr Field mapping(std::string_view key, std::string_view help)
{
    return field<Member, Upnp>(key, help);
}

constexpr Field fields[] = {
    field<&Upnp::scanupnp>("scanupnp", "1: the camera announces itself"),
    mapping<&Upnp::upnpenable>("upnpenable", "1: port mapping on"),
    mapping<&Upnp::upnpname>("upnpname", "friendly name"),
    mapping<&Upnp::upnptype>("upnptype", "mapping type code"),
    port(mapping<&Upnp::upnphttpport>("upnphttpport", "external port mapped to HTTP")),
    port(mapping<&Upnp::upnprtspport>("upnprtspport", "external port mapped to RTSP")),
    readOnly(mapping<&Upnp::httpport>("httpport", "the camera's HTTP port")),
    readOnly(mapping<&Upnp::mainrtspport>("mainrtspport", "the camera's RTSP port")),
    readOnly(mapping<&Upnp::upnpstatushttp>("upnpstatushttp", "state of the HTTP mapping")),
    readOnly(mapping<&Upnp::upnpstatusrtsp>("upnpstatusrtsp", "state of the RTSP mapping")),
};

int getUpnp(long userId, Upnp* upnp)
{
    const Upnp before = *upnp;
    if (Kx_Ipc_GetUpnpPortMapping(userId, upnp) != 0)
        return -1;
    if (std::memcmp(&before, upnp, sizeof before) == 0)
        return 0; // what told nothing of the mapping is hardly a camera that has the switch
    // The switch reads 0 when it is off and when the call fails; only a failure leaves a new error.
    const long errorBefore = Kx_Sdk_GetLastError();
    upnp->scanupnp = static_cast<std::uint8_t>(Kx_Ipc_IsUpnpEnable(userId));
    return upnp->scanupnp == 0 && Kx_Sdk_GetLastError() != errorBefore ? -1 : 0;
}

int setUpnp(long userId, Upnp* upnp)
{
    if (Kx_Ipc_SetUpnpPortMapping(userId, upnp) != 0)
        return -1;
    return Kx_Ipc_SetUpnpEnable(userId, upnp->scanupnp);
}

} // namespace

extern constinit const Area upnpArea =
    makeArea<getUpnp, setUpnp>("upnp", "UPnP: announcement and port mapping", fields);

} // namespace kxcam
