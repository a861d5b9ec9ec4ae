// Motion in the live picture, and the times at which something is recorded.
#include <KxIpcSDK/KxMedia.h>

#include <algorithm>
#include <array>

#include "KxIpcSDK/media/StreamCall.h"

namespace
{

constexpr std::size_t gridRows = 32;
constexpr std::size_t gridColumns = 24;
constexpr int mostPictures = 5;
constexpr int longestRecording = 1800; // seconds
constexpr std::uint8_t lastDay = 6;

using Map = std::array<unsigned char, gridRows * gridColumns>;

/// The cells row by row, each with `base` added.
Map mapOf(const std::uint8_t (*grid)[gridColumns], unsigned char base)
{
    Map map;
    const std::uint8_t* const first = grid[0];
    std::transform(first, first + map.size(), map.begin(),
                   [base](std::uint8_t cell) { return static_cast<unsigned char>(base + cell); });
    return map;
}

_record_time_t timeOf(const RecordScheduleInfo& schedule)
{
    _record_time_t time{};
    time.days[std::min(static_cast<std::uint8_t>(schedule.day), lastDay)] = 1;
    time.startHour = schedule.startHour;
    time.startMinute = schedule.startMinute;
    time.endHour = schedule.endHour;
    time.endMinute = schedule.endMinute;
    return time;
}

int addTime(long userId, const RecordScheduleInfo* schedule, void (CIpCamera::*add)(_record_time_t*))
{
    const StreamCall camera(userId, schedule, KX_ERROR_LIVE_STATE);
    if (!camera)
        return -1;
    _record_time_t time = timeOf(*schedule);
    ((*camera).*add)(&time);
    return 0;
}

} // namespace

int Kx_IpcClient_DrawGrid(long userId, int, std::uint8_t grid[gridRows][gridColumns])
{
    const StreamCall camera(userId, grid, KX_ERROR_LIVE_STATE);
    if (!camera)
        return -1;
    Map map = mapOf(grid, '0');
    camera->SetMotionDetectMap(map.data());
    return 0;
}

int Kx_IpcClient_SetMotionSettings(long userId, const MotionSettingsInfo* settings)
{
    const StreamCall camera(userId, settings, KX_ERROR_LIVE_STATE);
    if (!camera)
        return -1;
    camera->SetMotionDetectLevel(settings->level);
    camera->SetMotionSpaceTime(settings->spaceTime);
    Map map = mapOf(settings->map, 0);
    camera->SetMotionDetectMap(map.data());
    camera->SetMotionSaveType(settings->saveType, std::min(settings->saveValue1, mostPictures),
                              std::min(settings->saveValue2, longestRecording));
    return 0;
}

int Kx_IpcClient_AddMotionSchedule(long userId, const RecordScheduleInfo* schedule)
{
    return addTime(userId, schedule, &CIpCamera::AddMotionSaveTime);
}

int Kx_IpcClient_AddAutoSaveSchedule(long userId, const RecordScheduleInfo* schedule)
{
    return addTime(userId, schedule, &CIpCamera::AddAutoSaveTime);
}
