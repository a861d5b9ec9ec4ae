// The simulated camera's streams, as a client sees them that shares no code with the camera or the SDK.
#include "StreamViewer.h"

#include <KxSim/SimCamera.h>

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace
{

using namespace std::chrono_literals;
using kxsim::SimCamera;
using kxsim::StreamFault;
using Kind = StreamFault::Kind;
using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::Field;
using testing::Gt;
using testing::Lt;
using testing::Not;

std::unique_ptr<SimCamera> makeCamera()
{
    kxsim::CameraOptions options;
    options.model = "KX-C300B"; // has a quality of JPEG
    options.streaming.port = 0;
    options.restartTime = 200ms;
    return std::make_unique<SimCamera>(options);
}

void setStream(SimCamera& camera, int index, int width, int height, int rate)
{
    const std::string stream = std::to_string(index);
    camera.setValue("media_profile_resolution_width[" + stream + "]", std::to_string(width));
    camera.setValue("media_profile_resolution_height[" + stream + "]", std::to_string(height));
    camera.setValue("framerate" + std::to_string(index + 1), std::to_string(rate - 1));
}

std::string urlOf(const SimCamera& camera, const std::string& path = "/main",
                  const std::string& user = "admin:admin@")
{
    return "rtsp://" + user + camera.host() + ":" + *camera.value("mainrtspport") + path;
}

/// What the camera answers to a settings query.
std::string ask(const SimCamera& camera, const std::string& query)
{
    AVIOContext* input = nullptr;
    const std::string url =
        "http://admin:admin@" + camera.host() + ":" + std::to_string(camera.port()) + "/vb.htm?" + query;
    if (avio_open2(&input, url.c_str(), AVIO_FLAG_READ, nullptr, nullptr) < 0)
        return "";
    std::string reply(4096, '\0');
    const int size = avio_read(input, reinterpret_cast<unsigned char*>(reply.data()), 4096);
    avio_closep(&input);
    return reply.substr(0, static_cast<std::size_t>(std::max(size, 0)));
}

/// Asks again and again, as what the camera does about a client that leaves takes its time.
template <typename Condition>
bool comesTrue(Condition condition)
{
    const auto deadline = StreamViewer::Clock::now() + 10s;
    while (!condition() && StreamViewer::Clock::now() < deadline)
        std::this_thread::sleep_for(5ms);
    return condition();
}

// Of the kinds of units in H.264.
constexpr int picture = 1;
constexpr int keyPicture = 5;
constexpr int sequenceParameters = 7;
constexpr int pictureParameters = 8;

/// The kinds of units in the next packets.
std::vector<int> unitsOf(StreamViewer& viewer, int packets)
{
    constexpr char startCode[] = {0, 0, 1};
    std::vector<int> units;
    for (int i = 0; i < packets; ++i) {
        const AVPacket* const packet = viewer.nextPacket();
        if (!packet)
            break;
        const std::string_view bytes(reinterpret_cast<const char*>(packet->data),
                                     static_cast<std::size_t>(packet->size));
        for (auto at = bytes.find(startCode, 0, 3); at != bytes.npos; at = bytes.find(startCode, at + 3, 3))
            if (at + 3 < bytes.size())
                units.push_back(bytes[at + 3] & 0x1F);
    }
    return units;
}

class SimStreaming : public testing::Test
{
protected:
    void SetUp() override
    {
        av_log_set_level(AV_LOG_QUIET);
        setStream(*camera, 0, 320, 192, 50);
        setStream(*camera, 1, 160, 96, 100);
    }

    bool opens(const std::string& url) { return StreamViewer(url).error() == 0; }

    const std::unique_ptr<SimCamera> camera = makeCamera();
};

struct StreamCase
{
    const char* name;
    const char* path;
    const char* codec; ///< its code
    const char* transport;
    AVCodecID expected;
    int width;
    double rate;
};

class SimStreamingOf : public SimStreaming, public testing::WithParamInterface<StreamCase>
{
};

TEST_P(SimStreamingOf, sends_every_frame_from_the_first_on)
{
    camera->setValue("maincodec", GetParam().codec);
    camera->setValue("subcodec", GetParam().codec);
    StreamViewer viewer(urlOf(*camera, GetParam().path), GetParam().transport);
    ASSERT_EQ(viewer.error(), 0);
    EXPECT_EQ(viewer.stream(AVMEDIA_TYPE_VIDEO)->codec_id, GetParam().expected);

    double before = 0;
    for (unsigned i = 0; i < 30; ++i) {
        const auto frame = viewer.nextFrame();
        ASSERT_TRUE(frame);
        ASSERT_EQ(frame->number, i);
        EXPECT_EQ(frame->width, GetParam().width);
        EXPECT_EQ(frame->height, GetParam().width * 3 / 5);
        if (i >= 2) { // FFmpeg does not tell the first one's time
            EXPECT_NEAR(frame->time - before, 1 / GetParam().rate, 0.001);
        }
        before = frame->time;
    }
}

INSTANTIATE_TEST_SUITE_P(Streams, SimStreamingOf,
                         testing::Values(StreamCase{"main", "/main", "0", "tcp", AV_CODEC_ID_H264, 320, 50},
                                         StreamCase{"sub", "/sub", "0", "tcp", AV_CODEC_ID_H264, 160, 100},
                                         StreamCase{"mjpeg", "/main", "1", "tcp", AV_CODEC_ID_MJPEG, 320, 50},
                                         StreamCase{"udp", "/sub", "0", "udp", AV_CODEC_ID_H264, 160, 100},
                                         StreamCase{"mjpeg_udp", "/sub", "1", "udp", AV_CODEC_ID_MJPEG, 160,
                                                    100}),
                         [](const auto& stream) { return stream.param.name; });

TEST_F(SimStreaming, goes_round_without_a_gap_and_keeps_its_numbers_legible_when_scaled)
{
    setStream(*camera, 0, 320, 192, 120);
    StreamViewer viewer(urlOf(*camera));
    for (unsigned i = 0; i < kxsim::framesPerLoop + 10; ++i) {
        const auto frame = viewer.nextFrame(1 + static_cast<int>(i) % 3);
        ASSERT_TRUE(frame);
        ASSERT_EQ(frame->number, i % kxsim::framesPerLoop);
    }
}

TEST_F(SimStreaming, reads_no_number_where_none_is)
{
    const std::vector<unsigned char> grey(64 * 64 * 3, 128);
    const std::vector<unsigned char> black(64 * 64 * 3, 0);
    EXPECT_EQ(kxsim::frameNumberOf(grey.data(), 64, 64), std::nullopt);
    EXPECT_EQ(kxsim::frameNumberOf(black.data(), 64, 64), std::nullopt);
    EXPECT_EQ(kxsim::frameNumberOf(black.data(), 8, 8), std::nullopt);
}

TEST_F(SimStreaming, has_key_frames_as_far_apart_as_set)
{
    camera->setValue("ipratio1", "7");
    StreamViewer viewer(urlOf(*camera));
    for (int i = 0; i < 22; ++i) {
        const AVPacket* const packet = viewer.nextPacket();
        ASSERT_NE(packet, nullptr);
        EXPECT_EQ((packet->flags & AV_PKT_FLAG_KEY) != 0, i % 7 == 0) << i;
    }
}

TEST_F(SimStreaming, sounds_as_set)
{
    struct Case
    {
        const char* enabled;
        const char* code;
        AVCodecID codec;
        int rate;
    };
    for (const Case& c : {Case{"1", "4", AV_CODEC_ID_AAC, 16000}, Case{"1", "0", AV_CODEC_ID_PCM_MULAW, 8000},
                          Case{"0", "4", AV_CODEC_ID_NONE, 0}}) {
        camera->setValue("audioenable", c.enabled);
        camera->setValue("encoding", c.code);
        StreamViewer viewer(urlOf(*camera));
        ASSERT_EQ(viewer.error(), 0);
        const AVCodecParameters* const sound = viewer.stream(AVMEDIA_TYPE_AUDIO);
        ASSERT_EQ(sound != nullptr, c.rate != 0);
        if (!sound)
            continue;
        EXPECT_EQ(sound->codec_id, c.codec);
        EXPECT_EQ(sound->sample_rate, c.rate);
        const AVPacket* const packet = viewer.nextPacket(AVMEDIA_TYPE_AUDIO);
        ASSERT_NE(packet, nullptr);
        EXPECT_GT(packet->size, 8);
    }
}

TEST_F(SimStreaming, ends_a_stream_whose_settings_change_and_no_other)
{
    StreamViewer main(urlOf(*camera));
    StreamViewer sub(urlOf(*camera, "/sub"));
    EXPECT_EQ(ask(*camera, "page=video.1&framerate2=49"), "OK framerate2\n");
    while (sub.nextFrame())
        ;
    EXPECT_TRUE(comesTrue([&] { return camera->value("curmaxconn") == "1"; }));
    for (unsigned i = 0; i < 20; ++i) {
        const auto frame = main.nextFrame();
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->number, i);
    }

    camera->setValue("enablesubstream", "0");
    EXPECT_FALSE(opens(urlOf(*camera, "/sub")));
}

