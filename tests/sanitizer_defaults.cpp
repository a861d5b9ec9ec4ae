// What the sanitizers are to overlook in tests that load GStreamer, whose libraries are not built for them.

#if defined(__has_feature) // clang's way of telling; gcc's are the two names
#if __has_feature(address_sanitizer)
#define __SANITIZE_ADDRESS__
#elif __has_feature(thread_sanitizer)
#define __SANITIZE_THREAD__
#endif
#endif

#ifdef __SANITIZE_ADDRESS__

#include <sanitizer/lsan_interface.h>

// GLib sets up a table while it is loaded, and lets it lie when it changes to a larger one. Leaks are watched for from
// the moment on when all libraries are loaded: preinit functions run before a library's constructors, those of the
// program after them.
__attribute__((section(".preinit_array"), used)) static void (*const beforeLibraries)() = __lsan_disable;

__attribute__((constructor)) static void afterLibraries()
{
    __lsan_enable();
}

#endif

#ifdef __SANITIZE_THREAD__

// Their locks are futexes of their own, which the thread sanitizer does not see; what counts is the code of the project,
// which these libraries call and are called by. The first group also spares it looking at each byte they copy.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions()
{
    return "called_from_lib:libglib-2.0.so\n"
           "called_from_lib:libgobject-2.0.so\n"
           "called_from_lib:libgio-2.0.so\n"
           "called_from_lib:libgstreamer-1.0.so\n"
           "called_from_lib:libgstbase-1.0.so\n"
           "called_from_lib:libgstapp-1.0.so\n"
           "called_from_lib:libgstrtspserver-1.0.so\n"
           "called_from_lib:libgstrtsp-1.0.so\n"
           "called_from_lib:libgstsdp-1.0.so\n"
           "called_from_lib:libgstrtp-1.0.so\n"
           "called_from_lib:libgstvideo-1.0.so\n"
           "called_from_lib:libgstcoreelements.so\n"
           "called_from_lib:libgstrtp.so\n"
           "called_from_lib:libgstrtpmanager.so\n"
           "called_from_lib:libgstx264.so\n"
           "called_from_lib:libx264.so\n"
           "called_from_lib:libgstjpeg.so\n"
           "race:libglib-2.0.so\n"
           "race:libgobject-2.0.so\n"
           "race:libgio-2.0.so\n"
           "race:libgst\n"
           "mutex:libgst\n";
}

#endif
