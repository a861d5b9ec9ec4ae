// kxcam ptz tracking: has the camera follow what moves.
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>

#include <nlohmann/json.hpp>

#include "Assignment.h"
#include "Json.h"
#include "areas/Areas.h"
#include "verbs/Ptz.h"

namespace kxcam
{
namespace
{

constexpr int mostPeriods = 3; // of a day that a camera keeps
constexpr std::uint8_t notTold = 0xFF;

struct Options
{
    std::string manual;
    std::vector<float> region;
    int day = -1;
    std::vector<std::string> periods;
};

void require(int result, const char* what, const CommandLine& line)
{
    if (result != 0)
        throw sdkFailure(std::string(what) + " of " + line.target.address());
}

PtzAutoTrackInfo readTracking(const Session& session, const CommandLine& line)
{
    PtzAutoTrackInfo info{};
    info.auto_tracking_enable = notTold;
    for (TrackDaySchedule& day : info.schedule)
        day.enable = notTold;
    require(Kx_Ipc_GetPTZAutoTrack(session.userId(), &info), "reading the tracking", line);
    return info;
}

template <bool On>
ExitCode switchTracking(const CommandLine& line, Console& console)
{
    const Session session(line.target);
    require(Kx_Ipc_SetManualAutoTrack(session.userId(), On ? 1 : 0, 1), "switching the tracking", line);
    if (readTracking(session, line).auto_tracking_enable != (On ? 1 : 0)) {
        remark("the camera did not keep it");
        return ExitCode::NotKept;
    }
    reportDone(On ? "tracking on" : "tracking off", line.json, console);
    return ExitCode::Ok;
}

ExitCode switchManual(const Options& options, const CommandLine& line, Console& console)
{
    const int value = options.manual == "on" ? 1 : 0;
    require(Kx_Ipc_SetManualAutoTrack(Session(line.target).userId(), value, 0),
            "switching the manual tracking", line);
    reportDone("manual tracking " + options.manual, line.json, console);
    return ExitCode::Ok;
}

ExitCode follow(const Options& options, const CommandLine& line, Console& console)
{
    float region[5] = {};
    std::copy(options.region.begin(), options.region.end(), region + 1);
    require(Kx_Ipc_SetManualTrackPoint(Session(line.target).userId(), region), "pointing the tracking", line);
    reportDone("following", line.json, console);
    return ExitCode::Ok;
}

// The schedule.

struct Period
{
    TrackTime start;
    TrackTime end;
};

bool isTime(const TrackTime& time)
{
    return time.hour >= 0 && time.minute >= 0 && time.minute < 60 && time.hour * 60 + time.minute <= 24 * 60;
}

/// "08:00-18:30"
Period parsePeriod(const std::string& text)
{
    Period period{};
    int length = -1;
    std::sscanf(text.c_str(), "%2d:%2d-%2d:%2d%n", &period.start.hour, &period.start.minute, &period.end.hour,
                &period.end.minute, &length);
    if (length != static_cast<int>(text.size()) || !isTime(period.start) || !isTime(period.end))
        throw Failure(ExitCode::Usage, "'" + printable(text) + "' is no period of a day such as 08:00-18:30");
    return period;
}

TrackDaySchedule parseDay(const std::vector<std::string>& texts)
{
    TrackDaySchedule day{};
    if (texts.size() == 1 && texts.front() == "off")
        return day;
    day.enable = 1;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const Period period = parsePeriod(texts[i]);
        day.start[i] = period.start;
        day.end[i] = period.end;
    }
    return day;
}

std::string textOf(const TrackTime& start, const TrackTime& end)
{
    char text[64];
    std::snprintf(text, sizeof text, "%02d:%02d-%02d:%02d", start.hour, start.minute, end.hour, end.minute);
    return text;
}

std::vector<std::string> periodsOf(const TrackDaySchedule& day)
{
    constexpr char none[] = "00:00-00:00";
    std::vector<std::string> texts;
    for (int i = 0; i < mostPeriods; ++i)
        if (const std::string text = textOf(day.start[i], day.end[i]); text != none)
            texts.push_back(text);
    return texts;
}

std::string lineOf(const TrackDaySchedule& day)
{
    if (day.enable == notTold)
        return "(not told)";
    const std::vector<std::string> texts = periodsOf(day);
    return texts.empty() ? "off" : joined(texts, " ");
}

void printSchedule(const PtzAutoTrackInfo& info, bool json, Console& console)
{
    std::vector<TableLine> lines;
    auto days = nlohmann::ordered_json::array();
    for (const TrackDaySchedule& day : info.schedule) {
        lines.push_back({"day " + std::to_string(lines.size()), lineOf(day), ""});
        days.push_back(day.enable == notTold ? nlohmann::ordered_json()
                                             : nlohmann::ordered_json(periodsOf(day)));
    }
    if (json)
        printJson({{"days", days}}, console);
    else
        console.table(lines);
}

/// The settings that a set sends with the new day, all of them told by the camera.
PtzAutoTrackInfo settingsToKeep(Session& session, const CommandLine& line)
{
    const Area& area = findArea("tracking");
    requireTold(area, session.read(area));
    const PtzAutoTrackInfo info = readTracking(session, line);
    for (const TrackDaySchedule& day : info.schedule)
        if (day.enable == notTold)
            throw Failure(ExitCode::Refused, line.target.address() + " does not tell all of its schedule, "
                                                                     "which a change would then erase");
    return info;
}

ExitCode changeDay(const Options& options, const CommandLine& line, Console& console)
{
    const TrackDaySchedule wanted = parseDay(options.periods);
    Session session(line.target);
    PtzAutoTrackInfo info = settingsToKeep(session, line);
    info.schedule[options.day] = wanted;
    require(Kx_Ipc_SetPTZAutoTrack(session.userId(), &info), "writing the tracking", line);
    const PtzAutoTrackInfo after = readTracking(session, line);
    printSchedule(after, line.json, console);
    if (periodsOf(after.schedule[options.day]) == periodsOf(wanted))
        return ExitCode::Ok;
    remark("the camera did not keep the new schedule");
    return ExitCode::NotKept;
}

ExitCode schedule(const Options& options, const CommandLine& line, Console& console)
{
    if (options.day >= 0)
        return changeDay(options, line, console);
    printSchedule(readTracking(Session(line.target), line), line.json, console);
    return ExitCode::Ok;
}

// The points.

/// Room for all points that a camera can tell of; a point that it does not tell has no id.
class Points
{
public:
    static constexpr int noId = std::numeric_limits<int>::min();

