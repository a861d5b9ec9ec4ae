// Pan, tilt, zoom and lens: each command as it goes out, and what the camera makes of it.
#include "SdkTest.h"

#include <limits>

using kxsim::httpReply;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t noSpeed = -1;

class PtzSettings : public CameraTest
{
protected:
    int control(std::int64_t code, std::uint8_t fisheye = 0, std::int64_t speed = noSpeed) const
    {
        return Kx_Ipc_PTZControl(pageId, code, 7, "gate 100%d%n", fisheye, 3, speed);
    }

    /// The one request that this makes, without "&paratest=productmodel" before it.
    std::string sent(std::int64_t code, std::uint8_t fisheye = 0, std::int64_t speed = noSpeed)
    {
        page.forgetRequests();
        EXPECT_EQ(control(code, fisheye, speed), 0) << code;
        const auto made = queries(page);
        const bool asksModel = code == KX_PTZ_IRIS_OPEN || code == KX_PTZ_IRIS_CLOSE;
        EXPECT_EQ(made.size(), asksModel ? 2U : 1U) << code;
        EXPECT_EQ(made.front() == "&paratest=productmodel", asksModel) << code;
        return made.back();
    }

    std::string value(const char* key) const { return page.value(key).value_or("(none)"); }
};

} // namespace

