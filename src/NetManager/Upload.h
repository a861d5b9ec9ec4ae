// A file on its way to the camera.
#pragma once

/// Sends a file as the one part of a multipart form, piece by piece as it is read.
///
/// @param url        "http://host:port/path?query"
/// @param localPath  a regular file; its name without the directories goes into the form. Anything else fails before
///                   there is a request.
/// @param user       for the authorisation, with the password
/// @param userId     told to the transfer's watcher
/// @return not 0 when the camera has answered "200 OK" and not "5 mismatch". Else 0: unreachable, too slow to connect
///         or to take the file, gone before it has (KX_ERROR_NETWORK); no answer, another one, also before it has the
///         file, a file that can not be read to the length it had at first, stopped by the watcher, a null text or no
///         such URL (no code)
int UploadFile(const char* url, const char* localPath, const char* user, const char* password,
               long userId = 0);