TEST_F(SimStreaming, admits_the_cameras_users_only)
{
    EXPECT_EQ(StreamViewer(urlOf(*camera, "/main", "")).error(), AVERROR_HTTP_UNAUTHORIZED);
    EXPECT_EQ(StreamViewer(urlOf(*camera, "/main", "admin:nimda@")).error(), AVERROR_HTTP_UNAUTHORIZED);
    EXPECT_EQ(StreamViewer(urlOf(*camera, "/main", "guest:pass@")).error(), AVERROR_HTTP_UNAUTHORIZED);
    EXPECT_EQ(ask(*camera, "adduser=guest:pass:1:1"), "OK adduser\n");
    EXPECT_TRUE(opens(urlOf(*camera, "/main", "guest:pass@")));
    EXPECT_EQ(ask(*camera, "deluser=guest"), "OK deluser\n");
    EXPECT_FALSE(opens(urlOf(*camera, "/main", "guest:pass@")));
    EXPECT_EQ(StreamViewer(urlOf(*camera, "/other")).error(), AVERROR_HTTP_NOT_FOUND);
}

TEST_F(SimStreaming, limits_and_counts_its_clients)
{
    const std::string tell = "paratest=maxconn&paratest=curmaxconn";
    EXPECT_EQ(ask(*camera, "maxconn=2&" + tell), "OK maxconn\nOK maxconn=2\nOK curmaxconn=0\n");
    {
        const StreamViewer first(urlOf(*camera));
        const StreamViewer second(urlOf(*camera, "/sub"), "udp");
        EXPECT_EQ(ask(*camera, tell), "OK maxconn=2\nOK curmaxconn=2\n");
        EXPECT_FALSE(opens(urlOf(*camera)));
        EXPECT_THAT(camera->streamRequests(), Contains(Field(&kxsim::StreamRequest::status, 453)));
    }
    EXPECT_TRUE(comesTrue([&] { return ask(*camera, tell) == "OK maxconn=2\nOK curmaxconn=0\n"; }));
    EXPECT_TRUE(opens(urlOf(*camera)));
}

