// Live streams: opening, what comes of them, and who gets it.
#include "StreamTest.h"

#include <atomic>
#include <numeric>

namespace
{

/// Numbers without a gap.
bool ascendByOne(const std::vector<unsigned>& numbers)
{
    return std::adjacent_find(numbers.begin(), numbers.end(),
                              [](unsigned one, unsigned next) { return next != one + 1; }) == numbers.end();
}

struct Kind
{
    const char* name;
    const char* codec; // the camera's word for it
    StreamTransport transport;
};

class StreamKindTest : public StreamTest, public testing::WithParamInterface<Kind>
{
protected:
    StreamKindTest()
    {
        sim.setValue("maincodec", GetParam().codec);
        camera->SetTransport(GetParam().transport);
    }
};

INSTANTIATE_TEST_SUITE_P(All, StreamKindTest,
                         testing::Values(Kind{"H264OverTcp", "0", StreamTransport::Tcp},
                                         Kind{"H264OverUdp", "0", StreamTransport::Udp},
                                         Kind{"MjpegOverTcp", "1", StreamTransport::Tcp},
                                         Kind{"MjpegOverUdp", "1", StreamTransport::Udp}),
                         nameOf<Kind>);

TEST_P(StreamKindTest, DeliversEveryFrameFromTheFirstOn)
{
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(viewer.sees(20));
    camera->CloseMainStreamVideo();

    const auto frames = viewer.frames();
    EXPECT_EQ(frames[0].number, 0u);
    EXPECT_TRUE(ascendByOne(viewer.numbers())) << testing::PrintToString(viewer.numbers());
    EXPECT_EQ(frames[0].width, 320);
    EXPECT_EQ(frames[0].height, 240);
    EXPECT_EQ(frames[0].type, 1);
    EXPECT_FLOAT_EQ(frames.back().rate, rate);
    EXPECT_EQ(viewer.source(), camera.get());
}

/// Nothing is waited for that comes later, so that frames may be as rare as they like. A frame counts as received once it
/// is known to have ended.
TEST_P(StreamKindTest, ShowsAFrameBeforeTheNextOneBegins)
{
    std::atomic<std::int64_t> mostAhead{-1};
    viewer.onFrame = [&, shown = std::int64_t{0}]() mutable {
        mostAhead = std::max(mostAhead.load(), status().framesReceived - shown++);
    };
    setRate(5);
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(viewer.sees(4));
    camera->CloseMainStreamVideo();
    const bool isJpeg = GetParam().codec == std::string("1");
    EXPECT_EQ(mostAhead, isJpeg ? 1 : 0);
}

TEST_F(StreamTest, DecodesSound)
{
    for (const auto& [encoding, samplesPerSecond] : {std::pair{"1", 16000}, std::pair{"0", 8000}}) {
        Viewer listener;
        sim.setValue("audioenable", "1");
        sim.setValue("encoding", encoding);
        sim.setValue("samplerate", "16000");
        camera->SetAudioBufCallBack(Viewer::audio, &listener);
        ASSERT_EQ(openMain(), 0);
        EXPECT_TRUE(comesTrue([&] { return listener.samples().size() > 12000; })) << encoding;
        const auto begin = std::chrono::steady_clock::now();
        const std::size_t before = listener.samples().size();
        std::this_thread::sleep_for(1s);
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        const auto came = static_cast<double>(listener.samples().size() - before);
        camera->CloseMainStreamVideo();

        EXPECT_NEAR(came / listener.channels() / seconds, samplesPerSecond, samplesPerSecond / 4.0)
            << encoding;
        const auto samples = listener.samples();
        EXPECT_GT(*std::max_element(samples.begin() + 6000, samples.end()), 1000) << encoding;
        camera->SetAudioBufCallBack(nullptr, nullptr);
        EXPECT_EQ(status().framesDecoded, 0) << "nobody wants pictures";
    }
}

TEST_F(StreamTest, DecodesOnlyWhileSomebodyWatches)
{
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return status().framesReceived >= 12; }));
    EXPECT_EQ(status().framesDecoded, 0);
    EXPECT_EQ(status().width, 320) << "known all the same";

    watch();
    ASSERT_TRUE(viewer.sees(3));
    EXPECT_GE(viewer.numbers()[0], 11u) << "the latest frame, though no key frame";
    EXPECT_TRUE(ascendByOne(viewer.numbers()));

    camera->SetDecodeEnable(true, false);
    ASSERT_TRUE(
        comesTrue([&, before = status().framesReceived] { return status().framesReceived > before + 1; }));
    const auto decoded = status().framesDecoded;
    const auto received = status().framesReceived;
    ASSERT_TRUE(comesTrue([&] { return status().framesReceived > received + 5; }));
    EXPECT_EQ(status().framesDecoded, decoded);

    const std::size_t shown = viewer.frames().size();
    camera->SetDecodeEnable(true, true);
    ASSERT_TRUE(viewer.sees(shown + 2));
    EXPECT_TRUE(comesTrue( // while frames flow, one may be seen that is not counted yet
        [&] { return status().framesDelivered == static_cast<std::int64_t>(viewer.frames().size()); }));
    EXPECT_EQ(status().framesDropped, 0);
}

