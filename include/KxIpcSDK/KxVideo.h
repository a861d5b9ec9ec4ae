/**
 * @file
 * Video encoder settings of a camera's streams.
 *
 * What the top of KxNetwork.h says of all settings calls holds here too. What is different:
 * - A call takes an array of records, each for the stream that its #VideoInfo::stream names, and their count. A count
 *   below the least that a function takes gives -1 without a request and without an error set.
 * - A call makes several requests, and a failed one ends it (see Kx_Ipc_SetVideoConfig() for exceptions): a get
 *   has then filled some fields already, and a camera keeps what it was sent already.
 * - **The sets take their time**: a camera restarts its encoder after each step, and the set waits for it, up to 7
 *   seconds a record. Call them on a thread that may block.
 * - The sets bring values into the ranges that cameras take, instead of refusing them; the caller's records stay as
 *   they are. A record for another stream of the same camera may stand in the same array.
 */
#ifndef KXIPCSDK_KXVIDEO_H
#define KXIPCSDK_KXVIDEO_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/** One video stream. Keys are those of the main, the sub and the third stream. */
typedef struct VideoInfo
{
    uint8_t reserved;          /**< not used */
    uint8_t stream;            /**< 0: main, 1: sub, 2: third; **set it before a get** */
    uint8_t enablesubstream;   /**< 1: the sub stream is on; sent in a sub record, to old firmware
                                    in every record */
    uint8_t enablethirdstream; /**< 1: the third stream is on; sent in a third record */
    uint8_t codec;             /**< codec code, 0 to 3; 1: JPEG (`maincodec`, `subcodec`, `thirdcodec`) */
    int codecres;              /**< resolution index; old firmware only (`maincodecres`, `subcodecres`) */
    int framerate;       /**< frames a second, counted from 1 (the camera counts from 0: `framerate1` to 3) */
    int bitrate;         /**< bit rate in the camera's unit (`bitrate1` to 3) */
    uint8_t ratecontrol; /**< 1: the camera's rate control mode 1, 0: any other (`ratecontrol1` to 3) */
    int profile;         /**< H.264 profile code (`h264priprofile`, `h264secprofile`, `h264thirdprofile`) */
    int ipratio;         /**< I-frame interval in frames (`ipratio1` to 3) */
    int rtspport;        /**< RTSP port (`mainrtspport`); sent to old firmware only */
    int width;           /**< picture width in pixels */
    int height;          /**< picture height in pixels */
    int reserved2;       /**< not used */
    int jpegquality;     /**< JPEG quality (`jpegpriquality`, `jpegsecquality`, `jpegthirdquality`) */
    int smartstream; /**< smart stream switch (`smartstreamswitch`, `subsmartstream`, `thirdsmartstream`) */
    int smartlevel;  /**< smart stream level (`smartstreamlevel`, `subsmartlevel`, `thirdsmartlevel`) */
    int limited3516a; /**< main record, read only: 1 when the chip's name holds "3516a" and the memory code is 1 */
    int imx274on3516av200; /**< main record, read only: 1 on cameras with that sensor on that chip */
    int platformforweb;    /**< main record, read only: the camera's web platform code */
    int eventstreamenable; /**< 1: event stream on; filled in the first record, sent in a main record */
    int eventframerate; /**< event stream: frame rate, **read as the camera counts it, sent less 1**: add 1 to what
                             a get gave to leave it as it is */
    int eventbitrate; /**< event stream: bit rate in the camera's unit */
    int eventiframe;  /**< event stream: I-frame interval in frames */
} VideoInfo;

/**
 * Reads the settings of one or more streams, in two requests. Of each answer the first 4095 bytes are read. Of
 * more than about 15 records, what goes beyond 4095 characters is not asked for.
 *
 * @param         userId  the session
 * @param[in,out] videos  records whose `stream` says what to read (above 2: as 0); `reserved`, `codecres` and
 *                        `reserved2` stay untouched. `limited3516a` and `imx274on3516av200` of a main record are
 *                        always written, and the event stream is told in the first record, of whichever stream it is.
 * @param         count   how many records, at least 1
 * @return 0, or -1 (also when the camera answers nothing to one of the requests; after the second, picture sizes and
 *         event stream have been filled)
 */
KX_API int Kx_Ipc_GetVideoConfig(long userId, VideoInfo* videos, int count);

/**
 * Writes the settings of one or more streams, in the order of the records. The camera's model is asked first.
 *
 * Ranges: `codec` to 3, `framerate` 1 to 120 (third stream: 30), `bitrate` 16 to 16384 (other streams: 2048), `ipratio`
 * 1 to 240. With `codec` 1, `jpegquality` is sent instead of `profile`. Not sent: `codecres`, `rtspport` and what is
 * read only. A record with a `stream` above 2 is passed over.
 *
 * Cameras of the TI family take all streams in one go (2 seconds). They have no third stream, whose records are
 * passed over, no event stream and no smart stream, always take `profile`, and 1024 as the highest bit rate of the
 * sub stream. As they take main and sub stream together only, what the array lacks of the two is read from the
 * camera and sent back. **The result of that reading does not count**: what could not be read is sent as 0, a sub stream
 * is then off, and this call returns 0 all the same. To be safe, give both.
 *
 * For any other camera, each record is sent by itself: its picture size (2 seconds), then its settings (5 seconds,
 * third stream 3 seconds). The event stream's fields go with the main record; the get fills them in the first record, so
 * put the main record first, or copy them. A picture size that can not be sent ends the call; when settings can not be sent, the
 * remaining records are sent all the same.
 *
 * @param     userId  the session
 * @param[in] videos  the settings
 * @param     count   how many records, at least 1
 * @return 0; -1 when a request failed (but for the reading named above) or the camera answers nothing to the question
 *         for its model
 */
KX_API int Kx_Ipc_SetVideoConfig(long userId, const VideoInfo* videos, int count);

/**
 * Reads the settings of main and sub stream from a camera with old firmware, in one request a record.
 *
 * @param         userId  the session
 * @param[in,out] videos  filled are `enablesubstream`, `codec`, `codecres`, `rtspport` (from `mainrtspport` or
 *                        `subrtspport`), `framerate`, `bitrate`, `ratecontrol` and `ipratio`. Records whose `stream` is
 *                        above 1 stay untouched.
 * @param         count   how many records; 0 gives 0 without a request
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetVideoConfig_ForOldVer(long userId, VideoInfo* videos, int count);

/**
 * Writes the settings of main and sub stream to a camera with old firmware, in one request and 1.5 seconds a
 * record. The camera's model is asked first, for no record too.
 *
 * Ranges: `codec` to 3, `codecres` 2 to 9 (sub stream: 0 to 4), `rtspport` to 65535, `framerate` 1 to 30, `bitrate`
 * 16 to 16384 (sub stream: 1024), `ipratio` to 120.
 *
 * @param     userId  the session
 * @param[in] videos  the settings; sent are the fields that the get fills. Any `stream` but 1 stands for the main one.
 * @param     count   how many records, at least 0
 * @return 0, or -1 (also when the camera answers nothing to the question for its model)
 */
KX_API int Kx_Ipc_SetVideoConfig_ForOldVer(long userId, const VideoInfo* videos, int count);

#ifdef __cplusplus
}
#endif

#endif
