// Video streams: what goes out in both dialects, what becomes of the replies, and when the camera gets its pauses.
#include "SdkTest.h"

#include <array>
#include <chrono>
#include <cstring>
#include <limits>
#include <mutex>

using kxsim::httpReply;
using testing::ElementsAre;
using testing::SizeIs;
using Clock = std::chrono::steady_clock;

namespace
{

const std::string askModel = "&paratest=productmodel";
const std::string askGeneral = "/cgi-bin/admin/admin.cgi?action=get.video.general";
const std::string setGeneral = "/cgi-bin/admin/admin.cgi?action=set.video.general";
const std::string askCommon = "&paratest=enablesubstream&paratest=enablethirdstream&paratest=mainrtspport";
const std::string askMain =
    "&paratest=maincodec&paratest=framerate1&paratest=bitrate1&paratest=ratecontrol1&paratest=ipratio1"
    "&paratest=h264priprofile&paratest=jpegpriquality&paratest=smartstreamswitch"
    "&paratest=smartstreamlevel&paratest=cputype&paratest=ddrsize&paratest=platformforweb";
const std::string askSub =
    "&paratest=subcodec&paratest=framerate2&paratest=bitrate2&paratest=ratecontrol2&paratest=ipratio2"
    "&paratest=h264secprofile&paratest=jpegsecquality&paratest=subsmartstream&paratest=subsmartlevel";
const std::string askThird =
    "&paratest=thirdcodec&paratest=framerate3&paratest=bitrate3&paratest=ratecontrol3&paratest=ipratio3"
    "&paratest=h264thirdprofile&paratest=jpegthirdquality&paratest=thirdsmartstream"
    "&paratest=thirdsmartlevel";

/// Values that are all different and within the limits of every stream.
VideoInfo sample(std::uint8_t stream)
{
    VideoInfo video{};
    video.stream = stream;
    video.enablesubstream = 1;
    video.enablethirdstream = 8;
    video.codec = 2;
    video.codecres = 3;
    video.framerate = 25;
    video.bitrate = 900;
    video.ratecontrol = 1;
    video.profile = 4;
    video.ipratio = 50;
    video.rtspport = 5540;
    video.width = 640;
    video.height = 480;
    video.jpegquality = 70;
    video.smartstream = 6;
    video.smartlevel = 7;
    video.eventstreamenable = 1;
    video.eventframerate = 10;
    video.eventbitrate = 256;
    video.eventiframe = 20;
    return video;
}

/// Empty records, as a get takes them.
std::vector<VideoInfo> recordsFor(const std::vector<std::uint8_t>& streams)
{
    std::vector<VideoInfo> videos(streams.size());
    for (std::size_t i = 0; i < streams.size(); ++i)
        videos[i].stream = streams[i];
    return videos;
}

/// Every field, in the record's order.
std::vector<int> fieldsOf(const VideoInfo& v)
{
    return {v.reserved,        v.stream,
            v.enablesubstream, v.enablethirdstream,
            v.codec,           v.codecres,
            v.framerate,       v.bitrate,
            v.ratecontrol,     v.profile,
            v.ipratio,         v.rtspport,
            v.width,           v.height,
            v.reserved2,       v.jpegquality,
            v.smartstream,     v.smartlevel,
            v.limited3516a,    v.imx274on3516av200,
            v.platformforweb,  v.eventstreamenable,
            v.eventframerate,  v.eventbitrate,
            v.eventiframe};
}

std::string pictureSize(int stream)
{
    const std::string mark = std::to_string(stream);
    return "&media_profile_resolution_width_" + mark + "=640&media_profile_resolution_height_" + mark +
           "=480";
}

class VideoSettings : public CameraTest
{
protected:
    /// The last request that a set of this record makes.
    std::string sent(int (*set)(long, const VideoInfo*, int), const VideoInfo& video, bool toTi = false)
    {
        EXPECT_EQ(set(toTi ? tiId : pageId, &video, 1), 0);
        return queries(toTi ? ti : page).back();
    }

    /// When each request of a set came, and when the call was over.
    std::vector<Clock::time_point> timesOf(int (*set)(long, const VideoInfo*, int), const VideoInfo& video,
                                           bool toTi)
    {
        std::mutex mutex;
        std::vector<Clock::time_point> times;
        auto& camera = toTi ? ti : page;
        camera.onRequest([&](const kxsim::Request&) {
            const std::lock_guard lock(mutex);
            times.push_back(Clock::now());
        });
        sent(set, video, toTi);
        camera.onRequest({});
        times.push_back(Clock::now());
        return times;
    }
};

} // namespace

