// Live streams of cameras at fault: every call ends in time, and what can go on goes on.
#include "StreamTest.h"

#include <future>
#include <map>
#include <stdexcept>

#include "Descriptors.h"

namespace
{

using kxsim::StreamFault;
using Kind = StreamFault::Kind;

constexpr std::chrono::milliseconds slack =
    600ms; // a tenth of a second each until FFmpeg asks, and a busy machine

struct NamedFault
{
    const char* name;
    StreamFault fault;
};

class StreamFaultTest : public StreamTest, public testing::WithParamInterface<NamedFault>
{
protected:
    StreamFaultTest() { sim.setStreamFault(GetParam().fault); }

    void opensOnceTheFaultIsGone()
    {
        StreamStatus none;
        EXPECT_FALSE(camera->GetStreamStatus(true, &none));
        sim.setStreamFault({});
        g_streamTiming.open = 10s;
        EXPECT_EQ(openMain(), 0);
    }
};

class StreamRefusalTest : public StreamFaultTest
{
};

INSTANTIATE_TEST_SUITE_P(All, StreamRefusalTest,
                         testing::Values(NamedFault{"Connection", {.kind = Kind::Refuse}},
                                         NamedFault{"Password", {.kind = Kind::RefusePassword}},
                                         NamedFault{"Description", {.kind = Kind::Garbage}}),
                         nameOf<NamedFault>);

TEST_P(StreamRefusalTest, IsToldAtOnce)
{
    EXPECT_LT(timeOf([&] { EXPECT_EQ(openMain(), -1); }), slack);
    opensOnceTheFaultIsGone();
}

class StreamSilenceTest : public StreamFaultTest
{
};

INSTANTIATE_TEST_SUITE_P(
    All, StreamSilenceTest,
    testing::Values(NamedFault{"BeforeAll", {.kind = Kind::SilentBefore}},
                    NamedFault{"AfterOptions", {.kind = Kind::SilentAfter, .method = "OPTIONS"}},
                    NamedFault{"AfterDescribe", {.kind = Kind::SilentAfter, .method = "DESCRIBE"}},
                    NamedFault{"AfterSetup", {.kind = Kind::SilentAfter, .method = "SETUP"}},
                    NamedFault{"AfterPlay", {.kind = Kind::SilentAfter, .method = "PLAY"}}),
    nameOf<NamedFault>);

TEST_P(StreamSilenceTest, EndsAfterTheTimeLimit)
{
    g_streamTiming.open = 300ms;
    const auto taken = timeOf([&] { EXPECT_EQ(openMain(), -1); });
    EXPECT_GE(taken, g_streamTiming.open);
    EXPECT_LT(taken, g_streamTiming.open + slack);
    opensOnceTheFaultIsGone();
}

TEST_P(StreamSilenceTest, CanBeClosedMeanwhile)
{
    auto opening = std::async(std::launch::async, [&] { return openMain(); });
    std::this_thread::sleep_for(50ms);
    EXPECT_LT(timeOf([&] { camera->CloseMainStreamVideo(); }), 1s);
    EXPECT_EQ(opening.wait_for(1s), std::future_status::ready);
    EXPECT_EQ(opening.get(), -1);
}

TEST_F(StreamTest, AsksARefusingCameraOnce)
{
    EXPECT_EQ(openMain("guess"), -1);
    const auto asked = requests("DESCRIBE");
    EXPECT_LE(asked, 2) << "one answer to the challenge";
    std::this_thread::sleep_for(3 * g_streamTiming.longestPause);
    EXPECT_EQ(requests("DESCRIBE"), asked);
}

TEST_F(StreamTest, DoesNotAskAgainWhenThePasswordHasChanged)
{
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(viewer.sees(1));
    sim.setStreamFault({.kind = Kind::Disconnect});
    ASSERT_TRUE(comesTrue([&] { return status().connected == 0; }));
    sim.setStreamFault({.kind = Kind::RefusePassword});
    ASSERT_TRUE(comesTrue([&] { return status().refused == 1; }));
    const auto asked = requests("DESCRIBE");
    std::this_thread::sleep_for(5 * g_streamTiming.longestPause);
    EXPECT_EQ(requests("DESCRIBE"), asked);
    EXPECT_EQ(status().connected, 0);
    EXPECT_EQ(openMain(), -1) << "it is still open to the application";
    EXPECT_LT(timeOf([&] { camera->CloseMainStreamVideo(); }), 500ms);
}

class StreamBreakTest : public StreamFaultTest
{
};

INSTANTIATE_TEST_SUITE_P(
    All, StreamBreakTest,
    testing::Values(NamedFault{"Disconnect", {.kind = Kind::Disconnect, .after = 300ms}},
                    NamedFault{"StopSending", {.kind = Kind::StopSending, .after = 300ms}},
                    NamedFault{"StopPictures", {.kind = Kind::StopPictures, .after = 300ms}}),
    nameOf<NamedFault>);

TEST_P(StreamBreakTest, IsOpenedAgain)
{
    g_streamTiming.silence = 300ms;
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] {
        const auto numbers = viewer.numbers();
        return std::count(numbers.begin(), numbers.end(), 0u) >= 2;
    })) << "from the first frame on each time";
    EXPECT_GE(status().reconnects, 1);
    sim.setStreamFault({});
    EXPECT_TRUE(viewer.sees(viewer.frames().size() + 20));
    EXPECT_EQ(status().connected, 1);
    EXPECT_LT(timeOf([&] { camera->CloseMainStreamVideo(); }), 1s);
}

