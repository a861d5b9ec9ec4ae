#include "ZrThread/ZrPrint.h"

#include <cstdarg>
#include <cstdio>
#include <ctime>

namespace
{

constexpr std::size_t lineSize = 1600;
constexpr std::size_t stampSize = 19; // one short of the whole time

void writeStamp(char (&stamp)[stampSize])
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    tzset(); // the application may have changed it
    localtime_r(&now, &local);
    char whole[80];
    std::snprintf(whole, sizeof whole, "%4d-%02d-%02d %02d:%02d:%02d", local.tm_year + 1900, local.tm_mon + 1,
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    std::snprintf(stamp, stampSize, "%.*s", static_cast<int>(stampSize - 1), whole);
}

} // namespace

int zr_print(const char* format, ...)
{
    char message[lineSize] = "";
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);

    char stamp[stampSize];
    writeStamp(stamp);
    char line[lineSize + 100];
    std::snprintf(line, sizeof line, "QZM PRINT %s  %s=================================\n", stamp, message);
    std::printf("%.*s", static_cast<int>(lineSize - 1), line);
    return 0;
}
