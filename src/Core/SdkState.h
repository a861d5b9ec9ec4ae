// Process-wide state of the SDK's life: initialised or not, the streaming library, the background workers.
#pragma once

#include <atomic>
#include <shared_mutex>

#include <pthread.h>

#include <KxIpcSDK/KxSearch.h>

class CIpCameraManager;

extern std::atomic<bool> g_bInit; // between a successful Kx_Sdk_Init and Kx_Sdk_Destroy
extern std::atomic<CIpCameraManager*> g_IpCameraManager; // null: not initialised
extern std::shared_mutex g_IpCameraManagerMutex; // shared by those who use the manager: it is not deleted

extern std::atomic<fSearchCallBack> m_fSearchCallBack; // non-null while a search runs
extern std::atomic<void*> m_pSearchUser;
extern std::atomic<int> g_nSilentSearches;      // searches without a callback that still run
extern std::atomic<pthread_t*> m_pThreadSearch; // the latest search, if its thread is not joined yet

extern std::atomic<bool> g_bThreadOpenRtsp;       // run flag of the stream-opening worker
extern std::atomic<pthread_t*> m_pThreadOpenRtsp; // null: not started
