// Playback of recorded files.
#include <KxIpcSDK/KxMedia.h>

#include <cstdlib>
#include <new>

#include "Core/LastError.h"
#include "KxIpcSDK/CameraCall.h"
#include "KxIpcSDK/media/FrameHandlers.h"
#include "KxIpcSDK/media/MediaSession.h"
#include "ipcctl/ipcctl.h"

namespace
{

/// A call on the session's player. False when a check failed: initialised, session, player.
class PlayerCall
{
public:
    explicit PlayerCall(long userId)
    {
        if (!CameraCall(userId))
            return;
        player_ = playerOf(userId);
        if (player_ == nullptr)
            setLastError(KX_ERROR_NO_PLAYBACK);
    }

    explicit operator bool() const { return player_ != nullptr; }
    CRecordPlayer* operator->() const { return player_.get(); }

private:
    std::shared_ptr<CRecordPlayer> player_; // freed after the call, should the playback be stopped meanwhile
};

/// The library's level for a speed; -1: there is no such step.
int speedLevel(int direction, int step)
{
    constexpr int steps = 5;
    constexpr int faster[steps] = {0, 101, 102, 103, 104};
    constexpr int slower[steps] = {0, 4, 3, 2, 1};
    if (direction != 1 && direction != 2)
        return 0;
    if (step < 0 || step >= steps)
        return -1;
    return direction == 1 ? faster[step] : slower[step];
}

std::shared_ptr<CRecordPlayer> newPlayer(UserInfo* session)
try {
    const std::shared_ptr<CRecordPlayer> player(new CRecordPlayer);
    player->SetVideoBufCallBack(HandleVideoBuffCB_Play, session);
    player->SetAudioBufCallBack(HandlerRealAudioBufCB_Play, session);
    return player;
} catch (const std::bad_alloc&) {
    return nullptr;
}

} // namespace

int Kx_IpcClient_OpenPlayBack(long userId, const char* path, fPlayDataCallBack callback, void* user)
{
    if (!CameraCall(userId, path))
        return -1;
    const std::shared_ptr<CRecordPlayer> player = newPlayer(GetUserInfo(userId));
    if (player == nullptr)
        return -1;
    const KxError error = givePlayer(userId, player, callback, user);
    if (error != KX_ERROR_NONE)
        return failWith(error);
    if (player->OpenFile(path) == 0 && playerOf(userId) == player)
        return 0;
    endPlayer(userId, player);
    return failWith(KX_ERROR_NO_PLAYBACK);
}

int Kx_IpcClient_SetPlayDataCallBack(long userId, fPlayDataCallBack, void*)
{
    return CameraCall(userId) ? 0 : -1;
}

int Kx_IpcClient_PlayBack(long)
{
    return 0;
}

int Kx_IpcClient_PlayBackPause(long userId)
{
    const PlayerCall player(userId);
    if (!player)
        return 0;
    player->Pause();
    return 1;
}

int Kx_IpcClient_PlayBackResume(long userId)
{
    const PlayerCall player(userId);
    if (!player)
        return 0;
    player->Resume();
    return 1;
}

int Kx_IpcClient_PlayBackControl(long userId, int direction, int step)
{
    const PlayerCall player(userId);
    if (!player)
        return -1;
    const int level = speedLevel(direction, step);
    if (level >= 0)
        player->SetSpeedLevel(level);
    return 0;
}

int Kx_IpcClient_GetCurrentTime(long userId)
{
    const PlayerCall player(userId);
    return player ? player->GetCurrTime() : -1;
}

int Kx_IpcClient_GetFileDuration(long userId)
{
    const PlayerCall player(userId);
    return player ? player->GetDuration() : -1;
}

int Kx_IpcClient_SeekPlayTime(long userId, int time)
{
    const PlayerCall player(userId);
    if (!player)
        return -1;
    player->SeekTime(time);
    return 0;
}

int Kx_IpcClient_IsPlayFinished(long userId)
{
    const PlayerCall player(userId);
    return player ? player->IsPlayFinish() : -1;
}

int Kx_IpcClient_StopPlayBack(long userId)
{
    const PlayerCall player(userId);
    if (!player)
        return 0;
    if (stopPlayback(userId))
        return 1;
    setLastError(KX_ERROR_NO_PLAYBACK); // another thread was faster
    return 0;
}

int Kx_IpcClient_DestroyFindFiles(FoundFileInfo* result)
{
    FoundFileInfo* file = result != nullptr ? result->next : nullptr;
    while (file != nullptr) {
        FoundFileInfo* const next = file->next;
        std::free(file);
        file = next;
    }
    return 0;
}
