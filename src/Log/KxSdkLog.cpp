// Log lines for the application: formatted here, delivered to its callback.
#include <atomic>
#include <cstdarg>
#include <cstdio>

#include <KxIpcSDK/KxSdkLog.h>

namespace
{

constexpr std::size_t bufferSize = 1600;
constexpr std::size_t formatBound = bufferSize - 1; // one less than the buffer: 1598 characters survive

} // namespace

static std::atomic<KxLogCallback> kxsdk_log_callback{nullptr};

void kxsdk_log_set_callback(KxLogCallback callback)
{
    kxsdk_log_callback.store(callback);
}

void kxsdk_log(int level, const char* format, ...)
{
    const KxLogCallback callback = kxsdk_log_callback.load();
    if (callback == nullptr || format == nullptr)
        return;

    char text[bufferSize] = {};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, formatBound, format, arguments);
    va_end(arguments);
    callback(level, text);
}
