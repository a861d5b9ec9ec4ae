// Every exported call that asks a camera, as data, for tests of what all of them have in common.
#pragma once

#include <functional>
#include <vector>

#include <KxIpcSDK/KxIpcSDK.h>

struct Records
{
    NetworkInfo network{};
    WifiInfo wifi{};
    DdnsInfo ddns{};
    SmtpInfo smtp{};
    FtpInfo ftp{};
    UpnpInfo upnp{};
    PortInfo ports{};
    VideoInfo video{};
    AudioInfo audio{};
    AudioOptions audioOptions{};
    OsdInfo osd{};
};

struct NamedCall
{
    const char* name;
    std::function<int(long userId, Records* records)> run; // a null pointer stands for the call's null record
    bool takesRecord = true;
    int failure = -1;
    bool ignoresReply = false; // succeeds when the request went out and anything came back
};

inline const std::vector<NamedCall> cameraCalls = {
    {"GetNetwork", [](long id, Records* r) { return Kx_Ipc_GetNetwork(id, r ? &r->network : nullptr); }},
    {"SetNetwork", [](long id, Records* r) { return Kx_Ipc_SetNetwork(id, r ? &r->network : nullptr); }, true,
     -1, true},
    {"GetWifiInfo", [](long id, Records* r) { return Kx_Ipc_GetWifiInfo(id, r ? &r->wifi : nullptr); }},
    {"SetWifiInfo", [](long id, Records* r) { return Kx_Ipc_SetWifiInfo(id, r ? &r->wifi : nullptr); }, true,
     -1, true},
    {"GetDDNS", [](long id, Records* r) { return Kx_Ipc_GetDDNS(id, r ? &r->ddns : nullptr); }},
    {"SetDDNS", [](long id, Records* r) { return Kx_Ipc_SetDDNS(id, r ? &r->ddns : nullptr); }},
    {"GetSMTP", [](long id, Records* r) { return Kx_Ipc_GetSMTP(id, r ? &r->smtp : nullptr); }},
    {"SetSMTP", [](long id, Records* r) { return Kx_Ipc_SetSMTP(id, r ? &r->smtp : nullptr); }},
    {"TestSMTP", [](long id, Records*) { return Kx_Ipc_TestSMTP(id); }, false},
    {"GetFTP", [](long id, Records* r) { return Kx_Ipc_GetFTP(id, r ? &r->ftp : nullptr); }},
    {"SetFTP", [](long id, Records* r) { return Kx_Ipc_SetFTP(id, r ? &r->ftp : nullptr); }, true, -1, true},
    {"IsUpnpEnable", [](long id, Records*) { return Kx_Ipc_IsUpnpEnable(id); }, false, 0},
    {"SetUpnpEnable", [](long id, Records*) { return Kx_Ipc_SetUpnpEnable(id, 1); }, false, -1, true},
    {"GetUpnpPortMapping",
     [](long id, Records* r) { return Kx_Ipc_GetUpnpPortMapping(id, r ? &r->upnp : nullptr); }},
    {"SetUpnpPortMapping",
     [](long id, Records* r) { return Kx_Ipc_SetUpnpPortMapping(id, r ? &r->upnp : nullptr); }, true, -1,
     true},
    {"GetPortInfo", [](long id, Records* r) { return Kx_Ipc_GetPortInfo(id, r ? &r->ports : nullptr); }},
    {"SetPortInfo", [](long id, Records* r) { return Kx_Ipc_SetPortInfo(id, r ? &r->ports : nullptr); }, true,
     -1, true},
    {"GetVideoConfig",
     [](long id, Records* r) { return Kx_Ipc_GetVideoConfig(id, r ? &r->video : nullptr, 1); }},
    {"SetVideoConfig",
     [](long id, Records* r) { return Kx_Ipc_SetVideoConfig(id, r ? &r->video : nullptr, 1); }},
    {"GetVideoConfig_ForOldVer",
     [](long id, Records* r) { return Kx_Ipc_GetVideoConfig_ForOldVer(id, r ? &r->video : nullptr, 1); }},
    {"SetVideoConfig_ForOldVer",
     [](long id, Records* r) { return Kx_Ipc_SetVideoConfig_ForOldVer(id, r ? &r->video : nullptr, 1); }},
    {"GetAudioConfig",
     [](long id, Records* r) { return Kx_Ipc_GetAudioConfig(id, r ? &r->audio : nullptr); }},
    {"SetAudioConfig", [](long id, Records* r) { return Kx_Ipc_SetAudioConfig(id, r ? &r->audio : nullptr); },
     true, -1, true},
    {"GetAudioOptions",
     [](long id, Records* r) { return Kx_Ipc_GetAudioOptions(id, r ? &r->audioOptions : nullptr); }, false,
     -1, true},
    {"GetOSD", [](long id, Records* r) { return Kx_Ipc_GetOSD(id, r ? &r->osd : nullptr); }},
    {"SetOSD", [](long id, Records* r) { return Kx_Ipc_SetOSD(id, r ? &r->osd : nullptr); }},
    {"GetOSD_ForOldVer",
     [](long id, Records* r) { return Kx_Ipc_GetOSD_ForOldVer(id, r ? r->osd.streams : nullptr); }},
    {"SetOSD_ForOldVer",
     [](long id, Records* r) { return Kx_Ipc_SetOSD_ForOldVer(id, r ? r->osd.streams : nullptr); }, true, -1,
     true},
};
