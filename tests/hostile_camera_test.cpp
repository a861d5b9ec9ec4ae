// A camera that misbehaves: every call ends, says so, and leaves nothing behind.
#include "SdkTest.h"

#include <cstring>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <thread>

#include <malloc.h>

#include "CameraCalls.h"

using kxsim::Fault;

namespace
{

class HostileCamera : public SdkTest
{
protected:
    void SetUp() override
    {
        SdkTest::SetUp();
        id = login(camera);
        ASSERT_GE(id, 1000);
    }

    /// Silence is waited for only as long as needed, a slow machine's answer as long as it takes.
    void setFault(const Fault& fault)
    {
        using Kind = Fault::Kind;
        camera.setFault(fault);
        const bool silent = fault.kind == Kind::Unreachable || fault.kind == Kind::SilentBefore ||
                            fault.kind == Kind::SilentAfter;
        g_timing = timingWithoutPauses();
        if (silent)
            g_timing.probe = g_timing.firstReply = g_timing.accountConnect = g_timing.accountReply =
                g_timing.transferReply = g_timing.uploadReply = std::chrono::milliseconds(10);
    }

    int run(const NamedCall& call, Records& records)
    {
        const int result = call.run(id, &records);
        if (result == 0 && std::strcmp(call.name, "SetNetwork") == 0) { // moves the camera away
            camera.clearFault();
            id = login(camera);
        }
        return result;
    }

    kxsim::SimCamera camera{{.restartTime = std::chrono::milliseconds(0)}}; // it never really goes away
    long id = -1;
};

} // namespace

TEST_F(HostileCamera, EndsEveryCallWithTheFaultsCode)
{
    enum Outcome
    {
        Fails,   // every call, with the code
        Silent,  // every call, with its own code: the connection closes without a byte
        Answers, // something comes back: sets succeed, gets find no key
        Babbles  // the same, without an "OK"
    };
    const std::tuple<Fault, Outcome, long> cases[] = {
        {{.kind = Fault::Kind::Refuse}, Fails, KX_ERROR_NETWORK},
        {{.kind = Fault::Kind::Unreachable}, Fails, KX_ERROR_NETWORK},
        {{.kind = Fault::Kind::SilentBefore}, Fails, KX_ERROR_NETWORK},
        {{.kind = Fault::Kind::SilentAfter}, Fails, KX_ERROR_NETWORK},
        {{.kind = Fault::Kind::EmptyReply}, Silent, KX_ERROR_NETWORK},
        {{.kind = Fault::Kind::Status, .status = 400}, Fails, KX_ERROR_NETWORK},
        {{.kind = Fault::Kind::Status, .status = 401}, Fails, KX_ERROR_UNAUTHORISED},
        {{.kind = Fault::Kind::Status, .status = 404}, Fails, KX_ERROR_NOT_FOUND},
        {{.kind = Fault::Kind::Status, .status = 502}, Fails, KX_ERROR_BAD_GATEWAY},
        {{.kind = Fault::Kind::CutShort, .bytes = 9}, Babbles, KX_ERROR_NONE},
        {{.kind = Fault::Kind::Endless}, Answers, KX_ERROR_NONE},
        {{.kind = Fault::Kind::Garbage}, Babbles, KX_ERROR_NONE},
    };
    for (const auto& [fault, outcome, error] : cases) {
        for (const NamedCall& call : cameraCalls) {
            SCOPED_TRACE(testing::Message() << call.name << " under fault " << static_cast<int>(fault.kind));
            setFault(fault);
            g_nLastError = KX_ERROR_NONE;
            Records records;
            const int result = run(call, records);
            const bool fails = outcome == Fails || outcome == Silent;
            if (fails || call.ignoresReply) {
                EXPECT_EQ(result, fails ? call.unreached : 0);
            }
            if (call.transfers)
                continue;
            EXPECT_EQ(Kx_Sdk_GetLastError(), outcome == Silent    ? call.errorWithoutReply
                                             : outcome == Babbles ? call.errorWithoutOk
                                                                  : error);
        }
    }
}

