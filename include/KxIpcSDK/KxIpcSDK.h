/**
 * @file
 * The whole SDK: include this one header, or only those of the areas you use.
 *
 * Terms used in every header:
 * - **user id**: the handle of a logged-in camera, from Kx_Ipc_Login() until its session ends: by Kx_Ipc_Logout(), by a
 *   second login to the same camera that fails, by Kx_Ipc_SetNetwork(), Kx_Sdk_Init() or Kx_Sdk_Destroy().
 * - **session**: what the SDK keeps for a user id: address and credentials, its live view and playback. Without a
 *   live view there is no open connection.
 * - **record**: a plain structure that the caller owns and passes by pointer. The SDK reads or fills it during
 *   the call and keeps no pointer to it. Records are a binary interface: their fields never move.
 * - **last error**: one process-wide code, see #KxError and Kx_Sdk_GetLastError().
 *
 * Threads: calls, for the same session or for different ones, may run on different threads at the same time and
 * never wait for one another. A request blocks its thread until the camera has answered or a time limit has
 * passed: 5 seconds to reach the camera, then 15 seconds to connect and 15 seconds for the first byte of the
 * answer, where a call does not say otherwise. A slow answer is read to its end, however long that takes, unless
 * nothing at all comes for 60 seconds.
 * Kx_Sdk_Init() and Kx_Sdk_Destroy() must not run beside any other call.
 * A search reports from a thread of its own, see Kx_Sdk_SearchIpc(); live views and playbacks have threads too, see
 * KxMedia.h.
 */
#ifndef KXIPCSDK_KXIPCSDK_H
#define KXIPCSDK_KXIPCSDK_H

#include <KxIpcSDK/KxAudio.h>
#include <KxIpcSDK/KxCapabilities.h>
#include <KxIpcSDK/KxMedia.h>
#include <KxIpcSDK/KxNetwork.h>
#include <KxIpcSDK/KxOsd.h>
#include <KxIpcSDK/KxPtz.h>
#include <KxIpcSDK/KxSdk.h>
#include <KxIpcSDK/KxSdkLog.h>
#include <KxIpcSDK/KxSearch.h>
#include <KxIpcSDK/KxStorage.h>
#include <KxIpcSDK/KxSystem.h>
#include <KxIpcSDK/KxUsers.h>
#include <KxIpcSDK/KxVideo.h>

#endif
