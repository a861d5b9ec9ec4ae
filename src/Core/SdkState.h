// Process-wide state of the SDK's life: initialised or not, the streaming library, the background workers.
#pragma once

#include <atomic>

#include <pthread.h>

class CIpCameraManager;
struct SearchDeviceInfo;

using fSearchCallBack = void (*)(SearchDeviceInfo* device, void* user);

extern std::atomic<bool> g_bInit; // between a successful Kx_Sdk_Init and Kx_Sdk_Destroy
extern CIpCameraManager* g_IpCameraManager;

extern std::atomic<fSearchCallBack> m_fSearchCallBack; // non-null while a search runs
extern std::atomic<void*> m_pSearchUser;
extern pthread_t* m_pThreadSearch; // heap cell made with malloc; null: no thread to join

extern std::atomic<bool> g_bThreadOpenRtsp; // run flag of the stream-opening worker
extern pthread_t* m_pThreadOpenRtsp;        // as m_pThreadSearch