TEST_F(VideoSettings, AllStreamsAreReadInTwoRequests)
{
    page.setValue("event_stream_enable", "1");
    page.setValue("ratecontrol2", "2");
    page.setValue("thirdcodec", "1");
    auto videos = recordsFor({1, 0, 2, 9}); // there is no stream 9: it reads as the main stream
    EXPECT_EQ(Kx_Ipc_GetVideoConfig(pageId, videos.data(), 4), 0);
    EXPECT_THAT(queries(page), ElementsAre(askGeneral, askCommon + askSub + askMain + askThird + askMain));

    // The event stream is told in the first record.
    EXPECT_THAT(fieldsOf(videos[0]), ElementsAre(0, 1, 1, 0, 0, 0, 15, 512, 0, 1, 30, 554, 704, 576, 0, 60, 0,
                                                 5, 0, 0, 0, 1, 9, 1024, 25));
    std::vector<int> main{0,    0, 1,  0, 0, 0, 25, 4096, 1, 2, 50, 554, 1920,
                          1080, 0, 80, 0, 5, 1, 0,  3,    0, 0, 0,  0};
    EXPECT_EQ(fieldsOf(videos[1]), main);
    EXPECT_THAT(fieldsOf(videos[2]), ElementsAre(0, 2, 1, 0, 1, 0, 10, 256, 0, 0, 20, 554, 320, 240, 0, 50, 0,
                                                 5, 0, 0, 0, 0, 0, 0, 0));
    main[1] = 9;
    EXPECT_EQ(fieldsOf(videos[3]), main);
}

TEST_F(VideoSettings, AbsentKeysLeaveTheRecordAlone)
{
    for (std::uint8_t stream = 0; stream < 3; ++stream) {
        VideoInfo video;
        std::memset(&video, 0x55, sizeof video);
        video.stream = stream;
        auto before = fieldsOf(video);
        page.replaceReply("", httpReply("event_stream_iframe = \n"), stream < 2 ? 3 : 2);
        EXPECT_EQ(Kx_Ipc_GetVideoConfig_ForOldVer(pageId, &video, 1), 0); // asks nothing of a third stream
        EXPECT_EQ(fieldsOf(video), before);
        EXPECT_EQ(Kx_Ipc_GetVideoConfig(pageId, &video, 1), 0);
        if (stream == 0)
            before[18] = before[19] = 0; // the chip flags are the SDK's own
        EXPECT_EQ(fieldsOf(video), before);
    }
}

TEST_F(VideoSettings, ChipFlagsFollowFromWhatTheCameraIsMadeOf)
{
    const auto x = [](std::size_t count) { return std::string(count, 'x'); };
    const std::tuple<std::string, std::string, int, int> cases[] = {
        {"imx274", "OK cputype=hi3516av200\nOK ddrsize=1\n", 1, 1},
        {"sony imx274c", "OK cputype=x3516av200x\nOK ddrsize=2\n", 0, 1},
        {"imx290", "OK cputype=3516av200\n", 0, 0},
        {"imx274", "OK cputype=3516a\nOK ddrsize=1\n", 1, 0},
        {"imx274", "OK ddrsize=1\n", 0, 0},
        // Both texts are read up to 63 characters.
        {x(57) + "imx274", "OK cputype=" + x(55) + "3516av200\nOK ddrsize=1\n", 1, 0},
        {x(57) + "imx274", "OK cputype=" + x(54) + "3516av200\n", 0, 1},
        {x(58) + "imx274", "OK cputype=" + x(54) + "3516av200\n", 0, 0},
        {"imx274", "OK cputype=" + x(59) + "3516a\nOK ddrsize=1\n", 0, 0}};
    for (const auto& [sensor, lines, limited, imx274] : cases) {
        VideoInfo video{};
        video.limited3516a = video.imx274on3516av200 = 7;
        page.replaceReply("general", httpReply("system_deviceinformation_sensor = '" + sensor + "';\n"));
        page.replaceReply("cputype", httpReply(lines));
        EXPECT_EQ(Kx_Ipc_GetVideoConfig(pageId, &video, 1), 0);
        EXPECT_EQ(video.limited3516a, limited) << sensor << lines;
        EXPECT_EQ(video.imx274on3516av200, imx274) << sensor << lines;
    }
}

