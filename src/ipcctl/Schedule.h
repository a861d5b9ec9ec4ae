// Times of the week.
#pragma once

#include <ctime>
#include <vector>

#include "ipcctl/ipcctl.h"

/// The times within which something is to be saved, local time.
///
/// An entry holds from its start up to, not including, its end on each of its days. An end that does not lie behind the
/// start is one of the next day: 22:00 to 06:00 passes midnight, 08:00 to 08:00 is a whole day. 24:00 is the day's end.
/// An entry with a time that no clock shows never holds.
class Schedule
{
public:
    void add(const _record_time_t& entry);

    /// Whether there is no entry at all.
    bool empty() const { return entries_.empty(); }
    /// Whether an entry holds at this time.
    bool covers(std::time_t time) const;

private:
    std::vector<_record_time_t> entries_;
};