TEST_F(StreamTest, KeepsTheStreamsApart)
{
    sim.setValue("media_profile_resolution_width[1]", "160");
    sim.setValue("media_profile_resolution_height[1]", "128");
    watch();
    camera->SetDecodeEnable(false, false);
    ASSERT_EQ(openMain(), 0);
    ASSERT_EQ(openSub(), 0);
    ASSERT_TRUE(comesTrue([&] { return status(true).width == 320 && status(false).width == 160; }));
    ASSERT_TRUE(viewer.sees(5));
    EXPECT_EQ(status(false).framesDecoded, 0);

    camera->CloseMainStreamVideo();
    camera->SetDecodeEnable(false, true);
    ASSERT_TRUE(viewer.sees(viewer.frames().size() + 3));
    EXPECT_EQ(viewer.frames().back().width, 160);
    StreamStatus main;
    EXPECT_FALSE(camera->GetStreamStatus(true, &main));
    EXPECT_EQ(main.framesReceived, 0);
    EXPECT_TRUE(camera->GetStreamStatus(false, &main));
    EXPECT_EQ(main.connected, 1);
}

TEST_F(StreamTest, OpensAStreamOnceAtATime)
{
    ASSERT_EQ(openMain(), 0);
    EXPECT_EQ(openMain(), -1);
    camera->CloseMainStreamVideo();
    camera->CloseMainStreamVideo();
    EXPECT_EQ(openMain(), 0);
    EXPECT_EQ(requests("PLAY"), 2);
    camera->CloseMainStreamVideo();
    EXPECT_TRUE(comesTrue([&] { return requests("TEARDOWN") == 2; })) << "the camera is told each time";
}

TEST_F(StreamTest, OpensNothingButStreamsOfCameras)
{
    const std::string addressOfOther = "http://" + sim.host() + ':' + std::to_string(sim.port()) + "/main";
    for (const char* address :
         {static_cast<const char*>(nullptr), "", "/etc/hostname", "file:///etc/hostname",
          addressOfOther.c_str(), "rtsp://", "rtsp://127.0.0.1:1/main"})
        EXPECT_EQ(camera->OpenMainStreamVideo(address, "admin", "admin"), -1) << (address ? address : "null");
    EXPECT_EQ(camera->OpenMainStreamVideo(url("/nowhere").c_str(), "admin", "admin"), -1);
    EXPECT_EQ(openMain(), 0);
}

