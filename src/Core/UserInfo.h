// The table of logged-in cameras.
//
// A slot with id 0 is free. Lookups take no lock: they compare ids, which are atomics. Taking, filling and
// clearing a slot is serialised by one mutex inside the table, never held during network I/O. A call works on
// its own copy of a session (copySession), so that a logout or another login beside it can neither tear its
// texts nor redirect its later requests to another camera.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include <KxIpcSDK/KxMedia.h>

class CRecordPlayer;

/// One logged-in camera.
struct UserInfo
{
    std::atomic<std::int64_t> nUserId{0}; // below 0 while the session is being closed
    char label[256] = {};
    char host[64] = {};
    int port = 0;
    char user[64] = {};
    char password[32] = {};
    std::uint8_t adminLock = 0; // non-zero: account management is refused

    // Read by frame handlers on the streaming library's threads. A callback and its user are written callback last and
    // cleared callback first, so whoever reads the user first has a pair that belongs together.
    std::atomic<std::uintptr_t> liveWord{0};
    std::atomic<fLiveDataCallBack> liveDataCallback{nullptr};
    std::atomic<void*> liveDataUser{nullptr};
    std::atomic<std::uint8_t> livePlaying{0};
    std::atomic<std::uintptr_t> playbackWord{0};
    std::atomic<fPlayDataCallBack> playbackDataCallback{nullptr};
    std::atomic<void*> playbackDataUser{nullptr};
    std::atomic<CRecordPlayer*> player{nullptr}; // the session's; kept alive by media/MediaSession
};

inline constexpr std::size_t maxSessions = 500;
inline constexpr int firstUserId = 1000;

extern UserInfo g_UserInfo[maxSessions];
extern std::atomic<int> g_nUserId; // the next id to hand out; never reset, so ids are unique for the process

/// The session with this id, or null. Id 0 finds the first free slot, an id below 0 nothing.
UserInfo* GetUserInfo(long userId);

/// The slot for a login to this camera: that of its session, else the first free one, emptied and with a new id;
/// null when the table is full. The search ends at the first free slot. The caller sees to it that no other thread
/// takes, fills or clears a slot meanwhile, as takeSession does.
UserInfo* GetAvaiUserInfo(const char* host, int port);

/// Takes the slot for a login and fills it with these texts, cut to what it keeps; then as copySession. False when
/// the table is full.
bool takeSession(const char* label, const char* host, int port, const char* user, const char* password,
                 UserInfo& copy);

/// Copies id, address, credentials and admin lock of the session with this id; false when there is none.
bool copySession(long userId, UserInfo& copy);

/// Begins to close a session (an id from firstUserId on): from now on nobody finds it, takes its slot or closes it as
/// well. Null when there is no session with this id.
UserInfo* beginClosing(long userId);

/// Frees the slot of a session that is being closed.
void endClosing(UserInfo& slot);

/// Frees every slot.
void clearAllSessions();
