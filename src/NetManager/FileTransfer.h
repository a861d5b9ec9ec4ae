// Whole files between the local disk and the camera. All of them probe the camera first and return 0, or -1 as
// UploadFile (Upload.h) and DownloadFile (Download.h) fail; with no code for a null argument. The reply buffer must be
// there and is left alone.
#pragma once

#include "Core/UserInfo.h"

int DoFirmwareUpdate(UserInfo* session, const char* localPath, char* reply, int replySize);
int DoUploadFileToSdCard(UserInfo* session, const char* localPath, char* reply, int replySize);
int DoUploadLprlist(UserInfo* session, const char* localPath, char* reply, int replySize);

/// `mode` is the camera's chip family: 1 and 2 have the newer endpoint, all others the older one.
int DoUploadOemFile(UserInfo* session, const char* localPath, char* reply, int replySize, int mode);
int DoUploadCfgFile(UserInfo* session, const char* localPath, char* reply, int replySize, int mode);

int DoDownloadLogFile(UserInfo* session, const char* localPath, char* reply, int replySize);
int DoDownloadConfigFile(UserInfo* session, const char* localPath, char* reply, int replySize);

/// A file of the camera's by its path, or, with `kind` 0, one of its memory card's by name.
int DoDownloadCustomFile(UserInfo* session, const char* localPath, char* reply, int replySize, unsigned kind,
                         const char* name);

/// The plate recognitions between two times, which are texts in the camera's own form.
int DoDownloadLprAllLog(UserInfo* session, const char* localPath, char* reply, int replySize, int type,
                        const char* start, const char* end);
