#include "KxIpcSDK/media/MediaSession.h"

#include <mutex>
#include <shared_mutex>
#include <thread>
#include <utility>

#include "Core/SdkState.h"
#include "Core/Timing.h"
#include "KxIpcSDK/media/FrameHandlers.h"
#include "ipcctl/ipcctl.h"

namespace
{

/// What belongs to a slot beside its record.
struct SlotMedia
{
    std::mutex mutex;    // guards the rest, and changes of the record's live and playback fields
    long userId = 0;     // the session that the rest belongs to
    int liveChanges = 0; // threads that are opening or stopping the session's live view
    std::shared_ptr<CRecordPlayer> player; // the record's, shared with the calls that are using it
};

SlotMedia& mediaOf(const UserInfo& slot)
{
    static SlotMedia* const slots =
        new SlotMedia[maxSessions]; // never freed: threads may outlive the exit handlers
    return slots[&slot - g_UserInfo];
}

/// A session with its slot's mutex held. False when there is none with this id, or not any more.
class LockedSession
{
public:
    explicit LockedSession(long userId)
        : slot_(userId >= firstUserId ? GetUserInfo(userId) : nullptr) // a free slot, id 0, takes nothing
    {
        if (slot_ == nullptr)
            return;
        lock_ = std::unique_lock(media().mutex);
        if (slot_->nUserId != userId)
            slot_ = nullptr;
        else if (media().userId != userId)
            begin(userId);
    }

    explicit operator bool() const { return slot_ != nullptr; }
    UserInfo* operator->() const { return slot_; }
    UserInfo* get() const { return slot_; }
    SlotMedia& media() const { return mediaOf(*slot_); }

    bool changesLive() const { return slot_->livePlaying != 0 || media().liveChanges != 0; }

private:
    /// What was under way in a session that was dropped is not this one's.
    void begin(long userId)
    {
        media().userId = userId;
        media().liveChanges = 0;
        dropped_ = std::exchange(media().player, nullptr);
    }

    UserInfo* slot_;
    std::shared_ptr<CRecordPlayer> dropped_; // freed when the mutex is not held any more
    std::unique_lock<std::mutex> lock_;
};

/// What `use` makes of the manager, which stays meanwhile; nothing, or null, without one.
template <typename Use>
auto withManager(Use use)
{
    using Result = decltype(use(std::declval<CIpCameraManager&>()));
    const std::shared_lock lock(g_IpCameraManagerMutex);
    CIpCameraManager* const manager = g_IpCameraManager;
    return manager != nullptr ? use(*manager) : Result();
}

void clearLiveFields(UserInfo& slot)
{
    slot.liveWord = 0;
    slot.liveDataCallback = nullptr;
    slot.liveDataUser = nullptr;
    slot.livePlaying = 0;
}

void stopStreams(CIpCamera& camera)
{
    camera.SetDecodeEnable(true, false);
    camera.SetDecodeEnable(false, false);
    std::this_thread::sleep_for(g_timing.decodersOff);
    camera.CloseSubStreamVideo();
    camera.CloseMainStreamVideo();
    camera.StopDisplay();
    camera.SetAudioBufCallBack(nullptr, nullptr);
    camera.SetVideoBufCallBack(nullptr, nullptr);
}

void stopStreamsOf(long userId)
{
    if (const std::shared_ptr<CIpCamera> camera = streamObjectOf(userId))
        stopStreams(*camera);
}

void deleteStreamObject(long userId)
{
    withManager([userId](CIpCameraManager& manager) { manager.DelIpCamera(static_cast<int>(userId)); });
}

/// Clears the live fields for good; false when nothing plays, and nobody is about to change that.
bool abandonLiveView(UserInfo& closing)
{
    SlotMedia& media = mediaOf(closing);
    const std::lock_guard lock(media.mutex);
    const bool changed = std::exchange(media.liveChanges, 0) != 0;
    const bool played = closing.livePlaying != 0;
    clearLiveFields(closing);
    return played || changed;
}

std::shared_ptr<CRecordPlayer> releasePlayer(UserInfo& slot, SlotMedia& media)
{
    slot.player = nullptr;
    return std::exchange(media.player, nullptr);
}

void clearCallbacks(CRecordPlayer& player)
{
    player.SetVideoBufCallBack(nullptr, nullptr);
    player.SetAudioBufCallBack(nullptr, nullptr);
}

/// Frees the player of a session that is being closed, without stopping it first.
void abandonPlayback(UserInfo& closing)
{
    std::shared_ptr<CRecordPlayer> player;
    {
        SlotMedia& media = mediaOf(closing);
        const std::lock_guard lock(media.mutex);
        player = releasePlayer(closing, media);
    }
    if (player.use_count() > 1) // a call is using it and will free it later, but the slot is free soon
        clearCallbacks(*player);
}

} // namespace