TEST_F(HostileCamera, LeavesNothingBehindAfterTwoThousandCalls)
{
    const Fault::Kind kinds[] = {Fault::Kind::None,     Fault::Kind::Refuse,  Fault::Kind::SilentBefore,
                                 Fault::Kind::CutShort, Fault::Kind::Endless, Fault::Kind::SilentAfter,
                                 Fault::Kind::Garbage,  Fault::Kind::Slow,    Fault::Kind::EmptyReply};
    const std::size_t before = openDescriptors();
    std::size_t calls = 0;
    std::size_t heapAfterWarmUp = 0;
    while (calls < 2000) {
        for (const Fault::Kind kind : kinds) {
            for (const NamedCall& call : cameraCalls) {
                setFault({.kind = kind, .bytes = 40, .pause = std::chrono::milliseconds(1)});
                Records records;
                run(call, records);
                ++calls;
            }
        }
        camera.clearFault();
        camera.forgetRequests();
        ASSERT_TRUE(descriptorsFallTo(before)) << openDescriptors() << " open, " << before << " at the start";
        const std::size_t heap = mallinfo2().uordblks;
        if (heapAfterWarmUp == 0)
            heapAfterWarmUp = heap;
        EXPECT_LT(heap, heapAfterWarmUp + 64 * 1024);
    }
}

TEST_F(HostileCamera, ValuesAreNeverFormatsAndNeverLeaveTheirFields)
{
    const std::string values[] = {
        "%n%n%n%n%s%s%s%s",           std::string(900, '%'),         std::string(900, 'x'), "\xFF\xFE\x80",
        "99999999999999999999999999", "-99999999999999999999999999", "1.2.3.4.5.6.7.8"};
    for (const std::string& value : values) {
        FtpInfo info{};
        camera.replaceReply("ftpip",
                            kxsim::httpReply("OK ftpip=" + value + "\nOK ftpipport=" + value + "\n"));
        EXPECT_EQ(Kx_Ipc_GetFTP(id, &info), 0);
        EXPECT_EQ(info.ftpip, value.substr(0, sizeof info.ftpip - 1));

        camera.replaceReply("netip", kxsim::httpReply("OK netip=" + value + "\n"));
        NetworkInfo network{};
        EXPECT_EQ(Kx_Ipc_GetNetwork(id, &network), 0);
        EXPECT_LT(strnlen(network.netip, sizeof network.netip), sizeof network.netip);
        EXPECT_STREQ(network.netmask, "");
    }
}

namespace
{

/// A call for both cameras that makes more requests than one; the last of them, by a part of its query.
struct LaterRequest
{
    const char* query;
    bool toTi;
    std::function<int(long id)> call;
};

template <typename Record>
std::function<int(long)> callWith(int (*get)(long, Record*))
{
    return [get](long id) { return get(id, std::make_unique<Record>().get()); };
}

} // namespace

class LaterRequests : public CameraTest
{
};

// What a refused or empty answer does to a first request, CameraCalls.h tells.
TEST_F(LaterRequests, FailTheCallToo)
{
    const LaterRequest requests[] = {
        {"textenable1.0", false, callWith(Kx_Ipc_GetOSD)},
        {"textenable1", true, callWith(Kx_Ipc_GetOSD)},
        {"textenable1", true, callWith(Kx_Ipc_GetOSD_ForOldVer)},
        {"audioenable", true, callWith(Kx_Ipc_GetAudioConfig)},
        {"maincodec", true,
         [](long id) {
             VideoInfo video{};
             return Kx_Ipc_GetVideoConfig(id, &video, 1);
         }},
        {"subcodec", true,
         [](long id) {
             VideoInfo videos[2]{};
             videos[1].stream = 1;
             return Kx_Ipc_GetVideoConfig_ForOldVer(id, videos, 2);
         }},
    };
    for (const LaterRequest& request : requests) {
        for (const std::string& answer : {kxsim::httpReply("", "404 Not Found"), std::string("\0", 1)}) {
            (request.toTi ? ti : page).replaceReply(request.query, answer);
            EXPECT_EQ(request.call(request.toTi ? tiId : pageId), -1)
                << request.query << " " << answer.size();
        }
        EXPECT_EQ(request.call(request.toTi ? tiId : pageId), 0) << request.query;
    }
}
