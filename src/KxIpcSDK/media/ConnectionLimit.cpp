// How many clients a camera serves streams to.
#include <KxIpcSDK/KxMedia.h>

#include "KxIpcSDK/CameraCall.h"

namespace
{

int askForNumber(long userId, const char* query, const char* key, int* number)
{
    CameraCall call(userId, number);
    const OkReply reply = call.get(query);
    if (!reply)
        return -1;
    reply.number(key, *number);
    return 0;
}

} // namespace

int Kx_IpcClient_GetMaxConnectionLimit(long userId, int* limit)
{
    return askForNumber(userId, "&paratest=maxconn", "maxconn", limit);
}

int Kx_IpcClient_SetMaxConnectionLimit(long userId, int limit)
{
    CameraCall call(userId);
    Query query;
    query.number("maxconn", limit);
    return call.set(query);
}

int Kx_IpcClient_GetCurrentConnectionNum(long userId, int* count)
{
    return askForNumber(userId, "&paratest=curmaxconn", "curmaxconn", count);
}
