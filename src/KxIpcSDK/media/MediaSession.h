// How a session's live view and playback begin and end.
//
// The record of a session, its slot in the table, is what the streaming library hands to the frame handlers as user
// pointer. So a slot may go to another session only when no handler is registered for it any more. A mutex a slot
// guards what changes here; it is held for a few assignments, never while the streaming library is called. Whatever
// takes longer runs without it and looks afterwards whether the session is still there.
#pragma once

#include <memory>

#include <KxIpcSDK/KxSdk.h>

#include "Core/UserInfo.h"

class CIpCamera;
class CRecordPlayer;

/// The stream object of a session; null when it has none.
std::shared_ptr<CIpCamera> streamObjectOf(long userId);

/// Sets callback and user of the live view; KX_ERROR_LIVE_STATE while it plays, is being opened or being stopped.
KxError setLiveDataCallback(long userId, fLiveDataCallBack callback, void* user);

/// Whether the session has a live view.
bool playsLive(long userId);

/// Clears the session's live fields, then switches its streams off: the decoders, and after a pause in which the last
/// frame passes, the sub stream before the main stream, the display and the callbacks. False when it does not play.
bool stopLiveView(long userId);

/// The opening of a live view. The session counts as playing from its begin, so that it can be stopped; the end
/// closes what has been opened, unless it succeeded.
class LiveOpening
{
public:
    explicit LiveOpening(long userId);
    ~LiveOpening();
    LiveOpening(const LiveOpening&) = delete;
    LiveOpening& operator=(const LiveOpening&) = delete;

    /// Whether it can begin: KX_ERROR_LIVE_STATE while the session plays, KX_ERROR_UNKNOWN_USER when it is gone.
    KxError error() const { return error_; }

    /// Whether the application wants frames. It can not change its mind while the live view lasts.
    bool isWatched() const { return slot_->liveDataCallback != nullptr; }
    /// The session's stream object with the frame handlers registered; null when there is nothing to open any more.
    CIpCamera* prepare();
    /// After the attempt to open the stream: whether the session plays now, or why not (KX_ERROR_NETWORK: not open).
    KxError settle(bool opened);

private:
    KxError judge() const;

    long userId_;
    UserInfo* slot_ = nullptr; // null: not begun
    KxError error_ = KX_ERROR_NONE;
    bool playing_ = false;
    std::shared_ptr<CIpCamera> camera_;
};

/// Gives the session a player that is about to open its file; KX_ERROR_BUSY when it has one. The player's handlers are
/// registered before its file is opened.
KxError givePlayer(long userId, const std::shared_ptr<CRecordPlayer>& player, fPlayDataCallBack callback,
                   void* user);
/// The session's player, null when it has none. Whoever holds it last frees it.
std::shared_ptr<CRecordPlayer> playerOf(long userId);
/// Stops this player, then takes it from the session: until no callback runs, the session counts as playing. False when
/// the session does not have it any more.
bool endPlayer(long userId, const std::shared_ptr<CRecordPlayer>& player);
/// Stops and frees the session's player; false when it has none.
bool stopPlayback(long userId);

/// Ends the live view and the playback of a session that is being closed, and lets go of its stream object.
void endMedia(UserInfo& closing, long userId);
