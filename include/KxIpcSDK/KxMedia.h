/**
 * @file
 * Live view, local recording, snapshots, motion detection on this computer, and playback of recorded files.
 *
 * A live view: give the session a callback (Kx_IpcClient_SetLiveDataCallBack()), open the stream
 * (Kx_IpcClient_OpenLive()), and end it with Kx_IpcClient_StopLivePlay() or a logout. Without a callback nothing is
 * shown, and recording, snapshots and motion detection work all the same; a recording alone decodes nothing and costs
 * next to nothing.
 *
 * The first Kx_IpcClient_OpenLive() of a session makes its **stream object**, which lasts until the session ends, also
 * when the stream could not be opened. It keeps the save directory and the motion settings from one live view to the
 * next; before it is there, calls that need it fail.
 *
 * What all calls of this header have in common, unless a function says otherwise:
 * - They return 0, or -1.
 * - Errors: #KX_ERROR_NOT_INITIALISED, #KX_ERROR_UNKNOWN_USER. A null record, text or result pointer fails without a code.
 * - Calls that ask the camera something behave as those of KxNetwork.h.
 * - The last error is set where stated and nowhere else.
 *
 * Callbacks run on threads of the SDK, while the application calls from its own. They may call any function of the SDK
 * but Kx_Sdk_Init() and Kx_Sdk_Destroy(), and must not throw. What ends a live view or a playback waits for a callback
 * that is running, unless it is called from within that callback. So in a callback do not wait for a thread that makes
 * such a call, and end there only what the callback belongs to: two callbacks that end each other's live view, playback
 * or session wait for each other. Once such a call has returned, no callback comes; from within a callback: none after
 * it.
 */
#ifndef KXIPCSDK_KXMEDIA_H
#define KXIPCSDK_KXMEDIA_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/** What a frame handed to a callback is. */
enum KxDataType
{
    KX_DATA_VIDEO =
        0, /**< a picture: rows from the top down, 3 bytes a pixel (blue, green, red), without padding */
    KX_DATA_AUDIO = 1 /**< sound: signed 16-bit samples, those of the channels in turn */
};

/**
 * Receives live frames.
 *
 * @param userId    the session
 * @param dataType  a value of #KxDataType
 * @param data      the frame; it lives during the call only
 * @param size      of a picture: bytes (width * height * 3); of sound: **samples**, 2 bytes each
 * @param width     of a picture, in pixels; 0 for sound
 * @param height    likewise
 * @param user      as given to Kx_IpcClient_SetLiveDataCallBack()
 */
typedef void (*fLiveDataCallBack)(long userId, int dataType, const uint8_t* data, int size, int width,
                                  int height, void* user);

/**
 * Receives the frames of a playback, as #fLiveDataCallBack, with two differences. At the end of the recording it is called
 * once with a null picture of no size. And `user` is what Kx_IpcClient_SetLiveDataCallBack() was given: the session's two
 * callbacks share it. It changes with that call, and is null as soon as a live view of the session is stopped, also while
 * the playback goes on. Sound comes at normal speed only.
 */
typedef fLiveDataCallBack fPlayDataCallBack;

/** What moves in the picture, and what is saved then. Bytes that are not listed are padding. */
typedef struct MotionSettingsInfo
{
    int32_t
        level; /**< sensitivity, 1 to 100; higher is more sensitive; what lies beyond counts as the nearest */
    int32_t spaceTime;   /**< least time between two alarms, in seconds */
    uint8_t map[32][24]; /**< the picture in 32 rows of 24 cells; a cell counts when it is 1 or '1' */
    uint8_t saveType;    /**< what an alarm saves: bit 0 pictures, bit 1 a recording */
    int32_t saveValue1;  /**< pictures an alarm, at most 5 (more count as 5); below 1: none */
    int32_t saveValue2;  /**< seconds of a recording, at most 1800 (more count as 1800); below 1: none */
} MotionSettingsInfo;

/** A time of the week, local time. An end that does not lie behind the start is one of the next day. */
typedef struct RecordScheduleInfo
{
    int32_t day; /**< 0 Sunday to 6 Saturday; of the low byte, taken unsigned, what is above 6 counts as 6 */
    int32_t startHour;   /**< 0 to 24, passed on unchecked like the other times */
    int32_t startMinute; /**< 0 to 59 */
    int32_t endHour;     /**< 0 to 24 */
    int32_t endMinute;   /**< 0 to 59; this minute does not belong to it any more */
} RecordScheduleInfo;

