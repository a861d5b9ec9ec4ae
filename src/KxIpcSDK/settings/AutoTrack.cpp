// Tracking of moving objects: automatic with its schedule, by hand, and what is tracked just now.
#include <KxIpcSDK/KxPtz.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>

#include "KxIpcSDK/CameraCall.h"
#include "KxIpcSDK/Key.h"
#include "NetManager/ReplyFields.h"

namespace
{

using TrackingReply = Reply<PlainStyle, 10240>;
using TrackingAnswer = Reply<PlainStyle, 1024>;

constexpr int periods = 3; // of the four that a day has room for
constexpr char setTracking[] = "action=set.auto.tracking";

static_assert(KX_MOST_TRACK_POINTS >= TrackingReply::size / (sizeof "id_0=" - 1));

// A day is "08:00:18:30;20:00:22:00;00:00:00:00;": a period is eleven characters and what divides it from the next.
constexpr std::size_t periodLength = 11;

int twoDigits(const char* place)
{
    const char digits[] = {place[0], place[1], '\0'};
    return std::atoi(digits);
}

void readPeriod(const char* text, TrackTime& start, TrackTime& end)
{
    start.hour = twoDigits(text);
    start.minute = twoDigits(text + 3);
    end.hour = twoDigits(text + 6);
    end.minute = twoDigits(text + 9);
}

bool isMidnight(const TrackTime& time)
{
    return time.hour == 0 && time.minute == 0;
}

void readDay(const char* text, TrackDaySchedule& day)
{
    const std::size_t length = std::strlen(text);
    for (std::size_t i = 0, at = 0; i < periods && length >= at + periodLength; ++i, at += periodLength + 1)
        readPeriod(text + at, day.start[i], day.end[i]);
    const bool empty = std::all_of(day.start, day.start + periods, isMidnight) &&
                       std::all_of(day.end, day.end + periods, isMidnight);
    day.enable = empty ? 0 : 1;
}

void addDay(Query& query, int number, const TrackDaySchedule& day)
{
    query.add("&auto_tracking_schedule_%d=", number);
    for (int i = 0; i < periods; ++i) {
        const TrackTime start = day.enable != 0 ? day.start[i] : TrackTime{};
        const TrackTime end = day.enable != 0 ? day.end[i] : TrackTime{};
        query.add("%02d:%02d:%02d:%02d;", start.hour, start.minute, end.hour, end.minute);
    }
}

void readPoint(const TrackingReply& reply, int number, TrackPoint& point)
{
    reply.number(Key("id_%d", number), point.id);
    reply.number(Key("type_%d", number), point.type);
    reply.number(Key("startX_%d", number), point.startX);
    reply.number(Key("startY_%d", number), point.startY);
    reply.number(Key("stopX_%d", number), point.stopX);
    reply.number(Key("stopY_%d", number), point.stopY);
}

/// With two decimal places and a point, whatever the application's locale.
class Decimal
{
public:
    explicit Decimal(float value)
    {
        *std::to_chars(text_, std::end(text_) - 1, value, std::chars_format::fixed, 2).ptr = '\0';
    }

    const char* text() const { return text_; }

private:
    char text_[std::numeric_limits<float>::max_exponent10 + 8]; // sign, point, places, terminator
};

} // namespace

int Kx_Ipc_GetPTZAutoTrack(long userId, PtzAutoTrackInfo* info)
{
    CameraCall call(userId, info);
    const auto reply = call.get<TrackingReply>("action=get.auto.tracking&format=inf", adminRequest);
    if (!reply)
        return -1;
    reply.number("auto_tracking_enable", info->auto_tracking_enable);
    reply.number("auto_tracking_show", info->auto_tracking_show);
    reply.number("auto_tracking_sensitivity", info->auto_tracking_sensitivity);
    reply.number("auto_tracking_max_time", info->auto_tracking_max_time);
    reply.number("manual_tracking", info->manual_tracking);
    reply.number("auto_tracking_zoom_mode", info->auto_tracking_zoom_mode);
    reply.number("auto_tracking_zoom_number", info->auto_tracking_zoom_number);
    for (int day = 0; day < static_cast<int>(std::size(info->schedule)); ++day) {
        char text[64];
        const Key key("auto_tracking_schedule_%d='", day);
        if (KxSscanf(reply.raw(), key, "\n", text, sizeof text - 1) != -1)
            readDay(text, info->schedule[day]);
    }
    return 0;
}

int Kx_Ipc_SetPTZAutoTrack(long userId, const PtzAutoTrackInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    Query query;
    query.add(setTracking);
    query.number("auto_tracking_enable", info->auto_tracking_enable);
    for (int day = 0; day < static_cast<int>(std::size(info->schedule)); ++day)
        addDay(query, day, info->schedule[day]);
    query.number("auto_tracking_show", info->auto_tracking_show);
    query.number("auto_tracking_sensitivity", info->auto_tracking_sensitivity);
    query.number("auto_tracking_max_time", info->auto_tracking_max_time);
    query.number("auto_tracking_zoom_mode", info->auto_tracking_zoom_mode);
    query.number("auto_tracking_zoom_number", info->auto_tracking_zoom_number);
    return call.set<TrackingAnswer>(query, adminRequest);
}

int Kx_Ipc_GetAutoTrackPoint(long userId, AutoTrackPointInfo* info)
{
    CameraCall call(userId, info);
    const auto reply = call.get<TrackingReply>("action=get.track.point&format=inf", adminRequest);
    if (!reply)
        return -1;
    reply.number("track_point_num", info->track_point_num);
    reply.number("media_profile_resolution_width", info->width);
    reply.number("media_profile_resolution_height", info->height);
    // A camera may claim any number of points, but not tell of them.
    for (int i = 0; i < std::min<int>(info->track_point_num, KX_MOST_TRACK_POINTS); ++i)
        readPoint(reply, i, info->points[i]);
    return 0;
}

int Kx_Ipc_SetManualAutoTrack(long userId, int value, int mode)
{
    CameraCall call(userId);
    Query query;
    query.add(setTracking);
    if (mode != 0) {
        query.number("auto_tracking_enable", value);
        query.number("auto_tracking_show", value);
    } else {
        query.number("manual_tracking", value);
    }
    return call.set<TrackingAnswer>(query, adminRequest);
}

int Kx_Ipc_SetManualTrackPoint(long userId, const float* region)
{
    CameraCall call(userId, region);
    if (!call)
        return -1;
    Query query;
    query.add("%s&manual_tracking_region=%s:%s:%s:%s", setTracking, Decimal(region[1]).text(),
              Decimal(region[2]).text(), Decimal(region[3]).text(), Decimal(region[4]).text());
    return call.set<TrackingAnswer>(query, adminRequest);
}