TEST_F(VideoSettings, AGetThatFailsHalfWayKeepsWhatItHas)
{
    VideoInfo video{};
    page.replaceReply("general", std::string("\0", 1));
    EXPECT_EQ(Kx_Ipc_GetVideoConfig(pageId, &video, 1), -1);
    EXPECT_THAT(page.requests(), SizeIs(1));
    page.replaceReply("maincodec", std::string("\0", 1));
    EXPECT_EQ(Kx_Ipc_GetVideoConfig(pageId, &video, 1), -1);
    EXPECT_EQ(video.width, 1920);
    EXPECT_EQ(video.eventiframe, 25);
    EXPECT_EQ(video.bitrate, 0);
}

TEST_F(VideoSettings, CountsAreCheckedAfterTheSession)
{
    VideoInfo video{};
    for (const int count : {-1, 0}) {
        EXPECT_EQ(Kx_Ipc_GetVideoConfig(tiId, &video, count), -1);
        EXPECT_EQ(Kx_Ipc_SetVideoConfig(tiId, &video, count), -1);
        EXPECT_EQ(Kx_Ipc_GetVideoConfig_ForOldVer(tiId, &video, count), count); // none is fine
        EXPECT_EQ(Kx_Ipc_SetVideoConfig_ForOldVer(tiId, &video, count), count); // and asks for the model
        EXPECT_THAT(ti.requests(), SizeIs(count == 0 ? 1 : 0));
    }
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE);
    EXPECT_EQ(Kx_Ipc_GetVideoConfig(999, &video, 0), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_UNKNOWN_USER);
}

TEST_F(VideoSettings, PagesCarryAStreamEach)
{
    VideoInfo videos[] = {sample(2), sample(3), sample(0), sample(1)}; // there is no stream 3
    videos[3].ratecontrol = 2;
    EXPECT_EQ(Kx_Ipc_SetVideoConfig(pageId, videos, 4), 0);
    EXPECT_THAT(
        queries(page),
        ElementsAre(askModel, setGeneral + pictureSize(2),
                    "/vb.htm?page=video.2&thirdcodec=2&framerate3=24&bitrate3=900&ratecontrol3=1&ipratio3=50"
                    "&enablethirdstream=8&h264thirdprofile=4&thirdsmartstream=6&thirdsmartlevel=7",
                    setGeneral + pictureSize(0),
                    "/vb.htm?page=eventstream&enable=1&eventframerate=9&eventbitrate=256&eventiframe=20",
                    "/vb.htm?page=video.0&maincodec=2&framerate1=24&bitrate1=900&ratecontrol1=1&ipratio1=50"
                    "&h264priprofile=4&smartstreamswitch=6&smartstreamlevel=7",
                    setGeneral + pictureSize(1),
                    "/vb.htm?page=video.1&subcodec=2&framerate2=24&bitrate2=900&ratecontrol2=0&ipratio2=50"
                    "&enablesubstream=1&h264secprofile=4&subsmartstream=6&subsmartlevel=7"));

    const char* const quality[] = {"jpegpriquality", "jpegsecquality", "jpegthirdquality"};
    for (std::uint8_t stream = 0; stream < 3; ++stream) {
        VideoInfo video = sample(stream);
        video.codec = 1;
        EXPECT_THAT(sent(Kx_Ipc_SetVideoConfig, video),
                    testing::AllOf(testing::ContainsRegex("codec=1&.*&" + std::string(quality[stream]) +
                                                          "=70&[a-z]*smart"),
                                   testing::Not(testing::HasSubstr("profile"))));
    }
}

