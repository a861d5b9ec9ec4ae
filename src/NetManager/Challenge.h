// The requests of the account management, which tell more refusals apart and wait less long than DoRequest.
#pragma once

#include "Core/UserInfo.h"

/// Asks the camera for its challenge to a public key. The camera is not probed first.
///
/// @param session    only host, port, user and password are used
/// @param publicKey  sent as it stands, blanks encoded
/// @param reply      zeroed by the caller; gets the first replySize - 1 characters of the reply, up to its first zero
///                   byte, then zeros. Stays untouched when the camera was not reached or was silent.
/// @return 0 when something came back that holds "OK", be it in the status line, and no status text. Else -1: with
///         "400 Bad Request", and for a camera that is unreachable or too slow, KX_ERROR_NETWORK;
///         "401 Unauthorized" KX_ERROR_UNAUTHORISED; "403 Forbidden" KX_ERROR_FORBIDDEN; "404 Not Found"
///         KX_ERROR_NOT_FOUND; "502 Bad Gateway" KX_ERROR_BAD_GATEWAY; without "OK" KX_ERROR_BUSY; with no code for
///         a null argument, no socket, or a connection that the camera closed without a byte.
int DoRequestForChallenge(UserInfo* session, const char* publicKey, char* reply, int replySize);

/// Sends a query to "/vb.htm" that proves knowledge of the administrator's password. As DoRequestForChallenge, but for
/// a probe before it (KX_ERROR_NETWORK), and the reply need not hold "OK".
int DoRequestForPassword(UserInfo* session, const char* query, char* reply, int replySize);