TEST_P(StreamBreakTest, IsClosedInTime)
{
    g_streamTiming.longestPause = g_streamTiming.firstPause = 10s;
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(viewer.sees(1));
    std::this_thread::sleep_for(500ms); // in the pause, or in the wait for a frame
    EXPECT_LT(timeOf([&] { camera->CloseMainStreamVideo(); }), 1s);
}

/// Otherwise a reader that nobody waits for would stay behind until its time limit.
TEST_F(StreamTest, ClosingEndsTheReadersWait)
{
    g_streamTiming.silence = g_streamTiming.close = 60s;
    sim.setStreamFault({.kind = Kind::StopSending, .after = 100ms});
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return status().framesReceived > 0; }));
    std::this_thread::sleep_for(200ms);
    EXPECT_LT(timeOf([&] { camera->CloseMainStreamVideo(); }), 10s);
}

TEST_F(StreamTest, GoesOnWhenACallBackThrows)
{
    viewer.onFrame = [] { throw std::runtime_error("not for us"); };
    watch();
    ASSERT_EQ(openMain(), 0);
    EXPECT_TRUE(viewer.sees(3));
    camera->SetVideoBufCallBack(nullptr, nullptr);
}

/// Opened again and again without a frame: each pause is twice the one before, up to the longest.
TEST_F(StreamTest, WaitsLongerBetweenAttempts)
{
    using Clock = std::chrono::steady_clock;
    g_streamTiming.firstPause = 50ms;
    g_streamTiming.longestPause = 200ms;
    std::mutex mutex;
    std::vector<Clock::time_point> attempts;
    sim.onStreamRequest([&](const auto& request) {
        const std::lock_guard lock(mutex);
        if (request.method == "OPTIONS")
            attempts.push_back(Clock::now());
    });
    ASSERT_EQ(openMain(), 0);
    sim.setStreamFault({.kind = Kind::Disconnect});
    ASSERT_TRUE(comesTrue([&] {
        const std::lock_guard lock(mutex);
        return attempts.size() >= 6;
    }));
    camera->CloseMainStreamVideo();
    sim.onStreamRequest(nullptr);
    for (const auto& [attempt, pause] : {std::pair{2, 100ms}, {3, 200ms}, {4, 200ms}, {5, 200ms}})
        EXPECT_GE(attempts[static_cast<std::size_t>(attempt)] -
                      attempts[static_cast<std::size_t>(attempt - 1)],
                  pause)
            << attempt;
    EXPECT_LT(attempts[5] - attempts[4], 200ms + slack);
}

TEST_F(StreamTest, ClosesInTimeWhenACallBackDoesNotReturn)
{
    std::promise<void> release;
    viewer.onFrame = [released = release.get_future().share()] { released.wait(); };
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(viewer.sees(1));
    EXPECT_LT(timeOf([&] { camera->CloseMainStreamVideo(); }), 1s);
    EXPECT_EQ(openMain(), 0) << "the next reader does not depend on the last";
    release.set_value();
    camera->SetVideoBufCallBack(nullptr, nullptr);
}

TEST_F(StreamTest, WaitsForAKeyFrame)
{
    sim.setStreamFault({.kind = Kind::NoKeyFrame, .after = 600ms});
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return status().framesReceived >= 5; }));
    EXPECT_TRUE(viewer.frames().empty());
    EXPECT_EQ(status().width, 0);
    ASSERT_TRUE(viewer.sees(5));
    EXPECT_EQ(viewer.frames()[0].type, 1);
    EXPECT_EQ(status().framesDropped, 0);
}

/// The brightness of what is shown, by its number.
class PictureKeeper
{
public:
    static int video(void*, void* user, unsigned char* pixels, int width, int height, int, float)
    {
        auto& self = *static_cast<PictureKeeper*>(user);
        const auto number = kxsim::frameNumberOf(pixels, width, height);
        const std::lock_guard lock(self.mutex_);
        std::vector<unsigned char> picture(pixels, pixels + width * height * 3);
        if (number)
            self.pictures_.insert_or_assign(*number, std::move(picture));
        else
            ++self.unreadable_;
        return 0;
    }
    std::map<unsigned, std::vector<unsigned char>> pictures() const
    {
        const std::lock_guard lock(mutex_);
        return pictures_;
    }
    std::size_t size() const
    {
        const std::lock_guard lock(mutex_);
        return pictures_.size();
    }
    int unreadable() const
    {
        const std::lock_guard lock(mutex_);
        return unreadable_;
    }

private:
    mutable std::mutex mutex_;
    std::map<unsigned, std::vector<unsigned char>> pictures_;
    int unreadable_ = 0;
};

class StreamLossTest : public StreamTest
{
protected:
    ~StreamLossTest() override { camera->SetVideoBufCallBack(nullptr, nullptr); }

