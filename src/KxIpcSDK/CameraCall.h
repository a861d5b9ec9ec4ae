// What every exported camera call has in common: check, ask, read.
#pragma once

#include <initializer_list>
#include <optional>
#include <type_traits>

#include "Core/UserInfo.h"
#include "KxIpcSDK/ChipFamily.h"
#include "KxIpcSDK/Query.h"
#include "KxIpcSDK/Reply.h"

/// A request function of the transport: DoRequestForPassword, for one.
using RequestFunction = int (*)(UserInfo* session, const char* query, char* reply, int replySize);

/// DoRequest to the camera's settings handler, "/vb.htm".
int settingsRequest(UserInfo* session, const char* query, char* reply, int replySize);

/// DoRequest to its administrative handler, "/cgi-bin/admin/admin.cgi", for queries "action=…".
int adminRequest(UserInfo* session, const char* query, char* reply, int replySize);

/// A text that must not be empty, for the checks of a call: an empty one counts as missing.
inline const char* unlessEmpty(const char* text)
{
    return text != nullptr && text[0] != '\0' ? text : nullptr;
}

/// One call of the application for one camera. False when a check failed; the last error is then set as the check
/// demands, and every verb fails without a request.
class CameraCall
{
public:
    /// Checks, in this order: initialised (KX_ERROR_NOT_INITIALISED), session (KX_ERROR_UNKNOWN_USER).
    explicit CameraCall(long userId);
    /// Between the two checks: the caller's record is there (no code).
    CameraCall(long userId, const void* record);
    /// The same for a call that needs several things of the caller.
    CameraCall(long userId, std::initializer_list<const void*> arguments);

    explicit operator bool() const { return ready_; }

    /// The last check of calls that manage accounts: a locked session fails them (KX_ERROR_FORBIDDEN).
    void requireUnlocked();

    /// Sends a query and receives its reply: `call.get("&paratest=ftpip")`, or `call.get<Reply<OkStyle, 512>>(…)`.
    template <typename AnyReply = OkReply>
    AnyReply get(const char* query, RequestFunction send = settingsRequest)
    {
        AnyReply reply;
        reply.received_ = ready_ && send(&session_, query, reply.raw_, int{AnyReply::size}) == 0;
        return reply;
    }

    /// Receives the raw reply into a room of the caller's, zeroed first; false when the request failed.
    bool fetch(const char* query, char* room, int size, RequestFunction send = settingsRequest);

    /// Sends a query whose reply does not matter; 0 or -1.
    template <typename AnyReply = OkReply>
    int set(const Query& query, RequestFunction send = settingsRequest)
    {
        return get<AnyReply>(query, send).received() ? 0 : -1;
    }

    /// Runs a file transfer of the transport (FileTransfer.h); 0 or -1.
    template <typename... More>
    int transfer(int (*run)(UserInfo*, const char*, char*, int, More...), const char* localPath,
                 std::type_identity_t<More>... more)
    {
        char reply[1024]; // must be there
        return ready_ ? run(&session_, localPath, reply, int{sizeof reply}, more...) : -1;
    }

    /// Asks the camera for its model; nothing when it does not answer.
    std::optional<ChipFamily> chipFamily();

    /// The camera's address as the application gave it at login.
    const char* host() const { return session_.host; }

    /// User and password that the session logs in with.
    const char* user() const { return session_.user; }
    const char* password() const { return session_.password; }

    /// Ends the session, as a logout does.
    void endSession();

private:
    UserInfo session_; // a copy: a logout or a login meanwhile does not change where this call's requests go
    bool ready_ = false;
};
