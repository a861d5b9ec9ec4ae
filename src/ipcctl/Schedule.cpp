#include "ipcctl/Schedule.h"

#include <algorithm>

namespace
{

constexpr int dayMinutes = 24 * 60;

/// Minutes since midnight; -1 for a time that no clock shows.
int minuteOfDay(int hour, int minute)
{
    const bool exists = hour >= 0 && minute >= 0 && minute < 60 && (hour < 24 || (hour == 24 && minute == 0));
    return exists ? hour * 60 + minute : -1;
}

bool holds(const _record_time_t& entry, int weekday, int minute)
{
    const int start = minuteOfDay(entry.startHour, entry.startMinute);
    const int end = minuteOfDay(entry.endHour, entry.endMinute);
    if (start < 0 || end < 0)
        return false;
    const bool today = entry.days[weekday] != 0;
    const bool yesterday = entry.days[(weekday + 6) % 7] != 0;
    if (start < end)
        return today && minute >= start && minute < end;
    return (today && minute >= start) || (yesterday && minute < end);
}

} // namespace

void Schedule::add(const _record_time_t& entry)
{
    entries_.push_back(entry);
}

bool Schedule::covers(std::time_t time) const
{
    std::tm local = {};
    if (::localtime_r(&time, &local) == nullptr)
        return false;
    const int minute = std::min(local.tm_hour * 60 + local.tm_min, dayMinutes - 1);
    return std::any_of(entries_.begin(), entries_.end(),
                       [&](const _record_time_t& entry) { return holds(entry, local.tm_wday, minute); });
}
