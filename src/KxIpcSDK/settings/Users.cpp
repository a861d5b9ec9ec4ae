// User accounts. The camera has ten slots for users: `user.0` to `user.9`, each with an authority and a privilege.
#include <KxIpcSDK/KxUsers.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Core/PrintText.h"
#include "KxIpcSDK/CameraCall.h"
#include "KxIpcSDK/Key.h"
#include "Log/KxLog.h"
#include "NetManager/Challenge.h"
#include "NetManager/Md5.h"

namespace
{

constexpr int slotCount = 10;
constexpr std::size_t longestName = 32; // of a listed user; the field has room for more
constexpr std::size_t keyBound = 2047;  // of the key that a challenge gives

using ChallengeReply = Reply<PlainStyle, 256>;
using SecurityQuestionsReply = Reply<CrLfStyle, 4096>;

Key slotKey(const char* key, int slot)
{
    return Key("%s.%d", key, slot);
}

/// Asks for a key of every slot: "&paratest=user.0" to "&paratest=user.9".
OkReply askSlots(CameraCall& call, const char* key)
{
    Query query;
    for (int slot = 0; slot < slotCount; ++slot)
        query.ask(slotKey(key, slot));
    return call.get(query);
}

/// Reads a number of every slot; false when the request failed.
bool readSlots(CameraCall& call, const char* key, uint8_t UserListEntry::*field, UserListEntry* entries)
{
    const OkReply reply = askSlots(call, key);
    if (!reply.received())
        return false;
    for (int slot = 0; slot < slotCount; ++slot)
        reply.number(slotKey(key, slot), entries[slot].*field);
    return true;
}

/// The digit of the slot that a line "user.N=name" names; -1 when there is none.
int slotOf(const char* name, const OkReply& reply)
{
    char value[63]; // a longer name is compared by its beginning
    std::snprintf(value, sizeof value, "=%s\n", name);
    const char* found = std::strstr(reply.raw(), value);
    if (found == nullptr || found == reply.raw() || std::isdigit(static_cast<unsigned char>(found[-1])) == 0)
        return -1;
    return found[-1] - '0';
}

/// The number behind the first "=" of the reply; 0 when there is none.
int firstNumber(const OkReply& reply)
{
    char word[64] = {};
    std::sscanf(reply.raw(), "%*[^=]=%63s", word);
    return static_cast<int>(std::strtol(word, nullptr, 10));
}

int userType(CameraCall& call, const char* name)
{
    // The tabs belong to the query: cameras have always been asked so.
    const OkReply users = call.get("&paratest=user.0&paratest=user.1&paratest=user.2&paratest=user.3"
                                   "&paratest=user.4&paratest=user.5\t\t&paratest=user.6&paratest=user.7"
                                   "&paratest=user.8&paratest=user.9");
    if (!users)
        return -1;
    KxOutputDebugInfo(0, "====Get UserType1:%s===");
    const int slot = slotOf(name, users);
    if (slot < 0)
        return -1;
    Query query;
    query.ask(slotKey("authority", slot));
    const OkReply authority = call.get(query);
    if (!authority.received())
        return -1;
    KxOutputDebugInfo(0, "====Get UserType2:%s===");
    return firstNumber(authority);
}

/// Sends a query that the camera confirms with a word, and prints a trace of its reply; 0 or -1.
int order(CameraCall& call, const char* query, const char* confirmation, const char* trace,
          RequestFunction send = settingsRequest)
{
    const auto reply = call.get<CommandReply>(query, send);
    if (reply.received())
        KxOutputDebugInfo(0, trace);
    return reply.contains(confirmation) ? 0 : -1;
}

} // namespace

int Kx_Ipc_GetUserType(long userId, const char* name)
{
    CameraCall call(userId, name);
    return userType(call, name);
}

int Kx_Ipc_AddUser(long userId, const UserAccountInfo* account)
{
    CameraCall call(userId, account);
    call.requireUnlocked();
    if (!call)
        return -1;
    Query query;
    query.add("&adduser=%.*s:%.*s:%d:1", static_cast<int>(sizeof account->name), account->name,
              static_cast<int>(sizeof account->password), account->password, account->authority);
    return order(call, query, "OK adduser", "==AddUser Response:%s==");
}

int Kx_Ipc_DeleteUser(long userId, const char* name)
{
    CameraCall call(userId, name);
    call.requireUnlocked();
    if (!call)
        return -1;
    Query query;
    query.add("&deluser=%s", name);
    return order(call, query, "OK deluser", "==DelUser Response:%s==");
}

int Kx_Ipc_ModifyPassword(long userId, const char* name, const char* password)
{
    CameraCall call(userId, {name, password});
    if (!call)
        return -1;
    const long type = userType(call, name);
    Query query;
    query.add("&deluser=%s&adduser=%s:%s:%ld:0", name, name, password, type);
    return order(call, query, "OK adduser", "==Add User:%s password:%s Response:%s==");
}

int Kx_Ipc_PasswordChallenge(long userId, const char* publicKey, char* keyOut, int* keyIdOut)
{
    CameraCall call(userId, {publicKey, keyOut, keyIdOut});
    const auto reply = call.get<ChallengeReply>(publicKey, DoRequestForChallenge);
    if (!reply.received())
        return -1;
    KxOutputDebugInfo(0, "==password challenge Response:%s==");
    if (!reply.contains("OK challenge"))
        return -1;
    char key[ChallengeReply::size];
    if (reply.text("key", key))
        printTextAsFormat(keyOut, keyBound, key);
    reply.number("keyid", *keyIdOut);
    return 0;
}

int Kx_Ipc_NewSetUser(long userId, const char* name, const char* password, int a, int b, int c)
{
    CameraCall call(userId, {name, password});
    call.requireUnlocked();
    if (!call)
        return -1;
    unsigned char proof[33] = {};
    md5_encry_data(call.password(), proof);
    if (proof[0] == '\0') // the system forbids it
        return -1;
    BoundedQuery<2047> query;
    query.add("&checkadminPwd=%s&newsetuser=%s:%s:%d:%d", reinterpret_cast<const char*>(proof), name,
              password, a, b);
    if (c != -1)
        query.add(":%d", c);
    return order(call, query, "OK newsetuser", "==newAddUser Response:%s==", DoRequestForPassword);
}

int Kx_Ipc_GetAllUser(long userId, UserListEntry* entries)
{
    CameraCall call(userId, entries);
    call.requireUnlocked();
    const OkReply users = askSlots(call, "user");
    if (!users)
        return -1;
    for (int slot = 0; slot < slotCount; ++slot)
        users.text<longestName>(slotKey("user", slot), entries[slot].name);
    return readSlots(call, "authority", &UserListEntry::authority, entries) &&
                   readSlots(call, "privilege", &UserListEntry::privilege, entries)
               ? 0
               : -1;
}

int Kx_Ipc_GetSQA(long userId, SqaInfo* info)
{
    CameraCall call(userId, info);
    call.requireUnlocked();
    const auto reply = call.get<SecurityQuestionsReply>("action=get.sqa&format=inf", adminRequest);
    if (!reply.received())
        return -1;
    reply.number("sqa_enable", info->sqa_enable);
    reply.number("sqa_type_0", info->sqa_type_0);
    reply.text("sqa_question_0", info->sqa_question_0);
    reply.number("sqa_type_1", info->sqa_type_1);
    reply.text("sqa_question_1", info->sqa_question_1);
    reply.number("sqa_type_2", info->sqa_type_2);
    reply.text("sqa_question_2", info->sqa_question_2);
    return 0;
}
