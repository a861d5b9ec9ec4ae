/**
 * @file
 * What a camera can do: interfaces, model families, general capabilities. For an application that shows only those
 * parts of its user interface that a camera has use for.
 *
 * What the calls of KxNetwork.h have in common holds here too, and besides:
 * - The questions Kx_Ipc_Has…() and Kx_Ipc_Is…() send one request each and answer 1 for yes and 0 for no. They answer 0
 *   also when they fail, whatever the reason; the last error then tells it as for the other calls. Only
 *   KX_Ipc_HasHighFrameInterface() is different.
 * - An application with several questions about interfaces sends less with Kx_Ipc_GetChipinterface() and #KxInterface.
 */
#ifndef KXIPCSDK_KXCAPABILITIES_H
#define KXIPCSDK_KXCAPABILITIES_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Bits of a camera's interface mask. What other bits mean is the camera's own affair. */
enum KxInterface
{
    KX_INTERFACE_SD = 1,           /**< memory card slot */
    KX_INTERFACE_AUDIO = 2,        /**< audio */
    KX_INTERFACE_ALARM = 4,        /**< alarm ports */
    KX_INTERFACE_BNC = 8,          /**< analogue (BNC) video output */
    KX_INTERFACE_PTZ = 16,         /**< pan, tilt and zoom */
    KX_INTERFACE_ALARM_SECOND = 32 /**< alarm ports, second form */
};

/** The general capabilities of newer cameras, as the camera numbers them; 0 for none unless said otherwise. */
typedef struct ModelGeneralInfo
{
    uint32_t system_io_support;                /**< alarm inputs and outputs */
    uint32_t system_audio_support;             /**< audio */
    uint32_t system_fisheye_support;           /**< fisheye lens */
    uint32_t system_vca_support;               /**< video content analysis */
    uint32_t system_audio_alarm_support;       /**< alarm by sound level */
    uint32_t system_led_support;               /**< illumination */
    uint32_t system_led_group_support;         /**< illumination in groups */
    uint32_t system_ptz_motion_support;        /**< motorised pan, tilt and zoom */
    uint32_t system_ptz_motion_max_zoom_times; /**< greatest zoom factor */
    uint32_t system_vca_type;                  /**< kind of video content analysis; 2 when untold */
} ModelGeneralInfo;

/**
 * Tells the interface mask (`chipninterface`).
 *
 * @param userId  the session
 * @return bits of #KxInterface; 0 when the camera's answer lacks the key; -1 when the call failed,
 *         or when all bits are set: Kx_Ipc_GetChipinterface() tells the two apart
 */
KX_API int Kx_Ipc_GetAllChipInterface(long userId);

/**
 * Reads the interface mask (`chipninterface`).
 *
 * @param      userId  the session
 * @param[out] mask    bits of #KxInterface
 * @return 0; or -1 with the mask untouched, also when the camera's answer lacks the key (no error is set then)
 */
KX_API int Kx_Ipc_GetChipinterface(long userId, uint32_t* mask);

/**
 * Asks for a memory card slot (bit #KX_INTERFACE_SD of `chipninterface`).
 *
 * @param userId  the session
 * @return 1 or 0
 */
KX_API int Kx_Ipc_HasSDInterface(long userId);

/**
 * Asks for audio (bit #KX_INTERFACE_AUDIO of `chipninterface`).
 *
 * @param userId  the session
 * @return 1 or 0
 */
KX_API int Kx_Ipc_HasAudioInterface(long userId);

/**
 * Asks for alarm ports of either form (bits #KX_INTERFACE_ALARM and #KX_INTERFACE_ALARM_SECOND of `chipninterface`).
 *
 * @param userId  the session
 * @return 1 or 0
 */
KX_API int Kx_Ipc_HasAlarmInterface(long userId);

/**
 * Asks for an analogue video output (bit #KX_INTERFACE_BNC of `chipninterface`).
 *
 * @param userId  the session
 * @return 1 or 0
 */
KX_API int Kx_Ipc_HasBNCInterface(long userId);

/**
 * Asks for pan, tilt and zoom (bit #KX_INTERFACE_PTZ of `chipninterface`).
 *
 * @param userId  the session
 * @return 1 or 0
 */
KX_API int Kx_Ipc_HasPTZInterface(long userId);

/**
 * Asks for network storage that is in use (`nasmountstatu`, which the cameras spell so, is not 0).
 *
 * @param userId  the session
 * @return 1 or 0
 */
KX_API int Kx_Ipc_HasNasInterface(long userId);

/**
 * Asks for the SIP phone, switched on (`sipenable` is not 0).
 *
 * @param userId  the session
 * @return 1 or 0
 */
KX_API int Kx_Ipc_HasSipPhoneInterface(long userId);

/**
 * Asks whether the camera is of the mini family: the seventh character of `productmodel` is "8".
 *
 * @param userId  the session
 * @return 1 or 0
 */
KX_API int Kx_Ipc_IsMini(long userId);

/**
 * Asks whether the camera is of the cube family: the seventh character of `productmodel` is "9".
 *
 * @param userId  the session
 * @return 1 or 0
 */
KX_API int Kx_Ipc_IsCube(long userId);

/**
 * Asks for high frame rates, which cameras with an "R" in their model have, if the model ends with "B", "C" or "-SP".
 * Sends the two requests of Kx_Ipc_GetSystemInfo(), with what that does to the last error.
 *
 * @param userId  the session
 * @return 1 or 0, also 0 when a request failed; -1 when the SDK is not initialised or the user id is unknown
 */
KX_API int KX_Ipc_HasHighFrameInterface(long userId);

/**
 * Reads the general capabilities. Of the answer the first 10239 bytes are read.
 *
 * @param      userId  the session
 * @param[out] info    every field, from the key of its name; `system_vca_type` becomes 2 when the answer has no such
 *                     key
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetModelGeneral(long userId, ModelGeneralInfo* info);

#ifdef __cplusplus
}
#endif

#endif
