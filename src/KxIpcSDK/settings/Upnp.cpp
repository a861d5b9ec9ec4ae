// UPnP announcement and port mapping.
#include <KxIpcSDK/KxNetwork.h>

#include "KxIpcSDK/CameraCall.h"

int Kx_Ipc_IsUpnpEnable(long userId)
{
    CameraCall call(userId);
    signed char enabled = 0;
    const OkReply reply = call.get("&paratest=scanupnp");
    if (reply)
        reply.number("scanupnp", enabled);
    return enabled;
}

int Kx_Ipc_SetUpnpEnable(long userId, int enable)
{
    CameraCall call(userId);
    Query query;
    query.number("scanupnp", (enable & 0xFF) != 0 ? 1 : 0);
    return call.set(query);
}

int Kx_Ipc_GetUpnpPortMapping(long userId, UpnpInfo* info)
{
    CameraCall call(userId, info);
    const OkReply reply =
        call.get("&paratest=upnpname&paratest=upnpenable&paratest=upnptype&paratest=upnphttpport"
                 "&paratest=upnpstatushttp&paratest=upnprtspport&paratest=upnpstatusrtsp&paratest=httpport"
                 "&paratest=mainrtspport");
    if (!reply)
        return -1;
    reply.text("upnpname", info->upnpname);
    reply.number("upnpenable", info->upnpenable);
    reply.number("upnptype", info->upnptype);
    reply.number("upnphttpport", info->upnphttpport);
    reply.number("upnpstatushttp", info->upnpstatushttp);
    reply.number("upnprtspport", info->upnprtspport);
    reply.number("upnpstatusrtsp", info->upnpstatusrtsp);
    reply.number("httpport", info->httpport);
    reply.number("mainrtspport", info->mainrtspport);
    return 0;
}

int Kx_Ipc_SetUpnpPortMapping(long userId, const UpnpInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    Query query; // the whole mapping travels as one value
    query.add("&upnpinfo=%d:%d:%d:%d:%.*s", info->upnpenable, info->upnptype, info->upnphttpport,
              info->upnprtspport, static_cast<int>(sizeof info->upnpname), info->upnpname);
    return call.set(query);
}
