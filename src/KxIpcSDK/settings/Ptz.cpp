// What belongs to a camera that moves, besides moving: serial port, zoom position, lights, lens, run status.
#include <KxIpcSDK/KxPtz.h>

#include <algorithm>
#include <cmath>

#include "KxIpcSDK/CameraCall.h"
#include "inirw/inirw.h"

namespace
{

constexpr std::uint64_t slowest = 2400; // bits per second
constexpr std::uint64_t fastestSent = 19200;
constexpr int mostDoublings = 62;

using ShortReply = Reply<OkStyle, 128>;

/// A camera that does not tell the number is no failure.
template <typename AnyReply>
int getNumber(long userId, int* number, const char* query, const char* key,
              RequestFunction send = settingsRequest)
{
    CameraCall call(userId, number);
    const auto reply = call.get<AnyReply>(query, send);
    if (!reply.received())
        return -1;
    reply.number(key, *number);
    return 0;
}

/// No inverse of how a get reads it: so cameras have always been told.
int baudIndex(std::uint64_t rate)
{
    return static_cast<int>(std::sqrt(static_cast<double>(std::min(rate, fastestSent)) / slowest));
}

struct RunState
{
    const char* key;
    int PtzRunStatus::*member;
};

constexpr RunState runStates[] = {
    {"ptz_run_status", &PtzRunStatus::ptz_run_status},
    {"fish_0_ptz_run_status", &PtzRunStatus::fish_0_ptz_run_status},
    {"fish_1_ptz_run_status", &PtzRunStatus::fish_1_ptz_run_status},
    {"fish_2_ptz_run_status", &PtzRunStatus::fish_2_ptz_run_status},
    {"fish_3_ptz_run_status", &PtzRunStatus::fish_3_ptz_run_status},
    {"fish_4_ptz_run_status", &PtzRunStatus::fish_4_ptz_run_status},
};

} // namespace

int Kx_Ipc_GetPTZ(long userId, PtzInfo* info)
{
    CameraCall call(userId, info);
    const auto reply = call.get<Reply<OkStyle, 256>>("&paratest=ptzprotocol&paratest=ptzbaudrate");
    if (!reply)
        return -1;
    reply.number("ptzprotocol", info->ptzprotocol);
    int doublings = -1;
    reply.number("ptzbaudrate", doublings);
    if (doublings >= 0 && doublings <= mostDoublings)
        info->ptzbaudrate = slowest << doublings;
    return 0;
}

int Kx_Ipc_SetPTZ(long userId, const PtzInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    Query query;
    query.number("ptzprotocol", info->ptzprotocol != 0 ? 1 : 0);
    query.number("ptzbaudrate", baudIndex(info->ptzbaudrate));
    return call.set<CommandReply>(query);
}

int Kx_Ipc_GetPTZZoom(long userId, int* zoom)
{
    return getNumber<Reply<OkStyle, 256>>(userId, zoom, "&paratest=zoompos", "zoompos");
}

int Kx_Ipc_SetPTZZoom(long userId, int zoom)
{
    constexpr int farthest = 100;
    CameraCall call(userId);
    Query query;
    query.add("&ipncptz=zoompos=%d", std::min(zoom, farthest));
    return call.set<CommandReply>(query);
}

int Kx_Ipc_GetPTZLightStatus(long userId, int* status)
{
    return getNumber<Reply<OkStyle, 256>>(userId, status, "&paratest=lightstatus", "lightstatus");
}

int Kx_Ipc_GetWhiteLEDStatus(long userId, int* status)
{
    return getNumber<Reply<CrLfStyle, 256>>(userId, status, "action=get.whiteled.status&format=inf",
                                            "white_led_status", adminRequest);
}

int Kx_Ipc_SetWhiteLEDStatus(long userId, int status)
{
    CameraCall call(userId);
    Query query;
    query.add("action=set.whiteled.status");
    query.number("white_led_status", status);
    return call.get<CommandReply>(query, adminRequest).contains("OK") ? 0 : -1;
}

int Kx_Ipc_GetWhiteLEDParamStatus(long userId, WhiteLedParam* param)
{
    CameraCall call(userId, param);
    const auto reply =
        call.get<Reply<CrLfStyle, 1024>>("action=get.whiteled.parameter&format=inf", adminRequest);
    if (!reply)
        return -1;
    reply.number("white_led_alarm", param->white_led_alarm);
    reply.number("white_led_number", param->white_led_number);
    reply.number("white_led_manual", param->white_led_manual);
    return 0;
}

int Kx_Ipc_GetCameraLens(long userId, int* lens)
{
    return getNumber<Reply<PlainStyle, 1024>>(userId, lens, "action=get.camera.lens&format=inf",
                                              "imaging_settings_lens_iris_mode", adminRequest);
}

int Kx_Ipc_GetDigitposzmState(long userId, int* state)
{
    return getNumber<ShortReply>(userId, state, "getdigitposzmstate", "getdigitposzmstate");
}

int Kx_Ipc_GetZoomNumber(long userId, int* number)
{
    return getNumber<ShortReply>(userId, number, "getzoomnumber", "getzoomnumber");
}

int Kx_Ipc_GetPtzRunStatus(long userId, PtzRunStatus* status)
{
    CameraCall call(userId, status);
    const auto reply =
        call.get<Reply<PlainStyle, 10240>>("action=get.ptz.runstatus&format=inf", adminRequest);
    if (!reply)
        return -1;
    for (const RunState& state : runStates)
        status->*state.member = iniGetIntFromStr(reply.raw(), "PTZ_RUN_STATUS", state.key, 0);
    return 0;
}
