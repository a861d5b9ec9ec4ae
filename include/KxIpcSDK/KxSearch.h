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

/** A camera that answered a search. Texts are as the camera tells them, cut to their fields, and end with a zero byte. */
typedef struct SearchDeviceInfo
{
    char ip
        [64]; /**< IPv4 address, dotted; the first that the camera names. Four numbers in any case, not checked */
    int32_t port; /**< HTTP port, not checked; 80 when the camera names none, but see Kx_Sdk_SearchIpc() */
    char reserved[64]; /**< empty */
    char name
        [128]; /**< the camera's name, with "%xx" (hexadecimal) for bytes that it escapes, as a rule all but
                            plain characters; empty when it tells none */
    char model[32]; /**< the camera's model, beginning with "KX-C" */
} SearchDeviceInfo;

/**
 * Receives a camera that was found. It is called on the search's own thread, for one camera at a time, while the search
 * goes on. What it does delays the search; it may call any function of the SDK but Kx_Sdk_Init() and Kx_Sdk_Destroy(),
 * and must not throw. Signals are blocked on that thread.
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
 * by #SearchDeviceInfo::ip. Devices of other makers are not reported. What a camera's service address lacks is taken from
 * the camera before it in the same search: one that names no port has 80, or that camera's port; one whose address is not
 * a dotted IPv4 address over http has that camera's address, or 0.0.0.0.
 *
 * The search ends when for the third time nothing came for 2 seconds, which is after 6 seconds on a quiet network (an
 * answer that makes no sense counts as one of the three); when cameras and other devices were told of 72 times; or when it
 * has spent 2 minutes on answers that tell of none. The application learns of the end by the next search being accepted,
 * or by Kx_Sdk_Destroy(), which waits for it. When the Probes can not be sent, the search ends within half a second and
 * nothing is reported.
 *
 * The first 256 answers of each search are written to files for diagnosis, "D:\onvif\discovery_N.txt" with N from 0, over
 * those of the search before. Where backslashes are ordinary characters in file names, these are files in the working
 * directory. Nothing is written when a file can not be opened.
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
