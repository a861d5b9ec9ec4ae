// FTP target.
#include <KxIpcSDK/KxNetwork.h>

#include "KxIpcSDK/CameraCall.h"

int Kx_Ipc_GetFTP(long userId, FtpInfo* info)
{
    CameraCall call(userId, info);
    const OkReply reply = call.get("&paratest=ftpip&paratest=ftpipport&paratest=ftpuser&paratest=ftppath"
                                   "&paratest=ftppassword");
    if (!reply)
        return -1;
    reply.text("ftpip", info->ftpip);
    reply.number("ftpipport", info->ftpipport);
    reply.text("ftpuser", info->ftpuser);
    reply.text("ftppath", info->ftppath);
    reply.text("ftppassword", info->ftppassword);
    return 0;
}

int Kx_Ipc_SetFTP(long userId, const FtpInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    Query query;
    query.text("ftpip", info->ftpip);
    query.number("ftpipport", info->ftpipport);
    query.text("ftpuser", info->ftpuser);
    query.text("ftppath", info->ftppath);
    query.text("ftppassword", info->ftppassword);
    return call.set(query);
}
