// What the camera can do.
#include <KxIpcSDK/KxCapabilities.h>
#include <KxIpcSDK/KxSystem.h>

#include <cstring>

#include "KxIpcSDK/CameraCall.h"

namespace
{

constexpr char maskKey[] = "chipninterface";

OkReply ask(CameraCall&& call, const char* key)
{
    Query query;
    query.ask(key);
    return call.get(query);
}

/// The number that the camera tells under a key; 0 when it tells none, for whatever reason.
int numberOf(long userId, const char* key)
{
    const OkReply reply = ask(CameraCall(userId), key);
    int number = 0;
    if (reply)
        reply.number(key, number);
    return number;
}

int hasInterface(long userId, int bits)
{
    return (numberOf(userId, maskKey) & bits) != 0 ? 1 : 0;
}

/// The seventh character of a model tells its housing.
int isHousing(long userId, char housing)
{
    const OkReply reply = ask(CameraCall(userId), "productmodel");
    char model[64] = {};
    if (reply)
        reply.text("productmodel", model);
    return model[6] == housing ? 1 : 0;
}

} // namespace

int Kx_Ipc_GetAllChipInterface(long userId)
{
    const OkReply reply = ask(CameraCall(userId), maskKey);
    if (!reply)
        return -1;
    int mask = 0;
    reply.number(maskKey, mask);
    return mask;
}

int Kx_Ipc_GetChipinterface(long userId, uint32_t* mask)
{
    const OkReply reply = ask(CameraCall(userId, mask), maskKey);
    return reply && reply.number(maskKey, *mask) ? 0 : -1;
}

int Kx_Ipc_HasSDInterface(long userId)
{
    return hasInterface(userId, KX_INTERFACE_SD);
}

int Kx_Ipc_HasAudioInterface(long userId)
{
    return hasInterface(userId, KX_INTERFACE_AUDIO);
}

int Kx_Ipc_HasAlarmInterface(long userId)
{
    return hasInterface(userId, KX_INTERFACE_ALARM | KX_INTERFACE_ALARM_SECOND);
}

int Kx_Ipc_HasBNCInterface(long userId)
{
    return hasInterface(userId, KX_INTERFACE_BNC);
}

int Kx_Ipc_HasPTZInterface(long userId)
{
    return hasInterface(userId, KX_INTERFACE_PTZ);
}

int Kx_Ipc_HasNasInterface(long userId)
{
    return numberOf(userId, "nasmountstatu") != 0 ? 1 : 0;
}

int Kx_Ipc_HasSipPhoneInterface(long userId)
{
    return numberOf(userId, "sipenable") != 0 ? 1 : 0;
}

int Kx_Ipc_IsMini(long userId)
{
    return isHousing(userId, '8');
}

int Kx_Ipc_IsCube(long userId)
{
    return isHousing(userId, '9');
}

int KX_Ipc_HasHighFrameInterface(long userId)
{
    if (!CameraCall(userId))
        return -1;
    SystemInfo info{};
    Kx_Ipc_GetSystemInfo(userId, &info); // where it fails, the model stays empty
    const bool hisi = chipFamilyOf(info.productmodel) == ChipFamily::Hisi;
    return hisi && std::strchr(info.productmodel, 'R') != nullptr ? 1 : 0;
}

int Kx_Ipc_GetModelGeneral(long userId, ModelGeneralInfo* info)
{
    CameraCall call(userId, info);
    const auto reply =
        call.get<Reply<PlainStyle, 10240>>("action=get.model.general&format=inf", adminRequest);
    if (!reply)
        return -1;
    reply.number("system_io_support", info->system_io_support);
    reply.number("system_audio_support", info->system_audio_support);
    reply.number("system_fisheye_support", info->system_fisheye_support);
    reply.number("system_vca_support", info->system_vca_support);
    reply.number("system_audio_alarm_support", info->system_audio_alarm_support);
    reply.number("system_led_support", info->system_led_support);
    reply.number("system_led_group_support", info->system_led_group_support);
    reply.number("system_ptz_motion_support", info->system_ptz_motion_support);
    reply.number("system_ptz_motion_max_zoom_times", info->system_ptz_motion_max_zoom_times);
    if (!reply.number("system_vca_type", info->system_vca_type))
        info->system_vca_type = 2;
    return 0;
}
