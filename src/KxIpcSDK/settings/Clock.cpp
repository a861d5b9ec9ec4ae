// The camera's clock.
#include <KxIpcSDK/KxSystem.h>

#include <cstdio>

#include "KxIpcSDK/CameraCall.h"
#include "inirw/inirw.h"

namespace
{

enum ClockSource
{
    Ntp = 0,
    ByHand = 1,
    ByHandToo = 2
};

/// The clock's section of a camera's answer. What it lacks reads as the default given.
class ClockSection
{
public:
    explicit ClockSection(const OkReply& reply) : reply_(reply) {}

    int number(const char* key, int whenAbsent) const
    {
        return iniGetIntFromStr(reply_.raw(), name, key, whenAbsent);
    }

    template <std::size_t Size>
    void text(const char* key, char (&field)[Size], const char* whenAbsent, int bound = Size) const
    {
        iniGetStringFromStr(reply_.raw(), name, key, field, bound, whenAbsent);
    }

private:
    static constexpr char name[] = "SYSTEMDATETIME";

    const OkReply& reply_;
};

constexpr int shownBound = 15; // of the date and the time in words

void readDate(const ClockSection& clock, DateTimeInfo& info)
{
    info.year = clock.number("system_datetime_localdatetime_date_year", 1970);
    info.month = clock.number("system_datetime_localdatetime_date_month", 10);
    info.day = clock.number("system_datetime_localdatetime_date_day", 10);
    std::snprintf(info.date, shownBound, "%d/%d/%d", info.year, info.month, info.day);
}

void readTime(const ClockSection& clock, DateTimeInfo& info)
{
    info.hour = clock.number("system_datetime_localdatetime_time_hour", 12);
    info.minute = clock.number("system_datetime_localdatetime_time_minute", 10);
    info.second = clock.number("system_datetime_localdatetime_time_second", 10);
    std::snprintf(info.time, shownBound, "%02d:%02d:%02d", info.hour, info.minute, info.second);
}

void addDateAndTime(Query& query, const DateTimeInfo& info)
{
    query.number("system_datetime_localdatetime_time_hour", info.hour);
    query.number("system_datetime_localdatetime_time_minute", info.minute);
    query.number("system_datetime_localdatetime_time_second", info.second);
    query.number("system_datetime_localdatetime_date_year", info.year);
    query.number("system_datetime_localdatetime_date_month", info.month);
    query.number("system_datetime_localdatetime_date_day", info.day);
}

void addNtp(Query& query, const DateTimeInfo& info)
{
    query.number("system_datetime_ntp_sync_enable", 1);
    query.text("system_datetime_ntp_server_address", info.system_datetime_ntp_server_address);
}

} // namespace

int Kx_Ipc_GetSystemDate(long userId, DateTimeInfo* info)
{
    CameraCall call(userId, info);
    const OkReply reply = call.get("action=get.system.datetime&format=inf", adminRequest);
    if (!reply)
        return -1;
    const ClockSection clock(reply);
    readDate(clock, *info);
    readTime(clock, *info);
    info->system_datetime_daylight = static_cast<std::uint8_t>(clock.number("system_datetime_daylight", 0));
    info->system_datetime_datetimetype =
        static_cast<std::uint8_t>(clock.number("system_datetime_datetimetype", ByHand));
    constexpr int serverBound = 64; // the field has room for more, which a set would send
    clock.text("system_datetime_ntp_server_address", info->system_datetime_ntp_server_address, "pool.ntp.org",
               serverBound);
    clock.text("system_datetime_timezone_tz", info->system_datetime_timezone_tz, "+8");
    clock.text("system_datetime_zonename_tz", info->system_datetime_zonename_tz, "CHN");
    return 0;
}

int Kx_Ipc_SetSystemDate(long userId, const DateTimeInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    Query query;
    query.add("action=set.system.datetime");
    query.number("system_datetime_daylight", info->system_datetime_daylight);
    query.text("system_datetime_timezone_tz", info->system_datetime_timezone_tz);
    query.text("system_datetime_zonename_tz", info->system_datetime_zonename_tz);
    query.number("system_datetime_datetimetype", info->system_datetime_datetimetype);
    switch (info->system_datetime_datetimetype) {
    case ByHand:
    case ByHandToo:
        addDateAndTime(query, *info);
        break;
    case Ntp:
        addNtp(query, *info);
        break;
    default: // a source that the SDK does not know needs nothing that it knows
        break;
    }
    return call.set(query, adminRequest);
}
