#include "KxIpcSDK/media/MediaSession.h"

#include <thread>

#include "Core/SdkState.h"
#include "Core/Timing.h"
#include "ipcctl/ipcctl.h"

void stopLiveView(UserInfo& session, long userId)
{
    session.liveWord = 0;
    session.liveDataCallback = nullptr;
    session.liveDataUser = nullptr;
    session.livePlaying = 0;

    CIpCamera* camera = g_IpCameraManager->GetIpCamera(static_cast<int>(userId));
    if (camera == nullptr)
        return;
    camera->SetDecodeEnable(true, false);
    camera->SetDecodeEnable(false, false);
    std::this_thread::sleep_for(g_timing.decodersOff);
    camera->CloseSubStreamVideo();
    camera->CloseMainStreamVideo();
    camera->StopDisplay();
    camera->SetAudioBufCallBack(nullptr, nullptr);
    camera->SetVideoBufCallBack(nullptr, nullptr);
}

void stopPlayback(UserInfo& session)
{
    session.player->SetVideoBufCallBack(nullptr, nullptr);
    session.player->SetAudioBufCallBack(nullptr, nullptr);
    session.player->Stop();
    delete session.player;
    session.player = nullptr;
}
