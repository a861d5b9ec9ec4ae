// Tracking of moving objects: schedules, what a set sends, and points that a camera tells of.
#include "SdkTest.h"

#include <cstring>

using kxsim::httpReply;
using testing::ElementsAre;

namespace
{

using Tracking = CameraTest;

/// Room for so many points; those that a get leaves alone show it.
template <std::size_t Room>
struct Points
{
    Points() { std::memset(bytes, 0x55, sizeof bytes); }

    AutoTrackPointInfo& info() { return *reinterpret_cast<AutoTrackPointInfo*>(bytes); }
    std::vector<int> fields(std::size_t i)
    {
        const TrackPoint& p = info().points[i];
        return {p.id, p.type, p.startX, p.startY, p.stopX, p.stopY};
    }

    alignas(AutoTrackPointInfo) char bytes[sizeof(AutoTrackPointInfo) + Room * sizeof(TrackPoint)];
};

constexpr int untouched = 0x55555555;

} // namespace

TEST_F(Tracking, ASchedulesPeriodsAreReadAsFarAsTheyGo)
{
    using Periods = std::vector<std::vector<int>>;
    const Periods none = {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}};
    const struct
    {
        std::string text;
        Periods periods;
        int enable;
    } rows[] = {
        {"='08:00:18:30;'", {{8, 0, 18, 30}, none[1], none[2]}, 1},
        {"='08:00:18:3", none, 0},
        {"='08:00:18:30", {{8, 0, 18, 30}, none[1], none[2]}, 1},
        {"='00:00:00:00;00:00:00:01'", {none[0], {0, 0, 0, 1}, none[2]}, 1},
        {"='08:00:18:30;19:00:20:0\n", {{8, 0, 18, 30}, none[1], none[2]}, 1},
        {"='00:00:00:00;00:00:00:00;00:00:24:00;'\r", {none[0], none[1], {0, 0, 24, 0}}, 1},
        {"='00:00:00:00;00:00:00:00;00:00:24:0\r", {none[0], none[1], {0, 0, 24, 0}}, 1},
        {"='00:00:00:00;00:00:00:00;00:00:00:00;01:01:01:01;'", none, 0},
        {"='" + std::string(500, '9'), {{99, 99, 99, 99}, {99, 99, 99, 99}, {99, 99, 99, 99}}, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        PtzAutoTrackInfo before{};
        before.schedule[6].enable = 7;
        before.schedule[6].start[3] = {1, 2, 3};
        before.schedule[5].enable = 9;
        const auto info = read(Kx_Ipc_GetPTZAutoTrack,
                               "auto_tracking_schedule_5=08:00:18:30;\n"
                               "auto_tracking_schedule_6" +
                                   row.text + "\n",
                               before);
        const TrackDaySchedule& day = info.schedule[6];
        Periods periods;
        for (std::size_t i : {0U, 1U, 2U})
            periods.push_back({day.start[i].hour, day.start[i].minute, day.end[i].hour, day.end[i].minute});
        EXPECT_EQ(periods, row.periods);
        EXPECT_EQ(day.enable, row.enable);
        EXPECT_EQ(day.start[3].second, 3);
        EXPECT_EQ(info.schedule[5].enable, 9); // not told: the opening quote is missing
    }
    // What the caller had counts where the camera tells less.
    PtzAutoTrackInfo before{};
    before.schedule[0].end[2].minute = 5;
    EXPECT_EQ(read(Kx_Ipc_GetPTZAutoTrack, "auto_tracking_schedule_0=''\n", before).schedule[0].enable, 1);
}

