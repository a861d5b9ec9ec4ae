/**
 * @file
 * Marks what the library exports. Included by every other header of the SDK.
 */
#ifndef KXIPCSDK_KXEXPORT_H
#define KXIPCSDK_KXEXPORT_H

#if defined(__GNUC__)
/** An exported function with the platform's C calling convention. */
#define KX_API __attribute__((visibility("default")))
/** Lets the compiler check a call's arguments against its printf format. */
#define KX_PRINTF_LIKE(text, arguments) __attribute__((format(printf, text, arguments)))
#else
#define KX_API
#define KX_PRINTF_LIKE(text, arguments)
#endif

#endif
