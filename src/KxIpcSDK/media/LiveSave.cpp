// What a live view leaves on this computer: recordings and snapshots.
#include <KxIpcSDK/KxMedia.h>

#include <cstdio>

#include "KxIpcSDK/media/StreamCall.h"

namespace
{

constexpr int liveStream = 1; // whichever is open

/// An empty directory leaves the one that is set.
void chooseDirectory(const StreamCall& camera, const char* directory)
{
    if (directory[0] != '\0')
        camera->SetSaveDir(directory);
}

} // namespace

int Kx_IpcClient_SetSaveDir(long userId, const char* directory)
{
    const StreamCall camera(userId, directory, KX_ERROR_NONE);
    if (!camera)
        return -1;
    camera->SetSaveDir(directory);
    return 0;
}

int Kx_IpcClient_SaveLiveData(long userId, const char* directory)
{
    const StreamCall camera(userId, directory, KX_ERROR_NONE);
    if (!camera)
        return -1;
    chooseDirectory(camera, directory);
    camera->StartSaveAvi(liveStream, nullptr);
    return 0;
}

int Kx_IpcClient_StopSaveLiveData(long userId)
{
    const StreamCall camera(userId, KX_ERROR_NONE);
    if (!camera)
        return 0;
    camera->StopSaveAvi(liveStream);
    return 1;
}

int Kx_IpcClient_CaptureImage(long userId, char* out, int size, const char* directory)
{
    CameraCall call(userId, {out, directory});
    if (!call)
        return -1;
    if (!playsLive(userId))
        return failWith(KX_ERROR_LIVE_STATE);
    const StreamCall camera(userId, KX_ERROR_NONE);
    if (!camera)
        return -1;
    chooseDirectory(camera, directory);
    camera->SaveImage(liveStream, 1);
    if (size > 1) // one character fewer than there is room for is kept
        std::snprintf(out, static_cast<std::size_t>(size - 1), "%s", camera->GetLastImage());
    return 0;
}
