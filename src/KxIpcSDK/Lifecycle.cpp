#include "KxIpcSDK/Lifecycle.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <thread>

#include <KxIpcSDK/KxSdk.h>

#include "Core/LastError.h"
#include "Core/SdkState.h"
#include "Core/Timing.h"
#include "Core/UserInfo.h"
#include "KxIpcSDK/media/MediaSession.h"
#include "NetManager/Login.h"
#include "ZrThread/ZrMemory.h"
#include "ZrThread/ZrThread.h"
#include "ipcctl/ipcctl.h"

namespace
{

/// The error that a login's reply stands for beyond those the request channel knows ("401 Unauthorized", "404 Not
/// Found" and so on); KX_ERROR_NONE: the camera let us in.
KxError judgeLogin(const char* reply)
{
    const auto holds = [reply](const char* text) { return std::strstr(reply, text) != nullptr; };
    if (reply[0] == '\0')
        return KX_ERROR_NOT_FOUND;
    if (holds("400 Bad Request"))
        return KX_ERROR_UNAUTHORISED;
    return holds("403 Forbidden") ? KX_ERROR_FORBIDDEN : KX_ERROR_NONE;
}

/// Proves the session's credentials. A reply that the request channel refused has its code already, but for a login
/// "400 Bad Request" means that the camera did not like the credentials.
bool proveLogin(UserInfo& session)
{
    char reply[1024] = {};
    const int sent = DoLogin(&session, reply, sizeof reply);
    if (sent != 0 && std::strstr(reply, "400 Bad Request") == nullptr)
        return false;
    const KxError error = judgeLogin(reply);
    if (error != KX_ERROR_NONE)
        setLastError(error);
    return error == KX_ERROR_NONE;
}

void stopMedia()
{
    for (const UserInfo& slot : g_UserInfo) {
        if (slot.nUserId >= firstUserId && slot.livePlaying != 0)
            stopLiveView(slot.nUserId);
        if (slot.nUserId >= firstUserId && slot.player != nullptr)
            stopPlayback(slot.nUserId);
    }
}

/// Waits for those who use the manager, and leaves it to nobody any more. False when there is none.
bool releaseManager()
{
    const std::unique_lock lock(g_IpCameraManagerMutex);
    return g_IpCameraManager.exchange(nullptr) != nullptr;
}

void joinWorker(std::atomic<pthread_t*>& worker)
{
    pthread_t* thread = worker.exchange(nullptr);
    zr_thread_join(thread);
    zr_free(thread);
}

/// Their threads are detached as soon as another search starts.
void awaitSilentSearches()
{
    for (int running = g_nSilentSearches; running != 0; running = g_nSilentSearches)
        g_nSilentSearches.wait(running);
}

} // namespace

int Kx_Sdk_Init(void)
{
    std::signal(SIGPIPE, SIG_IGN); // a camera that closes its connection early must not end the application
    std::printf("========Kx_Ipc_Init========\n");
    stopMedia(); // of sessions that are about to be dropped: their frames must not reach those that follow
    clearAllSessions();
    m_fSearchCallBack = nullptr;
    m_pSearchUser = nullptr;
    g_IpCameraManager = CIpCameraManager::GetInstance();
    const bool started = g_IpCameraManager != nullptr;
    g_bThreadOpenRtsp = started;
    g_bInit = started;
    return started ? 0 : -1;
}

int Kx_Sdk_Destroy(void)
{
    std::printf("========Kx_Ipc_Destroy========\n");
    stopMedia();
    if (releaseManager())
        CIpCameraManager::DeleteInstance();
    clearAllSessions();
    joinWorker(m_pThreadSearch);
    awaitSilentSearches();
    m_fSearchCallBack = nullptr;
    m_pSearchUser = nullptr;
    g_bThreadOpenRtsp = false;
    joinWorker(m_pThreadOpenRtsp);
    std::printf("========Kx_Ipc_Destroy=====99999===\n");
    g_bInit = false;
    return 0;
}

long Kx_Sdk_GetLastError(void)
{
    return g_nLastError;
}

long Kx_Ipc_Login(const char* label, const char* host, int port, const char* user, const char* password)
{
    if (!g_bInit)
        return failWith(KX_ERROR_NOT_INITIALISED);
    if (label == nullptr || host == nullptr || user == nullptr || password == nullptr)
        return -1;

    // The requests go by this copy, whatever another login or a logout does to the slot meanwhile.
    UserInfo session;
    if (!takeSession(label, host, port, user, password, session))
        return -1;
    if (proveLogin(session))
        return session.nUserId;
    closeSession(session.nUserId);
    return -1;
}

int Kx_Ipc_Logout(long userId)
{
    if (!g_bInit)
        return failWith(KX_ERROR_NOT_INITIALISED);
    return closeSession(userId) ? 0 : failWith(KX_ERROR_UNKNOWN_USER);
}

bool closeSession(long userId)
{
    if (userId < firstUserId) // id 0 finds a free slot, in which there is nothing to close
        return GetUserInfo(userId) != nullptr;
    UserInfo* slot = beginClosing(userId);
    if (slot == nullptr)
        return false;
    endMedia(*slot, userId);
    endClosing(*slot);
    return true;
}

void* ThreadOpenRtsp(void*)
{
    while (g_bThreadOpenRtsp)
        std::this_thread::sleep_for(g_timing.streamWorker);
    return nullptr;
}
