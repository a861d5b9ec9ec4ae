// Live view, what it saves, and playback, from a login to a camera that streams.
#include <atomic>
#include <filesystem>
#include <map>

#include "SdkTest.h"
#include "StreamMedia.h"
#include "StreamTest.h"

using kxsim::StreamFault;
using testing::Each;

namespace
{

/// What the application's callback gets.
class Audience
{
public:
    static void take(long userId, int dataType, const std::uint8_t* data, int size, int width, int height,
                     void* user)
    {
        if (user == nullptr)
            return; // of a playback whose session's live view was stopped
        auto& self = *static_cast<Audience*>(user);
        {
            const std::lock_guard lock(self.mutex_);
            self.ids_.push_back(userId);
            if (dataType == KX_DATA_AUDIO)
                self.samples_ += size;
            else if (data == nullptr)
                ++self.ends_;
            else
                self.numbers_.push_back(kxsim::frameNumberOf(data, width, height).value_or(~0U));
        }
        if (self.onFrame)
            self.onFrame();
    }

    std::function<void()> onFrame; // to be set before the stream is opened

    std::vector<long> ids() const { return copyOf(ids_); }
    std::vector<unsigned> numbers() const { return copyOf(numbers_); }
    std::size_t frames() const { return numbers().size(); }
    int samples() const { return copyOf(samples_); }
    int ends() const { return copyOf(ends_); }

    void forget()
    {
        const std::lock_guard lock(mutex_);
        ids_.clear();
        numbers_.clear();
        samples_ = 0;
    }

private:
    template <typename Type>
    Type copyOf(const Type& member) const
    {
        const std::lock_guard lock(mutex_);
        return member;
    }

    mutable std::mutex mutex_;
    std::vector<long> ids_;
    std::vector<unsigned> numbers_;
    int samples_ = 0;
    int ends_ = 0;
};

class SessionStream : public SdkTest
{
protected:
    void SetUp() override
    {
        SdkTest::SetUp();
        g_timing.decodersOff = 1ms;
        g_streamTiming = {};
        g_streamTiming.firstPause = 20ms;
        for (const char* stream : {"[0]", "[1]"}) {
            sim.setValue(std::string("media_profile_resolution_width") + stream, "320");
            sim.setValue(std::string("media_profile_resolution_height") + stream, "240");
        }
        id = login(sim, "secret");
        ASSERT_GE(id, 1000);
    }

    void open(char stream = 0)
    {
        ASSERT_EQ(Kx_IpcClient_SetLiveDataCallBack(id, Audience::take, &audience), 0);
        ASSERT_EQ(Kx_IpcClient_OpenLive(id, stream), 0);
    }

    KxLiveStatus status() const
    {
        KxLiveStatus status{};
        Kx_IpcClient_GetLiveStatus(id, &status);
        return status;
    }

    bool seesFrames(std::size_t count) const
    {
        return comesTrue([&] { return audience.frames() >= count; });
    }

    /// A recording of so many frames; its path.
    std::string record(std::int64_t frames)
    {
        EXPECT_EQ(Kx_IpcClient_SaveLiveData(id, scratch.path().c_str()), 0);
        EXPECT_TRUE(comesTrue([&] { return status().recordedFrames >= frames; }));
        EXPECT_EQ(Kx_IpcClient_StopSaveLiveData(id), 1);
        return scratch / scratch.names().at(0);
    }

    ScratchDirectory scratch;
    Audience audience; // outlives the SDK, which its destruction follows
    kxsim::SimCamera sim{{.password = "secret", .streaming = {.port = 0}}};
    long id = -1;
};

/// 0, 1, 2 and so on, up to as many.
std::vector<unsigned> inOrder(std::size_t count)
{
    std::vector<unsigned> numbers(count);
    for (std::size_t i = 0; i < count; ++i)
        numbers[i] = static_cast<unsigned>(i % kxsim::framesPerLoop);
    return numbers;
}

} // namespace

TEST_F(SessionStream, EachFrameComesUnderTheSessionsId)
{
    for (const char stream : {'\0', '\1'}) {
        audience.forget();
        open(stream);
        EXPECT_TRUE(seesFrames(20));
        EXPECT_TRUE(comesTrue([&] { return audience.samples() > 0; }));
        int watching = 0;
        EXPECT_EQ(Kx_IpcClient_GetCurrentConnectionNum(id, &watching), 0);
        EXPECT_EQ(watching, 1);
        char address[64];
        EXPECT_EQ(Kx_IpcClient_GetRtspUrl(id, stream, address, sizeof address), 0);
        EXPECT_EQ(address,
                  "rtsp://127.0.0.1:" + *sim.value("mainrtspport") + (stream == 0 ? "/main" : "/sub"));
        EXPECT_EQ(Kx_IpcClient_LivePlay(id), 0);
        EXPECT_EQ(status().width, 320);
        EXPECT_EQ(Kx_IpcClient_StopLivePlay(id), 1);

        const auto numbers = audience.numbers();
        EXPECT_EQ(numbers, inOrder(numbers.size()));
        EXPECT_THAT(audience.ids(), Each(id));
        std::this_thread::sleep_for(50ms);
        EXPECT_EQ(audience.frames(), numbers.size());
    }
}

