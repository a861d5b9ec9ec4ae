// The clock: what is asked and sent, the defaults, and a simulated camera's clock that runs.
#include "SdkTest.h"

#include <chrono>
#include <ctime>
#include <thread>

using kxsim::httpReply;
using testing::ElementsAre;

using ClockSettings = CameraTest;

static const std::string path = "/cgi-bin/admin/admin.cgi?";

namespace
{

std::time_t timeOf(const DateTimeInfo& info)
{
    std::tm parts{};
    parts.tm_year = info.year - 1900;
    parts.tm_mon = info.month - 1;
    parts.tm_mday = info.day;
    parts.tm_hour = info.hour;
    parts.tm_min = info.minute;
    parts.tm_sec = info.second;
    return timegm(&parts);
}

DateTimeInfo aRecord(std::uint8_t type)
{
    DateTimeInfo info{};
    info.system_datetime_datetimetype = type;
    put(info.date, "not sent");
    put(info.time, "not sent");
    info.year = 2021;
    info.month = 2;
    info.day = 3;
    info.hour = 4;
    info.minute = 5;
    info.second = 6;
    info.system_datetime_daylight = 1;
    put(info.system_datetime_ntp_server_address, "ntp.example.org");
    put(info.system_datetime_timezone_tz, "-3:30");
    put(info.system_datetime_zonename_tz, "New Found");
    return info;
}

} // namespace

TEST_F(ClockSettings, ReadEveryKeyOfTheirSection)
{
    const std::string server(100, 's');
    const DateTimeInfo info =
        read(Kx_Ipc_GetSystemDate, "[OTHER]\r\nsystem_datetime_daylight=7\r\n"
                                   "[SYSTEMDATETIME]\r\n"
                                   "system_datetime_localdatetime_date_year=2024\r\n"
                                   "system_datetime_localdatetime_date_month = 0x2\r\n"
                                   "system_datetime_localdatetime_date_day=9\r\n"
                                   "system_datetime_localdatetime_time_hour=8\r\n"
                                   "system_datetime_localdatetime_time_minute=7\r\n"
                                   "system_datetime_localdatetime_time_second=6\r\n"
                                   "system_datetime_daylight=1\r\n"
                                   "system_datetime_datetimetype=257\r\n"
                                   "system_datetime_timezone_tz=\"-12345678901\"\r\n"
                                   "system_datetime_zonename_tz='New Found'\r\n"
                                   "system_datetime_ntp_server_address=" +
                                       server + "\r\n[NEXT]\r\nsystem_datetime_daylight=8\r\n");
    EXPECT_THAT(queries(ti), ElementsAre(path + "action=get.system.datetime&format=inf"));
    EXPECT_STREQ(info.date, "2024/2/9");
    EXPECT_STREQ(info.time, "08:07:06");
    EXPECT_EQ(timeOf(info), 1707466026);
    EXPECT_EQ(info.system_datetime_daylight, 1);
    EXPECT_EQ(info.system_datetime_datetimetype, 1); // the low byte
    EXPECT_EQ(info.system_datetime_ntp_server_address, server.substr(0, 63));
    EXPECT_STREQ(info.system_datetime_timezone_tz, "\"-1234567"); // cut before the quotes could go
    EXPECT_STREQ(info.system_datetime_zonename_tz, "New Found");
}

TEST_F(ClockSettings, WhatTheCameraDoesNotTellBecomesADefault)
{
    const std::string replies[] = {
        "system_datetime_daylight=1\nsystem_datetime_localdatetime_date_year=2024\n", // in no section
        "[SYSTEMDATETIME]\nsystem_datetime_timezone_tz=\n"};
    for (const std::string& lines : replies) {
        const DateTimeInfo info = read(Kx_Ipc_GetSystemDate, lines, aRecord(0));
        EXPECT_STREQ(info.date, "1970/10/10");
        EXPECT_STREQ(info.time, "12:10:10");
        EXPECT_EQ(timeOf(info), 24408610);
        EXPECT_EQ(info.system_datetime_daylight, 0);
        EXPECT_EQ(info.system_datetime_datetimetype, 1);
        EXPECT_STREQ(info.system_datetime_ntp_server_address, "pool.ntp.org");
        EXPECT_STREQ(info.system_datetime_timezone_tz, "+8");
        EXPECT_STREQ(info.system_datetime_zonename_tz, "CHN");
    }
}