TEST_F(VideoSettings, ATiCameraGetsAllStreamsInOneQuery)
{
    const std::string main =
        "&maincodec=1&framerate1=24&bitrate1=900&ratecontrol1=1&ipratio1=50&h264priprofile=4";
    const std::string sub = "&subcodec=2&framerate2=24&bitrate2=900&ratecontrol2=2&ipratio2=50"
                            "&enablesubstream=1&h264secprofile=4";
    VideoInfo videos[] = {sample(0), sample(2), sample(1)};
    videos[0].codec = 1; // takes the profile all the same
    videos[2].ratecontrol = 0;
    EXPECT_EQ(Kx_Ipc_SetVideoConfig(tiId, videos, 3), 0);
    EXPECT_THAT(queries(ti), ElementsAre(askModel, setGeneral + pictureSize(0) + pictureSize(1), main + sub));

    // What a stream is together with is asked for when it is not given.
    ti.setValue("subcodec", "3");
    ti.setValue("maincodec", "2");
    ti.forgetRequests();
    EXPECT_EQ(Kx_Ipc_SetVideoConfig(tiId, &videos[0], 2),
              0); // the third stream does not stand for the sub stream
    EXPECT_EQ(Kx_Ipc_SetVideoConfig(tiId, &videos[2], 1), 0);
    EXPECT_THAT(queries(ti),
                ElementsAre(askModel, askGeneral, askCommon + askSub, setGeneral + pictureSize(0),
                            main + "&subcodec=3&enablesubstream=1", askModel, askGeneral, askCommon + askMain,
                            setGeneral + pictureSize(1), sub + "&maincodec=1"));
    ti.replaceReply("subcodec", httpReply("404 Not Found"));
    EXPECT_EQ(sent(Kx_Ipc_SetVideoConfig, videos[0], true), main + "&subcodec=0&enablesubstream=0");

    // It has no third stream.
    ti.forgetRequests();
    EXPECT_THAT(sent(Kx_Ipc_SetVideoConfig, sample(2), true), testing::HasSubstr("get.network.general"));
    EXPECT_EQ(queries(ti)[1], setGeneral);
}

TEST_F(VideoSettings, ValuesAreBroughtIntoTheirRanges)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    const struct
    {
        int (*set)(long, const VideoInfo*, int);
        bool toTi;
        std::uint8_t stream;
        const char* low; // of frame rate, bit rate, I-frame interval
        const char* high;
    } cases[] = {
        {Kx_Ipc_SetVideoConfig, false, 0, "=0&bitrate1=16&ratecontrol1=0&ipratio1=1&",
         "=119&bitrate1=16384&ratecontrol1=0&ipratio1=240&"},
        {Kx_Ipc_SetVideoConfig, false, 1, "=0&bitrate2=16&ratecontrol2=0&ipratio2=1&",
         "=119&bitrate2=2048&ratecontrol2=0&ipratio2=240&"},
        {Kx_Ipc_SetVideoConfig, false, 2, "=0&bitrate3=16&ratecontrol3=0&ipratio3=1&",
         "=29&bitrate3=2048&ratecontrol3=0&ipratio3=240&"},
        {Kx_Ipc_SetVideoConfig, true, 0, "=0&bitrate1=16&ratecontrol1=2&ipratio1=1&",
         "=119&bitrate1=16384&ratecontrol1=2&ipratio1=240&"},
        {Kx_Ipc_SetVideoConfig, true, 1, "=0&bitrate2=16&ratecontrol2=2&ipratio2=1&",
         "=119&bitrate2=1024&ratecontrol2=2&ipratio2=240&"},
        {Kx_Ipc_SetVideoConfig_ForOldVer, false, 5,
         "&maincodecres=2&mainrtspport=-2147483648&framerate1=0&bitrate1=16&ratecontrol1=0"
         "&ipratio1=-2147483648&",
         "&maincodecres=9&mainrtspport=65535&framerate1=29&bitrate1=16384&ratecontrol1=0&ipratio1=120&"},
        {Kx_Ipc_SetVideoConfig_ForOldVer, true, 1,
         "&subcodecres=0&subrtspport=-2147483648&framerate2=0&bitrate2=16&ratecontrol2=2"
         "&ipratio2=-2147483648&",
         "&subcodecres=4&subrtspport=65535&framerate2=29&bitrate2=1024&ratecontrol2=2&ipratio2=120&"},
    };
    for (const auto& row : cases) {
        for (const int extreme : {lowest, highest}) {
            VideoInfo video{};
            video.stream = row.stream;
            video.codec = 200;
            video.codecres = video.rtspport = extreme;
            video.framerate = video.bitrate = video.ipratio = extreme;
            video.eventframerate = extreme; // has no range
            const auto before = fieldsOf(video);
            const std::string query = sent(row.set, video, row.toTi);
            EXPECT_EQ(fieldsOf(video), before); // the caller's record stays as it is
            EXPECT_THAT(query, testing::HasSubstr("codec=3&"));
            EXPECT_THAT(query, testing::HasSubstr(extreme == lowest ? row.low : row.high));
        }
    }
}

