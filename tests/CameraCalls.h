// Every exported call that asks a camera, as data, for tests of what all of them have in common.
#pragma once

#include <cstddef>
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
    char updateInfo[1024]{};
    int updateProgress = 0;
    uint32_t interfaces = 0;
    ModelGeneralInfo model{};

    UserAccountInfo account{"guest", "secret", 1};
    UserListEntry users[10]{};
    SqaInfo questions{};
    char challengeKey[2048]{};
    int challengeKeyId = 0;

    VideoInfo video{};
    AudioInfo audio{};
    AudioOptions audioOptions{};
    OsdInfo osd{};

    SdCardInfo card{};
    RecordInfo recording{};
    char text[64]{};
    PtzInfo ptzPort{};
    int ptzNumber = 0;
    PtzAutoTrackInfo tracking{};
    alignas(AutoTrackPointInfo) std::byte
        trackPoints[sizeof(AutoTrackPointInfo) + KX_MOST_TRACK_POINTS * sizeof(TrackPoint)]{};
    float region[5]{};
    WhiteLedParam whiteLed{};
    PtzRunStatus runStatus{};
    char streamAddress[64]{};
    int connections = 0;
};

struct NamedCall
{
    const char* name;
    std::function<int(long userId, Records* records)> run; // a null pointer stands for the call's null record
    bool takesRecord = true;
    int failure = -1;
    int unreached = failure;                   // the result when the checks pass and the request fails
    bool ignoresReply = false;                 // succeeds when the request went out and anything came back
    long errorWithoutReply = KX_ERROR_NETWORK; // when the camera closes the connection without a byte
    long errorWithoutOk = KX_ERROR_NONE;       // when something comes back, but not "OK"
    bool transfers = false; // a file, with codes of its own, which the transfers' tests check
};

/// A call with a record.
template <typename Parameter, typename Record>
NamedCall on(Record Records::*record, const char* name, int (*call)(long, Parameter*))
{
    return {name, [=](long id, Records* r) { return call(id, r != nullptr ? &(r->*record) : nullptr); }};
}

/// A call without one.
inline NamedCall plain(const char* name, int (*call)(long))
{
    return {.name = name, .run = [=](long id, Records*) { return call(id); }, .takesRecord = false};
}

/// A call without a record that answers yes or no, and no when it fails.
inline NamedCall question(const char* name, int (*call)(long))
{
    NamedCall row = plain(name, call);
    row.failure = row.unreached = 0;
    return row;
}

/// A set or a command that asks the camera nothing first.
inline NamedCall blind(NamedCall call)
{
    call.ignoresReply = true;
    return call;
}

/// A transfer of a file.
inline NamedCall transfer(const char* name, int (*call)(long, const char*), const char* path)
{
    return {.name = name,
            .run = [=](long id, Records* r) { return call(id, r != nullptr ? path : nullptr); },
            .transfers = true};
}

