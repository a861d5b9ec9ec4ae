// The two requests of a login.
#pragma once

#include "Core/UserInfo.h"

/// Announces the login, whatever comes of it, then sends the login request. Returns the second request's result, as
/// DoRequest does; the first may leave its code.
int DoLogin(UserInfo* session, char* reply, int replySize);
