#include "KxIpcSDK/CameraCall.h"

#include <cstring>

#include "Core/LastError.h"
#include "Core/SdkState.h"
#include "KxIpcSDK/Lifecycle.h"
#include "NetManager/RequestChannel.h"

// There is no record to check: any pointer that is not null will do.
CameraCall::CameraCall(long userId) : CameraCall(userId, this) {}

CameraCall::CameraCall(long userId, const void* record)
{
    if (!g_bInit)
        setLastError(KX_ERROR_NOT_INITIALISED);
    else if (record != nullptr && !copySession(userId, session_))
        setLastError(KX_ERROR_UNKNOWN_USER);
    else
        ready_ = record != nullptr;
}

bool CameraCall::fetch(const char* query, char* room, int size)
{
    if (!ready_ || size < 1)
        return false;
    const auto roomSize = static_cast<std::size_t>(size);
    std::memset(room, 0, roomSize);
    return request(query, room, roomSize, Path::Settings);
}

int CameraCall::set(const Query& query, Path path)
{
    char reply[OkReply::size] = {};
    return ready_ && request(query.c_str(), reply, sizeof reply, path) ? 0 : -1;
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

bool CameraCall::request(const char* query, char* reply, std::size_t replySize, Path path)
{
    return DoRequest(&session_, query, reply, static_cast<int>(replySize), static_cast<signed char>(path)) ==
           0;
}
