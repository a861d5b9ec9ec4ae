// The road to a camera's settings interface.
#pragma once

#include "Core/UserInfo.h"
#include "NetManager/ExchangeRules.h"

/// Sends a query to the camera and receives the raw reply.
///
/// @param session    only host, port, user and password are used
/// @param query      without the path: "&paratest=ftpip"; an empty text sends the login request
/// @param reply      zeroed by the caller; gets the first replySize - 1 bytes of the reply as it came, then zeros.
///                   Stays untouched when the camera was not reached or was silent.
/// @param admin      0: to "/vb.htm"; else to "/cgi-bin/admin/admin.cgi"
/// @return 0 when something came back that holds none of "400 Bad Request" (KX_ERROR_NETWORK), "401 Unauthorized"
///         (KX_ERROR_UNAUTHORISED), "404 Not Found" (KX_ERROR_NOT_FOUND), "502 Bad Gateway"
///         (KX_ERROR_BAD_GATEWAY); a reply with "403 Forbidden" passes. Else -1: unreachable, timed out, nothing
///         received (KX_ERROR_NETWORK); a null argument, or no socket after a probe that had one (no code).
int DoRequest(UserInfo* session, const char* query, char* reply, int replySize, signed char admin);

/// The rules by which DoRequest and its like go. Each function has a counter of its own.
ExchangeRules channelRules(std::atomic<int>& failedReads);

/// 1 when the host reacts to a connection attempt within the probe's time, be it by a refusal; 0 when it stays silent
/// or can not be resolved. Sets no code.
int IsHostConnect(const char* host, int port);
