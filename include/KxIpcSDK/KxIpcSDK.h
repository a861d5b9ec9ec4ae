/**
 * @file
 * The whole SDK: include this one header, or only those of the areas you use.
 *
 * Terms used in every header:
 * - **user id**: the handle of a logged-in camera, from Kx_Ipc_Login() until Kx_Ipc_Logout().
 * - **session**: what the SDK keeps for a user id: address and credentials. There is no open connection.
 * - **record**: a plain structure that the caller owns and passes by pointer. The SDK reads or fills it during
 *   the call and keeps no pointer to it. Records are a binary interface: their fields never move.
 * - **last error**: one process-wide code, see #KxError and Kx_Sdk_GetLastError().
 *
 * Threads: calls for different sessions may run on different threads at the same time and never wait for one
 * another. A call blocks its thread until the camera has answered or a time limit has passed (5 seconds to
 * reach the camera, then 15 seconds to connect and 15 seconds for the first byte of the answer).
 * Kx_Sdk_Init() and Kx_Sdk_Destroy() must not run beside any other call.
 */
#ifndef KXIPCSDK_KXIPCSDK_H
#define KXIPCSDK_KXIPCSDK_H

#include <KxIpcSDK/KxLog.h>
#include <KxIpcSDK/KxNetwork.h>
#include <KxIpcSDK/KxSdk.h>

#endif
