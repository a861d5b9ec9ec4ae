/**
 * @file
 * The life of the SDK: initialisation and shutdown, login and logout, the last error.
 */
#ifndef KXIPCSDK_KXSDK_H
#define KXIPCSDK_KXSDK_H

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Why a call failed: the values of Kx_Sdk_GetLastError(). */
enum KxError
{
    KX_ERROR_NONE = 0, /**< nothing has failed yet, or Kx_Ipc_GetSystemInfo() has cleared the code */
    KX_ERROR_NOT_INITIALISED = 1, /**< Kx_Sdk_Init() has not been called, or Kx_Sdk_Destroy() since */
    KX_ERROR_BUSY = 2,         /**< a search is running or a playback is open already; or a reply that makes
                                         no sense */
    KX_ERROR_UNAUTHORISED = 3, /**< the camera refused user name or password ("401 Unauthorized"); at
                                         login also "400 Bad Request" */
    KX_ERROR_UNKNOWN_USER = 4, /**< no session has this user id (for the id 0, which is nobody's, calls give
                                         #KX_ERROR_NETWORK as long as there is room for another session) */
    KX_ERROR_NETWORK = 5,      /**< the camera could not be reached, did not answer in time, closed the
                                         connection without an answer, or answered "400 Bad Request" */
    KX_ERROR_FORBIDDEN = 7,    /**< the camera answered "403 Forbidden", or the session is locked against
                                         account management */
    KX_ERROR_LIVE_STATE =
        9, /**< live view runs and must not, or does not run and must, or was never opened */
    KX_ERROR_NO_PLAYBACK = 10, /**< no playback is open in the session; or a recording can not be opened */
    KX_ERROR_FIRMWARE_REFUSED = 11, /**< the firmware file is not for this camera */
    KX_ERROR_NOT_FOUND = 12,        /**< the camera answered "404 Not Found"; at login also an empty answer */
    KX_ERROR_BAD_GATEWAY = 13       /**< the camera answered "502 Bad Gateway" */
};

/**
 * Starts the SDK. Call it once, before everything else but the log functions.
 *
 * Ignores the broken-pipe signal (SIGPIPE) for the process, so that a camera that closes a connection early
 * can not end the application. Prints a line on standard output. Calling it again drops all sessions without
 * logging them out, but stops their live views and playbacks; do not while a search runs.
 *
 * @return 0; or -1 when the streaming library can not be started (no error is set; the SDK stays unusable)
 */
KX_API int Kx_Sdk_Init(void);

/**
 * Ends the SDK: stops live view and playback of every session, ends all sessions and background work. Waits for a
 * search to end, 6 seconds as a rule. Let calls on other threads return first: a live view that another thread is just
 * stopping may otherwise call back once more.
 *
 * Harmless before Kx_Sdk_Init() and when called twice. User ids are never given out again, also not after
 * another Kx_Sdk_Init(). Prints two lines on standard output.
 *
 * @return 0
 */
KX_API int Kx_Sdk_Destroy(void);

/**
 * Tells why the latest failing call failed.
 *
 * There is one code for the whole process. A successful call does not clear it (but for Kx_Ipc_GetSystemInfo() and
 * KX_Ipc_HasHighFrameInterface(), which do so for all threads), and a failing call on another thread overwrites it: read
 * it right after a failed call.
 *
 * @return a value of #KxError
 */
KX_API long Kx_Sdk_GetLastError(void);

/**
 * Logs in to a camera and proves the credentials with a request.
 *
 * A second login to the same host and port reuses the session: it keeps its user id and takes the new label
 * and credentials; when that login fails, the session is gone. (When another session has ended since the first
 * login, the second one may begin a session of its own instead. The same holds for a host that is cut.) At most 500
 * sessions exist at a time. A login sends two requests.
 *
 * @param label     any text, for the application's own use; at most 254 characters are kept
 * @param host      IPv4 address or host name; at most 62 characters are kept
 * @param port      the camera's HTTP port
 * @param user      user name; at most 62 characters are kept
 * @param password  password; at most 30 characters are kept
 *
 * @return the user id, 1000 or more; or -1. Errors: #KX_ERROR_NOT_INITIALISED; #KX_ERROR_UNAUTHORISED,
 *         #KX_ERROR_FORBIDDEN, #KX_ERROR_NOT_FOUND, #KX_ERROR_BAD_GATEWAY as the camera answers;
 *         #KX_ERROR_NETWORK, also when the process has no descriptor left. None is set for a null text and when
 *         there are 500 sessions. A login that succeeds may leave an error too: its first request, which only
 *         announces it, may fail.
 */
KX_API long Kx_Ipc_Login(const char* label, const char* host, int port, const char* user,
                         const char* password);

/**
 * Ends a session: stops its live view and playback and forgets its credentials. The camera is not told.
 *
 * A call for this session that is just running on another thread goes on with the credentials it began with.
 *
 * @param userId  from Kx_Ipc_Login()
 *
 * @return 0; or -1. Errors: #KX_ERROR_NOT_INITIALISED, #KX_ERROR_UNKNOWN_USER.
 */
KX_API int Kx_Ipc_Logout(long userId);

#ifdef __cplusplus
}
#endif

#endif
