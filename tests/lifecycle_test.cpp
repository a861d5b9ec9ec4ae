// Initialisation, login, logout and shutdown.
#include "SdkTest.h"

#include <csignal>
#include <cstdlib>
#include <thread>

#include "Core/SdkState.h"
#include "Core/UserInfo.h"
#include "KxIpcSDK/Lifecycle.h"
#include "ipcctl/ipcctl.h"

using kxsim::Fault;
using kxsim::httpReply;

using Lifecycle = SdkTest;

TEST_F(Lifecycle, LoginAnnouncesItselfAndProvesTheCredentials)
{
    kxsim::SimCamera camera;
    ASSERT_GE(login(camera), 1000);
    EXPECT_THAT(
        queries(camera),
        testing::ElementsAre("&loginlog", "/vb.htm?action=get.network.general&user=admin&pwd=admin&"));
}

TEST_F(Lifecycle, LoginTellsWhyItFailed)
{
    const std::pair<std::string, long> cases[] = {
        {httpReply("", "400 Bad Request"), KX_ERROR_UNAUTHORISED},
        {httpReply("", "401 Unauthorized"), KX_ERROR_UNAUTHORISED},
        {httpReply("", "403 Forbidden"), KX_ERROR_FORBIDDEN},
        {httpReply("", "404 Not Found"), KX_ERROR_NOT_FOUND},
        {httpReply("", "502 Bad Gateway"), KX_ERROR_BAD_GATEWAY},
        {std::string("\0OK", 3), KX_ERROR_NOT_FOUND},
    };
    kxsim::SimCamera camera;
    for (const auto& [reply, error] : cases) {
        g_nLastError = KX_ERROR_NONE;
        camera.replaceReply("get.network.general", reply);
        EXPECT_EQ(login(camera), -1) << reply;
        EXPECT_EQ(Kx_Sdk_GetLastError(), error) << reply;
        EXPECT_EQ(GetUserInfo(0), &g_UserInfo[0]); // the slot is free again
    }
}

TEST_F(Lifecycle, LoginKeepsTheChannelsCodeWhenNothingCameBack)
{
    kxsim::SimCamera camera;
    g_timing.firstReply = std::chrono::milliseconds(100);
    // The announcement's reply must not be taken for the login's, which does not come.
    camera.replaceReply("loginlog", httpReply("", "400 Bad Request"));
    camera.setFault({.kind = Fault::Kind::SilentAfter, .onlyFor = "get.network.general"});
    EXPECT_EQ(login(camera), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NETWORK);
}

TEST_F(Lifecycle, LoginSucceedsWhateverBecomesOfItsAnnouncement)
{
    kxsim::SimCamera camera;
    camera.replaceReply("loginlog", httpReply("", "404 Not Found"));
    EXPECT_GE(login(camera), 1000);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NOT_FOUND); // left by the announcement, and not cleared
}

TEST_F(Lifecycle, SecondLoginTakesOverTheSessionForBetterOrWorse)
{
    kxsim::SimCamera camera;
    const long id = login(camera);
    EXPECT_EQ(login(camera), id);
    EXPECT_EQ(login(camera, "wrong"), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_UNAUTHORISED);
    EXPECT_EQ(Kx_Ipc_Logout(id), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_UNKNOWN_USER);
    EXPECT_GT(login(camera), id);
}

TEST_F(Lifecycle, FullTableFailsWithoutACode)
{
    for (int port = 1; port <= 500; ++port)
        GetAvaiUserInfo("10.0.0.1", port)->port = port;
    kxsim::SimCamera camera;
    EXPECT_EQ(login(camera), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE);
    EXPECT_EQ(camera.connections(), 0U);
}

TEST_F(Lifecycle, NullTextsFailWithoutACode)
{
    EXPECT_EQ(Kx_Ipc_Login(nullptr, "127.0.0.1", 80, "u", "p"), -1);
    EXPECT_EQ(Kx_Ipc_Login("l", nullptr, 80, "u", "p"), -1);
    EXPECT_EQ(Kx_Ipc_Login("l", "127.0.0.1", 80, nullptr, "p"), -1);
    EXPECT_EQ(Kx_Ipc_Login("l", "127.0.0.1", 80, "u", nullptr), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE);
    EXPECT_EQ(GetUserInfo(0), &g_UserInfo[0]);
}

