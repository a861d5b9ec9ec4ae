// Dynamic DNS. Two services share the record, the general one and the "planet" one.
#include <KxIpcSDK/KxNetwork.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    field<&DdnsInfo::ddnsenable>("ddnsenable", "1: on; 0: off, and a set writes nothing else"),
    field<&DdnsInfo::ddnsdomain>("ddnsdomain", "provider, e.g. www.no-ip.com"),
    field<&DdnsInfo::ddnsusername>("ddnsusername", "account name"),
    secret(field<&DdnsInfo::ddnspassword>("ddnspassword", "account password")),
    field<&DdnsInfo::ddnshash>("ddnshash", "the provider's hash or token"),
    field<&DdnsInfo::ddnshost>("ddnshost", "host name registered"),
    field<&DdnsInfo::ddnsurl>("ddnsurl", "update address of a custom provider"),
    port(field<&DdnsInfo::ddnshttpport>("ddnshttpport", "published HTTP port")),
    port(field<&DdnsInfo::ddnsrtspport>("ddnsrtspport", "published RTSP port")),
    port(field<&DdnsInfo::ddnsplaybackport>("ddnsplaybackport", "published playback port")),
    writeOnly(field<&DdnsInfo::planetenable>("planetenable",
                                             "1: write the planet service instead of the general one")),
    field<&DdnsInfo::planeteasymode>("planeteasymode", "1: easy mode of the planet service"),
    readOnly(field<&DdnsInfo::macaddress>("macaddress", "the camera's MAC address")),
};

} // namespace

extern constinit const Area ddnsArea = makeArea<Kx_Ipc_GetDDNS, Kx_Ipc_SetDDNS>(
    "ddns", "dynamic DNS", fields,
    {.whenNotKept =
         "With ddnsenable=0 a set writes that switch and nothing else; with planetenable=1 it writes the "
         "planet service's settings. Some models know a few providers only."});

} // namespace kxcam
