/**
 * @file
 * Log lines for the application.
 */
#ifndef KXIPCSDK_KXSDKLOG_H
#define KXIPCSDK_KXSDKLOG_H

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Receives a log line.
 *
 * @param level  the level given to kxsdk_log(), unchanged
 * @param text   the formatted line, terminated, at most 1598 characters; valid only during the call
 */
typedef void (*KxLogCallback)(int level, const char* text);

/**
 * Sets where log lines go.
 *
 * @param callback  called for each line, on the thread that logs; null: lines are dropped (as at start)
 *
 * May be called at any time, also before Kx_Sdk_Init(). A line that another thread is just logging may still
 * reach the previous callback.
 */
KX_API void kxsdk_log_set_callback(KxLogCallback callback);

/**
 * Formats a line and hands it to the callback; without a callback nothing happens.
 *
 * @param level   any number; the SDK gives it no meaning
 * @param format  printf format of the line; null: nothing happens. A line longer than 1598 characters is cut.
 */
KX_API void kxsdk_log(int level, const char* format, ...) KX_PRINTF_LIKE(2, 3);

#ifdef __cplusplus
}
#endif

#endif