TEST_F(Tracking, TrackingIsSentWithTheDaysThatAreEnabled)
{
    PtzAutoTrackInfo info = read(Kx_Ipc_GetPTZAutoTrack,
                                 "auto_tracking_enable=1\nauto_tracking_show=2\nauto_tracking_sensitivity=3\n"
                                 "auto_tracking_max_time=400\nmanual_tracking=5\n"
                                 "auto_tracking_zoom_mode=-6\nauto_tracking_zoom_number=700\n");
    EXPECT_EQ(queries(ti).back(), action("get.auto.tracking&format=inf"));
    EXPECT_EQ(info.manual_tracking, 5);
    info.schedule[1] = {1, {{8, 0, 9}, {20, 5, 0}}, {{18, 30, 0}, {22, 0, 0}, {0, 0, 9}, {9, 9, 9}}};
    info.schedule[3] = info.schedule[1];
    info.schedule[3].enable = 0;
    const std::string none = "=00:00:00:00;00:00:00:00;00:00:00:00;";
    std::string days;
    for (int day = 0; day < 7; ++day)
        days += "&auto_tracking_schedule_" + std::to_string(day) +
                (day == 1 ? "=08:00:18:30;20:05:22:00;00:00:00:00;" : none);
    EXPECT_EQ(Kx_Ipc_SetPTZAutoTrack(tiId, &info), 0);
    EXPECT_EQ(queries(ti).back(),
              action("set.auto.tracking&auto_tracking_enable=1" + days +
                     "&auto_tracking_show=2&auto_tracking_sensitivity=3&auto_tracking_max_time=400"
                     "&auto_tracking_zoom_mode=-6&auto_tracking_zoom_number=700"));
    PtzAutoTrackInfo kept{};
    EXPECT_EQ(Kx_Ipc_GetPTZAutoTrack(tiId, &kept), 0);
    EXPECT_EQ(kept.auto_tracking_zoom_number, 700);
    EXPECT_EQ(kept.manual_tracking, 0); // is not sent
    EXPECT_EQ(kept.schedule[1].enable, 1);
    EXPECT_EQ(kept.schedule[1].start[1].minute, 5);
    EXPECT_EQ(kept.schedule[3].enable, 0);
}

TEST_F(Tracking, ManualTrackingIsSentInEitherForm)
{
    EXPECT_EQ(Kx_Ipc_SetManualAutoTrack(tiId, 1, 2), 0);
    EXPECT_EQ(Kx_Ipc_SetManualAutoTrack(tiId, -4, 0), 0);
    const float region[] = {9, 0.125F, 0.5F, -1, 3.4e38F};
    EXPECT_EQ(Kx_Ipc_SetManualTrackPoint(tiId, region), 0);
    EXPECT_THAT(queries(ti),
                ElementsAre(action("set.auto.tracking&auto_tracking_enable=1&auto_tracking_show=1"),
                            action("set.auto.tracking&manual_tracking=-4"),
                            action("set.auto.tracking&manual_tracking_region=0.12:0.50:-1.00:"
                                   "339999995214436424907732413799364296704.00")));
}

TEST_F(Tracking, PointsAreReadAsFarAsTheCameraTellsThem)
{
    EXPECT_EQ(Kx_Ipc_SetManualAutoTrack(pageId, 1, 1), 0);
    const float region[] = {0, 0, 0.25F, 0.5F, 1};
    EXPECT_EQ(Kx_Ipc_SetManualTrackPoint(pageId, region), 0);
    Points<4> points;
    EXPECT_EQ(Kx_Ipc_GetAutoTrackPoint(pageId, &points.info()), 0);
    EXPECT_EQ(queries(page).back(), action("get.track.point&format=inf"));
    EXPECT_EQ(points.info().track_point_num, 3);
    EXPECT_EQ(points.info().width, 1920);
    EXPECT_EQ(points.info().height, 1080);
    EXPECT_THAT(points.fields(1), ElementsAre(2, 0, 960, 270, 1200, 540));
    EXPECT_THAT(points.fields(2), ElementsAre(3, 1, 0, 270, 960, 1080));
    EXPECT_THAT(points.fields(3), testing::Each(untouched));

    page.replaceReply("track.point", httpReply("track_point_num=2\nid_0=5\nstopY_1=6\nid_2=7\n"));
    Points<3> some;
    EXPECT_EQ(Kx_Ipc_GetAutoTrackPoint(pageId, &some.info()), 0);
    EXPECT_THAT(some.fields(0), ElementsAre(5, untouched, untouched, untouched, untouched, untouched));
    EXPECT_THAT(some.fields(1), ElementsAre(untouched, untouched, untouched, untouched, untouched, 6));
    EXPECT_THAT(some.fields(2), testing::Each(untouched));
}

TEST_F(Tracking, ACameraThatClaimsAnyNumberOfPointsNeitherHangsNorLeavesTheRoom)
{
    Points<KX_MOST_TRACK_POINTS + 1> points;
    page.replaceReply("track.point", httpReply("track_point_num=2147483647\nid_2047=1\nid_2048=2\n"));
    EXPECT_EQ(Kx_Ipc_GetAutoTrackPoint(pageId, &points.info()), 0);
    EXPECT_EQ(points.info().track_point_num, 2147483647);
    EXPECT_EQ(points.fields(2047).front(), 1);
    EXPECT_EQ(points.fields(2048).front(), untouched);
    Points<1> few;
    page.replaceReply("track.point", httpReply("track_point_num=-1\nid_0=1\n"));
    EXPECT_EQ(Kx_Ipc_GetAutoTrackPoint(pageId, &few.info()), 0);
    EXPECT_EQ(few.fields(0).front(), untouched);
}
