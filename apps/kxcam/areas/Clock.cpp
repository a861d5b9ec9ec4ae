// The clock. It runs, so that what is read back is later than what was written.
#include <ctime>
#include <optional>

#include <KxIpcSDK/KxSystem.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    field<&DateTimeInfo::system_datetime_datetimetype>("system_datetime_datetimetype",
                                                       "time from: 0 an NTP server, 1 or 2 people"),
    running(readOnly(field<&DateTimeInfo::date>("date", "year/month/day"))),
    running(readOnly(field<&DateTimeInfo::time>("time", "hour:minute:second"))),
    running(ranged(field<&DateTimeInfo::year>("year", ""), 1970, 2037)),
    running(ranged(field<&DateTimeInfo::month>("month", ""), 1, 12)),
    running(ranged(field<&DateTimeInfo::day>("day", ""), 1, 31)),
    running(ranged(field<&DateTimeInfo::hour>("hour", ""), 0, 23)),
    running(ranged(field<&DateTimeInfo::minute>("minute", ""), 0, 59)),
    running(ranged(field<&DateTimeInfo::second>("second", ""), 0, 59)),
    field<&DateTimeInfo::system_datetime_daylight>("system_datetime_daylight", "1: daylight saving time"),
    field<&DateTimeInfo::system_datetime_ntp_server_address>("system_datetime_ntp_server_address",
                                                             "NTP server"),
    field<&DateTimeInfo::system_datetime_timezone_tz>("system_datetime_timezone_tz",
                                                      "hours ahead of UTC, e.g. +8"),
    field<&DateTimeInfo::system_datetime_zonename_tz>("system_datetime_zonename_tz", "name of the time zone"),
};

/// Nothing for a day that its month does not have, which a camera may take for one of the next month.
std::optional<std::time_t> timeOf(const void* record)
{
    const auto& info = *static_cast<const DateTimeInfo*>(record);
    std::tm time{};
    time.tm_year = info.year - 1900;
    time.tm_mon = info.month - 1;
    time.tm_mday = info.day;
    time.tm_hour = info.hour;
    time.tm_min = info.minute;
    time.tm_sec = info.second;
    const std::time_t seconds = timegm(&time);
    return time.tm_mday == info.day ? std::optional(seconds) : std::nullopt;
}

bool wentOn(const void* written, const void* after)
{
    constexpr std::time_t longestSet = 60; // seconds from writing to reading back, with a slow camera
    const auto from = timeOf(written);
    const auto until = timeOf(after);
    return from && until && *until >= *from && *until - *from <= longestSet;
}

} // namespace

extern constinit const Area clockArea = makeArea<Kx_Ipc_GetSystemDate, Kx_Ipc_SetSystemDate>(
    "clock", "date, time, time zone, NTP", fields,
    {.whenNotKept =
         "A camera takes date and time with system_datetime_datetimetype=1 or 2, and the NTP server "
         "with 0.",
     .wentOn = wentOn});

} // namespace kxcam
