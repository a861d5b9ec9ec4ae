#include "KxIpcSDK/CameraCall.h"

#include <algorithm>
#include <cstring>

#include "Core/LastError.h"
#include "Core/SdkState.h"
#include "KxIpcSDK/Lifecycle.h"
#include "NetManager/RequestChannel.h"

int settingsRequest(UserInfo* session, const char* query, char* reply, int replySize)
{
    return DoRequest(session, query, reply, replySize, 0);
}

int adminRequest(UserInfo* session, const char* query, char* reply, int replySize)
{
    return DoRequest(session, query, reply, replySize, 1);
}

// There is no record to check: any pointer that is not null will do.
CameraCall::CameraCall(long userId) : CameraCall(userId, this) {}

CameraCall::CameraCall(long userId, const void* record) : CameraCall(userId, {record}) {}

CameraCall::CameraCall(long userId, std::initializer_list<const void*> arguments)
{
    const bool given = std::find(arguments.begin(), arguments.end(), nullptr) == arguments.end();
    if (!g_bInit)
        setLastError(KX_ERROR_NOT_INITIALISED);
    else if (given && !copySession(userId, session_))
        setLastError(KX_ERROR_UNKNOWN_USER);
    else
        ready_ = given;
}

void CameraCall::requireUnlocked()
{
    if (!ready_ || session_.adminLock == 0)
        return;
    setLastError(KX_ERROR_FORBIDDEN);
    ready_ = false;
}

bool CameraCall::fetch(const char* query, char* room, int size, RequestFunction send)
{
    if (!ready_ || size < 1)
        return false;
    std::memset(room, 0, static_cast<std::size_t>(size));
    return send(&session_, query, room, size) == 0;
}

std::optional<ChipFamily> CameraCall::chipFamily()
{
    const OkReply reply = get("&paratest=productmodel");
    if (!reply)
        return std::nullopt;
    return chipFamilyOf(reply);
}

void CameraCall::endSession()
{
    if (ready_)
        closeSession(session_.nUserId);
}
