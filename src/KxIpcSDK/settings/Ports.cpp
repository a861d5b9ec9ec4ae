// Service ports.
#include <KxIpcSDK/KxNetwork.h>

#include "KxIpcSDK/CameraCall.h"

int Kx_Ipc_GetPortInfo(long userId, PortInfo* info)
{
    CameraCall call(userId, info);
    const auto reply =
        call.get<Reply<OkStyle, 512, 128>>("&paratest=httpport&paratest=onvifport&paratest=mainrtspport");
    if (!reply)
        return -1;
    reply.number("httpport", info->httpport);
    reply.number("onvifport", info->onvifport);
    reply.number("mainrtspport", info->mainrtspport);
    return 0;
}

int Kx_Ipc_SetPortInfo(long userId, const PortInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    Query query;
    query.number("httpport", info->httpport);
    query.number("onvifport", info->onvifport);
    query.number("mainrtspport", info->mainrtspport);
    query.number("subrtspport", info->subrtspport);
    return call.set(query);
}
