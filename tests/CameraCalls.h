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
    DateTimeInfo clock{};
    SystemInfo system{};
    char updateInfo[1024] = {};
    int updateProgress = 0;
    uint32_t interfaces = 0;
    ModelGeneralInfo model{};
    UserAccountInfo account{"guest", "secret", 1};
    UserListEntry users[10]{};
    SqaInfo questions{};
    char challengeKey[2048]{};
    int challengeKeyId = 0;
};

struct NamedCall
{
    const char* name;
    std::function<int(long userId, Records* records)> run; // a null pointer stands for the call's null record
    bool takesRecord = true;
    int failure = -1;
    bool ignoresReply = false;                 // succeeds when the request went out and anything came back
    long errorWithoutReply = KX_ERROR_NETWORK; // when the camera closes the connection without a byte
    long errorWithoutOk = KX_ERROR_NONE;       // when something comes back, but not "OK"
    int unreached = failure;                   // the result when the checks pass and the request fails
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

    {"GetSystemDate", [](long id, Records* r) { return Kx_Ipc_GetSystemDate(id, r ? &r->clock : nullptr); }},
    {"SetSystemDate", [](long id, Records* r) { return Kx_Ipc_SetSystemDate(id, r ? &r->clock : nullptr); },
     true, -1, true},
    {"SetDeviceName", [](long id, Records*) { return Kx_Ipc_SetDeviceName(id, "name"); }, false, -1, true},
    {"GetSystemInfo", [](long id, Records* r) { return Kx_Ipc_GetSystemInfo(id, r ? &r->system : nullptr); }},
    {"RebootSystem", [](long id, Records*) { return Kx_Ipc_RebootSystem(id); }, false, -1, true},
    {"RestoreSystem", [](long id, Records*) { return Kx_Ipc_RestoreSystem(id); }, false, -1, true},
    {"ResetSystem", [](long id, Records*) { return Kx_Ipc_ResetSystem(id); }, false, -1, true},
    {"ResetSystemOnlyKeepIp", [](long id, Records*) { return Kx_Ipc_ResetSystemOnlyKeepIp(id); }, false},
    {"ResetSystemOnlyKeepUser", [](long id, Records*) { return Kx_Ipc_ResetSystemOnlyKeepUser(id); }, false},
    {"GetUpdateInfo",
     [](long id, Records* r) {
         return Kx_Ipc_GetUpdateInfo(id, r ? r->updateInfo : nullptr, sizeof r->updateInfo);
     }},
    {"UpdateOnline", [](long id, Records* r) { return Kx_Ipc_UpdateOnline(id, r ? "text" : nullptr); }},
    {"GetUpdateOnlineProgress",
     [](long id, Records* r) {
         return Kx_Ipc_GetUpdateOnlineProgress(id, r ? &r->updateProgress : nullptr);
     }},

    {"GetAllChipInterface", [](long id, Records*) { return Kx_Ipc_GetAllChipInterface(id); }, false},
    {"GetChipinterface",
     [](long id, Records* r) { return Kx_Ipc_GetChipinterface(id, r ? &r->interfaces : nullptr); }},
    {"HasSDInterface", [](long id, Records*) { return Kx_Ipc_HasSDInterface(id); }, false, 0},
    {"HasAudioInterface", [](long id, Records*) { return Kx_Ipc_HasAudioInterface(id); }, false, 0},
    {"HasAlarmInterface", [](long id, Records*) { return Kx_Ipc_HasAlarmInterface(id); }, false, 0},
    {"HasBNCInterface", [](long id, Records*) { return Kx_Ipc_HasBNCInterface(id); }, false, 0},
    {"HasPTZInterface", [](long id, Records*) { return Kx_Ipc_HasPTZInterface(id); }, false, 0},
    {"HasNasInterface", [](long id, Records*) { return Kx_Ipc_HasNasInterface(id); }, false, 0},
    {"HasSipPhoneInterface", [](long id, Records*) { return Kx_Ipc_HasSipPhoneInterface(id); }, false, 0},
    {"IsMini", [](long id, Records*) { return Kx_Ipc_IsMini(id); }, false, 0},
    {"IsCube", [](long id, Records*) { return Kx_Ipc_IsCube(id); }, false, 0},
    {"HasHighFrameInterface", [](long id, Records*) { return KX_Ipc_HasHighFrameInterface(id); }, false, -1,
     false, KX_ERROR_NETWORK, KX_ERROR_NONE, 0},
    {"GetModelGeneral",
     [](long id, Records* r) { return Kx_Ipc_GetModelGeneral(id, r ? &r->model : nullptr); }},
    {"GetUserType", [](long id, Records* r) { return Kx_Ipc_GetUserType(id, r ? "guest" : nullptr); }},
    {"AddUser", [](long id, Records* r) { return Kx_Ipc_AddUser(id, r ? &r->account : nullptr); }},
    {"DeleteUser", [](long id, Records* r) { return Kx_Ipc_DeleteUser(id, r ? "guest" : nullptr); }},
    {"ModifyPassword",
     [](long id, Records* r) { return Kx_Ipc_ModifyPassword(id, "guest", r ? "new" : nullptr); }},
    {"PasswordChallenge",
     [](long id, Records* r) {
         return Kx_Ipc_PasswordChallenge(id, "key", r ? r->challengeKey : nullptr,
                                         r ? &r->challengeKeyId : nullptr);
     },
     true, -1, false, KX_ERROR_NONE, KX_ERROR_BUSY},
    {"NewSetUser",
     [](long id, Records* r) { return Kx_Ipc_NewSetUser(id, r ? "guest" : nullptr, "secret", 1, 0, -1); },
     true, -1, false, KX_ERROR_NONE},
    {"GetAllUser", [](long id, Records* r) { return Kx_Ipc_GetAllUser(id, r ? r->users : nullptr); }},
    {"GetSQA", [](long id, Records* r) { return Kx_Ipc_GetSQA(id, r ? &r->questions : nullptr); }, true, -1,
     true},
};
