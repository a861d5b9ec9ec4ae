// Fixture and small helpers for tests that drive the SDK against simulated cameras.
#pragma once

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <KxIpcSDK/KxIpcSDK.h>
#include <KxSim/SimCamera.h>

#include "Core/LastError.h"
#include "Core/Timing.h"
#include "Descriptors.h"

/// Time limits short enough that a test which runs into one does not make anybody wait.
inline Timing shortTiming()
{
    using namespace std::chrono_literals;
    return {.probe = 60ms,
            .connect = 60ms,
            .firstReply = 60ms,
            .accountConnect = 60ms,
            .accountReply = 60ms,
            .transferConnect = 60ms,
            .transferReply = 60ms,
            .uploadReply = 60ms,
            .completeReply = 20ms,
            .watchPause = 5ms,
            .stalledReply = 60ms,
            .retry = 10us,
            .streamWorker = 1ms,
            .decodersOff = 1ms,
            .newResolution = 0ms,
            .newEncoding = 0ms,
            .newThirdEncoding = 0ms,
            .oldFirmwareEncoding = 0ms};
}

/// The real time limits, without the pauses that a camera gets to restart its encoder.
inline Timing timingWithoutPauses()
{
    using namespace std::chrono_literals;
    return {.newResolution = 0ms, .newEncoding = 0ms, .newThirdEncoding = 0ms, .oldFirmwareEncoding = 0ms};
}

/// Writes a text into a record's field.
template <std::size_t Size>
void put(char (&field)[Size], const std::string& text)
{
    std::memset(field, 0, Size);
    text.copy(field, Size - 1);
}

/// An initialised SDK, ended after the test. Time limits are the real ones unless a test shortens them; pauses there
/// are none.
class SdkTest : public testing::Test
{
protected:
    void SetUp() override
    {
        g_timing = timingWithoutPauses();
        g_nLastError = KX_ERROR_NONE;
        ASSERT_EQ(Kx_Sdk_Init(), 0);
    }

    void TearDown() override { Kx_Sdk_Destroy(); }

    static long login(const kxsim::SimCamera& camera, const char* password = "admin")
    {
        return Kx_Ipc_Login("test", camera.host().c_str(), camera.port(), "admin", password);
    }
};

/// Logged in to a TI camera and to one of the page dialect, with nothing in their request logs.
class CameraTest : public SdkTest
{
protected:
    void SetUp() override
    {
        SdkTest::SetUp();
        for (auto* camera : {&ti, &page})
            ASSERT_GE(*(camera == &ti ? &tiId : &pageId) = login(*camera), 1000);
        ti.forgetRequests();
        page.forgetRequests();
    }

    /// The record that a get makes of these answer lines.
    template <typename Record>
    Record read(int (*get)(long, Record*), const std::string& lines, Record record = {})
    {
        ti.replaceReply("", kxsim::httpReply(lines));
        EXPECT_EQ(get(tiId, &record), 0);
        return record;
    }

    kxsim::SimCamera ti{{.model = "KX-C200T"}};
    kxsim::SimCamera page{{.model = "KX-C300B"}};
    long tiId = -1;
    long pageId = -1;
};

/// The targets of the requests since the log was last emptied, without the path that all share.
inline std::vector<std::string> queries(const kxsim::SimCamera& camera)
{
    static const std::string path = "/vb.htm?language=ie";
    std::vector<std::string> found;
    for (const kxsim::Request& request : camera.requests())
        found.push_back(request.target.starts_with(path) ? request.target.substr(path.size())
                                                         : request.target);
    return found;
}

/// An administrative request, as `queries` tells it.
inline std::string action(const std::string& query)
{
    return "/cgi-bin/admin/admin.cgi?action=" + query;
}