/** A file found by a playback search, and the head of a list of them. */
typedef struct FoundFileInfo
{
    uint8_t data[192];          /**< what is known of the file; of a head not used */
    struct FoundFileInfo* next; /**< the next file, allocated with malloc(); null: none */
} FoundFileInfo;

/** Counters of a live stream since it was opened. */
typedef struct KxLiveStatus
{
    int64_t
        framesReceived; /**< pictures that came whole, or fields that came apart; known of one when the next begins */
    int64_t framesDecoded;   /**< 0 while nobody wants them decoded, unless key frames are very far apart */
    int64_t framesDelivered; /**< handed to the session's callback; 0 without one */
    int64_t
        framesDropped; /**< pictures that are not shown: damaged, what they refer to was lost, or the callback takes too
                                  long; counted while pictures are decoded */
    int64_t bytesReceived;  /**< of pictures and sound */
    int64_t reconnects;     /**< how often the stream broke off and was opened again */
    int64_t motionAlarms;   /**< see Kx_IpcClient_SetMotionSettings() */
    int64_t lastFrameTime;  /**< of the latest picture, milliseconds since 1970; 0: none yet */
    int64_t recordedBytes;  /**< of the recording that is written, or of the last one */
    int64_t recordedFrames; /**< likewise */
    int32_t width;          /**< of the latest picture; 0 before the first */
    int32_t height;         /**< likewise */
    int32_t connected; /**< 1: the camera sends; 0: the stream broke off and is opened again after a pause */
    int32_t refused;   /**< 1: the camera refused user and password since; it is not asked again */
    int32_t recording; /**< 1: a recording is written */
    int32_t reserved;  /**< 0 */
} KxLiveStatus;

/**
 * Asks the camera where its streams are: "rtsp://HOST:PORT/main" or "rtsp://HOST:PORT/sub", with the host as it was
 * given at login and without user or password. The port is the camera's key "mainrtspport" for both, looked for in the
 * first 511 bytes of the answer.
 *
 * @param      userId  the session
 * @param      stream  0: main stream, else the sub stream
 * @param[out] out     the address, at most `size` - 2 characters of it, terminated; untouched on failure
 * @param      size    bytes in `out`; less than 2: nothing is written
 * @return 0, or -1 (also, without an error, when the camera tells no port or a negative one)
 */
KX_API int Kx_IpcClient_GetRtspUrl(long userId, char stream, char* out, int size);

/**
 * Opens a stream of the camera and lets the frames come: an addition to the interface. Asks the camera for the address and
 * opens it there, with user and password of the session. Frames may come before the call returns, which it does when the
 * camera has agreed to send, or 10 seconds after the answer at the latest. A callback that was set stays when the stream
 * can not be opened.
 *
 * A stream that breaks off later is opened again after growing pauses until the live view is stopped;
 * Kx_IpcClient_GetLiveStatus() tells.
 *
 * @param userId  the session
 * @param stream  0: main stream, else the sub stream
 * @return 0, or -1. Further errors: #KX_ERROR_LIVE_STATE while the session has a live view or one is just being opened or
 *         stopped, and when it was stopped meanwhile; #KX_ERROR_NETWORK when the stream can not be opened; those of the
 *         question for the address.
 */
KX_API int Kx_IpcClient_OpenLive(long userId, char stream);

/**
 * Tells how the live view's stream does: an addition to the interface.
 *
 * @param      userId  the session
 * @param[out] status  all fields; unchanged on failure
 * @return 0, or -1. Further error: #KX_ERROR_LIVE_STATE when the session has no live view, or its stream is not open yet.
 */
KX_API int Kx_IpcClient_GetLiveStatus(long userId, KxLiveStatus* status);

/**
 * Sets where the frames of the session's live view go. Stopping the live view clears it.
 *
 * @param userId    the session
 * @param callback  null: nowhere
 * @param user      handed to the callback, and to that of a playback
 * @return 0, or -1. Further error: #KX_ERROR_LIVE_STATE while the session has a live view, or one is being opened or
 *         stopped; callback and user stay.
 */
KX_API int Kx_IpcClient_SetLiveDataCallBack(long userId, fLiveDataCallBack callback, void* user);

/**
 * Reserved. Does nothing and checks nothing; Kx_IpcClient_OpenLive() opens a live view.
 *
 * @param userId  not used
 * @return 0
 */
KX_API int Kx_IpcClient_LivePlay(long userId);

