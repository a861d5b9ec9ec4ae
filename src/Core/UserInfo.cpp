#include "Core/UserInfo.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <mutex>
#include <thread>

UserInfo g_UserInfo[maxSessions];
std::atomic<int> g_nUserId{firstUserId};

static_assert(sizeof(std::atomic<std::int64_t>) == 8 && std::atomic<std::int64_t>::is_always_lock_free);
static_assert(offsetof(UserInfo, label) == 8 && offsetof(UserInfo, host) == 264);
static_assert(offsetof(UserInfo, port) == 328 && offsetof(UserInfo, user) == 332);
static_assert(offsetof(UserInfo, password) == 396 && offsetof(UserInfo, adminLock) == 428);
static_assert(offsetof(UserInfo, liveWord) == 432 && offsetof(UserInfo, livePlaying) == 456);
static_assert(offsetof(UserInfo, playbackWord) == 464 && offsetof(UserInfo, player) == 488);

namespace
{

constexpr std::int64_t closing = std::numeric_limits<std::int64_t>::min(); // the id of a session being closed

std::mutex tableMutex;

// A slot may be read by one thread while another writes it. Each slot has a version, odd while it is being written;
// a reader who finds the same even version before and after has read one session and not parts of two. The bytes
// themselves are read and written as single atomics: with these orders a reader who sees any new byte also sees that
// the version has changed.
std::atomic<unsigned> versions[maxSessions];

std::atomic<unsigned>& versionOf(const UserInfo& slot)
{
    return versions[&slot - g_UserInfo];
}

/// Marks a slot as being written. The table's mutex is held.
class SlotWriter
{
public:
    explicit SlotWriter(const UserInfo& slot) : version_(versionOf(slot)) { version_.fetch_add(1); }
    ~SlotWriter() { version_.fetch_add(1); }
    SlotWriter(const SlotWriter&) = delete;
    SlotWriter& operator=(const SlotWriter&) = delete;

private:
    std::atomic<unsigned>& version_;
};

void storeBytes(void* target, const void* source, std::size_t size)
{
    auto* to = static_cast<unsigned char*>(target);
    const auto* from = static_cast<const unsigned char*>(source);
    for (std::size_t i = 0; i < size; ++i)
        std::atomic_ref(to[i]).store(from[i], std::memory_order_release);
}

template <typename T>
void load(T& target, T& source)
{
    auto* to = reinterpret_cast<unsigned char*>(&target);
    auto* from = reinterpret_cast<unsigned char*>(&source);
    for (std::size_t i = 0; i < sizeof target; ++i)
        to[i] = std::atomic_ref(from[i]).load(std::memory_order_acquire);
}

/// One character fewer than the field could hold is kept.
template <std::size_t Size>
void storeText(char (&field)[Size], const char* text)
{
    char value[Size] = {};
    std::memcpy(value, text, strnlen(text, Size - 2));
    storeBytes(field, value, Size);
}

/// The fields that frame handlers read, each as a whole.
void clearMedia(UserInfo& slot)
{
    slot.liveWord = 0;
    slot.liveDataCallback = nullptr;
    slot.liveDataUser = nullptr;
    slot.livePlaying = 0;
    slot.playbackWord = 0;
    slot.playbackDataCallback = nullptr;
    slot.playbackDataUser = nullptr;
    slot.player = nullptr;
}

void clear(UserInfo& slot)
{
    constexpr std::size_t afterId = offsetof(UserInfo, label);
    constexpr std::size_t size = offsetof(UserInfo, liveWord) - afterId;
    static constexpr unsigned char zeros[size] = {};
    const SlotWriter writer(slot);
    slot.nUserId.store(0);
    clearMedia(slot);
    storeBytes(reinterpret_cast<unsigned char*>(&slot) + afterId, zeros, size);
}

bool isCamera(const UserInfo& slot, const char* host, int port)
{
    return slot.nUserId.load() > 0 && std::strcmp(slot.host, host) == 0 && slot.port == port;
}

/// False when the slot was written meanwhile; what was copied is then worthless.
bool copyFields(UserInfo& copy, UserInfo& slot)
{
    const unsigned before = versionOf(slot).load(std::memory_order_acquire);
    copy.nUserId.store(slot.nUserId.load());
    load(copy.host, slot.host);
    load(copy.port, slot.port);
    load(copy.user, slot.user);
    load(copy.password, slot.password);
    load(copy.adminLock, slot.adminLock);
    return before % 2 == 0 && versionOf(slot).load() == before;
}

} // namespace

UserInfo* GetUserInfo(long userId)
{
    if (userId < 0) // a session being closed is not to be found
        return nullptr;
    const auto found = std::find_if(std::begin(g_UserInfo), std::end(g_UserInfo),
                                    [userId](const UserInfo& slot) { return slot.nUserId.load() == userId; });
    return found != std::end(g_UserInfo) ? found : nullptr;
}

UserInfo* GetAvaiUserInfo(const char* host, int port)
{
    for (UserInfo& slot : g_UserInfo) {
        if (isCamera(slot, host, port))
            return &slot;
        if (slot.nUserId.load() != 0)
            continue;
        clear(slot);
        slot.nUserId.store(g_nUserId.fetch_add(1));
        return &slot;
    }
    return nullptr;
}

bool takeSession(const char* label, const char* host, int port, const char* user, const char* password,
                 UserInfo& copy)
{
    const std::lock_guard lock(tableMutex);
    UserInfo* slot = GetAvaiUserInfo(host, port);
    if (slot == nullptr)
        return false;
    {
        const SlotWriter writer(*slot);
        storeBytes(&slot->port, &port, sizeof port);
        storeText(slot->label, label);
        storeText(slot->host, host);
        storeText(slot->password, password);
        storeText(slot->user, user);
    }
    return copyFields(copy, *slot);
}

bool copySession(long userId, UserInfo& copy)
{
    while (UserInfo* slot = GetUserInfo(userId)) {
        if (copyFields(copy, *slot) && copy.nUserId == userId)
            return true;
        std::this_thread::yield();
    }
    return false;
}

UserInfo* beginClosing(long userId)
{
    const std::lock_guard lock(tableMutex);
    UserInfo* slot = GetUserInfo(userId);
    if (slot != nullptr)
        slot->nUserId.store(closing);
    return slot;
}

void endClosing(UserInfo& slot)
{
    const std::lock_guard lock(tableMutex);
    if (slot.nUserId.load() == closing)
        clear(slot);
}

void clearAllSessions()
{
    const std::lock_guard lock(tableMutex);
    for (UserInfo& slot : g_UserInfo)
        clear(slot);
}
