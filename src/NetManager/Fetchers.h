// Requests whose reply's body matters. They zero the caller's buffer before they do anything else, and return 0, or -1
// with the last error set; with no code for a null argument and where the system has no socket.
#pragma once

#include "Core/UserInfo.h"

/// Fetches the camera's configuration into a file in `directory`, under the name that the camera gives it: the body
/// from "[param]" on, then as many zero bytes. Prints a line with the number of bytes and the file's path.
///
/// Takes the first replySize - 1 bytes of the reply, through the caller's buffer, which keeps them. A reply
/// that is longer is cut; no file is made of one that is shorter than it told, has no "200 OK" in its header or names no
/// file. Of its name only what follows the last "/" counts, so that a camera chooses no directory, and what fits a path
/// of 511 characters.
///
/// @return as above. -1 with KX_ERROR_NETWORK: unreachable, timed out, nothing received, a reply that breaks off; with no
///         code: a reply that is no configuration, a directory or a file that can not be written, stopped by the
///         transfer's watcher
int DoExportConfig(UserInfo* session, const char* directory, char* reply, int replySize);

/// Fetches a path, its blanks encoded, and hands back the reply, header included; fails as DoRequest does.
int DoDownloadLprPicture(UserInfo* session, const char* path, char* reply, int replySize);

/// The same, but hands back the body alone: what follows the first CR LF CR LF in the first replySize - 1 bytes of the
/// reply, then zeros. KX_ERROR_NETWORK also for a reply without a body. The status texts are looked for in the body
/// up to its first zero byte: the status line does not count.
int DoCustomUrlRequest(UserInfo* session, const char* path, char* reply, int replySize);