TEST_F(StreamTest, TakesUserAndPasswordAsTheyAre)
{
    const std::string user = "a@b/c?d#e%20";
    const std::string password = ":p@ss/w%41 \xC3\xA4\"?#&";
    kxsim::SimCamera other{{.user = user, .password = password, .streaming = {.port = 0}}};
    const std::string address = "rtsp://" + other.host() + ':' + *other.value("mainrtspport") + "/main";
    EXPECT_EQ(camera->OpenMainStreamVideo(address.c_str(), user.c_str(), password.c_str()), 0);
    for (const auto& request : other.streamRequests())
        EXPECT_TRUE(request.path.starts_with("/main")) << request.path;
    camera->CloseMainStreamVideo();
    EXPECT_EQ(camera->OpenMainStreamVideo(address.c_str(), nullptr, nullptr), -1);
}

TEST_F(StreamTest, CallsNobodyAfterTheCallBackWasTakenAway)
{
    std::atomic<bool> within{false};
    viewer.onFrame = [&] {
        within = true;
        std::this_thread::sleep_for(30ms);
        within = false;
    };
    ASSERT_EQ(openMain(), 0);
    for (int i = 0; i < 5; ++i) {
        watch();
        ASSERT_TRUE(comesTrue([&] { return within.load(); }));
        camera->SetVideoBufCallBack(nullptr, nullptr);
        EXPECT_FALSE(within);
        const std::size_t seen = viewer.frames().size();
        ASSERT_TRUE(comesTrue(
            [&, before = status().framesReceived] { return status().framesReceived > before + 2; }));
        EXPECT_EQ(viewer.frames().size(), seen);
    }
}

/// Whatever a callback does from within, it is called no more and nothing waits for itself.
TEST_F(StreamTest, MayBeEndedFromWithinACallBack)
{
    const std::function<void()> endings[] = {
        [&] {
            camera->SetVideoBufCallBack(nullptr, nullptr);
            camera->SetAudioBufCallBack(nullptr, nullptr);
        },
        [&] {
            camera->CloseSubStreamVideo();
            camera->CloseMainStreamVideo();
            camera->SetVideoBufCallBack(nullptr, nullptr);
        },
        [&] { CIpCameraManager::GetInstance()->DelIpCamera(1000); },
        [&] {
            camera.reset();
            CIpCameraManager::GetInstance()->DelIpCamera(1000); // the last owner: the object is destroyed
        },
        [&] {
            camera.reset();
            CIpCameraManager::DeleteInstance();
        },
    };
    for (const auto& end : endings) {
        Viewer watcher;
        std::atomic<bool> begun{false};
        std::atomic<bool> ended{false};
        camera = CIpCameraManager::GetInstance()->AddIpCamera(1000);
        watcher.onFrame = [&] {
            if (!begun)
                return;
            EXPECT_FALSE(ended);
            EXPECT_LT(timeOf(end), 500ms);
            ended = true;
        };
        camera->SetVideoBufCallBack(Viewer::video, &watcher);
        EXPECT_EQ(openMain(), 0);
        EXPECT_EQ(openSub(), 0);
        begun = true;
        EXPECT_TRUE(comesTrue([&] { return ended.load(); }));
        std::this_thread::sleep_for(100ms); // in which frames would come
        CIpCameraManager::DeleteInstance();
        camera.reset();
    }
}

TEST_F(StreamTest, GoesOnWhileCallBacksChange)
{
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_EQ(openSub(), 0);
    std::atomic<bool> done{false};
    std::thread changing([&] {
        while (!done) {
            camera->SetVideoBufCallBack(nullptr, nullptr);
            camera->SetDecodeEnable(false, false);
            watch();
            camera->SetDecodeEnable(false, true);
            status();
        }
    });
    for (int i = 0; i < 10; ++i) {
        std::this_thread::sleep_for(50ms);
        camera->CloseSubStreamVideo();
        EXPECT_EQ(openSub(), 0);
    }
    done = true;
    changing.join();
    EXPECT_TRUE(viewer.sees(viewer.frames().size() + 5));
    EXPECT_EQ(status().framesDropped, 0);
}

} // namespace
