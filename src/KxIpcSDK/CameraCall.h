// What every exported camera call has in common: check, ask, read.
#pragma once

#include <optional>

#include "Core/UserInfo.h"
#include "KxIpcSDK/ChipFamily.h"
#include "KxIpcSDK/Query.h"
#include "KxIpcSDK/Reply.h"

/// The handler at the camera that a query goes to.
enum class Path : signed char
{
    Settings = 0, // "/vb.htm"
    Admin = 1     // "/cgi-bin/admin/admin.cgi", for queries "action=…"
};

/// One call of the application for one camera. False when a check failed; the last error is then set as the check
/// demands, and every verb fails without a request.
class CameraCall
{
public:
    /// Checks, in this order: initialised (KX_ERROR_NOT_INITIALISED), session (KX_ERROR_UNKNOWN_USER).
    explicit CameraCall(long userId);
    /// Between the two checks: the caller's record is there (no code).
    CameraCall(long userId, const void* record);

    explicit operator bool() const { return ready_; }

    /// Sends a query and receives its reply: `call.get("&paratest=ftpip")`, or `call.get<Reply<OkStyle, 512>>(…)`.
    template <typename AnyReply = OkReply>
    AnyReply get(const char* query, Path path = Path::Settings)
    {
        AnyReply reply;
        reply.received_ = ready_ && request(query, reply.raw_, AnyReply::size, path);
        return reply;
    }

    /// Sends a query whose reply does not matter; 0 or -1.
    template <typename AnyReply = OkReply>
    int set(const Query& query, Path path = Path::Settings)
    {
        return get<AnyReply>(query.c_str(), path).received() ? 0 : -1;
    }

    /// Asks the camera for its model; nothing when it does not answer.
    std::optional<ChipFamily> chipFamily();

    /// The camera's address as the application gave it at login.
    const char* host() const { return session_.host; }

    /// Ends the session, as a logout does.
    void endSession();

private:
    bool request(const char* query, char* reply, std::size_t replySize, Path path);

    UserInfo session_; // a copy: a logout or a login meanwhile does not change where this call's requests go
    bool ready_ = false;
};