TEST_F(SessionStream, RecordingAndSnapshotAreOfTheStream)
{
    open();
    const std::string recording = record(50);
    const auto recorded = static_cast<unsigned>(status().recordedFrames);
    char picture[256] = "";
    EXPECT_EQ(Kx_IpcClient_CaptureImage(id, picture, sizeof picture, scratch.path().c_str()), 0);
    EXPECT_GT(std::filesystem::file_size(picture), 1000U);
    EXPECT_EQ(std::filesystem::path(picture).parent_path(), scratch.path());
    EXPECT_EQ(Kx_IpcClient_StopLivePlay(id), 1);

    audience.forget();
    Kx_IpcClient_SetLiveDataCallBack(id, nullptr, &audience);
    ASSERT_EQ(Kx_IpcClient_OpenPlayBack(id, recording.c_str(), Audience::take, nullptr), 0);
    EXPECT_EQ(Kx_IpcClient_SetPlayDataCallBack(id, nullptr, nullptr), 0);
    EXPECT_EQ(Kx_IpcClient_PlayBack(id), 0);
    EXPECT_NEAR(Kx_IpcClient_GetFileDuration(id), recorded * 40, 45);
    EXPECT_TRUE(seesFrames(5));
    EXPECT_EQ(Kx_IpcClient_PlayBackPause(id), 1);
    std::this_thread::sleep_for(50ms); // the one that is on its way
    const std::size_t paused = audience.frames();
    const int time = Kx_IpcClient_GetCurrentTime(id);
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(audience.frames(), paused);
    EXPECT_EQ(Kx_IpcClient_GetCurrentTime(id), time);
    EXPECT_EQ(Kx_IpcClient_PlayBackResume(id), 1);
    EXPECT_TRUE(comesTrue([&] { return Kx_IpcClient_IsPlayFinished(id) == 1 && audience.ends() == 1; }));
    const auto numbers = audience.numbers();
    ASSERT_EQ(numbers.size(), recorded);
    EXPECT_EQ(numbers.back() - numbers.front(), recorded - 1);
    EXPECT_GT(audience.samples(), 0);

    audience.forget();
    EXPECT_EQ(Kx_IpcClient_PlayBackControl(id, 1, 4), 0);
    EXPECT_EQ(Kx_IpcClient_SeekPlayTime(id, 400), 0);
    EXPECT_LT(timeOf([&] { EXPECT_TRUE(comesTrue([&] { return audience.ends() == 2; })); }),
              1500ms); // of 1600
    EXPECT_EQ(audience.numbers().front(), numbers[10]);
    EXPECT_EQ(Kx_IpcClient_StopPlayBack(id), 1);
}

TEST_F(SessionStream, MotionAndTheClockSavePicturesAndRecordings)
{
    open();
    ASSERT_EQ(Kx_IpcClient_SetSaveDir(id, scratch.path().c_str()), 0);
    MotionSettingsInfo settings{
        .level = 90, .spaceTime = 0, .map = {}, .saveType = 1, .saveValue1 = 2, .saveValue2 = 0};
    EXPECT_EQ(Kx_IpcClient_SetMotionSettings(id, &settings), 0);
    for (std::int32_t day = 0; day < 7; ++day) {
        const RecordScheduleInfo always{day, 0, 0, 24, 0};
        EXPECT_EQ(Kx_IpcClient_AddMotionSchedule(id, &always), 0);
    }
    std::uint8_t everywhere[32][24];
    std::memset(everywhere, 1, sizeof everywhere);
    EXPECT_EQ(Kx_IpcClient_DrawGrid(id, 0, everywhere), 0);
    const auto saved = [&](const char* ending) {
        const auto names = scratch.names();
        return std::any_of(names.begin(), names.end(),
                           [&](const auto& name) { return name.ends_with(ending); });
    };
    EXPECT_TRUE(comesTrue([&] { return status().motionAlarms > 0 && saved(".jpg"); }));
    EXPECT_FALSE(saved(".avi"));
    for (int day = 0; day < 7; ++day) {
        const RecordScheduleInfo always{day, 0, 0, 24, 0};
        EXPECT_EQ(Kx_IpcClient_AddAutoSaveSchedule(id, &always), 0);
    }
    EXPECT_TRUE(comesTrue([&] { return saved(".avi"); }));
    EXPECT_EQ(Kx_Ipc_Logout(id), 0);
}

