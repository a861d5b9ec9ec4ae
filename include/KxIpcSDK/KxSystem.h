/**
 * @file
 * The camera itself: clock, name, identity and versions, restart, factory settings, online update of the firmware.
 *
 * What the calls of KxNetwork.h have in common holds here too, unless a function says otherwise. Of the answer to a
 * restart or a reset the first 255 bytes are read, headers included.
 */
#ifndef KXIPCSDK_KXSYSTEM_H
#define KXIPCSDK_KXSYSTEM_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The clock, in the camera's own time zone. */
typedef struct DateTimeInfo
{
    uint8_t system_datetime_datetimetype;         /**< 0: time from an NTP server, 1 or 2: time set by hand */
    char date[16];                                /**< "year/month/day", filled by the get, not sent */
    char time[16];                                /**< "hour:minute:second", filled by the get, not sent */
    int year;                                     /**< e.g. 2024 */
    int month;                                    /**< 1 to 12 */
    int day;                                      /**< 1 to 31 */
    int hour;                                     /**< 0 to 23 */
    int minute;                                   /**< 0 to 59 */
    int second;                                   /**< 0 to 59 */
    uint8_t system_datetime_daylight;             /**< 1: daylight saving time */
    char system_datetime_ntp_server_address[135]; /**< NTP server; at most 63 characters are read */
    char system_datetime_timezone_tz[10];         /**< offset from UTC in hours, e.g. "+8" */
    char system_datetime_zonename_tz[32];         /**< name of the zone, e.g. "CHN" */
} DateTimeInfo;

/** What the camera is. */
typedef struct SystemInfo
{
    char title[256];                 /**< the name people gave it; written by Kx_Ipc_SetDeviceName() */
    char productmodel[32];           /**< model */
    char oemmodel[32];               /**< model under the name of who sells it */
    char softversion[32];            /**< version of the firmware */
    char deviceversion[32];          /**< version of the hardware */
    char sdkversion[32];             /**< version of the camera's own development kit */
    char cputype[32];                /**< processor */
    int system_audio_support;        /**< audio: code of the camera, 0 for none */
    int system_audio_support_mode;   /**< audio mode code; -1 when the camera does not tell */
    int system_lpr_support;          /**< licence plate recognition: 0 for none */
    int system_lpr_version;          /**< version of the licence plate recognition */
    int system_alarm_output_support; /**< alarm outputs: 0 for none */
} SystemInfo;

/**
 * Reads the clock. What the camera does not tell becomes a default: 1970/10/10 12:10:10, no daylight saving time, set by
 * hand, NTP server "pool.ntp.org", time zone "+8" named "CHN". So every field is written, and an answer without any
 * clock gives all defaults, a "403 Forbidden" too: look before you set the clock from what was read. Values are read as
 * INI text: blanks, quotes and comments around them go.
 *
 * @param      userId  the session
 * @param[out] info    every field
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetSystemDate(long userId, DateTimeInfo* info);

/**
 * Sets the clock. Daylight saving, time zone and source are always sent; date and time (the numbers, not the texts) with
 * the sources 1 and 2; the NTP server with the source 0, which also switches it on.
 *
 * @param     userId  the session
 * @param[in] info    as the source demands
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetSystemDate(long userId, const DateTimeInfo* info);

/**
 * Gives the camera a name (`title`), which Kx_Ipc_GetSystemInfo() reads.
 *
 * @param     userId  the session
 * @param[in] name    at most 1015 characters are sent; a null text gives -1 without an error
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetDeviceName(long userId, const char* name);

/**
 * Reads what the camera is. Two requests: identity and versions, then features. Of each answer the first 2047 bytes are
 * read.
 *
 * The second request sets the last error to #KX_ERROR_NONE, and to another value when it fails, which the result does
 * not tell.
 *
 * @param      userId  the session
 * @param[out] info    every field, from the key of its name; `system_audio_support_mode` becomes -1 when the camera
 *                     does not tell it
 * @return 0, also when the second request failed; or -1
 */
KX_API int Kx_Ipc_GetSystemInfo(long userId, SystemInfo* info);

/**
 * Restarts the camera, which is out of reach for a while then. The session stays; its calls fail until the camera is back.
 *
 * @param userId  the session
 * @return 0: the camera answered; -1: the request failed
 */
KX_API int Kx_Ipc_RebootSystem(long userId);

/**
 * Puts the camera's parameters back to their defaults (`paradefaultcmd`). What that includes is the model's affair: the
 * camera may get another address and other passwords.
 *
 * @param userId  the session
 * @return 0: the camera answered; -1: the request failed
 */
KX_API int Kx_Ipc_RestoreSystem(long userId);

/**
 * Puts everything back to how the camera left the factory (`kxdefaultcmd`), address and users included.
 *
 * @param userId  the session
 * @return 0: the camera answered; -1: the request failed
 */
KX_API int Kx_Ipc_ResetSystem(long userId);

/**
 * As Kx_Ipc_ResetSystem(), but the camera keeps its network address.
 *
 * @param userId  the session
 * @return 0: the camera confirmed it; -1: it did not (no error is set then), or the request failed. -1 does not prove
 *         that the camera did nothing
 */
KX_API int Kx_Ipc_ResetSystemOnlyKeepIp(long userId);

/**
 * As Kx_Ipc_ResetSystem(), but the camera keeps its users and their passwords.
 *
 * @param userId  the session
 * @return as Kx_Ipc_ResetSystemOnlyKeepIp()
 */
KX_API int Kx_Ipc_ResetSystemOnlyKeepUser(long userId);

/**
 * Has the camera ask the update service whether there is newer firmware.
 *
 * @param      userId  the session
 * @param[out] reply   the answer as it came, status line and headers included, cut to size - 1 bytes; what it says is
 *                     left to the application. Zeroed before the request.
 * @param      size    bytes in `reply`; below 1 gives -1 without an error
 * @return 0: the camera has asked, the answer holds "OK checkupdate"; -1: it does not (no error is set then), or the
 *         request failed
 */
KX_API int Kx_Ipc_GetUpdateInfo(long userId, char* reply, int size);

/**
 * Has the camera fetch and install newer firmware by itself. Kx_Ipc_GetUpdateOnlineProgress() tells how far it is; do not
 * switch the camera off meanwhile.
 *
 * @param     userId  the session
 * @param[in] text    what to install, in the camera's own words; at most 1008 characters are sent
 * @return 0: the camera has begun; -1: it has not (no error is set then), or the request failed
 */
KX_API int Kx_Ipc_UpdateOnline(long userId, const char* text);

/**
 * Tells how far an online update is.
 *
 * @param      userId    the session
 * @param[out] progress  the camera's error code (`errcode`) if it tells one, else the camera's number for the
 *                       progress (`updateprogress`); untouched when it tells neither
 * @return 0, also when the camera tells neither or the answer is empty; or -1
 */
KX_API int Kx_Ipc_GetUpdateOnlineProgress(long userId, int* progress);

#ifdef __cplusplus
}
#endif

#endif
