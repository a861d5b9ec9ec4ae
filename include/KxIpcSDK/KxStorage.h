/**
 * @file
 * Files between the application's disk and a camera.
 */
#ifndef KXIPCSDK_KXSTORAGE_H
#define KXIPCSDK_KXSTORAGE_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Watches a file transfer, and may stop it. Called on the thread that runs the transfer, so transfers on several
 * threads call it at the same time:
 * - when the transfer begins to move the file (`done` is 0 in an upload's first call);
 * - after each piece, some kilobytes;
 * - about four times a second while the transfer waits for the camera: while a camera checks and writes a firmware it
 *   answers nothing for minutes.
 *
 * It may call any function of the SDK, be it for the same camera; the transfer waits for it. It must not throw.
 *
 * @param userId  the session whose transfer it is
 * @param done    bytes of the file so far: handed to the network, or received; of a configuration export, bytes of the
 *                answer
 * @param total   bytes of the file in all: of an upload always, of a download once the camera has told it, which it
 *                may do wrongly; 0: not known
 * @param user    as given to Kx_Sdk_SetTransferCallBack()
 *
 * @return 0: go on; else the transfer stops: its call returns -1 and sets no error. What a download has written by
 *         then stays in the local file. An upload whose last byte has gone out (`done` is `total`) can not be called
 *         back: the camera may use the file all the same.
 */
typedef int (*KxTransferCallBack)(long userId, uint64_t done, uint64_t total, void* user);

/**
 * Sets who watches file transfers: one callback for the process, for all sessions. Kx_Sdk_Init() and Kx_Sdk_Destroy()
 * leave it as it is.
 *
 * The two parameters change together. A transfer keeps to what was set when it began: it goes on calling a callback that
 * has been replaced meanwhile, so keep what `user` points to until the calls that run transfers have returned.
 *
 * @param callback  called for transfers that begin from now on; null: nobody watches (as at start)
 * @param user      passed to the callback as it is
 *
 * May be called at any time, from any thread, also before Kx_Sdk_Init() and from the callback itself.
 */
KX_API void Kx_Sdk_SetTransferCallBack(KxTransferCallBack callback, void* user);

#ifdef __cplusplus
}
#endif

#endif
