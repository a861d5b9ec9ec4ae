// A file on its way from the camera.
#pragma once

#include <atomic>

#include "NetManager/ExchangeRules.h"

/// Fetches a file and writes it as it comes: the body, then as many zero bytes. Of the reply the first 9,999,999 bytes
/// are taken. Its header ends at the first two line feeds in a row; as long as the camera has not answered "200 OK"
/// in it, the local file is left alone.
///
/// @param url        "http://host:port/path?query"; path and query are sent as they stand
/// @param localPath  made or emptied
/// @param user       for the authorisation, with the password
/// @param userId     told to the transfer's watcher
/// @return not 0 when the file is whole. Else 0: unreachable, timed out, nothing received, a body that breaks off or is
///         shorter than its header says (KX_ERROR_NETWORK); another status, a header without that end, a local file
///         that can not be written, stopped by the watcher, a null text or no such URL (no code)
int DownloadFile(const char* url, const char* localPath, const char* user, const char* password,
                 long userId = 0);

/// The rules of downloads and of the export. Each function has a counter of its own.
ExchangeRules downloadRules(std::atomic<int>& failedReads, TransferWatch& watch);
