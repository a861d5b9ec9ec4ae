/**
 * @file
 * On-screen display of a camera: a caption and a date stamp on the pictures of each stream.
 *
 * What the top of KxNetwork.h says of all settings calls holds here too, but for captions: they are encoded before
 * they are sent, so a caption may hold blanks, ampersands and any other character but control
 * characters, which arrive changed. An encoded caption takes up to
 * three characters a byte of the 1022 that one set carries: long captions of all three streams do not fit into one
 * set. Captions are text in the encoding that the camera expects.
 *
 * Calls without `ForOldVer` in their name ask the camera's model first. Cameras of the TI family have the display on
 * one stream only, index 0; all others on three.
 */
#ifndef KXIPCSDK_KXOSD_H
#define KXIPCSDK_KXOSD_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * The display on one stream. Key names are those of a get from a camera with one stream. With three streams, ".0",
 * ".1" or ".2" follows them; a set then sends `maintextenable`, `subtextenable`, `thirdtextenable` and so on.
 */
typedef struct OsdStreamInfo
{
    uint8_t valid;      /**< not 0: a set sends this stream (three streams only); **never filled by a get** */
    uint8_t textenable; /**< 1: caption shown (`textenable1`) */
    uint8_t datestampenable; /**< 1: date and time shown (`datestampenable1`) */
    char overlaytext[96];    /**< caption (`overlaytext1`) */
    uint8_t textposition;    /**< caption position code (`textposition1`) */
    uint8_t dateposition;    /**< date stamp position code (`dateposition`) */
    uint8_t dateformat;      /**< date format code (`dateformat`) */
    uint8_t osdfontsize;     /**< font size code; three streams only (`osdfontsize`) */
} OsdStreamInfo;

/** The display on all streams. */
typedef struct OsdInfo
{
    OsdStreamInfo streams[3]; /**< 0: main stream, 1: sub stream, 2: third stream */
} OsdInfo;

/**
 * Reads the on-screen display.
 *
 * @param      userId  the session
 * @param[out] info    from a camera of the TI family stream 0 without `osdfontsize`, all else untouched; from any other
 *                     all three streams. `valid` stays untouched.
 * @return 0, or -1 (also when the camera answers nothing to the question for its model)
 */
KX_API int Kx_Ipc_GetOSD(long userId, OsdInfo* info);

/**
 * Writes the on-screen display.
 *
 * @param     userId  the session
 * @param[in] info    to a camera of the TI family stream 0 is sent without `osdfontsize`, whatever `valid` says; to any
 *                    other the streams whose `valid` is not 0. Without such a stream the camera still gets a request,
 *                    which changes nothing.
 * @return 0, or -1 (also when the camera answers nothing to the question for its model)
 */
KX_API int Kx_Ipc_SetOSD(long userId, const OsdInfo* info);

/**
 * Reads the on-screen display of a camera whose firmware does not know its model: one stream, without asking.
 *
 * @param      userId  the session
 * @param[out] info    every field but `valid` and `osdfontsize`
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetOSD_ForOldVer(long userId, OsdStreamInfo* info);

/**
 * Writes the on-screen display of a camera whose firmware does not know its model: one stream, without asking.
 *
 * @param     userId  the session
 * @param[in] info    every field but `valid` and `osdfontsize` is sent
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetOSD_ForOldVer(long userId, const OsdStreamInfo* info);

#ifdef __cplusplus
}
#endif

#endif
