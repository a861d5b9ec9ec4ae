#include "Core/UserInfo.h"

#include <algorithm>
#include <cstring>
#include <mutex>

UserInfo g_UserInfo[maxSessions];
std::atomic<int> g_nUserId{1000};

namespace
{

std::mutex tableMutex;

// A session's fields may be read by one thread while another fills or clears the slot. Both sides go through
// these two: single atomic bytes, released after and acquired before the slot's id, so that a reader who then
// finds the id unchanged has read one session's bytes.
void storeBytes(void* target, const void* source, std::size_t size)
{
    auto* to = static_cast<unsigned char*>(target);
    const auto* from = static_cast<const unsigned char*>(source);
    for (std::size_t i = 0; i < size; ++i)
        std::atomic_ref(to[i]).store(from[i], std::memory_order_release);
}

void loadBytes(void* target, void* source, std::size_t size)
{
    auto* to = static_cast<unsigned char*>(target);
    auto* from = static_cast<unsigned char*>(source);
    for (std::size_t i = 0; i < size; ++i)
        to[i] = std::atomic_ref(from[i]).load(std::memory_order_acquire);
}

template <typename T>
void store(T& target, const T& value)
{
    storeBytes(&target, &value, sizeof value);
}

template <typename T>
void load(T& target, T& source)
{
    loadBytes(&target, &source, sizeof source);
}

// One character fewer than the field could hold is kept.
template <std::size_t Size>
void storeText(char (&field)[Size], const char* text)
{
    char value[Size] = {};
    std::memcpy(value, text, strnlen(text, Size - 2));
    storeBytes(field, value, Size);
}

template <std::size_t Size>
void loadText(char (&field)[Size], char (&source)[Size])
{
    loadBytes(field, source, Size);
    field[Size - 1] = '\0';
}

// Id first: whoever copies the slot meanwhile finds afterwards that the session is gone.
void clear(UserInfo& slot)
{
    static constexpr unsigned char zeros[sizeof(UserInfo)] = {};
    slot.nUserId.store(0);
    auto* bytes = reinterpret_cast<unsigned char*>(&slot);
    storeBytes(bytes + sizeof slot.nUserId, zeros, sizeof slot - sizeof slot.nUserId);
}

UserInfo* findOrTakeSlot(const char* host, int port)
{
    for (UserInfo& slot : g_UserInfo) {
        if (std::strcmp(slot.host, host) == 0 && slot.port == port)
            return &slot;
        if (slot.nUserId.load() != 0)
            continue;
        clear(slot);
        slot.nUserId.store(g_nUserId.fetch_add(1));
        return &slot;
    }
    return nullptr;
}

void copyFields(UserInfo& copy, UserInfo& slot)
{
    loadText(copy.host, slot.host);
    load(copy.port, slot.port);
    loadText(copy.user, slot.user);
    loadText(copy.password, slot.password);
    load(copy.adminLock, slot.adminLock);
}

} // namespace

UserInfo* GetUserInfo(long userId)
{
    const auto found = std::find_if(std::begin(g_UserInfo), std::end(g_UserInfo),
                                    [userId](const UserInfo& slot) { return slot.nUserId.load() == userId; });
    return found != std::end(g_UserInfo) ? found : nullptr;
}

UserInfo* GetAvaiUserInfo(const char* host, int port)
{
    const std::lock_guard lock(tableMutex);
    return findOrTakeSlot(host, port);
}

UserInfo* takeSession(const char* label, const char* host, int port, const char* user, const char* password,
                      UserInfo& copy)
{
    const std::lock_guard lock(tableMutex);
    UserInfo* slot = findOrTakeSlot(host, port);
    if (slot == nullptr)
        return nullptr;
    store(slot->port, port);
    storeText(slot->label, label);
    storeText(slot->host, host);
    storeText(slot->password, password);
    storeText(slot->user, user);
    copyFields(copy, *slot);
    copy.nUserId.store(slot->nUserId.load());
    return slot;
}

bool copySession(long userId, UserInfo& copy)
{
    UserInfo* slot = nullptr;
    do {
        slot = GetUserInfo(userId);
        if (slot == nullptr)
            return false;
        copyFields(copy, *slot);
    } while (slot->nUserId.load() != userId); // taken or cleared meanwhile: what was copied is worthless
    copy.nUserId.store(userId);
    return true;
}

void clearSession(UserInfo& slot, std::int64_t userId)
{
    const std::lock_guard lock(tableMutex);
    if (slot.nUserId.load() == userId)
        clear(slot);
}

void clearAllSessions()
{
    const std::lock_guard lock(tableMutex);
    for (UserInfo& slot : g_UserInfo)
        clear(slot);
}
