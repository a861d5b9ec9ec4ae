// Online update of the firmware: the camera fetches it by itself.
#include <KxIpcSDK/KxSystem.h>

#include <cstring>

#include "KxIpcSDK/CameraCall.h"

int Kx_Ipc_GetUpdateInfo(long userId, char* reply, int size)
{
    CameraCall call(userId, reply);
    const bool received = call.fetch("checkupdate=http://update.kx-cameras.example/version", reply, size);
    return received && std::strstr(reply, "OK checkupdate") != nullptr ? 0 : -1;
}

int Kx_Ipc_UpdateOnline(long userId, const char* text)
{
    CameraCall call(userId, text);
    if (!call)
        return -1;
    Query query;
    query.add("&updateonline=%s", text);
    return call.get(query).contains("OK updateonline") ? 0 : -1;
}

int Kx_Ipc_GetUpdateOnlineProgress(long userId, int* progress)
{
    CameraCall call(userId, progress);
    const OkReply reply = call.get("&updateprogress");
    if (!reply.received())
        return -1;
    if (!reply.number("errcode", *progress)) // an error outranks how far the update has come
        reply.number("updateprogress", *progress);
    return 0;
}
