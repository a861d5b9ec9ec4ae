/**
 * @file
 * What a camera stores, and files between it and the application's disk: memory card, recording, the search of
 * recordings, uploads and downloads.
 *
 * What the calls of KxNetwork.h have in common holds here too, unless a function says otherwise.
 *
 * Uploads and downloads have this in common:
 * - They may take minutes; Kx_Sdk_SetTransferCallBack() watches and stops them. They reach the camera within 5 seconds and
 *   again connect within 5 seconds. Then a download waits 5 seconds for the answer and 60 seconds for each further
 *   piece, an upload 180 seconds for the camera to take a piece or to answer.
 * - An upload needs a regular file, which is sent under its name without the directories; a name that takes more than
 *   110 bytes or so is cut, and some cameras refuse the file then. 0 means that the camera answered "200 OK".
 * - A download makes or empties the local file once the camera has agreed to send. The file becomes twice as long as what
 *   the camera sent: the rest is zero bytes. At most 9,999,999 bytes of an answer are taken, its header included.
 * - They return 0 or -1. When a download fails, what has been written stays. Errors: #KX_ERROR_NETWORK for a camera
 *   that can not be reached, stops taking a file, or breaks off or does not begin to send one. None is set when the
 *   camera refuses, whatever the reason, when an upload is not answered, when a local file can not be read or written
 *   (a full disk is one reason), or when the callback stopped the transfer.
 * - What a request before the transfer fails with is told as KxNetwork.h says.
 */