TEST_F(SimStreaming, moves_to_the_port_that_is_set)
{
    const std::string before = urlOf(*camera);
    auto other = makeCamera();
    const std::string port = *other->value("mainrtspport");
    camera->setValue("mainrtspport", port);
    EXPECT_TRUE(opens(before)); // the other camera has that port
    other.reset();
    camera->setValue("mainrtspport", "0");
    EXPECT_EQ(urlOf(*camera), before); // as good as any
    camera->setValue("mainrtspport", port);
    EXPECT_FALSE(opens(before));
    EXPECT_TRUE(opens(urlOf(*camera)));
}

TEST_F(SimStreaming, restarts_with_the_camera)
{
    StreamViewer viewer(urlOf(*camera));
    EXPECT_EQ(ask(*camera, "ipcamrestartcmd"), "OK ipcamrestartcmd\n");
    EXPECT_FALSE(opens(urlOf(*camera)));
    while (viewer.nextFrame())
        ;
    EXPECT_TRUE(comesTrue([&] { return opens(urlOf(*camera)); }));
}

TEST_F(SimStreaming, refuses_when_told_to)
{
    camera->setStreamFault({.kind = Kind::Refuse});
    EXPECT_EQ(StreamViewer(urlOf(*camera)).error(), AVERROR(ECONNREFUSED));
    camera->setStreamFault({.kind = Kind::RefusePassword});
    EXPECT_EQ(StreamViewer(urlOf(*camera)).error(), AVERROR_HTTP_UNAUTHORIZED);
    camera->setStreamFault({.kind = Kind::Garbage});
    EXPECT_NE(StreamViewer(urlOf(*camera)).error(), 0);
    camera->setStreamFault({});
    EXPECT_TRUE(opens(urlOf(*camera)));
}

TEST_F(SimStreaming, leaves_connections_unread)
{
    camera->setStreamFault({.kind = Kind::SilentBefore});
    const auto start = StreamViewer::Clock::now();
    EXPECT_NE(StreamViewer(urlOf(*camera), "tcp", 100ms).error(), 0);
    EXPECT_GE(StreamViewer::Clock::now() - start, 100ms);
    EXPECT_TRUE(camera->streamRequests().empty());
}

