// The wireless network.
#include <KxIpcSDK/KxNetwork.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    field<&WifiInfo::wifissid>("wifissid", "network name"),
    field<&WifiInfo::wifimode>("wifimode", "wireless mode code"),
    field<&WifiInfo::wifiencrypt>("wifiencrypt", "0: none, 1: WEP, 2 to 4: the WPA variants"),
    field<&WifiInfo::wepauthtype>("wepauthtype", "WEP authentication type code"),
    field<&WifiInfo::wepkeylength>("wepkeylength", "WEP key length code"),
    field<&WifiInfo::wepkeyformat>("wepkeyformat", "WEP key format code"),
    field<&WifiInfo::wepkeyindex>("wepkeyindex", "active WEP key, 0 to 3"),
    secret(field<&WifiInfo::wepkey1>("wepkey1", "WEP key 1")),
    secret(field<&WifiInfo::wepkey2>("wepkey2", "WEP key 2")),
    secret(field<&WifiInfo::wepkey3>("wepkey3", "WEP key 3")),
    secret(field<&WifiInfo::wepkey4>("wepkey4", "WEP key 4")),
    field<&WifiInfo::wpapairwise>("wpapairwise", "WPA pairwise cipher code"),
    secret(field<&WifiInfo::wpakey>("wpakey", "WPA pass phrase")),
    field<&WifiInfo::wpsenable>("wpsenable", "1: WPS on"),
    readOnly(field<&WifiInfo::wpspincode>("wpspincode", "the camera's own WPS PIN")),
    field<&WifiInfo::wpsconntype>("wpsconntype", "WPS connection type; 2: by the router's name and PIN"),
    field<&WifiInfo::wpsroutessid>("wpsroutessid", "router name for connection type 2"),
    secret(field<&WifiInfo::wpsroutepin>("wpsroutepin", "router PIN for connection type 2")),
    field<&WifiInfo::wifidhcp>("wifidhcp", "1: wireless address by DHCP, 0: static"),
    field<&WifiInfo::wifinip>("wifinip", "static wireless IPv4 address"),
    field<&WifiInfo::wifinmask>("wifinmask", "static wireless subnet mask"),
    field<&WifiInfo::wifigway>("wifigway", "static wireless gateway"),
    field<&WifiInfo::wifidns>("wifidns", "static wireless DNS server"),
};

} // namespace

extern constinit const Area wifiArea = makeArea<Kx_Ipc_GetWifiInfo, Kx_Ipc_SetWifiInfo>(
    "wifi", "wireless network", fields,
    {.whenNotKept =
         "A set writes what matters for the chosen modes: the active WEP key with wifiencrypt=1, the WPA "
         "keys with wifiencrypt=2 to 4, the WPS keys with wpsenable=1, the addresses with wifidhcp=0."});

} // namespace kxcam
