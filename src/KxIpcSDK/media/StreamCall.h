// A call of the application that works on the session's stream object.
#pragma once

#include <memory>

#include "Core/LastError.h"
#include "KxIpcSDK/CameraCall.h"
#include "KxIpcSDK/media/MediaSession.h"
#include "ipcctl/ipcctl.h"

/// False when a check failed: initialised, argument, session, and at last the stream object, whose lack sets the code that
/// the call has for it.
class StreamCall
{
public:
    StreamCall(long userId, const void* argument, KxError withoutObject)
        : StreamCall(static_cast<bool>(CameraCall(userId, argument)), userId, withoutObject)
    {
    }
    /// A call without an argument that could be missing.
    StreamCall(long userId, KxError withoutObject)
        : StreamCall(static_cast<bool>(CameraCall(userId)), userId, withoutObject)
    {
    }

    explicit operator bool() const { return camera_ != nullptr; }
    CIpCamera& operator*() const { return *camera_; }
    CIpCamera* operator->() const { return camera_.get(); }

private:
    StreamCall(bool checked, long userId, KxError withoutObject)
    {
        if (!checked)
            return;
        camera_ = streamObjectOf(userId);
        if (camera_ == nullptr && withoutObject != KX_ERROR_NONE)
            setLastError(withoutObject);
    }

    std::shared_ptr<CIpCamera> camera_; // freed after the call, should the session end meanwhile
};