TEST_F(PtzSettings, EachCodeSendsItsCommand)
{
    const struct
    {
        std::int64_t code;
        const char* fisheye;
        const char* otherwise;
        bool speed = true;
    } rows[] = {
        {0, "&ipncptz=fishptzup=3:0", "&ipncptz=up%000"},
        {1, "&ipncptz=fishptzdown=3:0", "&ipncptz=down%000"},
        {2, "&ipncptz=fishptzleft=3:0", "&ipncptz=left%000"},
        {3, "&ipncptz=fishptzright=3:0", "&ipncptz=right%000"},
        {4, "&ipncptz=fishptztopleft=3:0", "&ipncptz=upleft%000"},
        {5, "&ipncptz=fishptztopright=3:0", "&ipncptz=upright%000"},
        {6, "&ipncptz=fishptzleftdown=3:0", "&ipncptz=downleft%000"},
        {7, "&ipncptz=fishptzrightdown=3:0", "&ipncptz=downright%000"},
        {8, "&ipncptz=fishAuto=3:0", "&ipncptz=auto%000"},
        {9, "&ipncptz=stop=3", "&ipncptz=stop"},
        {10, "&ipncptz=zoomin=3:0", "&ipncptz=zoomin%000"},
        {11, "&ipncptz=zoomout=3:0", "&ipncptz=zoomout%000"},
        {12, "&ipncptz=focusin%000", "&ipncptz=focusin%000", false},
        {13, "&ipncptz=focusout%000", "&ipncptz=focusout%000", false},
        {14, "&irisstep=4&irismanualstep=1&ipncptz=irisin%000",
         "&irisstep=4&irismanualstep=1&ipncptz=irisin%000"},
        {15, "&irisstep=4&irismanualstep=0&ipncptz=irisout%000",
         "&irisstep=4&irismanualstep=0&ipncptz=irisout%000"},
        {16, "&ipncptz=lightoff", "&ipncptz=lightoff", false},
        {17, "&ipncptz=lighton", "&ipncptz=lighton", false},
        {18, "&brushoff", "&brushoff"},
        {19, "&brushon", "&brushon"},
        {20, "&ipncptz=autofocus%000", "&ipncptz=autofocus%000"},
        {21, "&ipncptz=setfishpreset=3:7:gate%20100%d%n", "&ipncptz=setpreset=7:gate%20100%d%n"},
        {22, "&ipncptz=gotofishpreset=3:7", "&ipncptz=gotopreset=7"},
        {23, "&ipncptz=clearfishpreset=3:7", "&ipncptz=clearpreset=7"},
        {24, "&ipncptz=enablepatrol", "&ipncptz=enablepatrol", false},
        {49, "&ipncptz=clearfishpreset=3:7", "&ipncptz=clearpreset=7"},
        {50, "&ipncptz=resetfocus", "&ipncptz=resetfocus"},
        {51, "&ipncptz=autofocus", "&ipncptz=autofocus"},
        {52, "&irismode=1", "&irismode=1"},
        {53, "&irismode=0", "&irismode=0"},
        {54, "&ipncptz=enablepatrol", "&ipncptz=enablepatrol", false},
        {102, "&ipncptz=clearfishpreset=3:7", "&ipncptz=clearpreset=7"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(sent(row.code), row.otherwise);
        EXPECT_EQ(sent(row.code, 0, 5), (row.speed ? "&ptzspeed=5" : "") + std::string(row.otherwise));
        EXPECT_EQ(sent(row.code, 1, 0), (row.speed ? "&ptzspeed=0" : "") + std::string(row.fisheye));
    }
    // The code is not cut to the 32 bits that would make it a movement.
    for (const std::int64_t code :
         {std::int64_t{25}, std::int64_t{36}, std::int64_t{48}, std::int64_t{56}, std::int64_t{101},
          std::int64_t{103}, std::int64_t{200}, std::int64_t{-1}, std::int64_t{1} << 32, greatest, least}) {
        EXPECT_EQ(sent(code), "&ipncptz=stop");
        EXPECT_EQ(sent(code, 255, -2), "&ptzspeed=-2&ipncptz=stop=3");
    }
    EXPECT_EQ(sent(55, 0, 9), "&ptzspeed=9");
    EXPECT_THAT(sent(55), testing::HasSubstr("get.network.general")); // an empty query
}

TEST_F(PtzSettings, TheIrisDependsOnTheCamerasFamily)
{
    for (const std::uint8_t fisheye : {std::uint8_t{0}, std::uint8_t{1}})
        for (const int code : {14, 15})
            EXPECT_EQ(Kx_Ipc_PTZControl(tiId, code, 0, nullptr, fisheye, 0, 6), 0);
    const char ask[] = "&paratest=productmodel";
    const char open[] = "&ptzspeed=6&ipncptz=irisin%000";
    const char close[] = "&ptzspeed=6&ipncptz=irisout%000";
    EXPECT_THAT(queries(ti), ElementsAre(ask, open, ask, close, ask, open, ask, close));

    for (const std::string& answer : {httpReply("", "404 Not Found"), std::string("\0", 1)}) {
        page.forgetRequests();
        page.replaceReply("productmodel", answer);
        EXPECT_EQ(control(KX_PTZ_IRIS_OPEN), -1);
        EXPECT_THAT(queries(page), ElementsAre(ask));
    }
    EXPECT_EQ(control(KX_PTZ_IRIS_OPEN), 0);
    EXPECT_EQ(value("ptz.iris"), "54");
    EXPECT_EQ(control(KX_PTZ_IRIS_CLOSE), 0);
    EXPECT_EQ(value("ptz.iris"), "50");
}

TEST_F(PtzSettings, OnlyANameThatIsSentMustBeThere)
{
    EXPECT_EQ(Kx_Ipc_PTZControl(pageId, KX_PTZ_SET_PRESET, 1, nullptr, 0, 0, noSpeed), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE);
    EXPECT_THAT(page.requests(), IsEmpty());
    EXPECT_EQ(Kx_Ipc_PTZControl(pageId, KX_PTZ_GO_TO_PRESET, 1, nullptr, 0, 0, noSpeed), 0);
}

TEST_F(PtzSettings, TheCameraMovesUntilItIsStoppedAndFindsItsPresets)
{
    PtzRunStatus status{};
    EXPECT_EQ(control(KX_PTZ_UP_RIGHT, 0, 20), 0);
    EXPECT_EQ(control(KX_PTZ_ZOOM_IN, 0, 50), 0);
    EXPECT_EQ(Kx_Ipc_GetPtzRunStatus(pageId, &status), 0);
    EXPECT_EQ(status.ptz_run_status, 1);
    EXPECT_EQ(control(KX_PTZ_STOP), 0);
    EXPECT_EQ(Kx_Ipc_GetPtzRunStatus(pageId, &status), 0);
    EXPECT_EQ(status.ptz_run_status, 0);
    EXPECT_EQ(value("ptz.pan") + " " + value("ptz.tilt") + " " + value("zoompos"), "20 20 50");
    int ratio = 0;
    EXPECT_EQ(Kx_Ipc_GetZoomNumber(pageId, &ratio), 0);
    EXPECT_EQ(ratio, 9);

    EXPECT_EQ(control(KX_PTZ_PATROL), 0); // from where to where?
    EXPECT_EQ(control(KX_PTZ_SET_PRESET), 0);
    EXPECT_EQ(value("ptz.preset.7"), "20:20:50:gate 100%d%n");
    EXPECT_EQ(control(KX_PTZ_DOWN_LEFT, 0, 99), 0);
    EXPECT_EQ(value("ptz.pan"), "-79");
    EXPECT_EQ(control(KX_PTZ_GO_TO_PRESET), 0);
    EXPECT_EQ(value("ptz.pan"), "20");
    EXPECT_EQ(value("ptz.motion"), "");
    EXPECT_EQ(control(KX_PTZ_PATROL), 0);
    EXPECT_EQ(Kx_Ipc_GetPtzRunStatus(pageId, &status), 0);
    EXPECT_EQ(status.ptz_run_status, 2);
    EXPECT_EQ(control(KX_PTZ_CLEAR_PRESET), 0);
    EXPECT_EQ(value("ptz.preset.7"), "(none)");

    page.setValue("system_fisheye_support", "1");
    EXPECT_EQ(control(KX_PTZ_LEFT, 1, 4), 0);
    EXPECT_EQ(value("fish_3.pan"), "-4");
    EXPECT_EQ(Kx_Ipc_GetPtzRunStatus(pageId, &status), 0);
    EXPECT_EQ(status.fish_3_ptz_run_status, 1);
    EXPECT_EQ(value("ptz.pan"), "20");
}

TEST_F(PtzSettings, LensLightsAndWiperAreSwitched)
{
    const struct
    {
        int code;
        const char* key;
        const char* value;
    } rows[] = {
        {KX_PTZ_FOCUS_FAR, "ptz.focus", "51"},  {KX_PTZ_FOCUS_NEAR, "ptz.focus", "50"},
        {KX_PTZ_FOCUS_NEAR, "ptz.focus", "49"}, {KX_PTZ_AUTO_FOCUS_ONCE, "ptz.focus", "50"},
        {KX_PTZ_LIGHT_ON, "lightstatus", "1"},  {KX_PTZ_WIPER_ON, "ptz.brush", "1"},
        {KX_PTZ_WIPER_OFF, "ptz.brush", "0"},   {KX_PTZ_IRIS_MODE_1, "irismode", "1"},
        {KX_PTZ_SPEED_ONLY, "ptzspeed", "9"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(control(row.code, 0, 9), 0);
        EXPECT_EQ(value(row.key), row.value) << row.code;
    }
    int light = 0;
    int iris = 0;
    EXPECT_EQ(Kx_Ipc_GetPTZLightStatus(pageId, &light), 0);
    EXPECT_EQ(Kx_Ipc_GetCameraLens(pageId, &iris), 0);
    EXPECT_EQ(light, 1);
    EXPECT_EQ(iris, 1);
}

TEST_F(PtzSettings, ANumberThatIsNotToldIsLeftAlone)
{
    const struct
    {
        int (*get)(long, int*);
        std::string query;
        std::string line;
    } rows[] = {
        {Kx_Ipc_GetPTZZoom, "&paratest=zoompos", "OK zoompos=-7\n"},
        {Kx_Ipc_GetPTZLightStatus, "&paratest=lightstatus", "OK lightstatus=-7\n"},
        {Kx_Ipc_GetWhiteLEDStatus, action("get.whiteled.status&format=inf"), "white_led_status=-7\r\n"},
        {Kx_Ipc_GetCameraLens, action("get.camera.lens&format=inf"), "imaging_settings_lens_iris_mode=-7\n"},
        {Kx_Ipc_GetDigitposzmState, "/vb.htm?getdigitposzmstate", "OK getdigitposzmstate=-7\n"},
        {Kx_Ipc_GetZoomNumber, "/vb.htm?getzoomnumber", "OK getzoomnumber=-7\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.query);
        EXPECT_EQ(read(row.get, row.line, 3), -7);
        EXPECT_EQ(queries(ti).back(), row.query);
        EXPECT_EQ(read(row.get, "OK other=1\n", 3), 3);
        int number = 3;
        ti.replaceReply("", std::string("\0", 1)); // nothing, as a text
        EXPECT_EQ(row.get(tiId, &number), 0);
        ti.replaceReply("", httpReply("", "404 Not Found"));
        EXPECT_EQ(row.get(tiId, &number), -1);
        EXPECT_EQ(number, 3);
        EXPECT_EQ(row.get(pageId, &number), 0);
        EXPECT_NE(number, 3); // what the simulated camera tells
    }
}

TEST_F(PtzSettings, BaudRatesAreReadByDoublingAndSentByRoot)
{
    const std::pair<const char*, std::uint64_t> told[] = {
        {"0", 2400}, {"2", 9600}, {"3", 19200}, {"50", 2400ULL << 50U}, {"62", 0}, {"63", 1}, {"-1", 1}};
    for (const auto& [index, rate] : told)
        EXPECT_EQ(read(Kx_Ipc_GetPTZ, "OK ptzprotocol=3\nOK ptzbaudrate=" + std::string(index) + "\n",
                       {.ptzprotocol = 0, .ptzbaudrate = 1})
                      .ptzbaudrate,
                  rate)
            << index;
    EXPECT_THAT(queries(ti), testing::Each("&paratest=ptzprotocol&paratest=ptzbaudrate"));
    EXPECT_EQ(read(Kx_Ipc_GetPTZ, "OK ptzprotocol=3\n").ptzprotocol, 3);

    const std::pair<std::uint64_t, int> sentAs[] = {{0, 0},     {2399, 0},       {2400, 1},  {4800, 1},
                                                    {9599, 1},  {9600, 2},       {19200, 2}, {38400, 2},
                                                    {~0ULL, 2}, {1ULL << 32U, 2}}; // beyond 32 bits, too
    for (const auto& [rate, index] : sentAs) {
        const PtzInfo info{.ptzprotocol = 200, .ptzbaudrate = rate};
        EXPECT_EQ(Kx_Ipc_SetPTZ(tiId, &info), 0);
        EXPECT_EQ(queries(ti).back(), "&ptzprotocol=1&ptzbaudrate=" + std::to_string(index)) << rate;
    }
}

TEST_F(PtzSettings, ZoomPositionsAreCappedAboveOnly)
{
    for (const auto& [given, sent] : {std::pair(250, "100"), {100, "100"}, {99, "99"}, {-5, "-5"}}) {
        EXPECT_EQ(Kx_Ipc_SetPTZZoom(tiId, given), 0);
        EXPECT_EQ(queries(ti).back(), std::string("&ipncptz=zoompos=") + sent);
    }
    EXPECT_EQ(Kx_Ipc_SetPTZZoom(tiId, 60), 0);
    int zoom = 0;
    EXPECT_EQ(Kx_Ipc_GetPTZZoom(tiId, &zoom), 0);
    EXPECT_EQ(zoom, 60);
}

TEST_F(PtzSettings, TheWhiteLedIsSwitchedWhenTheCameraSaysSo)
{
    EXPECT_EQ(Kx_Ipc_SetWhiteLEDStatus(tiId, 1), 0);
    EXPECT_THAT(queries(ti), ElementsAre(action("set.whiteled.status&white_led_status=1")));
    EXPECT_EQ(ti.value("white_led_status"), "1");
    ti.replaceReply("whiteled", "HTTP/1.1 403 Forbidden\r\n\r\nNG\n");
    EXPECT_EQ(Kx_Ipc_SetWhiteLEDStatus(tiId, 0), -1);
    // A line feed does not end a value.
    const auto param = read(Kx_Ipc_GetWhiteLEDParamStatus,
                            "white_led_alarm=1\r\nwhite_led_number=\n2\r\nwhite_led_manual=-3\r\n");
    EXPECT_EQ(param.white_led_alarm, 1);
    EXPECT_EQ(param.white_led_number, 2);
    EXPECT_EQ(param.white_led_manual, -3);
    EXPECT_EQ(queries(ti).back(), action("get.whiteled.parameter&format=inf"));
}

TEST_F(PtzSettings, RunStatusIsReadFromItsSectionAndZeroElsewhere)
{
    PtzRunStatus before{9, 9, 9, 9, 9, 9};
    const auto status = read(Kx_Ipc_GetPtzRunStatus,
                             "[OTHER]\r\nfish_0_ptz_run_status=8\r\n[PTZ_RUN_STATUS]\r\nptz_run_status=1\r\n"
                             "fish_4_ptz_run_status=-4\r\n",
                             before);
    EXPECT_EQ(queries(ti).back(), action("get.ptz.runstatus&format=inf"));
    EXPECT_EQ(status.ptz_run_status, 1);
    EXPECT_EQ(status.fish_0_ptz_run_status, 0);
    EXPECT_EQ(status.fish_4_ptz_run_status, -4);
}
