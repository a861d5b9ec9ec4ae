/**
 * @file
 * Audio settings of a camera, and what audio it can encode.
 *
 * What the top of KxNetwork.h says of all settings calls holds here too.
 */
#ifndef KXIPCSDK_KXAUDIO_H
#define KXIPCSDK_KXAUDIO_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Audio. */
typedef struct AudioInfo
{
    uint8_t audioenable; /**< 1: audio on */
    uint8_t audiomode;   /**< direction code: in, out, both; sent with `hasaudioout` only */
    int audioinvolume;   /**< input volume in the camera's unit */
    int alarmlevel;      /**< level from which sound raises an alarm */
    int audiooutvolume;  /**< output volume; sent with `hasaudioout` only */
    int speex;           /**< speex setting */
    int encoding;        /**< codec code, see AudioCodecOption::codec */
    int samplerate;      /**< sample rate, see AudioSampleRateOption::samplerate */
    int audiobitrate;    /**< bit rate, see AudioSampleRateOption::bitrates; sent as `bitrate` */
    int hasaudioout;     /**< not 0: the camera has an audio output; **never filled by the get** */
    int audioagc;        /**< automatic gain control; sent with `hasaudioout` only */
} AudioInfo;

/** A sample rate that a codec can have. */
typedef struct AudioSampleRateOption
{
    uint32_t samplerate;   /**< the sample rate, as AudioInfo::samplerate takes it */
    uint32_t bitratecount; /**< how many bit rates it can have */
    uint32_t bitrates[16]; /**< these bit rates, of which at most 9 are told */
} AudioSampleRateOption;

/** A codec that a camera has. */
typedef struct AudioCodecOption
{
    uint32_t codec;                       /**< codec code, as AudioInfo::encoding takes it */
    uint32_t sampleratecount;             /**< how many sample rates it can have */
    AudioSampleRateOption samplerates[9]; /**< these sample rates */
} AudioCodecOption;

/** What audio a camera can encode. */
typedef struct AudioOptions
{
    uint32_t codeccount;        /**< how many codecs it has */
    AudioCodecOption codecs[9]; /**< these codecs */
} AudioOptions;

/**
 * Reads the audio settings. Of the answer the first 511 bytes are read.
 *
 * @param      userId  the session
 * @param[out] info    every field but `hasaudioout`, from the key of its name
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetAudioConfig(long userId, AudioInfo* info);

/**
 * Writes the audio settings. A negative `encoding`, `samplerate`, `audioinvolume`, `audiooutvolume` or `alarmlevel` is
 * sent as 0. Without `hasaudioout`, `audiomode`, `audiooutvolume` and `audioagc` are not sent.
 *
 * @param     userId  the session
 * @param[in] info    the settings; set `hasaudioout` first
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetAudioConfig(long userId, const AudioInfo* info);

/**
 * Reads what audio the camera can encode. Of the answer the first 10239 bytes are read.
 *
 * @param         userId   the session
 * @param[in,out] options  **zero it first**: the counts are increased from what they are. Entries are filled from
 *                         the first on. A null pointer is not refused: the camera is asked, and nothing is filled.
 * @return 0, also when the camera tells no codec; -1 when the request failed
 */
KX_API int8_t Kx_Ipc_GetAudioOptions(long userId, AudioOptions* options);

#ifdef __cplusplus
}
#endif

#endif