    Points() : room_(std::make_unique<std::byte[]>(sizeof(AutoTrackPointInfo) + pointRoom))
    {
        for (int i = 0; i < KX_MOST_TRACK_POINTS; ++i)
            info().points[i].id = noId;
    }

    AutoTrackPointInfo& info() { return *reinterpret_cast<AutoTrackPointInfo*>(room_.get()); }

    std::vector<TrackPoint> told()
    {
        std::vector<TrackPoint> points;
        std::copy_if(info().points, info().points + KX_MOST_TRACK_POINTS, std::back_inserter(points),
                     [](const TrackPoint& point) { return point.id != noId; });
        return points;
    }

private:
    static constexpr std::size_t pointRoom = KX_MOST_TRACK_POINTS * sizeof(TrackPoint);

    std::unique_ptr<std::byte[]> room_;
};

std::string lineOf(const TrackPoint& point)
{
    char text[128];
    std::snprintf(text, sizeof text, "type %d, from %d,%d to %d,%d", point.type, point.startX, point.startY,
                  point.stopX, point.stopY);
    return text;
}

ExitCode showPoints(const CommandLine& line, Console& console)
{
    Points points;
    const AutoTrackPointInfo& info = points.info();
    require(Kx_Ipc_GetAutoTrackPoint(Session(line.target).userId(), &points.info()), "reading the points",
            line);
    std::vector<TableLine> lines;
    auto array = nlohmann::ordered_json::array();
    for (const TrackPoint& point : points.told()) {
        lines.push_back({"object " + std::to_string(point.id), lineOf(point), ""});
        array.push_back({{"id", point.id},
                         {"type", point.type},
                         {"startX", point.startX},
                         {"startY", point.startY},
                         {"stopX", point.stopX},
                         {"stopY", point.stopY}});
    }
    if (line.json) {
        printJson({{"width", info.width}, {"height", info.height}, {"points", array}}, console);
    } else {
        console.print(std::to_string(lines.size()) + " in a picture of " + std::to_string(info.width) +
                      " x " + std::to_string(info.height) + "\n");
        console.table(lines);
    }
    return ExitCode::Ok;
}

void addSchedule(const Verb& tracking, const std::shared_ptr<Options>& options)
{
    const Verb days =
        tracking.add("schedule", "Show when the camera tracks, or change a day").does(schedule, options);
    const Parameter day =
        days.argument("DAY", &options->day, "The day of the week to change, 0 to 6").within(0, 6);
    const Parameter periods =
        days.argument("PERIODS", &options->periods, "Up to three such as 08:00-18:30, or off")
            .count(1, mostPeriods);
    day.needs(periods);
}

} // namespace

void addPtzTracking(const Verb& ptz)
{
    const auto options = std::make_shared<Options>();
    const Verb tracking = ptz.add("tracking", "Follow what moves", noFooter);
    tracking.add("on", "Track automatically, and show the frame").does(switchTracking<true>);
    tracking.add("off", "End automatic tracking").does(switchTracking<false>);
    addSwitch(
        tracking.add("manual", "Switch the tracking of what 'follow' points at").does(switchManual, options),
        &options->manual);
    tracking.add("follow", "Track what is in a part of the picture")
        .does(follow, options)
        .argument("SIDES", &options->region, "The part's sides: four numbers, as the camera counts them")
        .required()
        .count(4, 4);
    tracking.add("points", "Show what the camera tracks just now").does(showPoints);
    addSchedule(tracking, options);
}

} // namespace kxcam