TEST_F(Lifecycle, LongPasswordIsKeptAndSentCut)
{
    kxsim::SimCamera camera{{.password = std::string(30, 'p')}};
    EXPECT_GE(login(camera, std::string(40, 'p').c_str()), 1000);
}

TEST_F(Lifecycle, IdsRiseAcrossShutdown)
{
    kxsim::SimCamera camera;
    const long id = login(camera);
    Kx_Sdk_Destroy();
    EXPECT_EQ(login(camera), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NOT_INITIALISED);
    EXPECT_EQ(Kx_Ipc_Logout(id), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NOT_INITIALISED);
    Kx_Sdk_Init();
    EXPECT_EQ(Kx_Ipc_Logout(id), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_UNKNOWN_USER);
    EXPECT_EQ(login(camera), id + 1);
}

TEST_F(Lifecycle, InitialisingAgainDropsSessions)
{
    kxsim::SimCamera camera;
    const long id = login(camera);
    EXPECT_EQ(Kx_Sdk_Init(), 0);
    EXPECT_EQ(Kx_Ipc_Logout(id), -1);
}

TEST_F(Lifecycle, AnnouncesItselfOnStandardOutput)
{
    testing::internal::CaptureStdout();
    Kx_Sdk_Destroy();
    EXPECT_EQ(Kx_Sdk_Destroy(), 0);
    Kx_Sdk_Init();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "========Kx_Ipc_Destroy========\n"
                                                      "========Kx_Ipc_Destroy=====99999===\n"
                                                      "========Kx_Ipc_Destroy========\n"
                                                      "========Kx_Ipc_Destroy=====99999===\n"
                                                      "========Kx_Ipc_Init========\n");
}

TEST_F(Lifecycle, IgnoresTheBrokenPipeSignal)
{
    std::signal(SIGPIPE, SIG_DFL);
    Kx_Sdk_Init();
    EXPECT_EQ(std::signal(SIGPIPE, SIG_IGN), SIG_IGN);
}

TEST_F(Lifecycle, LogoutAndShutdownEndALiveView)
{
    kxsim::SimCamera camera;
    for (const bool byLogout : {true, false}) {
        const long id = login(camera);
        UserInfo* session = GetUserInfo(id);
        CIpCameraManager* manager = g_IpCameraManager;
        manager->AddIpCamera(static_cast<int>(id));
        session->livePlaying = 1;
        if (byLogout) {
            EXPECT_EQ(Kx_Ipc_Logout(id), 0);
            EXPECT_EQ(manager->GetIpCamera(static_cast<int>(id)), nullptr);
        } else {
            Kx_Sdk_Destroy();
            EXPECT_EQ(g_IpCameraManager, nullptr);
        }
        EXPECT_EQ(session->livePlaying, 0);
        EXPECT_EQ(session->nUserId, 0);
    }
}

namespace
{

std::atomic<int> workersEnded;

void* searchWorker(void*)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ++workersEnded;
    return nullptr;
}

void* streamWorker(void*)
{
    ThreadOpenRtsp(nullptr);
    return searchWorker(nullptr);
}

pthread_t* start(void* (*worker)(void*))
{
    auto* thread = static_cast<pthread_t*>(std::malloc(sizeof(pthread_t)));
    EXPECT_EQ(pthread_create(thread, nullptr, worker, nullptr), 0);
    return thread;
}

} // namespace

TEST_F(Lifecycle, ShutdownWaitsForItsWorkers)
{
    g_timing = shortTiming();
    workersEnded = 0;
    m_pThreadSearch = start(searchWorker);
    m_pThreadOpenRtsp = start(streamWorker);
    m_fSearchCallBack = [](SearchDeviceInfo*, void*) {};
    m_pSearchUser = this;
    Kx_Sdk_Destroy(); // the stream worker ends only because it is told to
    EXPECT_EQ(workersEnded, 2);
    EXPECT_EQ(m_pThreadSearch, nullptr);
    EXPECT_EQ(m_pThreadOpenRtsp, nullptr);
    EXPECT_EQ(m_fSearchCallBack, nullptr);
    EXPECT_EQ(m_pSearchUser, nullptr);
}
