// Media functions called from callbacks, while a stream is being opened, and on many threads.
#include "MediaTest.h"

#include <atomic>
#include <future>
#include <thread>

#include "Core/SdkState.h"

using testing::Contains;

namespace
{

std::function<void(void* user)> whenSeen;

void act(long, int, const std::uint8_t*, int, int, int, void* user)
{
    whenSeen(user);
}

/// Sends frames on a thread of its own until it is told to end.
class Stream
{
public:
    explicit Stream(std::shared_ptr<standin::Receivers> receivers)
        : thread_([receivers = std::move(receivers)](const std::stop_token& stop) {
              unsigned char pixel[3] = {};
              short sample = 0;
              while (!stop.stop_requested()) {
                  standin::sendPicture(*receivers, pixel, 1, 1);
                  standin::sendSound(*receivers, &sample, 1);
              }
          })
    {
    }

private:
    std::jthread thread_;
};

class MediaThreads : public MediaTest
{
protected:
    int open(long userId) { return Kx_IpcClient_OpenLive(userId, 0); }

    static bool hasStreamObject(long userId)
    {
        return g_IpCameraManager.load()->GetIpCamera(static_cast<int>(userId)) != nullptr;
    }
};

} // namespace

TEST_F(MediaThreads, CallbackMayEndWhatItIsCalledBy)
{
    std::atomic<int> calls{0};
    const std::pair<const char*, std::function<void()>> endings[] = {
        {"StopLivePlay", [&] { EXPECT_EQ(Kx_IpcClient_StopLivePlay(id), 1); }},
        {"StopPlayBack", [&] { EXPECT_EQ(Kx_IpcClient_StopPlayBack(id), 1); }},
        {"Logout", [&] { EXPECT_EQ(Kx_Ipc_Logout(id), 0); }},
    };
    for (const auto& [name, end] : endings) {
        SCOPED_TRACE(name);
        calls = 0;
        whenSeen = [&, endIt = end](void*) {
            if (++calls == 1)
                endIt();
        };
        const bool plays = std::string_view(name) == "StopPlayBack";
        ASSERT_EQ(Kx_IpcClient_SetLiveDataCallBack(id, act, nullptr), 0);
        ASSERT_EQ(plays ? Kx_IpcClient_OpenPlayBack(id, "a.avi", act, nullptr) : open(id), 0);
        {
            const Stream stream(plays ? standin::lastPlayer() : standin::receiversOf(id));
            while (calls == 0)
                std::this_thread::yield();
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        EXPECT_EQ(calls, 1);
    }
    EXPECT_FALSE(hasStreamObject(id));
}

TEST_F(MediaThreads, OpeningThatIsOvertakenLeavesNothingOpen)
{
    const struct
    {
        const char* name;
        std::function<void()> run;
        long error;
    } cases[] = {
        {"stopped", [&] { EXPECT_EQ(Kx_IpcClient_StopLivePlay(id), 1); }, KX_ERROR_LIVE_STATE},
        {"logged out", [&] { EXPECT_EQ(Kx_Ipc_Logout(id), 0); }, KX_ERROR_UNKNOWN_USER},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        standin::takeCalls();
        standin::behaviour().whileOpening = row.run;
        EXPECT_EQ(errorOf(-1, [&] { return open(id); }), row.error);
        EXPECT_EQ(standin::takeTexts().back(),
                  row.error == KX_ERROR_LIVE_STATE ? "SetVideoBufCallBack(null)" : "DelIpCamera()");
    }
    EXPECT_FALSE(hasStreamObject(id));

    id = login(camera, "secret");
    standin::behaviour().whileOpening = [&] {
        EXPECT_EQ(errorOf(-1, [&] { return open(id); }), KX_ERROR_LIVE_STATE);
    };
    EXPECT_EQ(open(id), 0);
    // Not even the stream that replaces it is closed by one that was stopped while it asked for its address.
    Kx_IpcClient_StopLivePlay(id);
    camera.onRequest([&](const kxsim::Request&) {
        camera.onRequest(nullptr);
        EXPECT_EQ(Kx_IpcClient_StopLivePlay(id), 1);
        EXPECT_EQ(errorOf(-1, [&] { return open(id); }), KX_ERROR_LIVE_STATE);
    });
    EXPECT_EQ(open(id), -1);
    EXPECT_EQ(open(id), 0);
}

TEST_F(MediaThreads, PlaybackThatIsOvertakenIsFreed)
{
    const std::pair<std::function<void()>, long> cases[] = {
        {[&] { EXPECT_EQ(Kx_IpcClient_StopPlayBack(id), 1); }, KX_ERROR_NO_PLAYBACK},
        {[&] { EXPECT_EQ(Kx_Ipc_Logout(id), 0); }, KX_ERROR_NO_PLAYBACK},
    };
    for (const auto& [overtake, error] : cases) {
        standin::takeCalls();
        standin::behaviour().whileOpening = overtake;
        EXPECT_EQ(errorOf(-1, [&] { return Kx_IpcClient_OpenPlayBack(id, "a.avi", act, nullptr); }), error);
        EXPECT_EQ(standin::livingPlayers(), 0);
        EXPECT_THAT(standin::takeTexts(), Contains("SetVideoBufCallBack(null)"));
    }
}

TEST_F(MediaThreads, SessionPlaysUntilItsLastCallbackHasReturned)
{
    std::promise<void> within;
    std::promise<void> go;
    std::atomic<int> calls{0};
    whenSeen = [&](void*) {
        if (++calls > 1)
            return;
        within.set_value();
        go.get_future().wait();
    };
    ASSERT_EQ(Kx_IpcClient_OpenPlayBack(id, "a.avi", act, nullptr), 0);
    const auto player = standin::lastPlayer();
    std::jthread playing([&] {
        unsigned char pixel[3] = {};
        standin::sendPicture(*player, pixel, 1, 1);
    });
    within.get_future().wait();
    std::jthread stopping([&] { Kx_IpcClient_StopPlayBack(id); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // usually, it waits by now
    EXPECT_EQ(errorOf(-1, [&] { return Kx_IpcClient_OpenPlayBack(id, "b.avi", act, nullptr); }),
              KX_ERROR_BUSY);
    auto leaving = std::async(std::launch::async, [&] { return Kx_Ipc_Logout(id); });
    EXPECT_EQ(leaving.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    go.set_value();
    EXPECT_EQ(leaving.get(), 0);
    EXPECT_EQ(calls, 1);
}

TEST_F(MediaThreads, NewSessionIsNotHeldUpByAnOldOnesOpening)
{
    standin::behaviour().whileOpening = [] {
        Kx_Sdk_Destroy();
        Kx_Sdk_Init();
    };
    EXPECT_EQ(Kx_IpcClient_OpenLive(id, 0), -1);
    id = login(camera, "secret");
    EXPECT_EQ(errorOf(0, [&] { return Kx_IpcClient_SetLiveDataCallBack(id, act, nullptr); }), KX_ERROR_NONE);
    EXPECT_EQ(errorOf(0, [&] { return Kx_IpcClient_OpenLive(id, 0); }), KX_ERROR_NONE);
}

TEST_F(MediaThreads, FramesKeepToTheirCallbackAndItsUser)
{
    std::atomic<int> frames{0};
    whenSeen = [&](void* user) {
        ++frames;
        EXPECT_EQ(user, &frames);
    };
    static std::atomic<int> others;
    const auto other = [](long, int, const std::uint8_t*, int, int, int, void* user) {
        ++others;
        EXPECT_EQ(user, &others);
    };
    std::atomic<long> current{id};
    std::jthread stopper([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            Kx_IpcClient_StopLivePlay(current);
            KxLiveStatus status;
            Kx_IpcClient_GetLiveStatus(current, &status);
            Kx_IpcClient_SetLiveDataCallBack(current, other, &others);
            Kx_IpcClient_StopPlayBack(current);
        }
    });
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::seconds(20); // the stopper may be in time each time
    const auto enough = [&](int rounds) {
        return rounds >= 200 && (frames + others > 0 || std::chrono::steady_clock::now() > end);
    };
    for (int round = 0; !enough(round); ++round) {
        Kx_IpcClient_SetLiveDataCallBack(current, act, &frames);
        if (open(current) == 0) {
            const Stream stream(standin::receiversOf(current));
            Kx_IpcClient_OpenPlayBack(current, "a.avi", act, nullptr);
            std::this_thread::yield();
            Kx_IpcClient_StopLivePlay(current);
        }
        if (round % 3 == 0) {
            EXPECT_EQ(Kx_Ipc_Logout(current), 0);
            EXPECT_FALSE(hasStreamObject(current));
            current = login(camera, "secret");
        }
    }
    EXPECT_GT(frames + others, 0);
}
