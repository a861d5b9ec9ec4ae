/**
 * @file
 * The search for cameras on the local network.
 */
#ifndef KXIPCSDK_KXSEARCH_H
#define KXIPCSDK_KXSEARCH_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/** A camera that answered a search. Texts end with a zero byte. */
typedef struct SearchDeviceInfo
{
    char ip[64];       /**< IPv4 address, dotted */
    int32_t port;      /**< HTTP port; 80 when the camera names none, but see Kx_Sdk_SearchIpc() */
    char reserved[64]; /**< empty */
    char name
        [128]; /**< the camera's name as it tells it: other than plain characters are "%xx" (hexadecimal); empty
                            when it tells none */
    char model[32]; /**< the camera's model, beginning with "KX-C" */
} SearchDeviceInfo;

/**
 * Receives a camera that was found. It is called on the search's own thread, for one camera at a time, while the search
 * goes on. What it does delays the search; it may call any function of the SDK but Kx_Sdk_Init() and Kx_Sdk_Destroy(),
 * and must not throw.
 *
 * @param device  the camera; it lives during the call only
 * @param user    what was given to Kx_Sdk_SearchIpc()
 */
typedef void (*fSearchCallBack)(SearchDeviceInfo* device, void* user);

/**
 * Starts a search for the maker's cameras on the local network and returns at once.
 *
 * Two WS-Discovery Probes are sent to 239.255.255.250, port 3702, by the system's route for that address. A camera that
 * answers both is reported twice, and nothing but its address tells that it is the same: the application merges records
 * by #SearchDeviceInfo::ip. Devices of other makers are not reported. A camera that names no port has 80, unless one
 * before it in the same search named one: then it is reported with that one.
 *
 * The search ends when for the third time nothing came for 2 seconds (an answer that makes no sense counts like 2
 * seconds), which is after 6 seconds on a quiet network; when 72 devices have answered, other makers' included; or
 * after 150 seconds. The application learns of the end by the next search being accepted, or by Kx_Sdk_Destroy(), which
 * waits for it. When the Probes can not be sent, the search ends at once and nothing is reported.
 *
 * Each answer is written to a file for diagnosis, "D:\onvif\discovery_N.txt" with N from 0. Where backslashes are
 * ordinary characters in file names, that is a file in the working directory. Nothing is written when it can not be
 * opened.
 *
 * @param callback  receives the cameras; null: nothing is reported, and another search is accepted at any time
 * @param user      any pointer, handed to the callback
 *
 * @return 0; or -1. Errors: #KX_ERROR_NOT_INITIALISED; #KX_ERROR_BUSY while a search runs. When the system has no
 *         thread left, the result is 0 all the same, and further searches are refused until Kx_Sdk_Destroy().
 */
KX_API int Kx_Sdk_SearchIpc(fSearchCallBack callback, void* user);

#ifdef __cplusplus
}
#endif

#endif