TEST_F(SimStreaming, falls_silent_at_the_request_told)
{
    for (const std::string method : {"OPTIONS", "DESCRIBE", "SETUP", "PLAY"}) {
        std::atomic<int> unanswered = 0;
        camera->onStreamRequest([&](const kxsim::StreamRequest& request) {
            EXPECT_EQ(request.status == 0, request.method == method);
            unanswered += request.status == 0 ? 1 : 0;
        });
        camera->setStreamFault({.kind = Kind::SilentAfter, .method = method});
        std::optional<StreamViewer::Clock::time_point> silentSince;
        const auto giveUp = [&] {
            if (unanswered > 0 && !silentSince)
                silentSince = StreamViewer::Clock::now();
            return silentSince && StreamViewer::Clock::now() > *silentSince + 100ms;
        };
        EXPECT_NE(StreamViewer(urlOf(*camera), "tcp", 20s, giveUp).error(), 0) << method;
        EXPECT_EQ(unanswered, 1) << method;
        EXPECT_TRUE(silentSince && StreamViewer::Clock::now() > *silentSince + 100ms) << method;
    }
    camera->onStreamRequest({});
}

TEST_F(SimStreaming, withholds_key_frames)
{
    camera->setValue("ipratio1", "5");
    camera->setStreamFault({.kind = Kind::NoKeyFrame, .after = 210ms}); // ten frames and a half
    StreamViewer viewer(urlOf(*camera));
    const AVPacket* const packet = viewer.nextPacket();
    ASSERT_NE(packet, nullptr);
    EXPECT_FALSE(packet->flags & AV_PKT_FLAG_KEY);
    const auto frame = viewer.nextFrame();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->number, 15U);
}

TEST_F(SimStreaming, stops_sending_and_goes_on)
{
    StreamViewer viewer(urlOf(*camera));
    ASSERT_TRUE(viewer.nextFrame());
    camera->setStreamFault({.kind = Kind::StopSending});
    viewer.await(300ms);
    unsigned frames = 0;
    while (viewer.nextFrame())
        ++frames;
    EXPECT_LT(frames, 10U);
    viewer.await(1s); // by then it must have gone on, at the pace that it had
    camera->setStreamFault({});
    EXPECT_TRUE(viewer.nextPacket());
}

TEST_F(SimStreaming, disconnects_those_who_watch_and_those_who_come)
{
    const auto framesUntilEnd = [](StreamViewer& viewer) {
        unsigned frames = 0;
        while (viewer.nextFrame())
            ++frames;
        return frames;
    };
    StreamViewer early(urlOf(*camera));
    camera->setStreamFault({.kind = Kind::Disconnect, .after = 300ms});
    EXPECT_THAT(framesUntilEnd(early), AllOf(Gt(0U), Lt(50U)));
    StreamViewer late(urlOf(*camera));
    EXPECT_THAT(framesUntilEnd(late), AllOf(Gt(0U), Lt(50U)));
}

TEST_F(SimStreaming, loses_packets)
{
    camera->setValue("subcodec", "1"); // frames of one packet each, or two
    camera->setStreamFault({.kind = Kind::LosePackets, .every = 10});
    StreamViewer viewer(urlOf(*camera, "/sub"), "udp");
    unsigned seen = 0;
    for (unsigned number = 0; number < 100; ++seen) {
        const auto frame = viewer.nextFrame();
        ASSERT_TRUE(frame && frame->number);
        number = *frame->number;
    }
    EXPECT_LT(seen, 98U);
    EXPECT_GT(seen, 30U);
}

TEST_F(SimStreaming, misdescribes_its_stream)
{
    camera->setStreamFault({.kind = Kind::WrongCodec});
    EXPECT_EQ(StreamViewer(urlOf(*camera)).stream(AVMEDIA_TYPE_VIDEO)->codec_id, AV_CODEC_ID_HEVC);

    camera->setStreamFault({.kind = Kind::BadParameters});
    camera->setValue("ipratio1", "20"); // frames between key frames
    StreamViewer viewer(urlOf(*camera));
    const auto units = unitsOf(viewer, 60);
    EXPECT_THAT(units, AllOf(Contains(keyPicture), Contains(picture)));
    EXPECT_THAT(units, Not(AnyOf(Contains(sequenceParameters), Contains(pictureParameters))));
}

TEST_F(SimStreaming, goes_away_while_many_are_watched)
{
    std::vector<std::unique_ptr<SimCamera>> cameras;
    std::vector<std::unique_ptr<StreamViewer>> viewers;
    for (int i = 0; i < 3; ++i) {
        cameras.push_back(makeCamera());
        setStream(*cameras.back(), 1, 160, 96, 100);
        for (const char* const transport : {"tcp", "udp"})
            viewers.push_back(std::make_unique<StreamViewer>(urlOf(*cameras.back(), "/sub"), transport));
    }
    for (const auto& viewer : viewers)
        EXPECT_TRUE(viewer->nextFrame());
    cameras.clear();
    for (const auto& viewer : viewers) {
        viewer->await(300ms);
        while (viewer->nextFrame())
            ;
    }
}

} // namespace