TEST_F(VideoSettings, APageThatFailsDoesNotKeepTheOthersBack)
{
    const VideoInfo videos[] = {sample(0), sample(1)};
    for (const char* part : {"page=eventstream", "page=video.0", "page=video.1"}) {
        page.forgetRequests();
        page.replaceReply(part, httpReply("404 Not Found"));
        EXPECT_EQ(Kx_Ipc_SetVideoConfig(pageId, videos, 2), -1) << part;
        EXPECT_THAT(page.requests(), SizeIs(6)) << part;
    }
    page.forgetRequests();
    page.replaceReply("width_0", httpReply("404 Not Found"));
    EXPECT_EQ(Kx_Ipc_SetVideoConfig(pageId, videos, 2), -1);
    EXPECT_THAT(page.requests(), SizeIs(2));

    // A TI camera that does not take the picture sizes is not sent the rest.
    ti.replaceReply("width_0", httpReply("404 Not Found"));
    EXPECT_EQ(Kx_Ipc_SetVideoConfig(tiId, videos, 2), -1);
    EXPECT_THAT(ti.requests(), SizeIs(2));
}

TEST_F(VideoSettings, ManyRecordsAreCutAtTheBoundOfAQuery)
{
    std::vector<VideoInfo> videos(60);
    EXPECT_EQ(Kx_Ipc_GetVideoConfig(tiId, videos.data(), 60), 0);
    EXPECT_EQ(queries(ti).back().size(), 4095U);
    EXPECT_EQ(videos.back().width, 1920);
    EXPECT_EQ(Kx_Ipc_SetVideoConfig(tiId, videos.data(), 60), 0);
    const auto sent = queries(ti);
    EXPECT_EQ(sent.back().size(), 1022U);
    EXPECT_EQ(sent[sent.size() - 2].size(), setGeneral.find("action") + 1022U);
}

TEST_F(VideoSettings, OldFirmwareTellsAndTakesMainAndSubStream)
{
    VideoInfo videos[] = {sample(0), sample(7), sample(1)};
    EXPECT_EQ(Kx_Ipc_SetVideoConfig_ForOldVer(tiId, &videos[0], 1), 0);
    EXPECT_EQ(Kx_Ipc_SetVideoConfig_ForOldVer(tiId, &videos[2], 1), 0);
    const std::string main = "&maincodec=2&maincodecres=3&mainrtspport=5540&framerate1=24&bitrate1=900"
                             "&ratecontrol1=1&ipratio1=50&enablesubstream=1";
    const std::string sub = "&subcodec=2&subcodecres=3&subrtspport=5540&framerate2=24&bitrate2=900"
                            "&ratecontrol2=1&ipratio2=50&enablesubstream=1";
    EXPECT_THAT(queries(ti), ElementsAre(askModel, main, askModel, sub));

    ti.forgetRequests();
    auto got = recordsFor({0, 7, 1});
    EXPECT_EQ(Kx_Ipc_GetVideoConfig_ForOldVer(tiId, got.data(), 3), 0);
    EXPECT_THAT(
        queries(ti),
        ElementsAre("&paratest=enablesubstream&paratest=maincodec&paratest=maincodecres&paratest=mainrtspport"
                    "&paratest=framerate1&paratest=bitrate1&paratest=ratecontrol1&paratest=ipratio1"
                    "&paratest=exposurectrl&paratest=productmodel",
                    "&paratest=enablesubstream&paratest=subcodec&paratest=subcodecres&paratest=subrtspport"
                    "&paratest=framerate2&paratest=bitrate2&paratest=ratecontrol2&paratest=ipratio2"
                    "&paratest=exposurectrl&paratest=productmodel"));
    std::vector<int> wanted{0, 0, 1, 0, 2, 3, 25, 900, 1, 0, 50, 5540};
    wanted.resize(25);
    EXPECT_EQ(fieldsOf(got[0]), wanted);
    wanted[1] = 1;
    EXPECT_EQ(fieldsOf(got[2]), wanted);
    EXPECT_EQ(fieldsOf(got[1]), fieldsOf(recordsFor({7})[0]));
    ti.replaceReply("maincodec", httpReply("404 Not Found"));
    EXPECT_EQ(Kx_Ipc_GetVideoConfig_ForOldVer(tiId, got.data(), 3), -1);
    ti.replaceReply("maincodec", httpReply("404 Not Found"));
    EXPECT_EQ(Kx_Ipc_SetVideoConfig_ForOldVer(tiId, videos, 3), -1);
    EXPECT_EQ(queries(ti).back(), main); // the others have not been sent
}

