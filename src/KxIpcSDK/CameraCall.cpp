#include "KxIpcSDK/CameraCall.h"

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