/**
 * Stops the live view: clears callback and user (which a playback of the session shares), switches decoding off, closes
 * the streams and completes a recording. Takes some 20 ms, and a second at most beside the callback that it waits for.
 *
 * @param userId  the session
 * @return 1; also, with #KX_ERROR_LIVE_STATE, when there is no live view. 0 for the other errors.
 */
KX_API int Kx_IpcClient_StopLivePlay(long userId);

/**
 * Sets the directory of recordings and snapshots, the working directory at first.
 *
 * @param userId     the session
 * @param directory  one that exists; it is copied. Empty: the working directory
 * @return 0, or -1 (without an error when there is no stream object)
 */
KX_API int Kx_IpcClient_SetSaveDir(long userId, const char* directory);

/**
 * Begins to record the live stream, from its next key frame on, to "YYYYMMDD_hhmmss.avi" (local time). The stream is
 * copied as it comes, not encoded again.
 *
 * @param userId     the session
 * @param directory  empty: the one that Kx_IpcClient_SetSaveDir() has set; else it is set to this
 * @return 0, or -1 (without an error when there is no stream object). 0 does not say that the recording has begun: it has
 *         not when no stream is open, or the file can not be written. Kx_IpcClient_GetLiveStatus() tells.
 */
KX_API int Kx_IpcClient_SaveLiveData(long userId, const char* directory);

/**
 * Ends the recording and completes its file.
 *
 * @param userId  the session
 * @return 1, also when nothing was being recorded; 0 on failure (without an error when there is no stream object)
 */
KX_API int Kx_IpcClient_StopSaveLiveData(long userId);

/**
 * Saves the latest picture of the live view as "YYYYMMDD_hhmmss_mmm.jpg" (local time). Waits 5 seconds at most for the
 * first one.
 *
 * @param      userId     the session
 * @param[out] out        path of the snapshot that was saved last, at most `size` - 2 characters of it, terminated. Empty when
 *                        none was ever saved, and that of an earlier snapshot when this one can not be saved.
 * @param      size       bytes in `out`; less than 2: nothing is written
 * @param      directory  as for Kx_IpcClient_SaveLiveData()
 * @return 0, or -1. Further error: #KX_ERROR_LIVE_STATE when there is no live view.
 */
KX_API int Kx_IpcClient_CaptureImage(long userId, char* out, int size, const char* directory);

/**
 * Sets the cells of the picture that motion counts in; see #MotionSettingsInfo::map. At first there are none. This call and
 * Kx_IpcClient_SetMotionSettings() set the same cells: the later one holds.
 *
 * @param userId    the session
 * @param reserved  not used
 * @param grid      32 rows of 24 cells, 0 or 1; it is not changed
 * @return 0, or -1. Further error: #KX_ERROR_LIVE_STATE when there is no stream object.
 */
KX_API int Kx_IpcClient_DrawGrid(long userId, int reserved, uint8_t grid[32][24]);

/**
 * Sets what counts as motion, and what is saved then. The alarms are counted in #KxLiveStatus::motionAlarms.
 *
 * @param userId    the session
 * @param settings  all of it
 * @return 0, or -1. Further error: #KX_ERROR_LIVE_STATE when there is no stream object.
 */
KX_API int Kx_IpcClient_SetMotionSettings(long userId, const MotionSettingsInfo* settings);

/**
 * Limits what motion saves to this time and those added before. Without any it is not limited. Times can not be taken
 * back; they last until the session ends.
 *
 * @param userId    the session
 * @param schedule  the time
 * @return 0, or -1. Further error: #KX_ERROR_LIVE_STATE when there is no stream object.
 */
KX_API int Kx_IpcClient_AddMotionSchedule(long userId, const RecordScheduleInfo* schedule);

/**
 * Records the live stream at this time and those added before, whether anything moves or not, to files as those of
 * Kx_IpcClient_SaveLiveData(). Times can not be taken back; they last until the session ends.
 *
 * @param userId    the session
 * @param schedule  the time
 * @return 0, or -1. Further error: #KX_ERROR_LIVE_STATE when there is no stream object.
 */
KX_API int Kx_IpcClient_AddAutoSaveSchedule(long userId, const RecordScheduleInfo* schedule);

/**
 * Asks the camera how many clients it serves streams to at most; its key "maxconn".
 *
 * @param      userId  the session
 * @param[out] limit   untouched when the answer lacks it
 * @return 0, or -1
 */
KX_API int Kx_IpcClient_GetMaxConnectionLimit(long userId, int* limit);

/**
 * Sets how many clients the camera serves streams to at most; its key "maxconn".
 *
 * @param userId  the session
 * @param limit   passed on unchecked
 * @return 0, or -1
 */
