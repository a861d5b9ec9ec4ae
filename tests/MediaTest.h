// Fixture for tests that drive the media functions against the streaming library's stand-in.
#pragma once

#include "SdkTest.h"

#include <map>

#include "Core/UserInfo.h"
#include "ipcctl_stand_in.h"

/// A frame as it came to the application.
struct SeenFrame
{
    long userId;
    int dataType;
    const void* data;
    int size;
    int width;
    int height;
    void* user;

    bool operator==(const SeenFrame&) const = default;
};

/// Logged in to a camera, with nothing noted.
class MediaTest : public SdkTest
{
protected:
    void SetUp() override
    {
        SdkTest::SetUp();
        g_timing.decodersOff = std::chrono::milliseconds(1);
        camera.setValue("mainrtspport", "8554");
        id = login(camera, "secret");
        ASSERT_GE(id, 1000);
        camera.forgetRequests();
        standin::reset();
        seen.clear();
    }

    void TearDown() override
    {
        SdkTest::TearDown();
        EXPECT_EQ(standin::livingPlayers(), 0);
    }

    static void see(long userId, int dataType, const std::uint8_t* data, int size, int width, int height,
                    void* user)
    {
        seen.push_back({userId, dataType, data, size, width, height, user});
    }

    /// The last error of a call that fails with `result`; its last error was none before.
    template <typename Call>
    static long errorOf(int result, Call call)
    {
        g_nLastError = KX_ERROR_NONE;
        EXPECT_EQ(call(), result);
        return Kx_Sdk_GetLastError();
    }

    void openLive(char stream = 0)
    {
        ASSERT_EQ(Kx_IpcClient_OpenLive(id, stream), 0);
        standin::takeCalls();
    }

    kxsim::SimCamera camera{{.password = "secret"}};
    long id = -1;
    static inline std::vector<SeenFrame> seen;
};
