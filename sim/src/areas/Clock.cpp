// The clock: it runs, it can be set, and with an NTP server it is right.
#include "Area.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace kxsim
{
namespace
{

// The camera's time is the machine's, so many seconds ahead of UTC. The key is the simulation's own.
constexpr std::string_view ahead = "clock.ahead";

constexpr std::array settings{
    Setting{ahead, "3600", Access::Hidden},
    // By the action alone, not by a plain set:
    Setting{"system_datetime_datetimetype", "0", Access::ReadOnly},
    Setting{"system_datetime_daylight", "0", Access::ReadOnly},
    Setting{"system_datetime_ntp_server_address", "ntp.kx-cameras.example", Access::ReadOnly},
    Setting{"system_datetime_timezone_tz", "+1", Access::ReadOnly},
    Setting{"system_datetime_zonename_tz", "CET", Access::ReadOnly},
};

constexpr std::string_view keptKeys[] = {
    "system_datetime_datetimetype", "system_datetime_daylight",    "system_datetime_ntp_server_address",
    "system_datetime_timezone_tz",  "system_datetime_zonename_tz",
};

/// A part of the date or the time, under its key.
struct Part
{
    std::string_view key;
    int std::tm::*member;
    int base; ///< of the member, which counts from there
    int lowest;
    int highest;
};

constexpr Part parts[] = {
    {"system_datetime_localdatetime_date_year", &std::tm::tm_year, 1900, 1970, 2037},
    {"system_datetime_localdatetime_date_month", &std::tm::tm_mon, 1, 1, 12},
    {"system_datetime_localdatetime_date_day", &std::tm::tm_mday, 0, 1, 31},
    {"system_datetime_localdatetime_time_hour", &std::tm::tm_hour, 0, 0, 23},
    {"system_datetime_localdatetime_time_minute", &std::tm::tm_min, 0, 0, 59},
    {"system_datetime_localdatetime_time_second", &std::tm::tm_sec, 0, 0, 59},
};

std::vector<std::string> tellClock(Settings& camera, const Parameters&)
{
    const std::time_t now = std::time(nullptr) + std::atol(camera.text(ahead).c_str());
    std::tm local{};
    gmtime_r(&now, &local);
    std::vector<std::string> lines = camera.lines(keptKeys);
    for (const Part& part : parts)
        lines.push_back(std::string(part.key) + "=" + std::to_string(local.*part.member + part.base));
    lines.insert(lines.begin(), "[SYSTEMDATETIME]");
    return lines;
}

/// The time that a client sets, or nothing when a part of it is missing or makes no sense.
std::optional<std::time_t> timeIn(const Parameters& parameters)
{
    std::tm local{};
    for (const Part& part : parts) {
        const auto given = parameters.find(part.key);
        const int value = given != parameters.end() ? std::atoi(given->second.c_str()) : part.lowest - 1;
        if (value < part.lowest || value > part.highest)
            return std::nullopt;
        local.*part.member = value - part.base;
    }
    return timegm(&local);
}

/// "+8" and "-3:30" as seconds.
long zoneOffset(const std::string& zone)
{
    int hours = 0;
    int minutes = 0;
    std::sscanf(zone.c_str(), "%d:%d", &hours, &minutes);
    return 3600L * hours + (zone.starts_with('-') ? -60L : 60L) * minutes;
}

void synchronise(Settings& camera)
{
    const long summer = camera.text("system_datetime_daylight") == "1" ? 3600 : 0;
    camera.put(ahead, std::to_string(zoneOffset(camera.text("system_datetime_timezone_tz")) + summer));
}

// What a client does not name stays. The parts of date and time come when it sets the time by hand.
std::vector<std::string> setClock(Settings& camera, const Parameters& parameters)
{
    const bool byHand = parameters.contains(parts[0].key);
    const auto wanted = timeIn(parameters);
    if (byHand && !wanted)
        return {"NG"};
    for (const std::string_view key : keptKeys)
        if (const auto given = parameters.find(key); given != parameters.end())
            camera.keep(key, given->second);
    if (byHand)
        camera.put(ahead, std::to_string(*wanted - std::time(nullptr)));
    else if (parameters.contains("system_datetime_ntp_sync_enable"))
        synchronise(camera);
    return {"OK"};
}

constexpr std::array actions{
    Action{adminPath, "get.system.datetime", tellClock},
    Action{adminPath, "set.system.datetime", setClock},
};

} // namespace

constinit const Area clockArea{.settings = settings, .actions = actions};

} // namespace kxsim
