// The records of the public headers are a binary interface: applications built against one version run with the next.
#include <cstddef>
#include <type_traits>

#include <KxIpcSDK/KxNetwork.h>

namespace
{

template <typename Record>
constexpr bool isPlain = std::is_standard_layout_v<Record> && std::is_trivially_copyable_v<Record>;

static_assert(isPlain<NetworkInfo> && sizeof(NetworkInfo) == 160);
static_assert(offsetof(NetworkInfo, dhcpenable) == 0);
static_assert(offsetof(NetworkInfo, netip) == 1);
static_assert(offsetof(NetworkInfo, netmask) == 33);
static_assert(offsetof(NetworkInfo, gateway) == 65);
static_assert(offsetof(NetworkInfo, dnsip) == 97);
static_assert(offsetof(NetworkInfo, httpport) == 132);
static_assert(offsetof(NetworkInfo, macaddress) == 136);

static_assert(isPlain<WifiInfo> && sizeof(WifiInfo) == 528);
static_assert(offsetof(WifiInfo, wifissid) == 0);
static_assert(offsetof(WifiInfo, wifimode) == 64);
static_assert(offsetof(WifiInfo, wifiencrypt) == 65);
static_assert(offsetof(WifiInfo, wepauthtype) == 66);
static_assert(offsetof(WifiInfo, wepkeylength) == 67);
static_assert(offsetof(WifiInfo, wepkeyformat) == 68);
static_assert(offsetof(WifiInfo, wepkeyindex) == 69);
static_assert(offsetof(WifiInfo, wepkey1) == 70);
static_assert(offsetof(WifiInfo, wepkey2) == 102);
static_assert(offsetof(WifiInfo, wepkey3) == 134);
static_assert(offsetof(WifiInfo, wepkey4) == 166);
static_assert(offsetof(WifiInfo, wpapairwise) == 198);
static_assert(offsetof(WifiInfo, wpakey) == 199);
static_assert(offsetof(WifiInfo, wpsenable) == 263);
static_assert(offsetof(WifiInfo, wpspincode) == 264);
static_assert(offsetof(WifiInfo, wpsconntype) == 296);
static_assert(offsetof(WifiInfo, wpsroutessid) == 300);
static_assert(offsetof(WifiInfo, wpsroutepin) == 364);
static_assert(offsetof(WifiInfo, wifidhcp) == 396);
static_assert(offsetof(WifiInfo, wifinip) == 397);
static_assert(offsetof(WifiInfo, wifinmask) == 429);
static_assert(offsetof(WifiInfo, wifigway) == 461);
static_assert(offsetof(WifiInfo, wifidns) == 493);

static_assert(isPlain<DdnsInfo> && sizeof(DdnsInfo) == 1044);
static_assert(offsetof(DdnsInfo, ddnsenable) == 0);
static_assert(offsetof(DdnsInfo, ddnsdomain) == 1);
static_assert(offsetof(DdnsInfo, ddnsusername) == 65);
static_assert(offsetof(DdnsInfo, ddnspassword) == 97);
static_assert(offsetof(DdnsInfo, ddnshash) == 609);
static_assert(offsetof(DdnsInfo, ddnshost) == 737);
static_assert(offsetof(DdnsInfo, ddnsurl) == 865);
static_assert(offsetof(DdnsInfo, ddnshttpport) == 996);
static_assert(offsetof(DdnsInfo, ddnsrtspport) == 1000);
static_assert(offsetof(DdnsInfo, ddnsplaybackport) == 1004);
static_assert(offsetof(DdnsInfo, planetenable) == 1008);
static_assert(offsetof(DdnsInfo, planeteasymode) == 1009);
static_assert(offsetof(DdnsInfo, macaddress) == 1010);

static_assert(isPlain<SmtpInfo> && sizeof(SmtpInfo) == 1100);
static_assert(offsetof(SmtpInfo, smtpuser) == 0);
static_assert(offsetof(SmtpInfo, smtpsender) == 32);
static_assert(offsetof(SmtpInfo, smtppwd) == 288);
static_assert(offsetof(SmtpInfo, smtpip) == 800);
static_assert(offsetof(SmtpInfo, smtpport) == 832);
static_assert(offsetof(SmtpInfo, emailuser) == 836);
static_assert(offsetof(SmtpInfo, smtpauth) == 1092);
static_assert(offsetof(SmtpInfo, smtpenable) == 1096);

static_assert(isPlain<FtpInfo> && sizeof(FtpInfo) == 484);
static_assert(offsetof(FtpInfo, ftpip) == 0);
static_assert(offsetof(FtpInfo, ftpipport) == 64);
static_assert(offsetof(FtpInfo, ftpuser) == 68);
static_assert(offsetof(FtpInfo, ftppassword) == 260);
static_assert(offsetof(FtpInfo, ftppath) == 292);

static_assert(isPlain<UpnpInfo> && sizeof(UpnpInfo) == 92);
static_assert(offsetof(UpnpInfo, upnpenable) == 0);
static_assert(offsetof(UpnpInfo, upnpname) == 1);
static_assert(offsetof(UpnpInfo, upnptype) == 65);
static_assert(offsetof(UpnpInfo, upnphttpport) == 68);
static_assert(offsetof(UpnpInfo, httpport) == 72);
static_assert(offsetof(UpnpInfo, upnpstatushttp) == 76);
static_assert(offsetof(UpnpInfo, upnprtspport) == 80);
static_assert(offsetof(UpnpInfo, mainrtspport) == 84);
static_assert(offsetof(UpnpInfo, upnpstatusrtsp) == 88);

static_assert(isPlain<PortInfo> && sizeof(PortInfo) == 16);
static_assert(offsetof(PortInfo, httpport) == 0);
static_assert(offsetof(PortInfo, onvifport) == 4);
static_assert(offsetof(PortInfo, mainrtspport) == 8);
static_assert(offsetof(PortInfo, subrtspport) == 12);

} // namespace