inline const std::vector<NamedCall> cameraCalls = {
    on(&Records::network, "GetNetwork", Kx_Ipc_GetNetwork),
    blind(on(&Records::network, "SetNetwork", Kx_Ipc_SetNetwork)),
    on(&Records::wifi, "GetWifiInfo", Kx_Ipc_GetWifiInfo),
    blind(on(&Records::wifi, "SetWifiInfo", Kx_Ipc_SetWifiInfo)),
    on(&Records::ddns, "GetDDNS", Kx_Ipc_GetDDNS),
    on(&Records::ddns, "SetDDNS", Kx_Ipc_SetDDNS),
    on(&Records::smtp, "GetSMTP", Kx_Ipc_GetSMTP),
    on(&Records::smtp, "SetSMTP", Kx_Ipc_SetSMTP),
    plain("TestSMTP", Kx_Ipc_TestSMTP),
    on(&Records::ftp, "GetFTP", Kx_Ipc_GetFTP),
    blind(on(&Records::ftp, "SetFTP", Kx_Ipc_SetFTP)),
    question("IsUpnpEnable", Kx_Ipc_IsUpnpEnable),
    blind({"SetUpnpEnable", [](long id, Records*) { return Kx_Ipc_SetUpnpEnable(id, 1); }, false}),
    on(&Records::upnp, "GetUpnpPortMapping", Kx_Ipc_GetUpnpPortMapping),
    blind(on(&Records::upnp, "SetUpnpPortMapping", Kx_Ipc_SetUpnpPortMapping)),
    on(&Records::ports, "GetPortInfo", Kx_Ipc_GetPortInfo),
    blind(on(&Records::ports, "SetPortInfo", Kx_Ipc_SetPortInfo)),

    on(&Records::clock, "GetSystemDate", Kx_Ipc_GetSystemDate),
    blind(on(&Records::clock, "SetSystemDate", Kx_Ipc_SetSystemDate)),
    blind({"SetDeviceName", [](long id, Records*) { return Kx_Ipc_SetDeviceName(id, "name"); }, false}),
    on(&Records::system, "GetSystemInfo", Kx_Ipc_GetSystemInfo),
    blind(plain("RebootSystem", Kx_Ipc_RebootSystem)),
    blind(plain("RestoreSystem", Kx_Ipc_RestoreSystem)),
    blind(plain("ResetSystem", Kx_Ipc_ResetSystem)),
    plain("ResetSystemOnlyKeepIp", Kx_Ipc_ResetSystemOnlyKeepIp),
    plain("ResetSystemOnlyKeepUser", Kx_Ipc_ResetSystemOnlyKeepUser),
    {"GetUpdateInfo",
     [](long id, Records* r) {
         return Kx_Ipc_GetUpdateInfo(id, r ? r->updateInfo : nullptr, sizeof r->updateInfo);
     }},
    {"UpdateOnline", [](long id, Records* r) { return Kx_Ipc_UpdateOnline(id, r ? "text" : nullptr); }},
    on(&Records::updateProgress, "GetUpdateOnlineProgress", Kx_Ipc_GetUpdateOnlineProgress),

    plain("GetAllChipInterface", Kx_Ipc_GetAllChipInterface),
    on(&Records::interfaces, "GetChipinterface", Kx_Ipc_GetChipinterface),
    question("HasSDInterface", Kx_Ipc_HasSDInterface),
    question("HasAudioInterface", Kx_Ipc_HasAudioInterface),
    question("HasAlarmInterface", Kx_Ipc_HasAlarmInterface),
    question("HasBNCInterface", Kx_Ipc_HasBNCInterface),
    question("HasPTZInterface", Kx_Ipc_HasPTZInterface),
    question("HasNasInterface", Kx_Ipc_HasNasInterface),
    question("HasSipPhoneInterface", Kx_Ipc_HasSipPhoneInterface),
    question("IsMini", Kx_Ipc_IsMini),
    question("IsCube", Kx_Ipc_IsCube),
    {.name = "HasHighFrameInterface",
     .run = [](long id, Records*) { return KX_Ipc_HasHighFrameInterface(id); },
     .takesRecord = false,
     .unreached = 0},
    on(&Records::model, "GetModelGeneral", Kx_Ipc_GetModelGeneral),

    {"GetUserType", [](long id, Records* r) { return Kx_Ipc_GetUserType(id, r ? "guest" : nullptr); }},
    on(&Records::account, "AddUser", Kx_Ipc_AddUser),
    {"DeleteUser", [](long id, Records* r) { return Kx_Ipc_DeleteUser(id, r ? "guest" : nullptr); }},
    {"ModifyPassword",
     [](long id, Records* r) { return Kx_Ipc_ModifyPassword(id, "guest", r ? "new" : nullptr); }},
    {.name = "PasswordChallenge",
     .run =
         [](long id, Records* r) {
             return Kx_Ipc_PasswordChallenge(id, "key", r ? r->challengeKey : nullptr,
                                             r ? &r->challengeKeyId : nullptr);
         },
     .errorWithoutReply = KX_ERROR_NONE,
     .errorWithoutOk = KX_ERROR_BUSY},
    {.name = "NewSetUser",
     .run = [](long id,
               Records* r) { return Kx_Ipc_NewSetUser(id, r ? "guest" : nullptr, "secret", 1, 0, -1); },
     .errorWithoutReply = KX_ERROR_NONE},
    {"GetAllUser", [](long id, Records* r) { return Kx_Ipc_GetAllUser(id, r ? r->users : nullptr); }},
    blind(on(&Records::questions, "GetSQA", Kx_Ipc_GetSQA)),

    {"GetVideoConfig",
     [](long id, Records* r) { return Kx_Ipc_GetVideoConfig(id, r ? &r->video : nullptr, 1); }},
    {"SetVideoConfig",
     [](long id, Records* r) { return Kx_Ipc_SetVideoConfig(id, r ? &r->video : nullptr, 1); }},
    {"GetVideoConfig_ForOldVer",
     [](long id, Records* r) { return Kx_Ipc_GetVideoConfig_ForOldVer(id, r ? &r->video : nullptr, 1); }},
    {"SetVideoConfig_ForOldVer",
     [](long id, Records* r) { return Kx_Ipc_SetVideoConfig_ForOldVer(id, r ? &r->video : nullptr, 1); }},
    on(&Records::audio, "GetAudioConfig", Kx_Ipc_GetAudioConfig),
    blind(on(&Records::audio, "SetAudioConfig", Kx_Ipc_SetAudioConfig)),
    blind({"GetAudioOptions",
           [](long id, Records* r) { return Kx_Ipc_GetAudioOptions(id, r ? &r->audioOptions : nullptr); },
           false}),
    on(&Records::osd, "GetOSD", Kx_Ipc_GetOSD),
    on(&Records::osd, "SetOSD", Kx_Ipc_SetOSD),
    {"GetOSD_ForOldVer",
     [](long id, Records* r) { return Kx_Ipc_GetOSD_ForOldVer(id, r ? r->osd.streams : nullptr); }},
    blind({"SetOSD_ForOldVer",
           [](long id, Records* r) { return Kx_Ipc_SetOSD_ForOldVer(id, r ? r->osd.streams : nullptr); }}),

    on(&Records::card, "GetSdCardInfo", Kx_Ipc_GetSdCardInfo),
    blind(plain("UnMountSdCard", Kx_Ipc_UnMountSdCard)),
    blind(plain("MountSdCard", Kx_Ipc_MountSdCard)),
    blind(plain("FormatSdCard", Kx_Ipc_FormatSdCard)),
    on(&Records::recording, "GetRecordConfig", Kx_Ipc_GetRecordConfig),
    blind(on(&Records::recording, "SetRecordConfig", Kx_Ipc_SetRecordConfig)),
    {"GetPlaybackPageCnt",
     [](long id, Records* r) { return Kx_Ipc_GetPlaybackPageCnt(id, "from", r ? "to" : nullptr); }},
    {"GetPlaybackFilename",
     [](long id, Records* r) {
         return Kx_Ipc_GetPlaybackFilename(id, 0, "from", "to", r ? r->text : nullptr, sizeof r->text);
     }},
    {"GetPlaybackFileInfo",
     [](long id, Records* r) {
         return Kx_Ipc_GetPlaybackFileInfo(id, "at", r ? r->text : nullptr, sizeof r->text);
     }},
    {"GetPlaybackHttpFileInfo",
     [](long id, Records* r) {
         return Kx_Ipc_GetPlaybackHttpFileInfo(id, "at", r ? r->text : nullptr, sizeof r->text);
     }},
    {"GetPlaybackTime",
     [](long id, Records* r) { return Kx_Ipc_GetPlaybackTime(id, r ? r->text : nullptr, sizeof r->text); }},
    blind(plain("StopPlayback", Kx_Ipc_StopPlayback)),
    blind(plain("PausePlayback", Kx_Ipc_PausePlayback)),
    blind(plain("ResumePlayback", Kx_Ipc_ResumePlayback)),
    blind(
        {"ChangePlaybackSpeed", [](long id, Records*) { return Kx_Ipc_ChangePlaybackSpeed(id, 4); }, false}),
    transfer("UploadConfigFile", Kx_Ipc_UploadConfigFile, "/proc/version"), // goes up as an empty file
    transfer("UploadOemConfigFile", Kx_Ipc_UploadOemConfigFile, "/proc/version"),
    transfer("UploadFileToSdCard", Kx_Ipc_UploadFileToSdCard, "/proc/version"),
    blind(plain("EraseOemConfig", Kx_Ipc_EraseOemConfig)),
    {.name = "UpdateFirmware",
     .run = [](long id, Records* r) { return Kx_Ipc_UpdateFirmware(id, r ? "/proc/version" : nullptr, 1); },
     .transfers = true},
    transfer("UpdateKernal", Kx_Ipc_UpdateKernal, "/proc/KImage_D-1"),
    transfer("DownloadLog", Kx_Ipc_DownloadLog, "/dev/null"),
    transfer("DownloadCfg", Kx_Ipc_DownloadCfg, "/dev/null"),
    transfer("ExportCfg", Kx_Ipc_ExportCfg, "/proc"),
    {.name = "DownloadCustom",
     .run = [](long id,
               Records* r) { return Kx_Ipc_DownloadCustom(id, "/dev/null", 0, r ? "file" : nullptr); },
     .transfers = true},
    blind({"PTZControl",
           [](long id, Records* r) {
               return Kx_Ipc_PTZControl(id, KX_PTZ_SET_PRESET, 1, r ? "gate" : nullptr, 0, 0, -1);
           }}),
    on(&Records::ptzPort, "GetPTZ", Kx_Ipc_GetPTZ),
    blind(on(&Records::ptzPort, "SetPTZ", Kx_Ipc_SetPTZ)),
    blind(on(&Records::ptzNumber, "GetPTZZoom", Kx_Ipc_GetPTZZoom)),
    blind({"SetPTZZoom", [](long id, Records*) { return Kx_Ipc_SetPTZZoom(id, 1); }, false}),
    blind(on(&Records::ptzNumber, "GetPTZLightStatus", Kx_Ipc_GetPTZLightStatus)),
    blind(on(&Records::ptzNumber, "GetWhiteLEDStatus", Kx_Ipc_GetWhiteLEDStatus)),
    {"SetWhiteLEDStatus", [](long id, Records*) { return Kx_Ipc_SetWhiteLEDStatus(id, 1); }, false},
    on(&Records::whiteLed, "GetWhiteLEDParamStatus", Kx_Ipc_GetWhiteLEDParamStatus),
    on(&Records::tracking, "GetPTZAutoTrack", Kx_Ipc_GetPTZAutoTrack),
    blind(on(&Records::tracking, "SetPTZAutoTrack", Kx_Ipc_SetPTZAutoTrack)),
    {"GetAutoTrackPoint",
     [](long id, Records* r) {
         return Kx_Ipc_GetAutoTrackPoint(id,
                                         r ? reinterpret_cast<AutoTrackPointInfo*>(r->trackPoints) : nullptr);
     }},
    blind(
        {"SetManualAutoTrack", [](long id, Records*) { return Kx_Ipc_SetManualAutoTrack(id, 1, 0); }, false}),
    blind({"SetManualTrackPoint",
           [](long id, Records* r) { return Kx_Ipc_SetManualTrackPoint(id, r ? r->region : nullptr); }}),
    blind(on(&Records::ptzNumber, "GetCameraLens", Kx_Ipc_GetCameraLens)),
    blind(on(&Records::ptzNumber, "GetDigitposzmState", Kx_Ipc_GetDigitposzmState)),
    blind(on(&Records::ptzNumber, "GetZoomNumber", Kx_Ipc_GetZoomNumber)),
    on(&Records::runStatus, "GetPtzRunStatus", Kx_Ipc_GetPtzRunStatus),
    {"GetRtspUrl",
     [](long id, Records* r) {
         return Kx_IpcClient_GetRtspUrl(id, 0, r ? r->streamAddress : nullptr, sizeof r->streamAddress);
     }},
    on(&Records::connections, "GetMaxConnectionLimit", Kx_IpcClient_GetMaxConnectionLimit),
    blind({"SetMaxConnectionLimit",
           [](long id, Records*) { return Kx_IpcClient_SetMaxConnectionLimit(id, 5); }, false}),
    on(&Records::connections, "GetCurrentConnectionNum", Kx_IpcClient_GetCurrentConnectionNum),
};