TEST_F(VideoSettings, WhatWasReadCanBeWrittenBack)
{
    for (const char* model : {"KX-C200T", "KX-C300C", "KX-C400A"}) {
        const kxsim::SimCamera camera({.model = model});
        const long id = login(camera);
        const bool hasThird = model[7] != 'T';
        auto videos = hasThird ? recordsFor({0, 1, 2}) : recordsFor({0, 1});
        const int count = static_cast<int>(videos.size());
        ASSERT_EQ(Kx_Ipc_GetVideoConfig(id, videos.data(), count), 0);
        EXPECT_EQ(videos[0].imx274on3516av200, model[7] == 'A' ? 1 : 0);
        for (VideoInfo& video : videos) {
            video.width += 8;
            video.framerate += 1;
            video.enablesubstream = 0;
        }
        videos[0].eventframerate += 1; // is sent one less
        EXPECT_EQ(Kx_Ipc_SetVideoConfig(id, videos.data(), count), 0);
        videos[0].eventframerate -= 1;
        auto again = hasThird ? recordsFor({0, 1, 2}) : recordsFor({0, 1});
        EXPECT_EQ(Kx_Ipc_GetVideoConfig(id, again.data(), count), 0);
        for (std::size_t i = 0; i < videos.size(); ++i)
            EXPECT_EQ(fieldsOf(again[i]), fieldsOf(videos[i])) << model << ", stream " << i;
    }
}

TEST_F(VideoSettings, TheCameraGetsTimeToRestartItsEncoder)
{
    using namespace std::chrono_literals;
    EXPECT_EQ(Timing{}.newResolution, 2s);
    EXPECT_EQ(Timing{}.newEncoding, 5s);
    EXPECT_EQ(Timing{}.newThirdEncoding, 3s);
    EXPECT_EQ(Timing{}.oldFirmwareEncoding, 1500ms);
    constexpr Timing::Milliseconds Timing::*none = nullptr;
    const struct
    {
        int (*set)(long, const VideoInfo*, int);
        bool toTi;
        std::uint8_t stream;
        std::vector<Timing::Milliseconds Timing::*> after; // each request; last, the end of the call
    } cases[] = {
        {Kx_Ipc_SetVideoConfig, false, 0, {none, &Timing::newResolution, none, &Timing::newEncoding}},
        {Kx_Ipc_SetVideoConfig, false, 1, {none, &Timing::newResolution, &Timing::newEncoding}},
        {Kx_Ipc_SetVideoConfig, false, 2, {none, &Timing::newResolution, &Timing::newThirdEncoding}},
        {Kx_Ipc_SetVideoConfig, true, 2, {none, &Timing::newResolution, none}},
        {Kx_Ipc_SetVideoConfig_ForOldVer, true, 0, {none, &Timing::oldFirmwareEncoding}},
    };
    // In two orders of length, so that no pause can stand in for another one.
    for (const auto& pauses : {std::array{5ms, 10ms, 15ms, 20ms}, std::array{20ms, 15ms, 10ms, 5ms}}) {
        g_timing.newResolution = pauses[0];
        g_timing.newEncoding = pauses[1];
        g_timing.newThirdEncoding = pauses[2];
        g_timing.oldFirmwareEncoding = pauses[3];
        for (const auto& row : cases) {
            const std::vector<Clock::time_point> times = timesOf(row.set, sample(row.stream), row.toTi);
            ASSERT_THAT(times, SizeIs(row.after.size() + 1));
            for (std::size_t i = 0; i < row.after.size(); ++i)
                EXPECT_GE(times[i + 1] - times[i], row.after[i] != none ? g_timing.*row.after[i] : 0ms)
                    << "stream " << int{row.stream} << ", " << i;
        }
    }
}