TEST_F(ClockSettings, ValuesOfAnySizeStayInTheirFields)
{
    const DateTimeInfo info =
        read(Kx_Ipc_GetSystemDate, "[SYSTEMDATETIME]\nsystem_datetime_localdatetime_date_year=-2147483648\n"
                                   "system_datetime_localdatetime_date_month=2147483647\n"
                                   "system_datetime_localdatetime_time_hour=-2147483648\n"
                                   "system_datetime_zonename_tz=" +
                                       std::string(40, 'z') + "\n");
    EXPECT_STREQ(info.date, "-2147483648/21");
    EXPECT_STREQ(info.time, "-2147483648:10");
    EXPECT_EQ(info.month, 2147483647);
    EXPECT_EQ(info.system_datetime_zonename_tz, std::string(31, 'z'));
}

TEST_F(ClockSettings, AnEmptyReplyLeavesTheRecordAlone)
{
    DateTimeInfo info = aRecord(0);
    ti.replaceReply("", std::string("\0[SYSTEMDATETIME]", 17));
    EXPECT_EQ(Kx_Ipc_GetSystemDate(tiId, &info), -1);
    EXPECT_STREQ(info.date, "not sent");
}

TEST_F(ClockSettings, TheSourceDecidesWhatIsSent)
{
    const std::string common = path +
                               "action=set.system.datetime&system_datetime_daylight=1"
                               "&system_datetime_timezone_tz=-3:30"
                               "&system_datetime_zonename_tz=New%20Found&system_datetime_datetimetype=";
    const std::string time =
        "&system_datetime_localdatetime_time_hour=4&system_datetime_localdatetime_time_minute=5"
        "&system_datetime_localdatetime_time_second=6&system_datetime_localdatetime_date_year=2021"
        "&system_datetime_localdatetime_date_month=2&system_datetime_localdatetime_date_day=3";
    for (std::uint8_t type = 0; type < 4; ++type) {
        const DateTimeInfo info = aRecord(type);
        EXPECT_EQ(Kx_Ipc_SetSystemDate(tiId, &info), 0);
    }
    EXPECT_THAT(queries(ti), ElementsAre(common + "0&system_datetime_ntp_sync_enable=1"
                                                  "&system_datetime_ntp_server_address=ntp.example.org",
                                         common + "1" + time, common + "2" + time, common + "3"));
}

TEST_F(ClockSettings, TheCamerasClockRunsFromWhereItIsSet)
{
    const DateTimeInfo set = aRecord(2);
    ASSERT_EQ(Kx_Ipc_SetSystemDate(tiId, &set), 0);
    DateTimeInfo got{};
    const auto secondsBehind = [&] {
        EXPECT_EQ(Kx_Ipc_GetSystemDate(tiId, &got), 0);
        return timeOf(got) - timeOf(set);
    };
    for (int tries = 0; tries < 300 && secondsBehind() == 0; ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_GT(secondsBehind(), 0);
    EXPECT_LT(secondsBehind(), 60);
    EXPECT_EQ(got.system_datetime_datetimetype, 2);
    EXPECT_STREQ(got.system_datetime_zonename_tz, "New Found");
    EXPECT_STREQ(got.system_datetime_timezone_tz, "-3:30");

    // By NTP it is right again, in its own zone and summer time.
    const DateTimeInfo byNtp = aRecord(0);
    ASSERT_EQ(Kx_Ipc_SetSystemDate(tiId, &byNtp), 0);
    ASSERT_EQ(Kx_Ipc_GetSystemDate(tiId, &got), 0);
    EXPECT_NEAR(static_cast<double>(timeOf(got)), static_cast<double>(std::time(nullptr) - 9000), 60);
    EXPECT_STREQ(got.system_datetime_ntp_server_address, "ntp.example.org");
}
