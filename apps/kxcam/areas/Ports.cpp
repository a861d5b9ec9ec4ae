// The service ports. The sub stream's can be written, but not read.
#include <KxIpcSDK/KxNetwork.h>

#include "Area.h"
#include "Session.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    port(field<&PortInfo::httpport>("httpport", "HTTP, which kxcam itself uses")),
    port(field<&PortInfo::onvifport>("onvifport", "ONVIF")),
    port(field<&PortInfo::mainrtspport>("mainrtspport", "RTSP of the main stream")),
    mustGive(
        port(field<&PortInfo::subrtspport>("subrtspport", "RTSP of the sub stream; a get can not show it"))),
};

std::string moved(const void* before, const void* wanted, const Target& target)
{
    Target there = target;
    there.port = static_cast<const PortInfo*>(wanted)->httpport;
    if (there.port == static_cast<const PortInfo*>(before)->httpport || there.port == target.port)
        return "";
    return "The camera now answers on port " + std::to_string(there.port) +
           ", perhaps after a restart. Log in there: " + there.commandLine() + " get ports";
}

} // namespace

extern constinit const Area portsArea =
    makeArea<Kx_Ipc_GetPortInfo, Kx_Ipc_SetPortInfo>("ports", "service ports", fields, {.moved = moved});

} // namespace kxcam
