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

class CRecordPlayer;

/// Live frames and playback frames for the application: data type 0 video (packed 24-bit colour), 1 audio.
using fLiveDataCallBack = void (*)(long userId, int dataType, const unsigned char* data, int size, int width,
                                   int height, void* user);
using fPlayDataCallBack = fLiveDataCallBack;

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
    std::uintptr_t liveWord = 0;
    fLiveDataCallBack liveDataCallback = nullptr;
    void* liveDataUser = nullptr;
    std::uint8_t livePlaying = 0;
    std::uintptr_t playbackWord = 0;
    fPlayDataCallBack playbackDataCallback = nullptr;
    void* playbackDataUser = nullptr;
    CRecordPlayer* player = nullptr; // owned
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
