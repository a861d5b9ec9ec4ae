#include "ipcctl/StreamTiming.h"

StreamTiming g_streamTiming;

std::chrono::steady_clock::time_point closingTime()
{
    return std::chrono::steady_clock::now() + g_streamTiming.close;
}