    PictureKeeper undisturbed;
    PictureKeeper disturbed;
};

TEST_F(StreamLossTest, ShowsNoDamagedFrames)
{
    setSize(160, 128); // one packet a frame, or a few
    sim.setValue("ipratio1", "10");
    constexpr unsigned compared = 100;
    camera->SetVideoBufCallBack(PictureKeeper::video, &undisturbed);
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return undisturbed.size() >= compared; }));
    camera->CloseMainStreamVideo();

    camera->SetVideoBufCallBack(PictureKeeper::video, &disturbed);
    camera->SetTransport(StreamTransport::Udp);
    sim.setStreamFault({.kind = Kind::LosePackets, .every = 11});
    ASSERT_EQ(openMain(), 0);
    EXPECT_TRUE(comesTrue([&] { return status().framesReceived >= compared; }));
    const StreamStatus after = status();
    camera->CloseMainStreamVideo();
    EXPECT_GT(after.framesDropped, 0);
    EXPECT_EQ(disturbed.unreadable(), 0);
    EXPECT_GT(disturbed.size(), compared / 10);
    const auto expected = undisturbed.pictures();
    for (const auto& [number, picture] : disturbed.pictures())
        EXPECT_TRUE(!expected.contains(number) || picture == expected.at(number)) << number;
}

/// What the application does with pictures delays neither what is read nor, for long, what is shown.
TEST_F(StreamTest, KeepsUpWithTheCameraWhenTheCallBackIsSlow)
{
    g_streamTiming.late = 300ms;
    viewer.onFrame = [] { std::this_thread::sleep_for(100ms); };
    const auto quick = CIpCameraManager::GetInstance()->AddIpCamera(1001);
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_EQ(quick->OpenMainStreamVideo(url().c_str(), "admin", "admin"), 0);
    StreamStatus other{};
    ASSERT_TRUE(comesTrue([&] {
        quick->GetStreamStatus(true, &other);
        return other.framesReceived >= 100;
    }));
    const StreamStatus own = status();
    const auto shown = viewer.numbers();
    EXPECT_GE(own.framesReceived, other.framesReceived - rate) << "read within a second";
    EXPECT_GE(shown.back() + rate, static_cast<unsigned>(own.framesReceived)) << "shown within a second";
    EXPECT_GE(shown.size(), 20u);
    EXPECT_GT(own.framesDropped, 20);
    EXPECT_TRUE(std::is_sorted(shown.begin(), shown.end()));
}

TEST_F(StreamTest, ReadsOneStreamWhileTheOthersCallBackDoesNotReturn)
{
    g_streamTiming.late = 50ms;
    std::promise<void> release;
    viewer.onFrame = [released = release.get_future().share()] { released.wait(); };
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(viewer.sees(1));
    ASSERT_EQ(openSub(), 0);
    EXPECT_TRUE(comesTrue([&] { return status(false).framesReceived >= 2 * rate; }));
    EXPECT_GE(status(false).framesDropped, rate);
    EXPECT_EQ(viewer.frames().size(), 1u);
    release.set_value();
    EXPECT_TRUE(viewer.sees(5));
}

TEST_F(StreamTest, ShowsNothingOfStreamsThatAreNotWhatTheySay)
{
    sim.setStreamFault({.kind = Kind::WrongCodec});
    watch();
    ASSERT_EQ(openMain(), 0);
    std::this_thread::sleep_for(300ms); // in which frames would come
    EXPECT_TRUE(viewer.frames().empty());
    EXPECT_LT(timeOf([&] { camera->CloseMainStreamVideo(); }), 1s);
}

/// Nothing tells how to decode it.
TEST_F(StreamTest, EndsInTimeWithoutParameterSets)
{
    sim.setStreamFault({.kind = Kind::BadParameters});
    g_streamTiming.firstImage = 200ms;
    watch();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return status().bytesReceived > 50'000; }));
    EXPECT_LT(timeOf([&] { EXPECT_EQ(camera->SaveImage(1, 1), -1); }), 1s);
    EXPECT_TRUE(viewer.frames().empty());
    EXPECT_EQ(status().width, 0);
    EXPECT_LT(timeOf([&] { camera->CloseMainStreamVideo(); }), 1s);
}

TEST_F(StreamTest, IsRefusedWhenTheCameraHasEnoughViewers)
{
    sim.setValue("maxconn", "1");
    ASSERT_EQ(openMain(), 0);
    EXPECT_EQ(openSub(), -1);
    camera->CloseMainStreamVideo();
    EXPECT_TRUE(comesTrue([&] { return openSub() == 0; })) << "as soon as the camera has noticed";
}

TEST_F(StreamTest, LeavesNothingBehind)
{
    ASSERT_EQ(openMain(), 0);
    camera->CloseMainStreamVideo();
    const std::size_t before = openDescriptors();
    watch();
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(openMain(), 0);
        if (i % 2 == 0)
            viewer.sees(viewer.frames().size() + 1);
        camera->CloseMainStreamVideo();
    }
    EXPECT_TRUE(descriptorsFallTo(before));
}

} // namespace
