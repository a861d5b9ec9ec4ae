// Live view: where its stream is, its begin and its end.
#include <KxIpcSDK/KxMedia.h>

#include <cstdio>

#include "Core/LastError.h"
#include "KxIpcSDK/CameraCall.h"
#include "KxIpcSDK/media/MediaSession.h"
#include "KxIpcSDK/media/StreamCall.h"
#include "ipcctl/ipcctl.h"

namespace
{

constexpr char mainStream = 0;

using PortReply = Reply<OkStyle, 512, 128>;

PortReply askForPort(CameraCall& call)
{
    return call.get<PortReply>("&paratest=mainrtspport");
}

/// One character fewer than there is room for is kept. False when the camera tells no port.
bool writeAddress(const PortReply& reply, const CameraCall& call, char stream, char* out, int size)
{
    int port = -1;
    if (!reply || !reply.number("mainrtspport", port) || port < 0)
        return false;
    if (size > 1)
        std::snprintf(out, static_cast<std::size_t>(size - 1), "rtsp://%s:%d/%s", call.host(), port,
                      stream == mainStream ? "main" : "sub");
    return true;
}

/// @param decode  off, recordings and snapshots cost what copying costs
bool openStream(CIpCamera& camera, char stream, bool decode, const char* address, const CameraCall& call)
{
    const bool isMain = stream == mainStream;
    camera.SetDecodeEnable(isMain, decode);
    const auto open = isMain ? &CIpCamera::OpenMainStreamVideo : &CIpCamera::OpenSubStreamVideo;
    return (camera.*open)(address, call.user(), call.password()) == 0;
}

bool open(LiveOpening& opening, char stream, const PortReply& reply, const CameraCall& call)
{
    char address[128];
    if (!writeAddress(reply, call, stream, address, sizeof address))
        return false;
    CIpCamera* const camera = opening.prepare();
    return camera != nullptr && openStream(*camera, stream, opening.isWatched(), address, call);
}

int resultOf(KxError error)
{
    return error == KX_ERROR_NONE ? 0 : failWith(error);
}

KxLiveStatus statusOf(const StreamStatus& stream)
{
    return {.framesReceived = stream.framesReceived,
            .framesDecoded = stream.framesDecoded,
            .framesDelivered = stream.framesDelivered,
            .framesDropped = stream.framesDropped,
            .bytesReceived = stream.bytesReceived,
            .reconnects = stream.reconnects,
            .motionAlarms = stream.motionAlarms,
            .lastFrameTime = stream.lastFrameTime,
            .recordedBytes = stream.recordedBytes,
            .recordedFrames = stream.recordedFrames,
            .width = stream.width,
            .height = stream.height,
            .connected = stream.connected,
            .refused = stream.refused,
            .recording = stream.recording,
            .reserved = 0};
}

} // namespace

int Kx_IpcClient_GetRtspUrl(long userId, char stream, char* out, int size)
{
    CameraCall call(userId, out);
    return writeAddress(askForPort(call), call, stream, out, size) ? 0 : -1;
}

int Kx_IpcClient_OpenLive(long userId, char stream)
{
    CameraCall call(userId);
    if (!call)
        return -1;
    LiveOpening opening(userId);
    if (opening.error() != KX_ERROR_NONE)
        return failWith(opening.error());
    const PortReply reply = askForPort(call);
    if (!reply.received())
        return -1; // its code is set
    return resultOf(opening.settle(open(opening, stream, reply, call)));
}

int Kx_IpcClient_GetLiveStatus(long userId, KxLiveStatus* status)
{
    const StreamCall camera(userId, status, KX_ERROR_LIVE_STATE);
    if (!camera)
        return -1;
    StreamStatus stream;
    if (!camera->GetStreamStatus(true, &stream) && !camera->GetStreamStatus(false, &stream))
        return failWith(KX_ERROR_LIVE_STATE);
    *status = statusOf(stream);
    return 0;
}

int Kx_IpcClient_LivePlay(long)
{
    return 0;
}

int Kx_IpcClient_SetLiveDataCallBack(long userId, fLiveDataCallBack callback, void* user)
{
    if (!CameraCall(userId))
        return -1;
    return resultOf(setLiveDataCallback(userId, callback, user));
}

int Kx_IpcClient_StopLivePlay(long userId)
{
    if (!CameraCall(userId))
        return 0;
    if (!stopLiveView(userId))
        setLastError(KX_ERROR_LIVE_STATE);
    return 1;
}