std::shared_ptr<CIpCamera> streamObjectOf(long userId)
{
    return withManager(
        [userId](CIpCameraManager& manager) { return manager.GetIpCamera(static_cast<int>(userId)); });
}

KxError setLiveDataCallback(long userId, fLiveDataCallBack callback, void* user)
{
    const LockedSession session{userId};
    if (!session)
        return userId == 0 ? KX_ERROR_NONE : KX_ERROR_UNKNOWN_USER;
    if (session.changesLive())
        return KX_ERROR_LIVE_STATE;
    session->liveDataUser = user;
    session->liveDataCallback = callback;
    return KX_ERROR_NONE;
}

bool playsLive(long userId)
{
    const UserInfo* const session = GetUserInfo(userId);
    return session != nullptr && session->livePlaying != 0;
}

bool stopLiveView(long userId)
{
    {
        const LockedSession session{userId};
        if (!session || session->livePlaying == 0)
            return false;
        clearLiveFields(*session.get());
        ++session.media().liveChanges;
    }
    stopStreamsOf(userId);
    if (const LockedSession session{userId})
        --session.media().liveChanges;
    return true;
}

LiveOpening::LiveOpening(long userId) : userId_(userId)
{
    const LockedSession session{userId};
    if (!session) {
        error_ = KX_ERROR_UNKNOWN_USER;
    } else if (session.changesLive()) {
        error_ = KX_ERROR_LIVE_STATE;
    } else {
        slot_ = session.get();
        session->livePlaying = 1;
        ++session.media().liveChanges;
    }
}

LiveOpening::~LiveOpening()
{
    if (slot_ == nullptr)
        return;
    if (!playing_ && camera_ != nullptr)
        stopStreams(*camera_);
    if (const LockedSession session{userId_}) {
        --session.media().liveChanges;
        if (!playing_)
            session->livePlaying = 0;
    } else {
        deleteStreamObject(userId_); // made when the session had gone already
    }
}

/// Another thread may have stopped it or ended the session.
KxError LiveOpening::judge() const
{
    const LockedSession session{userId_};
    if (!session)
        return KX_ERROR_UNKNOWN_USER;
    return session->livePlaying != 0 ? KX_ERROR_NONE : KX_ERROR_LIVE_STATE;
}

CIpCamera* LiveOpening::prepare()
{
    camera_ = withManager(
        [this](CIpCameraManager& manager) { return manager.AddIpCamera(static_cast<int>(userId_)); });
    if (camera_ == nullptr)
        return nullptr;
    camera_->SetVideoBufCallBack(HandleVideoBuffCB, slot_);
    camera_->SetAudioBufCallBack(HandlerRealAudioBufCB, slot_);
    return judge() == KX_ERROR_NONE ? camera_.get()
                                    : nullptr; // who ends the session from now on finds the handlers
}

KxError LiveOpening::settle(bool opened)
{
    const KxError error = judge();
    playing_ = opened && error == KX_ERROR_NONE;
    return error == KX_ERROR_NONE && !opened ? KX_ERROR_NETWORK : error;
}

KxError givePlayer(long userId, const std::shared_ptr<CRecordPlayer>& player, fPlayDataCallBack callback,
                   void* user)
{
    const LockedSession session{userId};
    if (!session)
        return KX_ERROR_UNKNOWN_USER;
    if (session.media().player != nullptr)
        return KX_ERROR_BUSY;
    session->playbackDataUser = user;
    session->playbackDataCallback = callback;
    session->player = player.get();
    session.media().player = player;
    return KX_ERROR_NONE;
}

std::shared_ptr<CRecordPlayer> playerOf(long userId)
{
    const LockedSession session{userId};
    return session ? session.media().player : nullptr;
}

bool endPlayer(long userId, const std::shared_ptr<CRecordPlayer>& player)
{
    clearCallbacks(*player);
    player->Stop();
    const LockedSession session{userId};
    if (!session || session.media().player != player)
        return false;
    releasePlayer(*session.get(), session.media());
    return true;
}

bool stopPlayback(long userId)
{
    const std::shared_ptr<CRecordPlayer> player = playerOf(userId);
    return player != nullptr && endPlayer(userId, player);
}

void endMedia(UserInfo& closing, long userId)
{
    if (abandonLiveView(closing))
        stopStreamsOf(userId);
    deleteStreamObject(userId);
    abandonPlayback(closing);
}