#ifndef KXIPCSDK_KXSTORAGE_H
#define KXIPCSDK_KXSTORAGE_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Watches a file transfer, and may stop it. Called on the thread that runs the transfer, so transfers on several
 * threads call it at the same time:
 * - when the transfer begins to move the file (`done` is 0 in an upload's first call);
 * - after each piece, some kilobytes;
 * - about four times a second while the transfer waits for the camera: while a camera checks and writes a firmware it
 *   answers nothing for minutes.
 *
 * It may call any function of the SDK, be it for the same camera; the transfer waits for it. It must not throw.
 *
 * @param userId  the session whose transfer it is
 * @param done    bytes of the file so far: handed to the network, or received; of a configuration export, bytes of the
 *                answer
 * @param total   bytes of the file in all: of an upload always, of a download once the camera has told it, which it
 *                may do wrongly; 0: not known. Of a file that is longer than a download takes, `done` never gets there.
 * @param user    as given to Kx_Sdk_SetTransferCallBack()
 *
 * @return 0: go on; else the transfer stops: its call returns -1 and sets no error. What a download has written by
 *         then stays in the local file. An upload whose last byte has gone out (`done` is `total`) can not be called
 *         back: the camera may use the file all the same.
 */
typedef int (*KxTransferCallBack)(long userId, uint64_t done, uint64_t total, void* user);

/**
 * Sets who watches file transfers: one callback for the process, for all sessions. Kx_Sdk_Init() and Kx_Sdk_Destroy()
 * leave it as it is.
 *
 * The two parameters change together. A transfer keeps to what was set when it began: it goes on calling a callback that
 * has been replaced meanwhile, so keep what `user` points to until the calls that run transfers have returned.
 *
 * @param callback  called for transfers that begin from now on; null: nobody watches (as at start)
 * @param user      passed to the callback as it is
 *
 * May be called at any time, from any thread, also before Kx_Sdk_Init() and from the callback itself.
 */
KX_API void Kx_Sdk_SetTransferCallBack(KxTransferCallBack callback, void* user);

/** The memory card. Sizes are in the camera's own unit. */
typedef struct SdCardInfo
{
    uint8_t sdinsert;    /**< 1: a card is in the camera */
    int64_t sdtotalsize; /**< size of the card; at most 2147483647 is told, more wraps around */
    int64_t sdfreesize;  /**< what is free of it; the same */
} SdCardInfo;

/** Recording to the memory card and to a network drive. */
typedef struct RecordInfo
{
    uint32_t
        recordstoragetype; /**< where recordings go, a code; always 1 on cameras of the TI family; read only */
    uint32_t sdfilemaxsize;   /**< greatest size of a file on the memory card; read only */
    uint32_t recordframetype; /**< which frames go to the memory card, a code; read only */
    uint32_t
        nasfilemaxsize; /**< greatest size of a file on the network drive; not the TI family; read only */
    uint32_t
        nasrecordframetype; /**< which frames go to the network drive, a code; not the TI family; read only */
    uint32_t
        deletesdoldfile; /**< 1: overwrite the oldest files when the card is full; not read from the TI family */
    uint32_t msfsprerecordtime; /**< how much is recorded from before an event; not read from the TI family */
} RecordInfo;

/**
 * Reads the state of the memory card. Of the answer the first 511 bytes are read.
 *
 * @param      userId  the session
 * @param[out] info    every field
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetSdCardInfo(long userId, SdCardInfo* info);

/**
 * Has the camera use the memory card (again).
 *
 * @param userId  the session
 * @return 0: the camera answered; -1: the request failed
 */
KX_API int Kx_Ipc_MountSdCard(long userId);

/**
 * Has the camera let go of the memory card, so that it can be taken out.
 *
 * @param userId  the session
 * @return as Kx_Ipc_MountSdCard()
 */
KX_API int Kx_Ipc_UnMountSdCard(long userId);

/**
 * Has the camera format the memory card. All that is on it is lost.
 *
 * @param userId  the session
 * @return as Kx_Ipc_MountSdCard(): the camera may need longer than its answer
 */
KX_API int Kx_Ipc_FormatSdCard(long userId);

/**
 * Reads the recording settings. Of cameras of the TI family only `sdfilemaxsize` and `recordframetype` are read;
 * `recordstoragetype` becomes 1.
 *
 * @param      userId  the session
 * @param[out] info    every field but for those of another family
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetRecordConfig(long userId, RecordInfo* info);

/**
 * Writes `deletesdoldfile` and `msfsprerecordtime`, and nothing else of the record.
 *
 * @param     userId  the session
 * @param[in] info    these two fields
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetRecordConfig(long userId, const RecordInfo* info);

/**
 * Asks how many pages the list of the recordings between two times has. Kx_Ipc_GetPlaybackFilename() reads them.
 *
 * In this function and those that follow, times are texts in the camera's own form and go into the request as they stand;
 * what the camera tells is its own text, too.
 *
 * @param     userId  the session
 * @param[in] start   the earlier time; with `end` at most 960 characters are sent
 * @param[in] end     the later time
 * @return the number of pages as the camera tells it; -1: it tells none (no error is set then), a null text, or the
 *         request failed
 */
KX_API int Kx_Ipc_GetPlaybackPageCnt(long userId, const char* start, const char* end);

/**
 * Reads a page of the list of the recordings between two times. Of the answer the first 20479 bytes are read.
 *
 * @param      userId  the session
 * @param      page    index of the page, as the camera counts
 * @param[in]  start   as for Kx_Ipc_GetPlaybackPageCnt()
 * @param[in]  end     the same
 * @param[out] output  the list, cut to size - 1 characters and terminated; untouched when the call fails
 * @param      size    bytes in `output`; 0 gives -1 without a request or an error
 * @return 0, or -1; also -1, without an error, when the camera has no such page
 */
KX_API int Kx_Ipc_GetPlaybackFilename(long userId, int page, const char* start, const char* end, char* output,
                                      uint32_t size);

/**
 * Takes the camera's playback to a time and reads what the camera tells of the recording there.
 *
 * @param      userId  the session
 * @param[in]  time    the time
 * @param[out] output  as for Kx_Ipc_GetPlaybackFilename()
 * @param      size    the same
 * @return as Kx_Ipc_GetPlaybackFilename(); without an error when the camera has no recording there
 */
KX_API int Kx_Ipc_GetPlaybackFileInfo(long userId, const char* time, char* output, uint32_t size);

/**
 * As Kx_Ipc_GetPlaybackFileInfo(), for playback over HTTP.
 *
 * @param      userId  the session
 * @param[in]  time    the time
 * @param[out] output  as for Kx_Ipc_GetPlaybackFilename()
 * @param      size    the same
 * @return as Kx_Ipc_GetPlaybackFileInfo()
 */
KX_API int Kx_Ipc_GetPlaybackHttpFileInfo(long userId, const char* time, char* output, uint32_t size);

/**
 * Asks where the camera's playback is.
 *
 * @param      userId  the session
 * @param[out] output  the position, as for Kx_Ipc_GetPlaybackFilename()
 * @param      size    the same
 * @return as Kx_Ipc_GetPlaybackFilename(); without an error when the camera tells no position
 */
KX_API int Kx_Ipc_GetPlaybackTime(long userId, char* output, uint32_t size);

/**
 * Stops the camera's playback. Of the answers to this function and the three that follow 511 bytes are read.
 *
 * @param userId  the session
 * @return 0: the camera answered; -1: the request failed
 */
KX_API int Kx_Ipc_StopPlayback(long userId);

/**
 * Lets the camera's playback pause.
 *
 * @param userId  the session
 * @return as Kx_Ipc_StopPlayback()
 */
KX_API int Kx_Ipc_PausePlayback(long userId);

/**
 * Lets the camera's playback go on.
 *
 * @param userId  the session
 * @return as Kx_Ipc_StopPlayback()
 */
KX_API int Kx_Ipc_ResumePlayback(long userId);

/**
 * Changes the speed of the camera's playback.
 *
 * @param userId  the session
 * @param speed   a code of the camera's
 * @return as Kx_Ipc_StopPlayback()
 */
KX_API int Kx_Ipc_ChangePlaybackSpeed(long userId, int speed);

/**
 * Sends the camera a configuration: a file as Kx_Ipc_ExportCfg() makes it, without the zero bytes. Asks the camera for
 * its model first, as the families take it at different places.
 *
 * @param     userId  the session
 * @param[in] path    the local file; null or empty gives -1 without a request or an error
 * @return 0, or -1
 */
KX_API int Kx_Ipc_UploadConfigFile(long userId, const char* path);

/**
 * Sends the camera an OEM configuration: names and looks of who sells it. Asks for the model first.
 *
 * @param     userId  the session
 * @param[in] path    as for Kx_Ipc_UploadConfigFile()
 * @return 0, or -1
 */
KX_API int Kx_Ipc_UploadOemConfigFile(long userId, const char* path);

/**
 * Has the camera forget its OEM configuration.
 *
 * @param userId  the session
 * @return 0: the camera answered; -1: the request failed
 */
KX_API int Kx_Ipc_EraseOemConfig(long userId);

/**
 * Sends a file to the camera's memory card.
 *
 * @param     userId  the session
 * @param[in] path    the local file
 * @return 0, or -1
 */
KX_API int Kx_Ipc_UploadFileToSdCard(long userId, const char* path);

/**
 * Sends the camera a firmware. The camera checks it, which may take minutes, installs it and restarts; do not switch it
 * off meanwhile. What to do about the settings is told in a request of its own, which may have succeeded when the call
 * fails.
 *
 * @param     userId  the session
 * @param[in] path    the local file; null or empty gives -1 without a request or an error
 * @param     keep    not 0: the camera keeps its settings; 0: it goes back to the factory's
 * @return 0: the camera has taken the file, or -1
 */
KX_API int Kx_Ipc_UpdateFirmware(long userId, const char* path, uint8_t keep);

/**
 * Sends a camera of the TI family another kernel, as Kx_Ipc_UpdateFirmware() sends a firmware. The path tells what the
 * file is made for: what follows the first "KImage_" in it must have its first and its third character in common with
 * the version of the camera's present kernel. Asks for that and for the model first.
 *
 * @param     userId  the session
 * @param[in] path    the local file
 * @return 0: the camera has taken the file, or -1. #KX_ERROR_FIRMWARE_REFUSED: the path is not that of a kernel (no
 *         request is sent then), or of one for another camera; no error: a camera of another family, or one that tells
 *         no version
 */
KX_API int Kx_Ipc_UpdateKernal(long userId, const char* path);

/**
 * Fetches the camera's log.
 *
 * @param     userId  the session
 * @param[in] path    the local file
 * @return 0, or -1
 */
KX_API int Kx_Ipc_DownloadLog(long userId, const char* path);

/**
 * Fetches the camera's configuration into a file of the application's choice; see also Kx_Ipc_ExportCfg().
 *
 * @param     userId  the session
 * @param[in] path    the local file
 * @return 0, or -1
 */
KX_API int Kx_Ipc_DownloadCfg(long userId, const char* path);

/**
 * Fetches the camera's configuration, from its heading "[param]" on, into a file of the camera's choice; the line that
 * the SDK prints tells which. Of the answer the first 1,048,575 bytes are taken, and the file is made when all of them
 * are here. There is none when the answer is no configuration or names no file.
 *
 * @param     userId     the session
 * @param[in] directory  where the file goes; of the name that the camera gives it, only what follows the last "/" counts,
 *                       and directory and name together are cut to 511 characters
 * @return 0, or -1
 */
KX_API int Kx_Ipc_ExportCfg(long userId, const char* directory);

/**
 * Fetches a file of the camera's.
 *
 * @param     userId  the session
 * @param[in] path    the local file
 * @param     kind    0: a file on the memory card; else: any file of the camera's
 * @param[in] name    its name on the memory card, or its path; sent as it stands: a blank in it would end the request.
 *                    Null gives -1 without a request or an error
 * @return 0, or -1
 */
KX_API int Kx_Ipc_DownloadCustom(long userId, const char* path, uint32_t kind, const char* name);

#ifdef __cplusplus
}
#endif

#endif
