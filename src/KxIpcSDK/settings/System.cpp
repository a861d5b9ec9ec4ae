// What the camera is: its name, model, versions and features.
#include <KxIpcSDK/KxSystem.h>

#include "Core/LastError.h"
#include "KxIpcSDK/CameraCall.h"

namespace
{

using IdentityReply = Reply<OkStyle, 2048>;
using FeatureReply = Reply<CrLfStyle, 2048>;

void readIdentity(const IdentityReply& reply, SystemInfo& info)
{
    reply.text("title", info.title);
    reply.text("productmodel", info.productmodel);
    reply.text("oemmodel", info.oemmodel);
    reply.text("softversion", info.softversion);
    reply.text("deviceversion", info.deviceversion);
    reply.text("sdkversion", info.sdkversion);
    reply.text("cputype", info.cputype);
}

/// The request channel lets "403 Forbidden" pass; should it report it one day, the request gets a second chance.
FeatureReply getFeatures(CameraCall& call)
{
    constexpr char query[] = "action=get.system.information&format=inf";
    setLastError(KX_ERROR_NONE); // so that the code afterwards is this request's
    const auto reply = call.get<FeatureReply>(query, adminRequest);
    if (reply.received() || g_nLastError != KX_ERROR_FORBIDDEN)
        return reply;
    return call.get<FeatureReply>(query, adminRequest);
}

void readFeatures(const FeatureReply& reply, SystemInfo& info)
{
    reply.number("system_audio_support", info.system_audio_support);
    if (!reply.number("system_audio_support_mode", info.system_audio_support_mode))
        info.system_audio_support_mode = -1;
    reply.number("system_lpr_support", info.system_lpr_support);
    reply.number("system_lpr_version", info.system_lpr_version);
    reply.number("system_alarm_output_support", info.system_alarm_output_support);
}

} // namespace

int Kx_Ipc_GetSystemInfo(long userId, SystemInfo* info)
{
    CameraCall call(userId, info);
    const auto reply = call.get<IdentityReply>("&paratest=title&paratest=productmodel&paratest=oemmodel"
                                               "&paratest=softversion&paratest=deviceversion"
                                               "&paratest=sdkversion&paratest=cputype");
    if (!reply)
        return -1;
    readIdentity(reply, *info);
    readFeatures(getFeatures(call), *info); // not all cameras tell their features; their identity is enough
    return 0;
}

int Kx_Ipc_SetDeviceName(long userId, const char* name)
{
    CameraCall call(userId);
    if (!call || name == nullptr)
        return -1;
    Query query;
    query.add("&title=%s", name);
    return call.set(query);
}