TEST_F(SessionStream, CallbackMayEndItsStreamItsSessionOrItsPlayback)
{
    open();
    const std::string recording = record(10);
    Kx_IpcClient_StopLivePlay(id);
    const std::function<void()> endings[] = {
        [&] { EXPECT_EQ(Kx_IpcClient_StopLivePlay(id), 1); },
        [&] { EXPECT_EQ(Kx_IpcClient_StopPlayBack(id), 1); },
        [&] { EXPECT_EQ(Kx_Ipc_Logout(id), 0); },
    };
    for (const auto& end : endings) {
        std::atomic<int> calls{0};
        std::atomic<bool> ended{false};
        audience.onFrame = [&, endIt = end] {
            if (++calls != 3)
                return;
            endIt();
            ended = true;
        };
        open();
        ASSERT_EQ(Kx_IpcClient_OpenPlayBack(id, recording.c_str(), Audience::take, nullptr), 0);
        EXPECT_TRUE(comesTrue([&] { return ended.load(); }));
        Kx_IpcClient_StopLivePlay(id);
        Kx_IpcClient_StopPlayBack(id);
    }
    EXPECT_EQ(Kx_Ipc_Logout(id), -1);
}

TEST_F(SessionStream, StreamThatFailsIsToldOfInTime)
{
    g_streamTiming.open = 300ms;
    const StreamFault faults[] = {{.kind = StreamFault::Kind::Refuse},
                                  {.kind = StreamFault::Kind::RefusePassword},
                                  {.kind = StreamFault::Kind::SilentBefore},
                                  {.kind = StreamFault::Kind::SilentAfter},
                                  {.kind = StreamFault::Kind::Garbage}};
    for (const StreamFault& fault : faults) {
        SCOPED_TRACE(static_cast<int>(fault.kind));
        sim.setStreamFault(fault);
        g_nLastError = KX_ERROR_NONE;
        EXPECT_LT(timeOf([&] { EXPECT_EQ(Kx_IpcClient_OpenLive(id, 0), -1); }), 3s);
        EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NETWORK);
    }
    g_streamTiming.open = 10s;
    sim.setStreamFault({.kind = StreamFault::Kind::Disconnect, .after = 100ms});
    open();
    EXPECT_TRUE(comesTrue([&] { return status().reconnects > 1; }));
    sim.setStreamFault({.kind = StreamFault::Kind::StopSending, .after = 100ms});
    EXPECT_LT(timeOf([&] { EXPECT_EQ(Kx_IpcClient_StopLivePlay(id), 1); }), 2s);
}

TEST_F(SessionStream, CameraServesNoMoreThanItsLimit)
{
    kxsim::SimCamera other{{.password = "secret"}};
    EXPECT_EQ(Kx_IpcClient_SetMaxConnectionLimit(id, 1), 0);
    int limit = 0;
    EXPECT_EQ(Kx_IpcClient_GetMaxConnectionLimit(id, &limit), 0);
    EXPECT_EQ(limit, 1);
    open();
    EXPECT_TRUE(seesFrames(1));
    other.setValue("mainrtspport", *sim.value("mainrtspport"));
    const long second = login(other, "secret");
    EXPECT_EQ(Kx_IpcClient_OpenLive(second, 0), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NETWORK);
    Kx_IpcClient_StopLivePlay(id);
    EXPECT_TRUE(comesTrue([&] { return Kx_IpcClient_OpenLive(second, 0) == 0; }));
}

TEST_F(SessionStream, EverythingAtOnceLeavesNothingRunning)
{
    std::atomic<bool> done{false};
    std::atomic<long> current{id};
    std::jthread meddler([&] {
        char picture[256];
        KxLiveStatus status;
        for (unsigned round = 0; !done; ++round) {
            Kx_IpcClient_GetLiveStatus(current, &status);
            Kx_IpcClient_SetLiveDataCallBack(current, Audience::take, &audience);
            Kx_IpcClient_SaveLiveData(current, scratch.path().c_str());
            if (round % 8 == 0)
                Kx_IpcClient_CaptureImage(current, picture, sizeof picture, "");
            if (round % 30 == 0)
                Kx_IpcClient_StopLivePlay(current);
            std::this_thread::sleep_for(5ms);
        }
    });
    const auto end = std::chrono::steady_clock::now() + 20s; // the meddler may be in time each time
    for (int round = 0; round < 20 || (audience.frames() == 0 && std::chrono::steady_clock::now() < end);
         ++round) {
        Kx_IpcClient_SetLiveDataCallBack(current, Audience::take, &audience);
        Kx_IpcClient_OpenLive(current, round % 2 != 0);
        std::this_thread::sleep_for(20ms);
        if (round % 4 == 3) {
            EXPECT_EQ(Kx_Ipc_Logout(current), 0);
            current = login(sim, "secret");
        }
    }
    done = true;
    meddler.join();
    EXPECT_GT(audience.frames(), 0U);
    Kx_Ipc_Logout(current);
    EXPECT_TRUE(comesTrue([&] { return sim.value("curmaxconn") == "0"; }));
}