KX_API int Kx_IpcClient_SetMaxConnectionLimit(long userId, int limit);

/**
 * Asks the camera how many clients it serves streams to now; its key "curmaxconn".
 *
 * @param      userId  the session
 * @param[out] count   untouched when the answer lacks it
 * @return 0, or -1
 */
KX_API int Kx_IpcClient_GetCurrentConnectionNum(long userId, int* count);

/**
 * Opens a recorded file and begins to play it at normal speed: an addition to the interface. Frames may come before the
 * call returns. A session plays one file at a time; its live view goes on meanwhile.
 *
 * @param userId    the session, of any camera: the file is this computer's
 * @param path      the file
 * @param callback  where its frames go; null: nowhere
 * @param user      kept with the session; **not** handed to the callback, see #fPlayDataCallBack
 * @return 0, or -1. Further errors: #KX_ERROR_BUSY while the session plays a file; #KX_ERROR_NO_PLAYBACK when the file can
 *         not be opened as a recording, or the playback was stopped meanwhile. Without memory it fails without a code.
 */
KX_API int Kx_IpcClient_OpenPlayBack(long userId, const char* path, fPlayDataCallBack callback, void* user);

/**
 * Reserved: checks the session and stores nothing. Kx_IpcClient_OpenPlayBack() takes a callback.
 *
 * @param userId    the session
 * @param callback  not used
 * @param user      not used
 * @return 0, or -1
 */
KX_API int Kx_IpcClient_SetPlayDataCallBack(long userId, fPlayDataCallBack callback, void* user);

/**
 * Reserved. Does nothing and checks nothing.
 *
 * @param userId  not used
 * @return 0
 */
KX_API int Kx_IpcClient_PlayBack(long userId);

/**
 * Holds the playback.
 *
 * @param userId  the session
 * @return 1; 0 on failure. Further error: #KX_ERROR_NO_PLAYBACK.
 */
KX_API int Kx_IpcClient_PlayBackPause(long userId);

/**
 * Goes on after a pause.
 *
 * @param userId  the session
 * @return 1; 0 on failure. Further error: #KX_ERROR_NO_PLAYBACK.
 */
KX_API int Kx_IpcClient_PlayBackResume(long userId);

/**
 * Sets the playback's speed. Without effect when `direction` is 1 or 2 and `step` not 0 to 4.
 *
 * @param userId     the session
 * @param direction  1: faster, 2: slower, else: normal speed
 * @param step       0: normal speed; 1 to 4: 2, 4, 8, 16 times as fast or as slow
 * @return 0, or -1. Further error: #KX_ERROR_NO_PLAYBACK.
 */
KX_API int Kx_IpcClient_PlayBackControl(long userId, int direction, int step);

/**
 * Tells where in the recording the playback is.
 *
 * @param userId  the session
 * @return milliseconds from its begin; or -1. Further error: #KX_ERROR_NO_PLAYBACK.
 */
KX_API int Kx_IpcClient_GetCurrentTime(long userId);

/**
 * Tells how long the recording is.
 *
 * @param userId  the session
 * @return milliseconds; or -1. Further error: #KX_ERROR_NO_PLAYBACK.
 */
KX_API int Kx_IpcClient_GetFileDuration(long userId);

/**
 * Goes on playing from a time of the recording, also when its end was reached.
 *
 * @param userId  the session
 * @param time    milliseconds from the recording's begin; what lies beyond the recording counts as its begin or end
 * @return 0, or -1. Further error: #KX_ERROR_NO_PLAYBACK.
 */
KX_API int Kx_IpcClient_SeekPlayTime(long userId, int time);

/**
 * Tells whether the playback has come to the end of the recording. It stays open until it is stopped.
 *
 * @param userId  the session
 * @return 1 or 0; or -1. Further error: #KX_ERROR_NO_PLAYBACK.
 */
KX_API int Kx_IpcClient_IsPlayFinished(long userId);

/**
 * Ends the playback.
 *
 * @param userId  the session
 * @return 1; 0 on failure. Further error: #KX_ERROR_NO_PLAYBACK.
 */
KX_API int Kx_IpcClient_StopPlayBack(long userId);

/**
 * Frees a list of found files, all but its head, with free(). The head's FoundFileInfo::next is left as it is: do not use
 * it again.
 *
 * @param result  the head of the list; null: nothing is done
 * @return 0, also when the SDK is not initialised
 */
KX_API int Kx_IpcClient_DestroyFindFiles(FoundFileInfo* result);

#ifdef __cplusplus
}
#endif

#endif
